#include "PxSrvConsole.h"
#include "RefServer.h"
#include "RefServizio.h"
#include "frmApertura.h"
#include "frmConsole.h"
#include "frmPosizione.h"
#include "modDemo.h"

#include <gtest/gtest.h>

#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

namespace {

class Albero : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(modDemo::CreaServerDemo(mDir.path(), 0), QString());
        mServer = std::make_unique<RefServer>(mDir.path());
        e.SetSrvServer(mServer.get());
        e.SetServerEventi(mServer->Eventi());
        e.SetPercorsoGui(mDir.path());
        e.SetPercorsoLog(mDir.filePath(QStringLiteral("Log")));
        e.Inizializza();
        mPosizione = std::make_unique<frmPosizione>(e);
        mApertura = std::make_unique<frmApertura>(mServer.get());
        mPosizione->Inizializza(mApertura.get());
    }

    QTreeWidgetItem* Nodo(const QString& testo) const
    {
        const auto trovati = mPosizione->Albero()->findItems(testo, Qt::MatchExactly | Qt::MatchRecursive);
        return trovati.isEmpty() ? nullptr : trovati.first();
    }

    QTemporaryDir mDir;
    std::unique_ptr<RefServer> mServer;
    PxSrvConsole e;
    std::unique_ptr<frmPosizione> mPosizione;
    std::unique_ptr<frmApertura> mApertura;
};

} // namespace

TEST_F(Albero, BuildsEveryNodeAndFillsTheOpeningBar)
{
    // 38 rows, of which three are lists: 3 clients, 14 printers, 2 FTP clients.
    EXPECT_EQ(mPosizione->ConteggioNodi(), 35 + 3 + 14 + 2);
    EXPECT_EQ(mApertura->Valore(), mApertura->Massimo());
    EXPECT_TRUE(mApertura->Informazione().startsWith(QStringLiteral("Creazione nodo ")));
    EXPECT_EQ(mPosizione->Albero()->topLevelItemCount(), 1);
    EXPECT_EQ(mPosizione->Albero()->currentItem()->text(0), QStringLiteral("Servizi"));
    ASSERT_NE(Nodo(QStringLiteral("1) Generica testo")), nullptr);
    EXPECT_EQ(Nodo(QStringLiteral("1) Generica testo"))->parent()->text(0), QStringLiteral("Stampe"));
    EXPECT_NE(Nodo(QStringLiteral("Pelorix PDF Email")), nullptr) << "PDF workers show their printer's name";
    EXPECT_NE(Nodo(QStringLiteral("Ftp server (0.0.0.0:21)")), nullptr);
    EXPECT_NE(Nodo(QStringLiteral("mrossi (PC-AMM-01)")), nullptr);
    EXPECT_EQ(mPosizione->IconaNodo(QStringLiteral("SrvServer")), 200);
    EXPECT_EQ(mPosizione->IconaNodo(QStringLiteral("SrvReportFax")), -244) << "suspended in the demo";
    EXPECT_EQ(mPosizione->IconaNodo(frmPosizione::ChiaveVoce("SrvStampante", QStringLiteral("3"))), 1413);
}

TEST_F(Albero, AStateChangeUpdatesOnlyTheIcon)
{
    QTreeWidgetItem* fax = Nodo(QStringLiteral("Fax"));
    ASSERT_NE(fax, nullptr);
    mServer->ServizioRef(QStringLiteral("PxSrvFax"))->Sospendi();
    EXPECT_EQ(mPosizione->IconaNodo(QStringLiteral("SrvFax")), -240);
    EXPECT_EQ(fax->text(0), QStringLiteral("Fax"));
    mServer->ServizioRef(QStringLiteral("PxSrvFax"))->Avvia();
    EXPECT_EQ(mPosizione->IconaNodo(QStringLiteral("SrvFax")), 240);
}

TEST_F(Albero, AggiornaIconaKeepsTheTextOnAnEmptyCaptionAndIgnoresUnknownKeys)
{
    mPosizione->AggiornaIcona(QStringLiteral("SrvFax"), -240, QString());
    EXPECT_EQ(Nodo(QStringLiteral("Fax"))->text(0), QStringLiteral("Fax"));
    EXPECT_EQ(mPosizione->IconaNodo(QStringLiteral("SrvFax")), -240);
    mPosizione->AggiornaIcona(QStringLiteral("SrvFax"), 240, QStringLiteral("Fax centrale"));
    EXPECT_NE(Nodo(QStringLiteral("Fax centrale")), nullptr);
    mPosizione->AggiornaIcona(QStringLiteral("SrvInesistente"), 1, QStringLiteral("x"));
    EXPECT_EQ(Nodo(QStringLiteral("x")), nullptr);
}

TEST_F(Albero, ABurstOfSelectionsNavigatesOnceToTheLast)
{
    QStringList navigazioni;
    mPosizione->ImpostaNavigazione([&](const QString&, const QString& chiave) {
        navigazioni << chiave;
        mPosizione->ImpostaChiaveVisualizzata(chiave);
    });
    QTest::qWait(60);
    navigazioni.clear();
    for (const char* testo : {"Fax", "Email", "Stampe", "Ftp", "Fax", "Email", "Stampe", "Ftp", "Firme", "Fax"})
        mPosizione->Albero()->setCurrentItem(Nodo(QString::fromLatin1(testo)));
    QTest::qWait(80);
    EXPECT_EQ(navigazioni, QStringList{QStringLiteral("SrvFax")});
    emit mPosizione->Albero()->itemClicked(Nodo(QStringLiteral("Fax")), 0); // the node already on display
    QTest::qWait(80);
    EXPECT_EQ(navigazioni.size(), 1);
}

TEST_F(Albero, ClosingTheMainWindowOnlyHidesIt)
{
    frmConsole console(e);
    console.Inizializza(nullptr);
    console.Mostra();
    EXPECT_TRUE(console.Visibile());
    console.close();
    EXPECT_FALSE(console.Visibile());
    EXPECT_FALSE(console.testAttribute(Qt::WA_DeleteOnClose));
}

TEST_F(Albero, TheMainWindowReopensWhereTheOperatorLeftIt)
{
    {
        frmConsole console(e);
        console.Mostra();
        console.resize(900, 640);
        auto* log = console.findChild<QDockWidget*>(QStringLiteral("pnlLog"));
        ASSERT_NE(log, nullptr);
        log->hide();
        console.Termina();
    }
    frmConsole riaperta(e);
    riaperta.Mostra();
    EXPECT_EQ(riaperta.size(), QSize(900, 640));
    EXPECT_FALSE(riaperta.findChild<QDockWidget*>(QStringLiteral("pnlLog"))->isVisible());
}
