#pragma once

// A demo server in the test's own thread (workers and input folders still) and the console's
// side of it as a console on another machine: the server's files reach it only through
// requests. Qt Core only, for the test programs that link no widgets.

#include "PxCollegamento.h"
#include "PxSrvServer.h"
#include "RefServer.h"
#include "modDemo.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

// Turns the event loop until `condizione` holds, for at most 10 s (QTest's wait would bring
// the GUI test library along).
inline bool AttendiSenzaFinestre(const std::function<bool()>& condizione)
{
    const QDeadlineTimer limite(10000);
    while (!condizione()) {
        if (limite.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return true;
}

class ServerSenzaFile : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(modDemo::CreaServerDemo(mDir.path(), 0), QString());
        mServer = std::make_unique<RefServer>(mDir.path(), RefServer::Opzioni{false, true});
        mCollegamento = std::make_unique<PxCollegamentoDiretto>([this](const QString& n) { return mServer->Oggetto(n); },
                                                                nullptr, false);
        mClient = std::make_unique<PxSrvServer>(mCollegamento.get());
        mClient->Connetti();
        ASSERT_TRUE(AttendiSenzaFinestre([&] { return mClient->Caricato(); }));
        ASSERT_FALSE(mClient->FileLocali());
    }

    QTemporaryDir mDir;
    std::unique_ptr<RefServer> mServer;
    std::unique_ptr<PxCollegamentoDiretto> mCollegamento;
    std::unique_ptr<PxSrvServer> mClient;
};
