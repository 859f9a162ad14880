#include "FakeServer.h"
#include "PxConsoleResDll.h"
#include "frmApertura.h"
#include "frmChiusura.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QProgressBar>

TEST(frmApertura, NoServerOrNoServicesCountsOne)
{
    EXPECT_EQ(frmApertura::ContaPassi(nullptr), 1);
    FakeServer vuoto;
    EXPECT_EQ(frmApertura::ContaPassi(&vuoto), 1);
    // Only the thirteen services are looked up; with none present, no worker is.
    EXPECT_EQ(vuoto.Richieste.size(), 13);
    EXPECT_FALSE(vuoto.Richieste.contains(QStringLiteral("PxSrvTifVm")));
}

TEST(frmApertura, AGroupWithoutItsWorkersCountsOneAndWorkersOfAbsentGroupsAreNotLookedUp)
{
    FakeServer s;
    s.Aggiungi(QStringLiteral("PxSrvFax"), FakeServer::Xml(QStringLiteral("PxSrvFax"), 4));
    s.Aggiungi(QStringLiteral("PxSrvSmtp"), FakeServer::Xml(QStringLiteral("PxSrvSmtp"), 4)); // its group is absent
    EXPECT_EQ(frmApertura::ContaPassi(&s), 2);
    for (const char* lavoratore : {"PxSrvTifVm", "PxSrvFaxVm", "PxSrvNeFax", "PxSrvRprtFax", "PxSrvNtfcFax"})
        EXPECT_TRUE(s.Richieste.contains(QString::fromLatin1(lavoratore))) << lavoratore;
    EXPECT_FALSE(s.Richieste.contains(QStringLiteral("PxSrvSmtp")));
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
    EXPECT_EQ(frmApertura::ContaPassi(&s), 1 + 5 + 4 + 3 + 4);
}

TEST(frmApertura, MoreStepsThanCountedKeepTheBarFull)
{
    FakeServer s;
    s.Aggiungi(QStringLiteral("PxSrvFax"), FakeServer::Xml(QStringLiteral("PxSrvFax"), 4));
    frmApertura f(&s);
    ASSERT_EQ(f.Massimo(), 2);
    EXPECT_EQ(f.Valore(), 0);
    f.Avanzamento(QStringLiteral("uno"));
    f.Avanzamento(QStringLiteral("due"));
    f.Avanzamento(QStringLiteral("tre"));
    EXPECT_EQ(f.Valore(), 2);
    EXPECT_EQ(f.Informazione(), QStringLiteral("tre"));
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
