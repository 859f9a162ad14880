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

TEST(frmApertura, AGroupWithoutItsWorkersCountsItselfAndItsFolderAndWorkersOfAbsentGroupsAreNotCounted)
{
    FakeServer s;
    s.Aggiungi(QStringLiteral("PxSrvFax"), FakeServer::Xml(QStringLiteral("PxSrvFax"), 4));
    s.Aggiungi(QStringLiteral("PxSrvSmtp"), FakeServer::Xml(QStringLiteral("PxSrvSmtp"), 4)); // its group is absent
    s.Aggiungi(QStringLiteral("PxSrvImporta"), FakeServer::Xml(QStringLiteral("PxSrvImporta"), 4)); // no folder
    EXPECT_EQ(frmApertura::ContaPassi(&s.Client()), 1 + 2 + 1);
}

TEST(frmApertura, ListsWorkersAndMalformedDescriptions)
{
    FakeServer s;
    // Entries without a key, with an empty one or repeating one make no node.
    s.Aggiungi(QStringLiteral("PxSrvAnteprime"),
               FakeServer::Xml(QStringLiteral("PxSrvAnteprime"), 4,
                               QStringLiteral("<Utenti><U><KeyUtente>a</KeyUtente></U><U/><U><KeyUtente> </KeyUtente></U>"
                                              "<U><KeyUtente>b</KeyUtente></U><U><KeyUtente>c</KeyUtente></U>"
                                              "<U><KeyUtente>a</KeyUtente></U></Utenti>")));
    s.Aggiungi(QStringLiteral("PxSrvStampe"),
               FakeServer::Xml(QStringLiteral("PxSrvStampe"), 3,
                               QStringLiteral("<Stampanti><S><Chiave>1</Chiave></S><S><Chiave>2</Chiave></S></Stampanti>")));
    s.Aggiungi(QStringLiteral("PxSrvEmail"), FakeServer::Xml(QStringLiteral("PxSrvEmail"), 4));
    s.Aggiungi(QStringLiteral("PxSrvSmtp"), FakeServer::Xml(QStringLiteral("PxSrvSmtp"), 4));
    s.Aggiungi(QStringLiteral("PxSrvRprtEml"), FakeServer::Xml(QStringLiteral("PxSrvRprtEml"), 4));
    s.Aggiungi(QStringLiteral("PxSrvEmlPdfVm"), QStringLiteral("<PxSrvEmlPdfVm><Stato>")); // malformed
    s.Aggiungi(QStringLiteral("PxSrvFtp"),
               FakeServer::Xml(QStringLiteral("PxSrvFtp"), 4,
                               QStringLiteral("<FtpClients><C><Key>1</Key></C><C><Key>2</Key></C></FtpClients>")));
    s.Aggiungi(QStringLiteral("PxSrvFtpSrv"), FakeServer::Xml(QStringLiteral("PxSrvFtpSrv"), 4));
    s.Aggiungi(QStringLiteral("PxSrvFormati"), QString()); // empty description
    // 1 + previews (1 + folder + 3) + printing (1 + folder + 2) + e-mail (1 + folder + 2) + FTP (1 + 1 + 2)
    EXPECT_EQ(frmApertura::ContaPassi(&s.Client()), 1 + 5 + 4 + 4 + 4);
}

TEST(frmApertura, MoreStepsThanCountedKeepTheBarFull)
{
    FakeServer s;
    s.Aggiungi(QStringLiteral("PxSrvFax"), FakeServer::Xml(QStringLiteral("PxSrvFax"), 4));
    frmApertura f(&s.Client());
    ASSERT_EQ(f.Massimo(), 3);
    EXPECT_EQ(f.Valore(), 0);
    for (const char* testo : {"uno", "due", "tre", "quattro"})
        f.Avanzamento(QString::fromLatin1(testo));
    EXPECT_EQ(f.Valore(), 3);
    EXPECT_EQ(f.Passi(), 4) << "every step told is counted, also past the bar's end";
    EXPECT_EQ(f.Informazione(), QStringLiteral("quattro"));
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
    ASSERT_TRUE(QTest::qWaitFor([&] { return client.Caricato(); }, 10000));
    EXPECT_EQ(f.Massimo(), 4) << "1 + the fax service + its folder + its TIFF worker";
    EXPECT_EQ(f.Valore(), 0);
    s.EmettiCaricamento(10, 20, {}); // late progress does not disturb the count
    EXPECT_EQ(f.Massimo(), 4);
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
