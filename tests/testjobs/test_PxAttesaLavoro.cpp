// The wait for a job's fate: only the awaited job's notice counts, one heard before the wait
// began is not lost, and no word in time ends the wait too.
#include "FakeServer.h"
#include "PxAttesaLavoro.h"
#include "PxSrvServizio.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

class AttesaLavoro : public ::testing::Test
{
protected:
    void SetUp() override
    {
        mFax = mServer.Aggiungi(u"PxSrvFax"_s, FakeServer::Xml(u"PxSrvFax"_s, 4));
        mServizio = mServer.Client().Servizio(u"PxSrvFax"_s);
        ASSERT_NE(mServizio, nullptr);
    }

    FakeServer mServer;
    FakeServizio* mFax = nullptr;
    PxSrvServizio* mServizio = nullptr;
};

bool Attendi(const std::function<bool()>& c) { return QTest::qWaitFor(c, 10000); }

} // namespace

TEST_F(AttesaLavoro, OnlyTheAwaitedJobsNoticeEndsTheWaitEvenWhenItCameFirst)
{
    // Taken while the hand-over was still syncing: the notice comes before the wait.
    PxAttesaLavoro prima(mServizio);
    QSignalSpy presi(&prima, &PxAttesaLavoro::Preso);
    QSignalSpy respinti(&prima, &PxAttesaLavoro::Respinto);
    emit mFax->LavoroRespinto(u"altro"_s, u"intestazione non valida"_s);
    emit mFax->LavoroPreso(u"mio"_s, u"FAX-000007"_s);
    prima.Attendi(u"/srv/Ingresso/PxSrvFax/mio"_s, 60000);
    EXPECT_TRUE(presi.isEmpty()) << "never inside the call";
    ASSERT_TRUE(Attendi([&] { return presi.size() == 1; }));
    EXPECT_EQ(presi[0][0].toString(), u"/srv/Ingresso/PxSrvFax/mio"_s);
    EXPECT_EQ(presi[0][1].toString(), u"FAX-000007"_s);
    EXPECT_TRUE(respinti.isEmpty()) << "another job's fate";

    // Set aside after the wait began; other jobs' notices around it change nothing.
    PxAttesaLavoro dopo(mServizio);
    QSignalSpy presiDopo(&dopo, &PxAttesaLavoro::Preso);
    QSignalSpy respintiDopo(&dopo, &PxAttesaLavoro::Respinto);
    QSignalSpy scaduti(&dopo, &PxAttesaLavoro::Scaduto);
    dopo.Attendi(u"/srv/Ingresso/PxSrvFax/secondo"_s, 60000);
    emit mFax->LavoroPreso(u"secondo (2)"_s, u"FAX-000008"_s);
    emit mFax->LavoroRespinto(u"secondo"_s, u"manca FAX/NumeroFax"_s);
    emit mFax->LavoroPreso(u"secondo"_s, u"FAX-000009"_s); // a later job of the same name
    ASSERT_EQ(respintiDopo.size(), 1);
    EXPECT_EQ(respintiDopo[0][1].toString(), u"manca FAX/NumeroFax"_s);
    EXPECT_TRUE(presiDopo.isEmpty()) << "one fate per wait";
    EXPECT_TRUE(scaduti.isEmpty());
}

TEST_F(AttesaLavoro, NoWordInTimeOrNoServiceEndsTheWaitAsNotYetTaken)
{
    PxAttesaLavoro attesa(mServizio);
    QSignalSpy scaduti(&attesa, &PxAttesaLavoro::Scaduto);
    QSignalSpy presi(&attesa, &PxAttesaLavoro::Preso);
    attesa.Attendi(u"lento"_s, 1);
    ASSERT_TRUE(Attendi([&] { return scaduti.size() == 1; }));
    emit mFax->LavoroPreso(u"lento"_s, u"FAX-000010"_s);
    EXPECT_TRUE(presi.isEmpty()) << "the wait is over";

    PxAttesaLavoro senzaServizio(nullptr);
    QSignalSpy scadutiSenza(&senzaServizio, &PxAttesaLavoro::Scaduto);
    senzaServizio.Attendi(u"nessuno"_s, 1);
    ASSERT_TRUE(Attendi([&] { return scadutiSenza.size() == 1; }));
    EXPECT_EQ(scadutiSenza[0][0].toString(), u"nessuno"_s);
}
