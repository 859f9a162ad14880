#include "PxImpostazioniMacchina.h"

#include "PxImpostazioni.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

PxImpostazioniMacchina::PxImpostazioniMacchina(const QString& cartellaServer)
{
    mImpostazioni = std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::SystemScope,
                                                QString::fromLatin1(PxImpostazioni::Produttore), QStringLiteral("Pelorix"));
    if (mImpostazioni->isWritable())
        return;
    // The machine's store is the administrator's: the server folder serves every console that
    // shares it; a console whose server is across the network keeps its own.
    const QString cartella = QFileInfo(cartellaServer).isDir()
        ? cartellaServer
        : QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
    QDir(cartella).mkpath(QStringLiteral("Console"));
    mImpostazioni = std::make_unique<QSettings>(QDir(cartella).filePath(QStringLiteral("Console/Macchina.ini")),
                                                QSettings::IniFormat);
}
