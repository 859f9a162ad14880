#include "PxCollegamento.h"
#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxIconResource.h"
#include "PxImpostazioni.h"
#include "PxLogConsole.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"
#include "RefOspite.h"
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
        // The demo server on its own thread, as the console runs it.
        mOspite = std::make_unique<RefOspite>(mDir.path());
        mCollegamento = std::make_unique<PxCollegamentoDiretto>([this](const QString& nome) { return mOspite->Oggetto(nome); });
        mServer = std::make_unique<PxSrvServer>(mCollegamento.get());
        mServer->Connetti();
        mOspite->Avvia();
        QTRY_VERIFY_WITH_TIMEOUT(mServer->Caricato(), 10000);
        mContesto = std::make_unique<PxContesto>(mTesti, mIcone, mImpostazioni, mLog, mServer.get());
        mPosizione = std::make_unique<frmPosizione>(*mContesto);
        mApertura = std::make_unique<frmApertura>(mServer.get());
        mPosizione->Inizializza(mApertura.get());
    }

    void TearDown() override
    {
        mPosizione.reset();
        mContesto.reset();
        mServer.reset();
        mOspite.reset();
    }

    QTreeWidgetItem* Nodo(const QString& testo) const
    {
        const auto trovati = mPosizione->Albero()->findItems(testo, Qt::MatchExactly | Qt::MatchRecursive);
        return trovati.isEmpty() ? nullptr : trovati.first();
    }

    QTemporaryDir mDir;
    PxConsoleResDll mTesti;
    PxIconResource mIcone;
    PxImpostazioni mImpostazioni;
    PxLogConsole mLog;
    std::unique_ptr<RefOspite> mOspite;
    std::unique_ptr<PxCollegamentoDiretto> mCollegamento;
    std::unique_ptr<PxSrvServer> mServer;
    std::unique_ptr<PxContesto> mContesto;
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

TEST_F(Albero, AStateChangeOnTheServersThreadUpdatesOnlyTheIcon)
{
    QTreeWidgetItem* fax = Nodo(QStringLiteral("Fax"));
    ASSERT_NE(fax, nullptr);
    mServer->Servizio(QStringLiteral("PxSrvFax"))->Sospendi();
    EXPECT_EQ(mPosizione->IconaNodo(QStringLiteral("SrvFax")), 240) << "a request is answered later, never inside the call";
    QTRY_COMPARE(mPosizione->IconaNodo(QStringLiteral("SrvFax")), -240);
    EXPECT_EQ(fax->text(0), QStringLiteral("Fax"));
    mServer->Servizio(QStringLiteral("PxSrvFax"))->Avvia();
    QTRY_COMPARE(mPosizione->IconaNodo(QStringLiteral("SrvFax")), 240);
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
    frmConsole console(*mContesto);
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
        frmConsole console(*mContesto);
        console.Mostra();
        console.resize(900, 640);
        auto* log = console.findChild<QDockWidget*>(QStringLiteral("pnlLog"));
        ASSERT_NE(log, nullptr);
        log->hide();
        console.Termina();
    }
    frmConsole riaperta(*mContesto);
    riaperta.Mostra();
    EXPECT_EQ(riaperta.size(), QSize(900, 640));
    EXPECT_FALSE(riaperta.findChild<QDockWidget*>(QStringLiteral("pnlLog"))->isVisible());
}
