#include "PxImpostazioniMacchina.h"

#include "PxImpostazioni.h"

#include <QDir>

PxImpostazioniMacchina::PxImpostazioniMacchina(const QString& cartellaServer)
{
    mImpostazioni = std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::SystemScope,
                                                QString::fromLatin1(PxImpostazioni::Produttore), QStringLiteral("Pelorix"));
    if (mImpostazioni->isWritable())
        return;
    // The machine's store is the administrator's: the server folder serves every console.
    QDir(cartellaServer).mkpath(QStringLiteral("Console"));
    mImpostazioni = std::make_unique<QSettings>(QDir(cartellaServer).filePath(QStringLiteral("Console/Macchina.ini")),
                                                QSettings::IniFormat);
}
