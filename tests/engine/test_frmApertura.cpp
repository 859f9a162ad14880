#include "FakeServer.h"
#include "PxConsoleResDll.h"
#include "frmApertura.h"
#include "frmChiusura.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QProgressBar>
#include <QTest>

TEST(frmApertura, NoServerOrNoServicesCountsOne)
{
    EXPECT_EQ(frmApertura::ContaPassi(nullptr), 1);
    FakeServer vuoto;
    EXPECT_EQ(frmApertura::ContaPassi(&vuoto.Client()), 1);
}

TEST(frmApertura, AGroupWithoutItsWorkersCountsOneAndWorkersOfAbsentGroupsAreNotCounted)
{
    FakeServer s;
    s.Aggiungi(QStringLiteral("PxSrvFax"), FakeServer::Xml(QStringLiteral("PxSrvFax"), 4));
    s.Aggiungi(QStringLiteral("PxSrvSmtp"), FakeServer::Xml(QStringLiteral("PxSrvSmtp"), 4)); // its group is absent
    EXPECT_EQ(frmApertura::ContaPassi(&s.Client()), 2);
}

TEST(frmApertura, ListsWorkersAndMalformedDescriptions)
{
    FakeServer s;
    s.Aggiungi(QStringLiteral("PxSrvAnteprime"),
               FakeServer::Xml(QStringLiteral("PxSrvAnteprime"), 4, QStringLiteral("<Utenti><U/><U/><U/></Utenti>")));
    s.Aggiungi(QStringLiteral("PxSrvStampe"),
               FakeServer::Xml(QStringLiteral("PxSrvStampe"), 3, QStringLiteral("<Stampanti><S/><S/></Stampanti>")));
    s.Aggiungi(QStringLiteral("PxSrvEmail"), FakeServer::Xml(QStringLiteral("PxSrvEmail"), 4));
    s.Aggiungi(QStringLiteral("PxSrvSmtp"), FakeServer::Xml(QStringLiteral("PxSrvSmtp"), 4));
    s.Aggiungi(QStringLiteral("PxSrvRprtEml"), FakeServer::Xml(QStringLiteral("PxSrvRprtEml"), 4));
    s.Aggiungi(QStringLiteral("PxSrvEmlPdfVm"), QStringLiteral("<PxSrvEmlPdfVm><Stato>")); // malformed
    s.Aggiungi(QStringLiteral("PxSrvFtp"),
               FakeServer::Xml(QStringLiteral("PxSrvFtp"), 4, QStringLiteral("<FtpClients><C/><C/></FtpClients>")));
    s.Aggiungi(QStringLiteral("PxSrvFtpSrv"), FakeServer::Xml(QStringLiteral("PxSrvFtpSrv"), 4));
    s.Aggiungi(QStringLiteral("PxSrvFormati"), QString()); // empty description
    // 1 + previews (1 + 1 + 3) + printing (1 + 1 + 2) + e-mail (1 + 2) + FTP (1 + 1 + 2)
    EXPECT_EQ(frmApertura::ContaPassi(&s.Client()), 1 + 5 + 4 + 3 + 4);
}

TEST(frmApertura, MoreStepsThanCountedKeepTheBarFull)
{
    FakeServer s;
    s.Aggiungi(QStringLiteral("PxSrvFax"), FakeServer::Xml(QStringLiteral("PxSrvFax"), 4));
    frmApertura f(&s.Client());
    ASSERT_EQ(f.Massimo(), 2);
    EXPECT_EQ(f.Valore(), 0);
    f.Avanzamento(QStringLiteral("uno"));
    f.Avanzamento(QStringLiteral("due"));
    f.Avanzamento(QStringLiteral("tre"));
    EXPECT_EQ(f.Valore(), 2);
    EXPECT_EQ(f.Informazione(), QStringLiteral("tre"));
}

TEST(frmApertura, FollowsTheServersLoadingThenCountsTheSteps)
{
    FakeServer s({}, false);
    s.Aggiungi(QStringLiteral("PxSrvFax"), FakeServer::Xml(QStringLiteral("PxSrvFax"), 4));
    s.Aggiungi(QStringLiteral("PxSrvTifVm"), FakeServer::Xml(QStringLiteral("PxSrvTifVm"), 4));
    PxSrvServer& client = s.Client();
    ASSERT_FALSE(client.Caricato());
    frmApertura f(&client);
    EXPECT_EQ(f.Massimo(), 0) << "activity only, until the server says how much it loads";
    s.EmettiCaricamento(300, 1200, QStringLiteral("Documenti fax"));
    EXPECT_EQ(f.Massimo(), 1200);
    EXPECT_EQ(f.Valore(), 300);
    EXPECT_TRUE(f.Informazione().contains(QStringLiteral("Documenti fax")));
    s.EmettiCaricamento(5000, 1200, {}); // more than announced: the bar stays full
    EXPECT_EQ(f.Valore(), 1200);
    s.Carica();
    QTRY_VERIFY(client.Caricato());
    EXPECT_EQ(f.Massimo(), 3) << "1 + the fax service + its TIFF worker";
    EXPECT_EQ(f.Valore(), 0);
    s.EmettiCaricamento(10, 20, {}); // late progress does not disturb the count
    EXPECT_EQ(f.Massimo(), 3);
}

TEST(frmApertura, TextsColoursAndNoWayToClose)
{
    const PxConsoleResDll testi;
    frmApertura f(nullptr);
    f.show();
    EXPECT_EQ(f.windowTitle(), testi.LoadDllString(8000));
    EXPECT_EQ(f.findChild<QLabel*>(QStringLiteral("lblApertura_0"))->text(), QStringLiteral("Apertura console in corso..."));
    EXPECT_EQ(f.findChild<QLabel*>(QStringLiteral("lblApertura_1"))->text(), QStringLiteral("ATTENDERE"));
    EXPECT_TRUE(f.findChild<QLabel*>(QStringLiteral("lblApertura_0"))->styleSheet().contains(QStringLiteral("rgb(59, 70, 96)")));
    EXPECT_TRUE(f.findChild<QProgressBar*>(QStringLiteral("prgApertura"))->styleSheet().contains(QStringLiteral("rgb(255, 85, 0)")));
    EXPECT_FALSE(f.windowFlags().testFlag(Qt::WindowCloseButtonHint));
    EXPECT_FALSE(f.close());
    EXPECT_TRUE(f.isVisible());

    frmChiusura c;
    c.show();
    EXPECT_EQ(c.findChild<QLabel*>(QStringLiteral("lblChisura_0"))->text(), QStringLiteral("Chiusura console in corso..."));
    EXPECT_EQ(c.findChild<QLabel*>(QStringLiteral("lblChisura_1"))->text(), QStringLiteral("ATTENDERE"));
    EXPECT_EQ(c.findChild<QProgressBar*>(QStringLiteral("prgwAttesa"))->maximum(), 0) << "activity only";
    EXPECT_FALSE(c.close());
    EXPECT_TRUE(c.isVisible());
}
