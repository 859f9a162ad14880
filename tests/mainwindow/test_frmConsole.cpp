// The main window in an operator's hands: node commands, context menus, exit, the focus mark,
// tool bars, the log pane's title, the layout kept between sessions, a printer's node.
#include "PxBarraComandi.h"
#include "PxCollegamentoRemoto.h"
#include "RefOspite.h"
#include "modDemo.h"
#include "PxModelloContenuto.h"
#include "PxSrvCartellaDocumenti.h"
#include "PxSrvServizio.h"
#include "PxXmlCallBack.h"
#include "Pki.h"
#include "ServerInLinea.h"
#include "RefIngresso.h"
#include "clsSrvServizi.h"
#include "frmConsole.h"
#include "frmLog.h"
#include "frmPosizione.h"
#include "frmProprieta.h"
#include "modComandiServizio.h"
#include "modElenco.h"
#include "modTabellaCartelle.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QStatusBar>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QToolBar>
#include <QHeaderView>
#include <QLabel>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QScrollBar>
#include <QTreeView>
#include <QTreeWidget>

#include <pugixml.hpp>

using namespace Qt::StringLiterals;

namespace {

bool Attendi(const std::function<bool()>& condizione) { return QTest::qWaitFor(condizione, 10000); }

class Cornice : public ::testing::Test
{
protected:
    void SetUp() override
    {
        // As a console on another machine: nothing of the frame may need the server's files.
        ASSERT_TRUE(mServer.Avvia(200, false));
        Apri();
    }

    void TearDown() override { mConsole.reset(); }

    void Apri()
    {
        mConsole = std::make_unique<frmConsole>(*mServer.Contesto);
        mConsole->Inizializza(nullptr);
        mConsole->Mostra();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(mConsole.get()));
        ASSERT_TRUE(Attendi([&] { return mConsole->ChiaveVisualizzata() == u"SrvServer"_s; })) << qPrintable(mConsole->ChiaveVisualizzata());
    }

    // Shows node `chiave` as a click on it would.
    void Vai(const QString& chiave)
    {
        QTreeWidgetItem* nodo = mConsole->Posizione()->Nodo(chiave);
        ASSERT_NE(nodo, nullptr) << qPrintable(chiave);
        mConsole->VisualizzaServer(nodo->text(0), chiave);
    }

    int Codice(const QString& oggetto) const
    {
        return modComandiServizio::CodiceStato(mServer.Server->Servizio(oggetto)->StatoXml());
    }

    QDockWidget* Pannello(const char* nome) const { return mConsole->findChild<QDockWidget*>(QString::fromLatin1(nome)); }

    // Makes the window the active one, so that focus and shortcuts behave as on a desktop.
    void Attiva()
    {
        QApplication::setActiveWindow(mConsole.get());
        mConsole->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(mConsole.get()));
    }

    ServerInLinea mServer;
    std::unique_ptr<frmConsole> mConsole;
};

QMenu* MenuAperto(const QWidget* finestra, const QString& nome)
{
    QMenu* menu = finestra->findChild<QMenu*>(nome);
    return menu && menu->isVisible() ? menu : nullptr;
}

} // namespace

TEST_F(Cornice, StartAndSuspendFollowTheStateOfTheNodesService)
{
    QMenu* comandi = nullptr;
    for (QAction* a : mConsole->menuBar()->actions())
        if (a->menu() && a->menu()->actions().contains(mConsole->ComandoAvvia()))
            comandi = a->menu();
    ASSERT_NE(comandi, nullptr) << "start and suspend are in a menu";
    EXPECT_TRUE(comandi->actions().contains(mConsole->ComandoSospendi()));
    auto* barra = mConsole->findChild<QToolBar*>(u"tbrComandi"_s);
    ASSERT_NE(barra, nullptr);
    EXPECT_TRUE(barra->actions().contains(mConsole->ComandoAvvia()));
    EXPECT_TRUE(barra->actions().contains(mConsole->ComandoSospendi()));

    // A printer is no service of its own.
    Vai(frmPosizione::ChiaveVoce("SrvStampante", u"9"_s));
    EXPECT_FALSE(mConsole->ComandoAvvia()->isEnabled());
    EXPECT_FALSE(mConsole->ComandoSospendi()->isEnabled());

    // A running service can be suspended; suspended, it can be started; the tree's menu agrees.
    Vai(u"SrvFormati"_s);
    ASSERT_EQ(Codice(u"PxSrvFormati"_s), 4);
    EXPECT_FALSE(mConsole->ComandoAvvia()->isEnabled());
    EXPECT_TRUE(mConsole->ComandoSospendi()->isEnabled());
    EXPECT_TRUE(mConsole->AzioniContestoNodo().contains(mConsole->ComandoSospendi()));
    mConsole->ComandoSospendi()->trigger();
    ASSERT_TRUE(Attendi([&] { return Codice(u"PxSrvFormati"_s) == 3; }));
    EXPECT_TRUE(Attendi([&] { return mConsole->ComandoAvvia()->isEnabled(); }));
    EXPECT_FALSE(mConsole->ComandoSospendi()->isEnabled());
    mConsole->ComandoAvvia()->trigger();
    ASSERT_TRUE(Attendi([&] { return Codice(u"PxSrvFormati"_s) == 4; }));
    EXPECT_TRUE(Attendi([&] { return mConsole->ComandoSospendi()->isEnabled(); }));
    EXPECT_FALSE(mConsole->ComandoAvvia()->isEnabled());
}

