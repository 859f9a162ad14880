#pragma once

// The reference server on the test's own thread, its workers and input folders still (nothing
// moves but what the test moves), and the console's side of it with a context for windows.
// For the test programs that link the reference server and the engine.

#include "PxCollegamento.h"
#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxIconResource.h"
#include "PxImpostazioni.h"
#include "PxLogConsole.h"
#include "PxSrvServer.h"
#include "RefServer.h"
#include "modDemo.h"
#include "modTraccia.h"

#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

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
        Ref = std::make_unique<RefServer>(Dir.path(), RefServer::Opzioni{false, true});
        Collegamento = std::make_unique<PxCollegamentoDiretto>([this](const QString& nome) { return Ref->Oggetto(nome); },
                                                               nullptr, fileLocali);
        return Ricollega();
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

    ~ServerInLinea() { modTraccia::ImpostaLog(nullptr); }

    QTemporaryDir Dir, DirLog;
    PxConsoleResDll Testi;
    PxIconResource Icone;
    PxImpostazioni Impostazioni;
    PxLogConsole Log;
    std::unique_ptr<RefServer> Ref;
    std::unique_ptr<PxCollegamentoDiretto> Collegamento;
    std::unique_ptr<PxSrvServer> Server;
    std::unique_ptr<PxContesto> Contesto;
};

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
