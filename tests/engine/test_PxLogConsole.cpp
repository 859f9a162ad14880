#include "PxErrore.h"
#include "PxLogConsole.h"
#include "PxRigaLog.h"
#include "modTraccia.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace {

QStringList Righe(const QString& file)
{
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    const QByteArray dati = f.readAll();
    EXPECT_TRUE(dati.isEmpty() || dati.endsWith("\r\n"));
    QStringList righe = QString::fromUtf8(dati).split(QStringLiteral("\r\n"));
    righe.removeLast();
    return righe;
}

} // namespace

TEST(PxLogConsole, WritesTheServersLineForm)
{
    QTemporaryDir dir;
    PxLogConsole log;
    log.NomeApplicazione = QStringLiteral("PlxSrvConsole");
    log.Cartella = dir.filePath(QStringLiteral("log/annidata"));
    ASSERT_TRUE(log.Apri());
    log.Scrivi(3, QStringLiteral("Server inizializzato"));
    log.Scrivi(0, QStringLiteral("guasto"));
    const QStringList righe = Righe(log.File());
    ASSERT_EQ(righe.size(), 2);
    const auto prima = modRigaLog::Analizza(righe[0]);
    ASSERT_TRUE(prima);
    EXPECT_EQ(prima->Livello, 3);
    EXPECT_TRUE(prima->Ora.isValid());
    EXPECT_EQ(prima->Testo, QStringLiteral("Server inizializzato"));
    EXPECT_EQ(modRigaLog::Analizza(righe[1])->Livello, 0);
    log.Chiudi();
    log.Scrivi(3, QStringLiteral("dopo la chiusura"));
    EXPECT_EQ(Righe(log.File()).size(), 2);
}

TEST(PxLogConsole, DisabledOrWithoutFolderWritesNothing)
{
    PxLogConsole log;
    log.NomeApplicazione = QStringLiteral("x");
    EXPECT_FALSE(log.Apri());
    log.Scrivi(3, QStringLiteral("niente")); // must not crash
    QTemporaryDir dir;
    log.Cartella = dir.path();
    log.Abilitato = false;
    EXPECT_FALSE(log.Apri());
    EXPECT_FALSE(QFile::exists(log.File()));
}

TEST(modTraccia, GuardAndWrapperWriteEntryExitAndNumberedErrors)
{
    QTemporaryDir dir;
    PxLogConsole log;
    log.NomeApplicazione = QStringLiteral("traccia");
    log.Cartella = dir.path();
    ASSERT_TRUE(log.Apri());
    modTraccia::ImpostaLog(&log);
    const bool ok = modTraccia::Proteggi("AggiornaDocFax", [] {
        throw PxErrore(91, QStringLiteral("prova"), QStringLiteral("oggetto mancante"));
    });
    const bool ok2 = modTraccia::Proteggi("Niente", [] {});
    const bool ok3 = modTraccia::Proteggi("Std", [] { throw std::runtime_error("rotto"); });
    modTraccia::ImpostaLog(nullptr);
    EXPECT_FALSE(ok);
    EXPECT_TRUE(ok2);
    EXPECT_FALSE(ok3);
    QStringList testi;
    for (const QString& r : Righe(log.File()))
        testi << modRigaLog::Analizza(r)->Testo;
    EXPECT_EQ(testi, (QStringList{
                         QStringLiteral("AggiornaDocFax> Entra"),
                         QStringLiteral("Errore in AggiornaDocFax: 91 - oggetto mancante"),
                         QStringLiteral("AggiornaDocFax> Esce"),
                         QStringLiteral("Niente> Entra"),
                         QStringLiteral("Niente> Esce"),
                         QStringLiteral("Std> Entra"),
                         QStringLiteral("Errore in Std: 5 - rotto"),
                         QStringLiteral("Std> Esce"),
                     }));
}

TEST(PxLogConsole, RotatesAtItsSizeAndKeepsOnlyTheNewestFiles)
{
    QTemporaryDir dir;
    PxLogConsole log;
    log.NomeApplicazione = QStringLiteral("PlxSrvConsole");
    log.Cartella = dir.path();
    log.DimensioneMassima = 4096;
    log.NumeroFile = 2;
    ASSERT_TRUE(log.Apri());
    const QString riga = QString(80, u'x'); // about 95 bytes a line with its time and level
    for (int i = 0; i < 400; ++i)
        log.Scrivi(2, QStringLiteral("%1 %2").arg(i, 4, 10, QChar(u'0')).arg(riga));
    log.Chiudi();
    const QDir cartella(dir.path());
    const QStringList file = cartella.entryList(QDir::Files, QDir::Name);
    EXPECT_EQ(file, (QStringList{QStringLiteral("PlxSrvConsole.1.log"), QStringLiteral("PlxSrvConsole.2.log"),
                                 QStringLiteral("PlxSrvConsole.log")}));
    for (const QString& nome : file)
        EXPECT_LE(QFileInfo(cartella.filePath(nome)).size(), 4096) << qPrintable(nome);
    // The newest line is in the current file, and each rotated file holds whole lines.
    const QStringList correnti = Righe(log.File());
    ASSERT_FALSE(correnti.isEmpty());
    EXPECT_TRUE(modRigaLog::Analizza(correnti.last())->Testo.startsWith(QStringLiteral("0399 ")));
    const QStringList precedenti = Righe(cartella.filePath(QStringLiteral("PlxSrvConsole.1.log")));
    ASSERT_FALSE(precedenti.isEmpty());
    const int ultimaPrecedente = modRigaLog::Analizza(precedenti.last())->Testo.left(4).toInt();
    const int primaCorrente = modRigaLog::Analizza(correnti.first())->Testo.left(4).toInt();
    EXPECT_EQ(primaCorrente, ultimaPrecedente + 1) << "no line lost at the rotation";
}