TEST_F(Cornice, SuspendingAServiceWithDocumentsInWorkAsksFirst)
{
    // The fax documents not yet through ("Trasmessi" is queue 8), counted from a listing here.
    PxXmlCallBack risposta;
    QByteArray elenco;
    QObject::connect(&risposta, &PxXmlCallBack::XmlCallBack, [&](const QByteArray& xml) { elenco = xml; });
    mServer.Server->CartellaDocumenti(u"PxSrvDocFax"_s)->Elenca(&risposta);
    ASSERT_TRUE(Attendi([&] { return !elenco.isEmpty(); }));
    pugi::xml_document doc;
    ASSERT_TRUE(doc.load_buffer(elenco.constData(), static_cast<size_t>(elenco.size())));
    qsizetype inLavorazione = 0;
    for (const pugi::xml_node coda : doc.document_element().children())
        if (const int n = modElenco::NumeroCoda(coda.name()); n >= 0 && n < 8)
            inLavorazione += std::distance(coda.children().begin(), coda.children().end());
    ASSERT_GT(inLavorazione, 0) << "the demo has fax documents in work";

    // Suspending the tiff worker, from its node, stops work on those documents: asked first.
    Vai(u"SrvTifVm"_s);
    ASSERT_TRUE(mConsole->ComandoSospendi()->isEnabled());
    mConsole->ComandoSospendi()->trigger();
    QMessageBox* domanda = nullptr;
    ASSERT_TRUE(Attendi([&] { return (domanda = mConsole->findChild<QMessageBox*>(u"msgConfermaSospensione"_s)) != nullptr; }));
    EXPECT_TRUE(domanda->text().contains(QLocale().toString(inLavorazione))) << qPrintable(domanda->text());
    domanda->button(QMessageBox::No)->click();
    QTest::qWait(50);
    EXPECT_EQ(Codice(u"PxSrvTifVm"_s), 4) << "no means no";

    mConsole->ComandoSospendi()->trigger();
    ASSERT_TRUE(Attendi([&] {
        domanda = mConsole->findChild<QMessageBox*>(u"msgConfermaSospensione"_s);
        return domanda && domanda->isVisible();
    }));
    domanda->button(QMessageBox::Yes)->click();
    EXPECT_TRUE(Attendi([&] { return Codice(u"PxSrvTifVm"_s) == 3; }));
}

