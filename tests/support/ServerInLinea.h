#pragma once

// The reference server on the test's own thread, its workers and input folders still (nothing
// moves but what the test moves), and the console's side of it with a context for windows.
// For the test programs that link the reference server and the engine.
//
// With PLX_SERVER_FIGLIO naming plxsrvd, the same suites run against it as a child process
// instead, reached over its local socket: its workers still, its input folders taken in on
// their own, and, for the suites that say so, its files treated as unreadable here. `Ref` is
// then null; a test that looks inside the server says so with RICHIEDE_SERVER_IN_LINEA.

#include "PxBloccoCartella.h"
#include "PxCollegamento.h"
#include "PxCollegamentoRemoto.h"
#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxIconResource.h"
#include "PxImpostazioni.h"
#include "PxLogConsole.h"
#include "PxSrvServer.h"
#include "RefServer.h"
#include "modDemo.h"
#include "modTraccia.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <gtest/gtest.h>

#include <memory>

#include <sys/prctl.h>
#include <csignal>

class ServerInLinea
{
public:
    // Makes a demo of `documenti` documents and connects to it; false when it cannot.
    // `fileLocali` false: the console acts as one on another machine, without the server's files.
    bool Avvia(int documenti, bool fileLocali = true)
    {
        if (!modDemo::CreaServerDemo(Dir.path(), documenti).isEmpty())
            return false;
        Log.NomeApplicazione = QStringLiteral("prova");
        Log.Cartella = DirLog.path();
        Log.TracciaProcedure = false;
        if (!Log.Apri())
            return false;
        modTraccia::ImpostaLog(&Log);
        if (const QString plxsrvd = qEnvironmentVariable("PLX_SERVER_FIGLIO"); !plxsrvd.isEmpty())
            return AvviaFiglio(plxsrvd, fileLocali) && Ricollega();
        Ref = std::make_unique<RefServer>(Dir.path(), RefServer::Opzioni{false, true});
        Collegamento = std::make_unique<PxCollegamentoDiretto>([this](const QString& nome) { return Ref->Oggetto(nome); },
                                                               nullptr, fileLocali);
        return Ricollega();
    }

    // plxsrvd serving the demo with its workers still, and a connection to it.
    bool AvviaFiglio(const QString& plxsrvd, bool fileLocali)
    {
        const QString ini = QDir(Dir.path()).filePath(QStringLiteral("PlxConfigurazione.ini"));
        QFile f(ini);
        if (!f.open(QIODevice::ReadOnly))
            return false;
        QByteArray testo = f.readAll();
        f.close();
        testo.replace("IntervalloLavoro=2000", "IntervalloLavoro=0");
        if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(testo) != testo.size() || !f.flush())
            return false;
        f.close();
        const QString indirizzo = QStringLiteral("local:") + QDir(DirLog.path()).filePath(QStringLiteral("s.sock"));
        Figlio = std::make_unique<QProcess>();
        Figlio->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        Figlio->setProgram(plxsrvd);
        // A test that dies takes its server with it.
        Figlio->setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
        Figlio->setArguments({QStringLiteral("--server-folder"), Dir.path(), QStringLiteral("--listen"), indirizzo,
                              QStringLiteral("--quiet")});
        if (!RiavviaFiglio())
            return false;
        auto remoto = std::make_unique<PxCollegamentoRemoto>(QUrl(indirizzo));
        if (!fileLocali)
            remoto->NegaFileLocali();
        Collegamento = std::move(remoto);
        return true;
    }

    // The child killed outright, as by a crash: the folder and its socket file stay as they were.
    bool UccidiFiglio()
    {
        Figlio->kill();
        return Figlio->waitForFinished(10000);
    }
    // The child started (again) on the same folder and address; true once it listens.
    bool RiavviaFiglio()
    {
        Figlio->start();
        return Figlio->waitForStarted(10000) && QTest::qWaitFor([this] {
                   const PxBloccoCartella::Detentore s = PxBloccoCartella::Leggi(Dir.path());
                   return s.Vivo && !s.Indirizzi.isEmpty();
               }, 20000);
    }

    // A console side made anew and connected, as a console that starts against the running
    // server (it reads the installation's settings again); false when it does not load.
    bool Ricollega()
    {
        Contesto.reset();
        Server = std::make_unique<PxSrvServer>(Collegamento.get());
        Server->Connetti();
        if (!QTest::qWaitFor([this] { return Server->Caricato(); }, 10000))
            return false;
        Contesto = std::make_unique<PxContesto>(Testi, Icone, Impostazioni, Log, Server.get());
        return true;
    }

    ~ServerInLinea()
    {
        Contesto.reset();
        Server.reset();
        Collegamento.reset();
        if (Figlio) {
            Figlio->terminate();
            if (!Figlio->waitForFinished(20000))
                Figlio->kill();
        }
        modTraccia::ImpostaLog(nullptr);
    }

    QTemporaryDir Dir, DirLog;
    PxConsoleResDll Testi;
    PxIconResource Icone;
    PxImpostazioni Impostazioni;
    PxLogConsole Log;
    std::unique_ptr<RefServer> Ref;
    std::unique_ptr<QProcess> Figlio;
    std::unique_ptr<PxCollegamento> Collegamento;
    std::unique_ptr<PxSrvServer> Server;
    std::unique_ptr<PxContesto> Contesto;
};

// For a test that looks inside the server: it runs only when the server is in this process.
#define RICHIEDE_SERVER_IN_LINEA(s)                                                                 \
    if (!(s).Ref)                                                                                   \
    GTEST_SKIP() << "looks inside the server, which runs in another process here"

// A test suite sharing one in-thread demo server of `Documenti` documents (made once per suite).
template <int Documenti, bool FileLocali = true>
class SuiteConServer : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        sServer = new ServerInLinea;
        ASSERT_TRUE(sServer->Avvia(Documenti, FileLocali));
    }
    static void TearDownTestSuite()
    {
        delete sServer;
        sServer = nullptr;
    }

    static inline ServerInLinea* sServer = nullptr;
};
