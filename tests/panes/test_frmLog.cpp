#include "ServerInLinea.h"
#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxIconResource.h"
#include "PxImpostazioni.h"
#include "PxLogConsole.h"
#include "PxModelloLog.h"
#include "PxRigaLog.h"
#include "PxSrvServizio.h"
#include "RefServizio.h"
#include "frmLog.h"
#include "modLog.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QAction>
#include <QDir>
#include <QFile>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

bool Attendi(const std::function<bool()>& c) { return QTest::qWaitFor(c, 10000); }

QByteArray Riga(int livello, const QString& testo) { return modRigaLog::Formatta(livello, QTime(10, 20, 30), testo); }

void Scrivi(const QString& file, const QByteArray& dati, QIODevice::OpenMode modo = QIODevice::WriteOnly)
{
    QFile f(file);
    ASSERT_TRUE(f.open(modo));
    f.write(dati);
}

constexpr modLog::Livelli Tutti{true, true, true, true};

TEST(Log, ExactlyOneMebibyteIsReadWholeOneByteMoreDropsThePartialFirstLine)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(u"servizio.log"_s);
    QByteArray dati = Riga(2, u"prima"_s);
    const QByteArray riga = Riga(2, u"x"_s);
    while (dati.size() + riga.size() <= modLog::MassimoCoda)
        dati += riga;
    // Pad the last line so the file is exactly 1 MiB.
    dati.chop(2);
    dati += QByteArray(modLog::MassimoCoda - dati.size() - 2, 'y') + "\r\n";
    ASSERT_EQ(dati.size(), modLog::MassimoCoda);
    Scrivi(file, dati);
    modLog::Lettura l = modLog::Leggi(file, 0, Tutti);
    ASSERT_TRUE(l.Letta);
    EXPECT_EQ(l.Righe.front().Testo, u"prima"_s);
    EXPECT_EQ(l.Fine, modLog::MassimoCoda);
    Scrivi(file, "!" + dati);
    l = modLog::Leggi(file, 0, Tutti);
    EXPECT_EQ(l.Righe.front().Testo, u"x"_s) << "the first line, cut by the tail, is dropped";
    EXPECT_EQ(l.Righe.front().Secondi, (10 * 60 + 20) * 60 + 30);
}

TEST(Log, LevelsFilterAndTheLastPieceWaitsForItsLineEnd)
{
    const QByteArray dati = Riga(0, u"errore"_s) + Riga(3, u"dettaglio"_s) + Riga(1, u"avviso"_s) + " 7 10:00:00 livello sette\r\n"
        + "-1 10:00:00 negativo\r\n" + "xx\r\n" + Riga(2, u"ultima senza fine"_s).chopped(2);
    qint64 consumati = 0;
    const auto righe = modLog::Righe(dati, false, Tutti, &consumati);
    ASSERT_EQ(righe.size(), 3u) << "levels outside 0-3 and unreadable lines are never shown";
    EXPECT_EQ(righe[1].Testo, u"dettaglio"_s);
    EXPECT_EQ(righe[2].Livello, 1);
    EXPECT_EQ(consumati, dati.lastIndexOf("\r\n") + 2) << "the next read starts at the unfinished line";
    EXPECT_TRUE(modLog::Righe(dati, false, {false, false, false, false}).empty());
    const auto soloErrori = modLog::Righe(dati, false, {true, false, false, false});
    ASSERT_EQ(soloErrori.size(), 1u);
    EXPECT_EQ(soloErrori[0].Testo, u"errore"_s);
}

class Pannello : public ::testing::Test
{
protected:
    QTemporaryDir mDir;
    PxConsoleResDll mTesti;
    PxIconResource mIcone;
    PxImpostazioni mImpostazioni;
    PxLogConsole mLogConsole;
    PxContesto mContesto{mTesti, mIcone, mImpostazioni, mLogConsole};
    frmLog mLog{mContesto};
    QAbstractItemModelTester mTester{mLog.Modello(), QAbstractItemModelTester::FailureReportingMode::Fatal};

    int Righe() const { return mLog.Modello()->rowCount(); }
    QString Ultima() const { return mLog.Modello()->Righe().empty() ? QString() : mLog.Modello()->Righe().back().Testo; }
};