TEST(ComandiServizio, TheWorkInAFolderIsWhatItsCountersHoldBeforeItsDoneQueue)
{
    const modTabellaCartelle::Cartella& fax = modTabellaCartelle::Di(GenereCartella::Fax);
    // Queues 0-7 are on their way, 8 is done ("Trasmessi"), 9 and 10 rejected, 11 waits for a confirmation.
    // The folder's own settings stand before its counters.
    const QString stato = u"<PxSrvDocFax><Stato><Codice>4</Codice></Stato><Fax><Output>Modem</Output>"
                          "<TimeOut><Trasmessi>7</Trasmessi></TimeOut><Count>40</Count>"
                          "<DaConvertire>2</DaConvertire><InConversione>1</InConversione><DaTrasmettere>0</DaTrasmettere>"
                          "<InTrasmissione>3</InTrasmissione><DaStampare>0</DaStampare><InStampa>0</InStampa>"
                          "<DaNotificare>4</DaNotificare><InNotifica>0</InNotifica><Trasmessi>20</Trasmessi>"
                          "<Respinti>5</Respinti><Scartati>1</Scartati><DaConfermare>4</DaConfermare></Fax></PxSrvDocFax>"_s;
    EXPECT_EQ(modComandiServizio::DocumentiInLavorazione(fax, stato), 10);
    EXPECT_EQ(modComandiServizio::DocumentiInLavorazione(fax, u"<PxSrvDocFax><Fax><Count>3</Count>"_s), 0)
        << "a broken state counts nothing";
    EXPECT_EQ(modComandiServizio::DocumentiInLavorazione(fax, u"<PxSrvDocFax><Stato/></PxSrvDocFax>"_s), 0);
    // A worker works on its group's folder; a service with no folder has none.
    EXPECT_EQ(modComandiServizio::CartelleDelServizio(u"PxSrvTifVm"_s), QStringList{u"PxSrvDocFax"_s});
    EXPECT_TRUE(modComandiServizio::CartelleDelServizio(u"PxSrvFormati"_s).isEmpty());
}

TEST_F(Cornice, TheContextMenusOfferTheViewsAndTheNodesCommands)
{
    Vai(u"SrvDocFax"_s);
    ASSERT_TRUE(Attendi([&] { return mConsole->Modello()->NumeroRighe() > 0; }));
    QTreeView* lista = mConsole->Contenuto();
    // The first document: the folder groups its rows by stage.
    QModelIndex primo = mConsole->Modello()->index(0, 0);
    if (mConsole->Modello()->hasChildren(primo))
        primo = mConsole->Modello()->index(0, 0, primo);
    lista->setCurrentIndex(primo);
    lista->selectionModel()->select(primo, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    const QList<QAction*> azioni = mConsole->AzioniContestoElenco();
    for (const int id : {5300, 5315, 5302})
        EXPECT_TRUE(azioni.contains(mConsole->Barra()->Azione(id))) << id;
    EXPECT_TRUE(azioni.contains(mConsole->Comando(clsSrvVista::IdSelezionaTutto)));

    // By keyboard, on the list: the same actions, so the same states as on the bar.
    Attiva();
    lista->setFocus();
    QTest::keyClick(lista, Qt::Key_F10, Qt::ShiftModifier);
    QMenu* menu = nullptr;
    ASSERT_TRUE(Attendi([&] { return (menu = MenuAperto(mConsole.get(), u"mnuContestoElenco"_s)) != nullptr; }));
    EXPECT_TRUE(menu->actions().contains(mConsole->Barra()->Azione(5315)));
    EXPECT_TRUE(mConsole->Barra()->Azione(5315)->isEnabled());
    menu->close();

    // On a printer's node: start, suspend, its test page (ready), refresh; the node is shown.
    QTreeWidget* albero = mConsole->Posizione()->Albero();
    const QString stampante = frmPosizione::ChiaveVoce("SrvStampante", u"9"_s);
    albero->setCurrentItem(mConsole->Posizione()->Nodo(stampante));
    albero->setFocus();
    QTest::keyClick(albero, Qt::Key_Menu);
    ASSERT_TRUE(Attendi([&] { return (menu = MenuAperto(mConsole.get(), u"mnuContestoNodo"_s)) != nullptr; }));
    EXPECT_EQ(mConsole->ChiaveVisualizzata(), stampante);
    QAction* prova = mConsole->Barra()->Azione(clsSrvServizi::IdPaginaDiProva);
    ASSERT_NE(prova, nullptr);
    EXPECT_TRUE(menu->actions().contains(prova));
    EXPECT_TRUE(prova->isEnabled());
    EXPECT_TRUE(menu->actions().contains(mConsole->ComandoAvvia()));
    EXPECT_TRUE(menu->actions().contains(mConsole->Comando(1250)));
    menu->close();
}

TEST_F(Cornice, ExitIsInTheFileMenuOnCtrlQAndTheFocusedPaneIsMarked)
{
    QAction* primo = mConsole->menuBar()->actions().value(0);
    ASSERT_NE(primo, nullptr);
    ASSERT_NE(primo->menu(), nullptr);
    EXPECT_TRUE(primo->menu()->actions().contains(mConsole->ComandoEsci())) << "the first menu holds Esci";
    EXPECT_EQ(mConsole->ComandoEsci()->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Q));

    Attiva();
    QDockWidget* albero = Pannello("pnlPosizione");
    mConsole->Posizione()->Albero()->setFocus();
    ASSERT_TRUE(Attendi([&] { return mConsole->PannelloAttivo() == albero; }));
    EXPECT_TRUE(albero->property("fuoco").toBool());
    mConsole->Contenuto()->setFocus();
    ASSERT_TRUE(Attendi([&] { return mConsole->PannelloAttivo() == mConsole->Contenuto(); }));
    EXPECT_FALSE(albero->property("fuoco").toBool()) << "the mark moves with the focus";
    EXPECT_TRUE(mConsole->Contenuto()->property("fuoco").toBool());

    QTest::keyClick(mConsole->Contenuto(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_TRUE(Attendi([&] { return !mConsole->isVisible(); })) << "Ctrl+Q closes as the window's close does";
}

TEST_F(Cornice, NoVisibleToolBarIsEmptyAndTheListStaysPutFromNodeToNode)
{
    const auto vuote = [&] {
        QStringList nomi;
        for (QToolBar* barra : mConsole->findChildren<QToolBar*>(Qt::FindDirectChildrenOnly)) {
            const QList<QAction*> azioni = barra->actions();
            if (!barra->isHidden()
                && std::none_of(azioni.cbegin(), azioni.cend(), [](QAction* a) { return a->isVisible() && !a->isSeparator(); }))
                nomi << barra->objectName();
        }
        return nomi;
    };
    Vai(u"SrvDocFax"_s);
    QApplication::processEvents();
    const int alto = mConsole->Contenuto()->mapTo(mConsole.get(), QPoint(0, 0)).y();
    EXPECT_EQ(vuote(), QStringList());
    Vai(u"SrvFax"_s);
    QApplication::processEvents();
    EXPECT_EQ(vuote(), QStringList());
    EXPECT_EQ(mConsole->Contenuto()->mapTo(mConsole.get(), QPoint(0, 0)).y(), alto);
}

// Scrolled to its last column, the bar's thumb is at the right and the columns shown are the
// ones the bar says; another node starts at its first column.
TEST_F(Cornice, TheHorizontalBarFollowsTheColumnsAndDoesNotCarryOver)
{
    mConsole->resize(700, 600);
    Vai(u"SrvDocFax"_s);
    QTreeView* lista = mConsole->Contenuto();
    ASSERT_TRUE(Attendi([&] { return mConsole->Modello()->NumeroRighe() > 0; }));
    QApplication::processEvents();
    QScrollBar* barra = lista->horizontalScrollBar();
    ASSERT_GT(barra->maximum(), 0);
    barra->triggerAction(QAbstractSlider::SliderToMaximum);
    QApplication::processEvents();
    EXPECT_EQ(barra->value(), barra->maximum());
    EXPECT_EQ(lista->header()->offset(), barra->value()) << "the header shows what the bar says";
    const int ultima = lista->header()->logicalIndexAt(lista->header()->width() - 2);
    EXPECT_EQ(lista->header()->visualIndex(ultima), lista->header()->count() - 1) << "the last column is in sight";
    Vai(u"SrvFax"_s);
    QApplication::processEvents();
    EXPECT_EQ(barra->value(), 0);
    EXPECT_EQ(lista->header()->offset(), 0);
}

TEST_F(Cornice, TheLogPanesTitleNamesTheLogItShows)
{
    QDockWidget* log = Pannello("pnlLog");
    ASSERT_NE(log, nullptr);
    const QString caption = mConsole->Posizione()->Nodo(u"SrvFaxVm"_s)->text(0);
    Vai(u"SrvFaxVm"_s);
    ASSERT_TRUE(Attendi([&] { return log->windowTitle().contains(caption); })) << qPrintable(log->windowTitle());
    EXPECT_TRUE(log->windowTitle().contains(u"PxSrvFaxVm.log"_s)) << qPrintable(log->windowTitle());
    EXPECT_FALSE(log->windowTitle().contains(mServer.Testi.LoadDllString(8046)));
    const QString altro = mConsole->Posizione()->Nodo(u"SrvTifVm"_s)->text(0);
    Vai(u"SrvTifVm"_s);
    EXPECT_TRUE(Attendi([&] { return log->windowTitle().contains(altro); })) << qPrintable(log->windowTitle());
    // A folder's own log is named after the folder, not after the first service whose log
    // file does not exist yet either.
    const QString cartella = mConsole->Posizione()->Nodo(u"SrvDocFax"_s)->text(0);
    Vai(u"SrvDocFax"_s);
    EXPECT_TRUE(Attendi([&] { return log->windowTitle().contains(cartella); })) << qPrintable(log->windowTitle());
    EXPECT_FALSE(log->windowTitle().contains(mConsole->Posizione()->Nodo(u"SrvFormati"_s)->text(0)));
}

TEST_F(Cornice, TheDocksComeBackWithTheSizesTheOperatorGaveThem)
{
    QDockWidget* proprieta = Pannello("pnlProprieta");
    QDockWidget* log = Pannello("pnlLog");
    QDockWidget* albero = Pannello("pnlPosizione");
    mConsole->resize(1100, 760);
    QApplication::processEvents();
    mConsole->resizeDocks({proprieta, albero}, {415, 233}, Qt::Horizontal);
    mConsole->resizeDocks({log}, {261}, Qt::Vertical);
    Pannello("pnlInfoSistema")->hide();
    ASSERT_TRUE(Attendi([&] { return proprieta->width() != 0 && log->height() != 0; }));
    QApplication::processEvents();
    const QSize prima[] = {proprieta->size(), log->size(), albero->size()};
    mConsole->close(); // the engine closes the window first, then ends it
    mConsole->Termina();
    mConsole.reset();

    Apri();
    proprieta = Pannello("pnlProprieta");
    log = Pannello("pnlLog");
    albero = Pannello("pnlPosizione");
    QApplication::processEvents();
    EXPECT_EQ(mConsole->size(), QSize(1100, 760));
    EXPECT_EQ(proprieta->size(), prima[0]);
    EXPECT_EQ(log->size(), prima[1]);
    EXPECT_EQ(albero->size(), prima[2]);
    EXPECT_TRUE(Pannello("pnlInfoSistema")->isHidden());
}

TEST_F(Cornice, APrintersNodeShowsThatPrinterAndSendsItsTestPageWithNoSelection)
{
    const QString chiave = frmPosizione::ChiaveVoce("SrvStampante", u"9"_s);
    Vai(chiave);
    PxModelloContenuto& modello = *mConsole->Modello();
    ASSERT_TRUE(Attendi([&] { return modello.Riga(chiave) >= 0; }));
    EXPECT_EQ(modello.NumeroRighe(), 1) << "that printer only";
    QAction* prova = mConsole->Barra()->Azione(clsSrvServizi::IdPaginaDiProva);
    ASSERT_NE(prova, nullptr);
    mConsole->Contenuto()->selectionModel()->clear();
    EXPECT_TRUE(prova->isEnabled()) << "no selection needed";
    prova->trigger();
    const QDir ingresso(QDir(mServer.Dir.path()).filePath(u"Ingresso/PxSrvStampe"_s));
    EXPECT_TRUE(Attendi([&] { return ingresso.exists(u"Pagina di prova di Zebra spedizioni.hpx"_s); }));
    EXPECT_EQ(ingresso.entryList({u"Pagina di prova di *.hpx"_s}, QDir::Files).size(), 1) << "to that printer only";
    // Delivered is said once the printing service took the page.
    EXPECT_EQ(mServer.Ref->Ingresso(u"PxSrvStampe"_s)->Scansiona(), 1);
    const QString consegnata = mServer.Testi.LoadDllString(8036) + u" Pagina di prova di Zebra spedizioni"_s;
    EXPECT_TRUE(Attendi([&] { return mConsole->statusBar()->currentMessage() == consegnata; }))
        << qPrintable(mConsole->statusBar()->currentMessage());
}

// The server and its folder stay on the status bar's left: a menu's hint or a passing message
// covers them for a while, and they come back.
TEST_F(Cornice, TheServersNameComesBackAfterAPassingMessage)
{
    auto* identita = mConsole->findChild<QLabel*>(u"lblIdentita"_s);
    ASSERT_NE(identita, nullptr);
    EXPECT_TRUE(identita->text().endsWith(mServer.Dir.path())) << qPrintable(identita->text());
    mConsole->statusBar()->showMessage(u"Sposta i documenti selezionati in un'altra coda"_s);
    EXPECT_FALSE(identita->isVisible());
    mConsole->statusBar()->clearMessage(); // the pointer leaves the menu
    EXPECT_TRUE(identita->isVisible());
}

TEST_F(Cornice, TheNodeOnDisplayAtCloseIsShownAgainAtTheNextStart)
{
    Vai(u"SrvDocFax"_s);
    mConsole->close();
    mConsole->Termina();
    mConsole.reset();

    mConsole = std::make_unique<frmConsole>(*mServer.Contesto);
    mConsole->Inizializza(nullptr);
    mConsole->Mostra();
    ASSERT_TRUE(Attendi([&] { return mConsole->ChiaveVisualizzata() == u"SrvDocFax"_s; }));
    EXPECT_EQ(frmPosizione::ChiaveNodo(mConsole->Posizione()->Albero()->currentItem()), u"SrvDocFax"_s);
    // Back on the root for the tests after this one, which start from there.
    Vai(u"SrvServer"_s);
    mConsole->Termina();
}

namespace {

// A demo published by a host of the test's own, and what a console needs besides the server.
struct DemoRemota
{
    DemoRemota()
    {
        Ok = modDemo::CreaServerDemo(Dir.path(), 120).isEmpty();
        Log.Cartella = DirLog.path();
        Log.TracciaProcedure = false;
        Ok = Ok && Log.Apri();
    }
    std::unique_ptr<RefOspite> Pubblica(const QUrl& indirizzo, const PxTls& tls = {})
    {
        auto ospite = std::make_unique<RefOspite>(Dir.path(), RefServer::Opzioni{false, false});
        ospite->PubblicaRemoto(indirizzo, {}, tls);
        ospite->Avvia();
        return ospite;
    }

    QTemporaryDir Dir, DirLog;
    PxConsoleResDll Testi;
    PxIconResource Icone;
    PxImpostazioni Impostazioni;
    PxLogConsole Log;
    bool Ok = false;
};

} // namespace

// The frame against a server in another process, reached over a local socket: the server
// goes away without a word and comes back.
TEST(CorniceRemota, ALostServerGreysTheTreeHoldsTheCommandsAndTheViewComesBackWithIt)
{
    DemoRemota demo;
    ASSERT_TRUE(demo.Ok);
    const QUrl indirizzo(u"local:"_s + demo.Dir.filePath(u"s.sock"_s));
    const auto pubblica = [&] { return demo.Pubblica(indirizzo); };
    auto ospite = pubblica();
    PxCollegamentoRemoto collegamento(indirizzo);
    PxSrvServer server(&collegamento);
    server.Connetti();
    ASSERT_TRUE(Attendi([&] { return server.Caricato(); }));
    PxContesto contesto(demo.Testi, demo.Icone, demo.Impostazioni, demo.Log, &server);
    frmConsole console(contesto);
    console.Inizializza(nullptr);
    console.Mostra();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&console));
    QTreeWidgetItem* fax = console.Posizione()->Nodo(u"SrvDocFax"_s);
    ASSERT_NE(fax, nullptr);
    console.Posizione()->Albero()->setCurrentItem(fax); // as a click does
    ASSERT_TRUE(Attendi([&] { return console.ChiaveVisualizzata() == u"SrvDocFax"_s; }));
    auto* modello = console.findChild<PxModelloContenuto*>();
    ASSERT_TRUE(Attendi([&] { return modello->NumeroRighe() > 0; }));
    const qsizetype righe = modello->NumeroRighe();
    auto* stato = console.findChild<QLabel*>(u"lblCollegamento"_s);
    auto* comandi = console.findChild<QToolBar*>(u"tbrComandi"_s);
    ASSERT_TRUE(stato && comandi);
    EXPECT_TRUE(stato->isHidden());
    EXPECT_TRUE(comandi->isEnabled());

    ospite.reset(); // gone, without a word
    ASSERT_TRUE(Attendi([&] { return stato->isVisible(); }));
    EXPECT_FALSE(comandi->isEnabled());
    EXPECT_FALSE(fax->toolTip(0).isEmpty()) << "every node says why";
    EXPECT_EQ(fax->foreground(0).color(), console.Posizione()->Albero()->palette().color(QPalette::Disabled, QPalette::Text));
    // The countdown runs: the window's loop is not held while the server is away.
    ASSERT_TRUE(Attendi([&] { return stato->text().contains(u" s"_s); }));
    const QString prima = stato->text();
    EXPECT_TRUE(Attendi([&] { return stato->text() != prima; }));
    EXPECT_EQ(console.ChiaveVisualizzata(), u"SrvDocFax"_s) << "the operator stays where they were";

    ospite = pubblica();
    ASSERT_TRUE(QTest::qWaitFor([&] { return server.Raggiungibile(); }, 20000));
    EXPECT_TRUE(Attendi([&] { return stato->isHidden() && comandi->isEnabled(); }));
    EXPECT_TRUE(fax->toolTip(0).isEmpty());
    EXPECT_TRUE(Attendi([&] { return modello->NumeroRighe() == righe; })) << "the view reloaded";
    console.Termina();
}