TEST_F(Pannello, FollowsGrowthTruncationAndRotation)
{
    const QString file = mDir.filePath(u"PxSrvFax.log"_s);
    Scrivi(file, Riga(2, u"uno"_s) + Riga(2, u"due"_s) + Riga(2, u"a metà"_s).chopped(2));
    mLog.CaricaLog(file);
    ASSERT_TRUE(Attendi([&] { return Righe() == 2; }));
    // The unfinished line appears when its end is written, and what follows with it.
    Scrivi(file, "\r\n" + Riga(1, u"tre"_s), QIODevice::Append);
    ASSERT_TRUE(Attendi([&] { return Righe() == 4; }));
    EXPECT_EQ(mLog.Modello()->Righe()[2].Testo, u"a metà"_s);
    EXPECT_EQ(Ultima(), u"tre"_s);
    // Truncated: from the start.
    Scrivi(file, Riga(0, u"di nuovo"_s));
    ASSERT_TRUE(Attendi([&] { return Righe() == 1 && Ultima() == u"di nuovo"_s; }));
    // Rotated: the old file moves away, a new one takes the name.
    ASSERT_TRUE(QFile::rename(file, file + u".1"_s));
    Scrivi(file, Riga(2, u"nuovo file"_s) + Riga(2, u"seconda"_s));
    ASSERT_TRUE(Attendi([&] { return Righe() == 2 && Ultima() == u"seconda"_s; }));
    Scrivi(file, Riga(2, u"terza"_s), QIODevice::Append);
    EXPECT_TRUE(Attendi([&] { return Righe() == 3; }));
}

TEST_F(Pannello, TheTogglesReloadAndTheViewStaysWhereTheOperatorScrolled)
{
    const QString file = mDir.filePath(u"lungo.log"_s);
    QByteArray dati;
    for (int i = 0; i < 500; ++i)
        dati += Riga(i % 4, u"riga %1"_s.arg(i));
    Scrivi(file, dati);
    mLog.resize(600, 300);
    mLog.show();
    mLog.CaricaLog(file);
    ASSERT_TRUE(Attendi([&] { return Righe() == 500; }));
    for (int livello = 0; livello < 4; ++livello)
        mLog.Livello(livello)->setChecked(false);
    ASSERT_TRUE(Attendi([&] { return Righe() == 0; }));
    mLog.Livello(0)->setChecked(true);
    ASSERT_TRUE(Attendi([&] { return Righe() == 125; }));
    // Scrolled up, the view stays while lines arrive.
    QScrollBar* barra = mLog.Lista()->verticalScrollBar();
    barra->setValue(0);
    Scrivi(file, Riga(0, u"nuova"_s), QIODevice::Append);
    ASSERT_TRUE(Attendi([&] { return Righe() == 126; }));
    EXPECT_EQ(barra->value(), 0);
    // Searching goes from row to row, both ways.
    EXPECT_TRUE(mLog.Cerca(u"RIGA 4"_s));
    EXPECT_EQ(mLog.Modello()->Righe()[static_cast<size_t>(mLog.Lista()->currentIndex().row())].Testo, u"riga 4"_s);
    EXPECT_TRUE(mLog.Cerca(u"riga 4"_s));
    EXPECT_EQ(mLog.Modello()->Righe()[static_cast<size_t>(mLog.Lista()->currentIndex().row())].Testo, u"riga 40"_s);
    EXPECT_TRUE(mLog.Cerca(u"riga 4"_s, false));
    EXPECT_EQ(mLog.Modello()->Righe()[static_cast<size_t>(mLog.Lista()->currentIndex().row())].Testo, u"riga 4"_s);
    EXPECT_FALSE(mLog.Cerca(u"assente"_s));
    // A file that is not there clears the list.
    mLog.CaricaLog(mDir.filePath(u"manca.log"_s));
    EXPECT_EQ(Righe(), 0);
}

} // namespace


TEST_F(Pannello, TheTitleNamesTheLogOnDisplay)
{
    const QSignalSpy titoli(&mLog, &frmLog::TitoloCambiato);
    mLogConsole.NomeApplicazione = u"titoli"_s;
    mLogConsole.Cartella = mDir.path();
    mLogConsole.TracciaProcedure = false;
    ASSERT_TRUE(mLogConsole.Apri());
    const QString fax = mDir.filePath(u"PxSrvFax.log"_s);
    const QString documento = mDir.filePath(u"D000042.log"_s);
    Scrivi(fax, Riga(2, u"fax"_s));
    Scrivi(documento, Riga(2, u"documento"_s));
    mLog.ImpostaNomi([&](const QString& file) { return QFileInfo(file) == QFileInfo(fax) ? u"Fax"_s : QString(); });

    // The service's log is named after the service, a document's after its file.
    mLog.CaricaLog(fax);
    EXPECT_EQ(mLog.Titolo(), mTesti.LoadDllString(7004) + u" - Fax (PxSrvFax.log)"_s);
    mLog.CaricaLog(documento);
    EXPECT_EQ(mLog.Titolo(), mTesti.LoadDllString(7004) + u" - D000042.log"_s);
    EXPECT_FALSE(mLog.Titolo().contains(mTesti.LoadDllString(8046)));
    // Only the console's own log says so.
    mLog.CaricaLog(mLogConsole.File());
    EXPECT_EQ(mLog.Titolo(), mTesti.LoadDllString(7004) + u" - "_s + mTesti.LoadDllString(8046));
    mLog.CaricaLog(QString());
    EXPECT_EQ(mLog.Titolo(), mTesti.LoadDllString(7004));
    ASSERT_EQ(titoli.size(), 4);
    EXPECT_EQ(titoli.at(1).at(0).toString(), mTesti.LoadDllString(7004) + u" - D000042.log"_s);
}

namespace {

// A service's log on a server whose files this console does not share.
class LogDalServer : public SuiteConServer<0, false>
{
};

} // namespace

TEST_F(LogDalServer, AServicesLogComesThroughTheServerAndIsFollowed)
{
    ASSERT_FALSE(sServer->Server->FileLocali());
    // The path as the console knows it: from the service's state.
    pugi::xml_document stato;
    ASSERT_TRUE(sServer->Server->Servizio(u"PxSrvFax"_s)->LeggiStato(stato));
    const QString file = PxSrvServer::PercorsoLocale(QString::fromUtf8(stato.document_element().child_value("FileLog")),
                                                     sServer->Server->Cartella());
    if (sServer->Ref) {
        RefServizio* servizio = sServer->Ref->ServizioRef(u"PxSrvFax"_s);
        ASSERT_NE(servizio, nullptr);
        ASSERT_EQ(QFileInfo(file), QFileInfo(servizio->Log().Percorso()));
    }
    Scrivi(file, Riga(2, u"prima riga dal server"_s), QIODevice::Append);

    frmLog log(*sServer->Contesto);
    const auto ultima = [&] { return log.Modello()->Righe().empty() ? QString() : log.Modello()->Righe().back().Testo; };
    log.CaricaLog(file);
    ASSERT_TRUE(Attendi([&] { return ultima() == u"prima riga dal server"_s; }));
    Scrivi(file, Riga(1, u"seconda riga"_s), QIODevice::Append);
    ASSERT_TRUE(Attendi([&] { return ultima() == u"seconda riga"_s; }));
    const int righe = log.Modello()->rowCount();
    // Another file takes the name: the pane starts again from it.
    ASSERT_TRUE(QFile::rename(file, file + u".1"_s));
    Scrivi(file, Riga(2, u"file nuovo"_s));
    ASSERT_TRUE(Attendi([&] { return log.Modello()->rowCount() == 1 && ultima() == u"file nuovo"_s; })) << righe;

    // A log outside the server folder is not read, though this machine could.
    QTemporaryDir fuori;
    const QString esterno = QDir(fuori.path()).filePath(u"esterno.log"_s);
    Scrivi(esterno, Riga(2, u"da non leggere"_s));
    QSignalSpy letti(&log, &frmLog::Letto);
    log.CaricaLog(esterno);
    ASSERT_TRUE(Attendi([&] { return !letti.isEmpty(); }));
    EXPECT_EQ(log.Modello()->rowCount(), 0);
}