// A console whose certificate names an observer: it shows everything, and every command is
// disabled with the reason and the name the server knows it by.
TEST(CorniceRemota, AnObserversFrameReadsButHoldsEveryCommandSayingWhy)
{
    DemoRemota demo;
    ASSERT_TRUE(demo.Ok);
    QTemporaryDir chiavi;
    Pki pki(chiavi.path());
    ASSERT_TRUE(pki.Pronta());
    QFile ruoli(demo.Dir.filePath(u"Ruoli.txt"_s));
    ASSERT_TRUE(ruoli.open(QIODevice::WriteOnly));
    ruoli.write("osservatore monitor-noc\n");
    ruoli.close();
    QTcpServer libera;
    ASSERT_TRUE(libera.listen(QHostAddress::LocalHost));
    const QString porta = QString::number(libera.serverPort());
    libera.close();
    // The server listens on an address; the console checks the certificate against a name.
    auto ospite = demo.Pubblica(QUrl(u"tls://127.0.0.1:"_s + porta), pki.Di(u"localhost"_s));
    PxCollegamentoRemoto collegamento(QUrl(u"tls://localhost:"_s + porta), pki.Di(u"monitor-noc"_s));
    PxSrvServer server(&collegamento);
    server.Connetti();
    ASSERT_TRUE(Attendi([&] { return server.Caricato() && server.SoloLettura(); }));
    PxContesto contesto(demo.Testi, demo.Icone, demo.Impostazioni, demo.Log, &server);
    frmConsole console(contesto);
    console.Inizializza(nullptr);
    console.Mostra();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&console));
    console.Posizione()->Albero()->setCurrentItem(console.Posizione()->Nodo(u"SrvDocFax"_s));
    auto* modello = console.findChild<PxModelloContenuto*>();
    ASSERT_TRUE(Attendi([&] { return modello && modello->NumeroRighe() > 0; })) << "an observer reads the folders";

    auto* ruolo = console.findChild<QLabel*>(u"lblRuolo"_s);
    auto* comandi = console.findChild<QToolBar*>(u"tbrComandi"_s);
    ASSERT_TRUE(ruolo && comandi);
    EXPECT_TRUE(ruolo->isVisible());
    EXPECT_EQ(ruolo->text(), demo.Testi.LoadDllString(8085));
    EXPECT_TRUE(ruolo->toolTip().startsWith(demo.Testi.LoadDllString(8086))) << qPrintable(ruolo->toolTip());
    EXPECT_TRUE(ruolo->toolTip().contains(u"monitor-noc"_s)) << qPrintable(ruolo->toolTip());
    EXPECT_FALSE(comandi->isEnabled());
    EXPECT_EQ(comandi->toolTip(), ruolo->toolTip());
    int menu = 0;
    for (QMenu* m : console.menuBar()->findChildren<QMenu*>())
        if (m->title() == demo.Testi.LoadDllString(8024)) {
            ++menu;
            EXPECT_FALSE(m->isEnabled()) << "the commands menu";
        }
    EXPECT_EQ(menu, 1);
    // The service's own buttons in the property pane too.
    console.Posizione()->Albero()->setCurrentItem(console.Posizione()->Nodo(u"SrvFax"_s));
    ASSERT_TRUE(Attendi([&] { return console.ChiaveVisualizzata() == u"SrvFax"_s; }));
    int pulsanti = 0;
    for (QAction* a : console.findChild<frmProprieta*>()->findChildren<QAction*>())
        if (a->text() == demo.Testi.LoadDllString(128) || a->text() == demo.Testi.LoadDllString(129)) {
            ++pulsanti;
            EXPECT_FALSE(a->isEnabled()) << qPrintable(a->text());
        }
    EXPECT_EQ(pulsanti, 2);
    console.Termina();
}
