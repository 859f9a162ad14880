#include "frmConsole.h"

#include "PxBarraComandi.h"
#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxDelegatoAvanzamento.h"
#include "PxIconResource.h"
#include "PxImmagini.h"
#include "PxImpostazioni.h"
#include "PxModelloContenuto.h"
#include "PxSrvEventiServer.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"
#include "frmApertura.h"
#include "frmChiusura.h"
#include "frmPosizione.h"
#include "PxSrvCatalogo.h"
#include "clsSrvCatalogo.h"
#include "clsSrvServizi.h"
#include "frmInfoSistema.h"
#include "frmLog.h"
#include "frmCorpoDocumento.h"
#include "frmProprieta.h"
#include "frmScriptDocumento.h"
#include "frmVisFirma.h"
#include "modAlberoServer.h"
#include "modComandiServizio.h"
#include "PxAttesaLavoro.h"
#include "frmInvioProvaEmail.h"
#include "frmInvioProvaFax.h"
#include "modContenuto.h"
#include "modTabellaCartelle.h"
#include "modTraccia.h"
#include "modViste.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QDir>
#include <QDockWidget>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QSettings>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QScrollBar>
#include <QTreeView>
#include <QTreeWidget>

#include <pugixml.hpp>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <utility>

namespace {
// The list-wide commands' own ids: 5100 and 5101 are the family's; the others take the id of
// the text that names them.
constexpr int IdAggiorna = 1250, IdEspandi = 1251, IdComprimi = 1252, IdBlocca = 8016;
constexpr int IdAvvia = 4011, IdSospendi = 4012, IdEsci = 4043;

// The mark of the pane holding the focus: its title (or the list's frame) in the selection's colours.
constexpr auto StileFuoco = R"(
QDockWidget[fuoco="true"] { color: palette(highlighted-text); }
QDockWidget[fuoco="true"]::title { background: palette(highlight); padding: 3px; }
QTreeView#xrpContenuto[fuoco="true"] { border: 2px solid palette(highlight); }
)";
} // namespace

frmConsole::frmConsole(PxContesto& contesto, QWidget* parent)
    : QMainWindow(parent),
      mContesto(contesto),
      mPosizione(new frmPosizione(contesto)),
      mxrpContenuto(new QTreeView),
      mModello(new PxModelloContenuto(this)),
      mBarraVista(new QToolBar),
      mMenuComandi(nullptr),
      mMenuRaggruppa(nullptr),
      mBarra(nullptr),
      mLog(new frmLog(contesto)), mProprieta(new frmProprieta(contesto)), mCorpo(new frmCorpoDocumento(contesto)),
      mScript(new frmScriptDocumento(contesto)), mFirma(new frmVisFirma),
      mInfoSistema(new frmInfoSistema(contesto)),
      mConteggi(new QLabel),
      mAttesa(new QLabel),
      mStato(new QLabel),
      mCollegamento(new QLabel),
      mContoAllaRovescia(new QTimer(this)),
      mRuolo(new QLabel),
      mIdentita(new QLabel)
{
    setObjectName(QStringLiteral("frmConsole"));
    const PxConsoleResDll& testi = mContesto.Testi();
    const PxImpostazioni& opzioni = mContesto.Impostazioni();
    setWindowTitle(testi.LoadDllString(8000));
    setWindowIcon(PxImmagini::Istanza().Icona(modIcone::Server));
    resize(1280, 800);
    setDockOptions(QMainWindow::AnimatedDocks | QMainWindow::AllowNestedDocks | QMainWindow::AllowTabbedDocks);

    // The content list: our model, rows of one height, sorting through the model.
    mxrpContenuto->setObjectName(QStringLiteral("xrpContenuto"));
    mxrpContenuto->setModel(mModello);
    mxrpContenuto->setUniformRowHeights(true);
    mxrpContenuto->setSortingEnabled(true);
    mxrpContenuto->setSelectionMode(QAbstractItemView::ExtendedSelection);
    mxrpContenuto->setSelectionBehavior(QAbstractItemView::SelectRows);
    mxrpContenuto->setAllColumnsShowFocus(true);
    mxrpContenuto->setAlternatingRowColors(opzioni.AlternateRow);
    // A tree scrolled by whole columns keeps its bar's range in columns but its header in
    // pixels: the thumb stays at the left with the list scrolled to its last column, and group
    // rows go blank. So the list scrolls by pixels, a column's width at each step when the
    // operator asked for whole columns.
    mxrpContenuto->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    if (opzioni.FullColumnScrolling)
        mxrpContenuto->horizontalScrollBar()->setSingleStep(120);
    mxrpContenuto->header()->setSectionsMovable(true);
    mxrpContenuto->header()->setStretchLastSection(opzioni.AutoColumnSizing);
    if (opzioni.ShowProgressBar)
        mxrpContenuto->setItemDelegate(new PxDelegatoAvanzamento(mxrpContenuto));
    setCentralWidget(mxrpContenuto);

    // The panes' places; each later pane takes its dock as it lands.
    AggiungiPannello(7000, "pnlPosizione", mPosizione, Qt::LeftDockWidgetArea);
    AggiungiPannello(7001, "pnlProprieta", mProprieta, Qt::RightDockWidgetArea);
    mProprieta->ImpostaLog(mLog);
    connect(mProprieta, &frmProprieta::Messaggio, this, &frmConsole::MostraMessaggio);
    connect(mProprieta, &frmProprieta::StatoServizioCambiato, this, [this] { ConfiguraPulsantiServer(); });
    QDockWidget* log = AggiungiPannello(7004, "pnlLog", mLog, Qt::BottomDockWidgetArea);
    // The viewers share the bottom with the log; the log is in front.
    QDockWidget* ultimo = log;
    for (QDockWidget* d : {AggiungiPannello(7002, "pnlCorpo", mCorpo, Qt::BottomDockWidgetArea),
                           AggiungiPannello(7003, "pnlScript", mScript, Qt::BottomDockWidgetArea),
                           AggiungiPannello(7006, "pnlFirma", mFirma, Qt::BottomDockWidgetArea),
                           AggiungiPannello(7005, "pnlInfoSistema", mInfoSistema, Qt::BottomDockWidgetArea)}) {
        tabifyDockWidget(ultimo, d);
        ultimo = d;
    }
    log->raise();
    mProprieta->ImpostaVisualizzatori(mCorpo, mScript, mFirma);

    CreaComandi();

    mConteggi->setObjectName(QStringLiteral("lblConteggi"));
    mAttesa->setObjectName(QStringLiteral("lblInAttesa"));
    mAttesa->setVisible(false);
    mCollegamento->setObjectName(QStringLiteral("lblCollegamento"));
    mCollegamento->setVisible(false);
    mCollegamento->setStyleSheet(QStringLiteral("QLabel { color: #b00020; font-weight: bold; }"));
    mContoAllaRovescia->setInterval(1000);
    connect(mContoAllaRovescia, &QTimer::timeout, this, &frmConsole::MostraContoAllaRovescia);
    mRuolo->setObjectName(QStringLiteral("lblRuolo"));
    mRuolo->setText(testi.LoadDllString(8085));
    mRuolo->setVisible(false);
    // A normal widget, not a message: a menu's hint hides it for a while, and it comes back.
    mIdentita->setObjectName(QStringLiteral("lblIdentita"));
    statusBar()->addWidget(mIdentita, 1);
    statusBar()->addPermanentWidget(mCollegamento);
    statusBar()->addPermanentWidget(mRuolo);
    statusBar()->addPermanentWidget(mAttesa);
    statusBar()->addPermanentWidget(mConteggi);
    statusBar()->addPermanentWidget(mStato);
    // Where the operator left the window and its panes.
    const PxImpostazioni::Disposizione disposizione = PxImpostazioni::CaricaDisposizione(objectName());
    restoreGeometry(disposizione.Geometria);
    if (!restoreState(disposizione.Pannelli))
        mPrimaDisposizione = true;
    else
        mPannelliSalvati = disposizione.Pannelli;
    connect(&mContesto, &PxContesto::CambioStato, this, [this] { AggiornaBarraComandi(); });
    connect(&mContesto, &PxContesto::CambioOccupato, this, [this] { AggiornaBarraComandi(); });
    AggiornaBarraComandi();
    mPosizione->ImpostaNavigazione([this](const QString& caption, const QString& chiave) {
        VisualizzaServer(caption, chiave);
    });
    setTabOrder(mPosizione->Albero(), mxrpContenuto);

    // Context menus, by mouse and by keyboard (the Menu key, Shift+F10).
    mxrpContenuto->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(mxrpContenuto, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& p) { MenuContestoElenco(mxrpContenuto->viewport()->mapToGlobal(p)); });
    QTreeWidget* albero = mPosizione->Albero();
    albero->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(albero, &QWidget::customContextMenuRequested, this, [this, albero](const QPoint& p) {
        if (QTreeWidgetItem* nodo = albero->itemAt(p))
            MenuContestoNodo(nodo, albero->viewport()->mapToGlobal(p));
    });
    const QList<QKeySequence> tastiMenu{QKeySequence(Qt::Key_Menu), QKeySequence(Qt::SHIFT | Qt::Key_F10)};
    auto* menuElenco = new QAction(mxrpContenuto);
    menuElenco->setShortcuts(tastiMenu);
    menuElenco->setShortcutContext(Qt::WidgetShortcut);
    connect(menuElenco, &QAction::triggered, this, [this] {
        const QRect r = mxrpContenuto->visualRect(mxrpContenuto->currentIndex());
        MenuContestoElenco(mxrpContenuto->viewport()->mapToGlobal(r.isValid() ? r.bottomLeft() : QPoint(0, 0)));
    });
    mxrpContenuto->addAction(menuElenco);
    auto* menuNodo = new QAction(albero);
    menuNodo->setShortcuts(tastiMenu);
    menuNodo->setShortcutContext(Qt::WidgetShortcut);
    connect(menuNodo, &QAction::triggered, this, [this, albero] {
        if (QTreeWidgetItem* nodo = albero->currentItem())
            MenuContestoNodo(nodo, albero->viewport()->mapToGlobal(albero->visualItemRect(nodo).bottomLeft()));
    });
    albero->addAction(menuNodo);

    // The property pane's suspend button asks as the window's commands do.
    disconnect(mProprieta->ComandoSospendi(), &QAction::triggered, mProprieta, &frmProprieta::SospendiServizio);
    connect(mProprieta->ComandoSospendi(), &QAction::triggered, this, &frmConsole::SospendiServizio);

    // The log pane's title names the log it shows.
    mLog->ImpostaNomi([this](const QString& file) { return NomeLog(file); });
    connect(mLog, &frmLog::TitoloCambiato, log, &QDockWidget::setWindowTitle);
    log->setWindowTitle(mLog->Titolo());

    // The pane holding the keyboard focus is marked.
    setStyleSheet(QString::fromLatin1(StileFuoco));
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* ora) { SegnaFuoco(ora); });
    ConfiguraPulsantiServer();
}

frmConsole::~frmConsole()
{
    // The view saves its layout into the list it still borrows.
    mVista.reset();
}

QDockWidget* frmConsole::AggiungiPannello(int titolo, const char* nome, QWidget* contenuto, Qt::DockWidgetArea area)
{
    auto* dock = new QDockWidget(mContesto.Testi().LoadDllString(titolo), this);
    dock->setObjectName(QString::fromLatin1(nome));
    dock->setWidget(contenuto);
    dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    addDockWidget(area, dock);
    return dock;
}

void frmConsole::CreaComandi()
{
    const PxConsoleResDll& testi = mContesto.Testi();
    const PxImpostazioni& opzioni = mContesto.Impostazioni();
    const Qt::ToolButtonStyle stile = opzioni.ShowTextBelowIcons ? Qt::ToolButtonTextUnderIcon : Qt::ToolButtonTextOnly;

    // The file menu: leaving closes the window as its close button does.
    auto* menuFile = menuBar()->addMenu(testi.LoadDllString(4000));
    mEsci = menuFile->addAction(testi.LoadDllString(4043), this, [this] { close(); });
    mEsci->setProperty(PxBarraComandi::ProprietaId, IdEsci);
    mEsci->setStatusTip(testi.LoadDllString(5043));
    mEsci->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    mEsci->setShortcutContext(Qt::ApplicationShortcut);

    // The list's own commands.
    auto* elenco = new QToolBar(testi.LoadDllString(8023), this);
    elenco->setObjectName(QStringLiteral("tbrElenco"));
    elenco->setToolButtonStyle(stile);
    auto* menuElenco = menuBar()->addMenu(testi.LoadDllString(8023));
    const auto comando = [&](int id, int testo, int descrizione, const QKeySequence& tasto, auto azione) {
        auto* a = new QAction(testi.LoadDllString(testo), this);
        a->setProperty(PxBarraComandi::ProprietaId, id);
        a->setStatusTip(testi.LoadDllString(descrizione));
        a->setToolTip(testi.LoadDllString(testo) + u'\n' + testi.LoadDllString(descrizione));
        a->setShortcut(tasto);
        a->setShortcutContext(Qt::WindowShortcut);
        connect(a, &QAction::triggered, this, azione);
        elenco->addAction(a);
        menuElenco->addAction(a);
        mComandi.insert(id, a);
        return a;
    };
    comando(IdAggiorna, 1250, 1350, QKeySequence::Refresh, [this] {
        if (mVista)
            mVista->AggiornaContenuto();
    });
    comando(clsSrvVista::IdSelezionaTutto, 1228, 1328, QKeySequence::SelectAll, [this] {
        if (mVista)
            mVista->SelezionaTutto();
        AggiornaConteggi();
    });
    comando(clsSrvVista::IdInvertiSelezione, 1229, 1329, QKeySequence(Qt::CTRL | Qt::Key_I), [this] {
        if (mVista)
            mVista->InvertiSelezione();
        AggiornaConteggi();
    });
    comando(IdEspandi, 1251, 1351, QKeySequence(Qt::CTRL | Qt::Key_Plus), [this] { mxrpContenuto->expandToDepth(0); });
    comando(IdComprimi, 1252, 1352, QKeySequence(Qt::CTRL | Qt::Key_Minus), [this] { mxrpContenuto->collapseAll(); });
    QAction* blocca = comando(IdBlocca, 8016, 8017, QKeySequence(Qt::CTRL | Qt::Key_B), [this](bool attivo) {
        if (mVista)
            mVista->Blocca(attivo);
    });
    blocca->setCheckable(true);
    mMenuRaggruppa = menuElenco->addMenu(testi.LoadDllString(8019));
    elenco->addAction(mMenuRaggruppa->menuAction());
    connect(mMenuRaggruppa, &QMenu::aboutToShow, this, &frmConsole::PreparaMenuRaggruppa);
    addToolBar(Qt::TopToolBarArea, elenco);

    // The live view's commands: a bar and a menu holding the same actions.
    mBarraVista->setWindowTitle(testi.LoadDllString(8024));
    mBarraVista->setObjectName(QStringLiteral("tbrComandi"));
    mBarraVista->setToolButtonStyle(stile);
    addToolBarBreak(Qt::TopToolBarArea);
    addToolBar(Qt::TopToolBarArea, mBarraVista);
    mMenuComandi = menuBar()->addMenu(testi.LoadDllString(8024));
    mBarra = new PxBarraComandi(testi, mBarraVista, mMenuComandi, this);
    // Start and suspend the node's service lead the view's commands, whatever the view: the
    // bar's row never empties, so the list does not move from node to node.
    const auto servizio = [&](int id, int testo, int suggerimento, int descrizione, void (frmConsole::*azione)()) {
        auto* a = new QAction(testi.LoadDllString(testo), this);
        a->setProperty(PxBarraComandi::ProprietaId, id);
        a->setToolTip(testi.LoadDllString(suggerimento) + u'\n' + testi.LoadDllString(descrizione));
        a->setStatusTip(testi.LoadDllString(descrizione));
        a->setEnabled(false);
        connect(a, &QAction::triggered, this, azione);
        return a;
    };
    mAvviaServizio = servizio(IdAvvia, 128, 4011, 5011, &frmConsole::AvviaServizio);
    mSospendiServizio = servizio(IdSospendi, 129, 4012, 5012, &frmConsole::SospendiServizio);
    mBarra->ImpostaFisse({mAvviaServizio, mSospendiServizio});
    mAmbiente = std::make_unique<PxAmbienteVista>(PxAmbienteVista{mContesto, *mxrpContenuto, *mModello, *mBarra});

    // The header's menu offers the grouping too.
    mxrpContenuto->header()->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(mxrpContenuto->header(), &QWidget::customContextMenuRequested, this, [this](const QPoint& p) {
        PreparaMenuRaggruppa();
        mMenuRaggruppa->popup(mxrpContenuto->header()->mapToGlobal(p));
    });
    // The pane menu: show again a pane the operator closed, move the focus by keyboard.
    auto* visualizza = menuBar()->addMenu(testi.LoadDllString(8025));
    auto* albero = visualizza->addAction(testi.LoadDllString(7000), this, [this] { mPosizione->Albero()->setFocus(); });
    albero->setShortcut(QKeySequence(Qt::ALT | Qt::Key_1));
    auto* lista = visualizza->addAction(testi.LoadDllString(7008), this, [this] { mxrpContenuto->setFocus(); });
    lista->setShortcut(QKeySequence(Qt::ALT | Qt::Key_2));
}

QAction* frmConsole::Comando(int id) const { return mComandi.value(id); }

void frmConsole::PreparaMenuRaggruppa()
{
    mMenuRaggruppa->clear();
    const int attuale = mModello->ColonnaRaggruppamento();
    const auto voce = [&](const QString& testo, int colonna) {
        QAction* a = mMenuRaggruppa->addAction(testo, this, [this, colonna] { RaggruppaPer(colonna); });
        a->setCheckable(true);
        a->setChecked(colonna == attuale);
    };
    voce(mContesto.Testi().LoadDllString(8020), -1);
    mMenuRaggruppa->addSeparator();
    for (int k = 1; k < mModello->columnCount(); ++k)
        if (!mxrpContenuto->isColumnHidden(k))
            voce(mModello->headerData(k, Qt::Horizontal).toString(), k);
}

void frmConsole::RaggruppaPer(int colonna)
{
    if (mVista)
        mVista->Raggruppa(colonna);
}

void frmConsole::Inizializza(frmApertura* apertura)
{
    modTraccia::Proteggi("frmConsole_Inizializza", [&] {
        mPosizione->Inizializza(apertura);
        // The operator comes back to the node left at the last close.
        if (QTreeWidgetItem* nodo = mPosizione->Nodo(PxImpostazioni::CaricaDisposizione(objectName()).Nodo))
            mPosizione->Albero()->setCurrentItem(nodo);
        CollegaServer();
        mInfoSistema->Inizializza();
        if (const PxSrvServer* server = mContesto.Server())
            mIdentita->setText(server->Identificativo() + QStringLiteral("  —  ") + server->Cartella());
    });
}

void frmConsole::CollegaServer()
{
    PxSrvServer* server = mContesto.Server();
    if (!server)
        return;
    for (const QString& chiave : server->Chiavi()) {
        PxSrvServizio* servizio = server->Servizio(chiave);
        if (!servizio)
            continue;
        connect(servizio, &PxSrvServizio::StatoXmlCambiato, this, [this, chiave] { mobjServizio_CambioStato(chiave); });
        connect(servizio, &PxSrvServizio::DocumentoSpostato, this,
                [this, chiave](qint32 coda, const QString& id, const QString& nodo) {
                    mobjServizio_DocumentoSpostato(chiave, coda, id, nodo);
                });
        connect(servizio, &PxSrvServizio::Avanzamento, this,
                [this, chiave](const QString& attivita, qint32 fatti, qint32 totale) {
                    mobjServizio_Avanzamento(chiave, attivita, fatti, totale);
                });
    }
    connect(server, &PxSrvServer::Interrotto, this, &frmConsole::ServerPerso);
    connect(server, &PxSrvServer::Riprova, this, &frmConsole::ServerRiprova);
    connect(server, &PxSrvServer::Ricollegato, this, &frmConsole::ServerRitrovato);
    connect(server, &PxSrvServer::RuoloCambiato, this, &frmConsole::AggiornaPermessi);
    AggiornaPermessi();
    if (PxSrvEventiServer* eventi = server->Eventi()) {
        connect(eventi, &PxSrvEventiServer::UtenteConnesso, mPosizione, &frmPosizione::AggiungiUtente);
        connect(eventi, &PxSrvEventiServer::UtenteDisconnesso, mPosizione, &frmPosizione::RimuoviUtente);
        connect(eventi, &PxSrvEventiServer::StampanteAggiunta, mPosizione, &frmPosizione::AggiungiStampante);
        connect(eventi, &PxSrvEventiServer::StampanteRimossa, mPosizione, &frmPosizione::RimuoviStampante);
        connect(eventi, &PxSrvEventiServer::FtpClienteConnesso, mPosizione, &frmPosizione::AggiungiFtpCliente);
        connect(eventi, &PxSrvEventiServer::FtpClienteDisconnesso, mPosizione, &frmPosizione::RimuoviFtpCliente);
    }
}

void frmConsole::ServerPerso(const QString& motivo)
{
    modTraccia::Proteggi("ServerPerso", [&] {
        const QString testo = mContesto.Testi().LoadDllString(8084);
        mPosizione->SegnaIrraggiungibile(testo + QStringLiteral("\n") + motivo);
        AggiornaPermessi();
        mCollegamento->setToolTip(motivo);
        mCollegamento->setText(testo);
        mCollegamento->setVisible(true);
        ConfiguraPulsantiServer();
    });
}

void frmConsole::AggiornaPermessi()
{
    // Commands need a server that answers and a role that may act; what the role forbids
    // says so where the operator looks.
    const PxSrvServer* server = mContesto.Server();
    const bool soloLettura = server && server->SoloLettura();
    const bool comandi = server && server->Raggiungibile() && !soloLettura;
    mBarraVista->setEnabled(comandi);
    mMenuComandi->setEnabled(comandi);
    mRuolo->setVisible(soloLettura);
    const QString perche = soloLettura ? mContesto.Testi().LoadDllString(8086) + QStringLiteral(" (") + server->NomeChiamante() + u')'
                                       : QString();
    mRuolo->setToolTip(perche);
    mBarraVista->setToolTip(perche);
    mProprieta->AbilitaComandi();
    ConfiguraPulsantiServer();
}

void frmConsole::ServerRiprova(qint32 millisecondi)
{
    mProssimoTentativo.setRemainingTime(millisecondi);
    MostraContoAllaRovescia();
    mContoAllaRovescia->start();
}

void frmConsole::MostraContoAllaRovescia()
{
    const qint64 secondi = (mProssimoTentativo.remainingTime() + 999) / 1000;
    mCollegamento->setText(mContesto.Testi().LoadDllString(8082).arg(std::max<qint64>(secondi, 0)));
}

void frmConsole::ServerRitrovato()
{
    modTraccia::Proteggi("ServerRitrovato", [&] {
        mContoAllaRovescia->stop();
        mCollegamento->setVisible(false);
        mPosizione->SegnaIrraggiungibile({});
        AggiornaPermessi();
        statusBar()->showMessage(mContesto.Testi().LoadDllString(8083), 5000);
        // What changed while the server was away: every state, and the list on display,
        // reloaded keeping the selection, the scroll and the open groups.
        if (const PxSrvServer* server = mContesto.Server())
            for (const QString& chiave : server->Chiavi())
                mobjServizio_CambioStato(chiave);
        ConfiguraPulsantiServer();
        if (mVista)
            mVista->AggiornaContenuto();
    });
}

void frmConsole::mobjServizio_CambioStato(const QString& chiaveOggetto)
{
    modTraccia::Proteggi("mobjServizio_CambioStato", [&] {
        mPosizione->AggiornaServizio(chiaveOggetto);
        mProprieta->InfoDescrizione();
        ConfiguraPulsantiServer();
        if (mVista)
            mVista->AggiornaSrv(chiaveOggetto);
    });
}

void frmConsole::mobjServizio_DocumentoSpostato(const QString& chiaveOggetto, qint32 coda, const QString& id,
                                                const QString& nodo)
{
    modTraccia::Proteggi("mobjServizio_DocumentoSpostato", [&] {
        if (!mVista)
            return;
        // Only the folder the notice belongs to takes it; its group view has nothing to show.
        for (const modTabellaCartelle::Cartella& c : modTabellaCartelle::Cartelle())
            if (chiaveOggetto == QLatin1StringView(c.Servizio) && mChiaveVisualizzata == QLatin1StringView(c.Nodo))
                mVista->DocumentoSpostato(coda, id, nodo);
    });
}

void frmConsole::mobjServizio_Avanzamento(const QString& chiaveOggetto, const QString& attivita, qint32 fatti, qint32 totale)
{
    if (mVista)
        mVista->Avanzamento(chiaveOggetto, attivita, fatti, totale);
}

void frmConsole::Mostra() { show(); }

void frmConsole::Nascondi() { hide(); }

void frmConsole::Termina()
{
    modTraccia::Proteggi("frmConsole_Termina", [&] {
        mVista.reset(); // saves its layout while the layout document is still there
        mInfoSistema->Termina();
        PxImpostazioni::SalvaDisposizione(objectName(), {saveGeometry(), saveState(), std::exchange(mChiaveVisualizzata, {})});
    });
}

void frmConsole::ConfiguraPulsanti() { AbilitaDocumenti(); }

void frmConsole::ConfiguraPulsantiServer()
{
    modTraccia::Proteggi("ConfiguraPulsantiServer", [&] {
        // The state code of the node's service, from its state XML; none for the server and lists.
        const QString oggetto = modComandiServizio::ServizioDelNodo(mChiaveVisualizzata);
        const PxSrvServer* server = mContesto.Server();
        const PxSrvServizio* servizio = server && !oggetto.isEmpty() ? server->Servizio(oggetto) : nullptr;
        const int codice = servizio ? modComandiServizio::CodiceStato(servizio->StatoXml()) : -1;
        const bool raggiungibile = server && server->Raggiungibile() && !server->SoloLettura();
        mAvviaServizio->setEnabled(raggiungibile && servizio && modComandiServizio::Avviabile(codice));
        mSospendiServizio->setEnabled(raggiungibile && servizio && modComandiServizio::Sospendibile(codice));
    });
}

void frmConsole::AvviaServizio()
{
    modTraccia::Proteggi("AvviaServizio", [&] {
        PxSrvServer* server = mContesto.Server();
        const QString oggetto = modComandiServizio::ServizioDelNodo(mChiaveVisualizzata);
        if (PxSrvServizio* s = server && !oggetto.isEmpty() ? server->Servizio(oggetto) : nullptr)
            s->Avvia(this, [this](const PxRisposta& r) {
                if (!r.Riuscita())
                    MostraMessaggio(mContesto.Testi().LoadDllString(8021) + QStringLiteral(": ") + r.Testo);
            });
    });
}

void frmConsole::SospendiServizio()
{
    modTraccia::Proteggi("SospendiServizio", [&] {
        PxSrvServer* server = mContesto.Server();
        const QString oggetto = modComandiServizio::ServizioDelNodo(mChiaveVisualizzata);
        if (!server || oggetto.isEmpty() || !server->Servizio(oggetto))
            return;
        // The documents in work in the folders the service works on, from their counters.
        qsizetype documenti = 0;
        for (const QString& chiave : modComandiServizio::CartelleDelServizio(oggetto)) {
            const PxSrvServizio* stato = server->Servizio(chiave);
            if (const modTabellaCartelle::Cartella* cartella = modTabellaCartelle::Trova(chiave); cartella && stato)
                documenti += modComandiServizio::DocumentiInLavorazione(*cartella, stato->StatoXml());
        }
        if (documenti > 0)
            ConfermaSospensione(oggetto, documenti);
        else
            Sospendi(oggetto);
    });
}

void frmConsole::ConfermaSospensione(const QString& oggetto, qsizetype documenti)
{
    const PxConsoleResDll& testi = mContesto.Testi();
    auto* domanda = new QMessageBox(QMessageBox::Question, testi.LoadDllString(4012),
                                    testi.LoadDllString(8080) + u' ' + QLocale().toString(documenti) + u'\n'
                                        + testi.LoadDllString(8081),
                                    QMessageBox::Yes | QMessageBox::No, this);
    domanda->setObjectName(QStringLiteral("msgConfermaSospensione"));
    domanda->setDefaultButton(QMessageBox::No);
    domanda->setAttribute(Qt::WA_DeleteOnClose);
    connect(domanda, &QMessageBox::finished, this, [this, oggetto](int scelta) {
        if (scelta == QMessageBox::Yes)
            Sospendi(oggetto);
    });
    domanda->open();
}

void frmConsole::Sospendi(const QString& oggetto)
{
    modTraccia::Proteggi("Sospendi", [&] {
        PxSrvServer* server = mContesto.Server();
        if (PxSrvServizio* s = server ? server->Servizio(oggetto) : nullptr)
            s->Sospendi(this, [this](const PxRisposta& r) {
                if (!r.Riuscita())
                    MostraMessaggio(mContesto.Testi().LoadDllString(8021) + QStringLiteral(": ") + r.Testo);
            });
    });
}

QList<QAction*> frmConsole::AzioniContestoElenco() const
{
    QList<QAction*> azioni = mBarra->AzioniVista();
    while (!azioni.isEmpty() && azioni.constFirst()->isSeparator())
        azioni.removeFirst();
    for (const int id : {IdAggiorna, int(clsSrvVista::IdSelezionaTutto), int(clsSrvVista::IdInvertiSelezione)})
        azioni << mComandi.value(id);
    return azioni;
}

QList<QAction*> frmConsole::AzioniContestoNodo() const
{
    QList<QAction*> azioni{mAvviaServizio, mSospendiServizio};
    if (QAction* prova = mBarra->Azione(clsSrvServizi::IdPaginaDiProva))
        azioni << prova;
    return azioni << mComandi.value(IdAggiorna);
}

void frmConsole::MenuContestoElenco(const QPoint& dove)
{
    modTraccia::Proteggi("MenuContestoElenco", [&] {
        auto* menu = new QMenu(this);
        menu->setObjectName(QStringLiteral("mnuContestoElenco"));
        menu->setAttribute(Qt::WA_DeleteOnClose);
        // The view's commands, then the list's.
        for (QAction* a : AzioniContestoElenco()) {
            if (a == mComandi.value(IdAggiorna) && !menu->isEmpty())
                menu->addSeparator();
            menu->addAction(a);
        }
        menu->popup(dove);
    });
}

void frmConsole::MenuContestoNodo(QTreeWidgetItem* nodo, const QPoint& dove)
{
    modTraccia::Proteggi("MenuContestoNodo", [&] {
        // The menu's commands act on the node on display: the node clicked becomes it now.
        QTreeWidget* albero = mPosizione->Albero();
        albero->setCurrentItem(nodo);
        const QString chiave = frmPosizione::ChiaveNodo(nodo);
        if (chiave != mChiaveVisualizzata)
            VisualizzaServer(nodo->text(0), chiave);
        auto* menu = new QMenu(this);
        menu->setObjectName(QStringLiteral("mnuContestoNodo"));
        menu->setAttribute(Qt::WA_DeleteOnClose);
        const QList<QAction*> azioni = AzioniContestoNodo();
        for (QAction* a : azioni) {
            if (a == mComandi.value(IdAggiorna))
                menu->addSeparator();
            menu->addAction(a);
        }
        menu->popup(dove);
    });
}

void frmConsole::NascondiBarreVuote()
{
    for (QToolBar* barra : findChildren<QToolBar*>(Qt::FindDirectChildrenOnly)) {
        const QList<QAction*> azioni = barra->actions();
        const bool vuota = std::none_of(azioni.cbegin(), azioni.cend(), [](const QAction* a) {
            return a->isVisible() && !a->isSeparator();
        });
        // Only a bar hidden here comes back by itself: the operator may have closed one.
        if (vuota && !barra->isHidden()) {
            barra->setProperty("nascostaVuota", true);
            barra->hide();
        } else if (!vuota && barra->property("nascostaVuota").toBool()) {
            barra->setProperty("nascostaVuota", false);
            barra->show();
        }
    }
}

void frmConsole::SegnaFuoco(QWidget* fuoco)
{
    QWidget* pannello = nullptr;
    for (QWidget* w = fuoco; w && w != this; w = w->parentWidget()) {
        if (w == mxrpContenuto || (qobject_cast<QDockWidget*>(w) && w->parentWidget() == this)) {
            pannello = w;
            break;
        }
    }
    // Focus that leaves for another window (a menu, a dialog) leaves the mark where it was.
    if (!pannello && (!fuoco || fuoco->window() != this))
        return;
    if (pannello == mPannelloAttivo)
        return;
    for (QWidget* w : {mPannelloAttivo, pannello}) {
        if (!w)
            continue;
        w->setProperty("fuoco", w == pannello);
        w->style()->unpolish(w);
        w->style()->polish(w);
        w->update();
    }
    mPannelloAttivo = pannello;
}

QString frmConsole::NomeLog(const QString& file) const
{
    // The service that writes the file, by the log its state names.
    const PxSrvServer* server = mContesto.Server();
    if (!server)
        return {};
    // By path, not by QFileInfo's equality, which holds for two files that do not exist yet.
    const QString cercato = QDir::cleanPath(QFileInfo(file).absoluteFilePath());
    for (const modAlberoServer::Nodo& n : modAlberoServer::Nodi()) {
        if (n.Tipo != modAlberoServer::Genere::Servizio && n.Tipo != modAlberoServer::Genere::Cartella)
            continue;
        const PxSrvServizio* s = server->Servizio(QString::fromLatin1(n.Oggetto));
        pugi::xml_document stato;
        if (!s || !s->LeggiStato(stato))
            continue;
        const QString scritto = QString::fromUtf8(stato.document_element().child_value("FileLog")).trimmed();
        if (scritto.isEmpty() || QDir::cleanPath(QFileInfo(server->PercorsoLocale(scritto)).absoluteFilePath()) != cercato)
            continue;
        const QTreeWidgetItem* nodo = mPosizione->Nodo(QString::fromLatin1(n.Chiave));
        return nodo ? nodo->text(0) : mContesto.Testi().LoadDllString(n.Testo);
    }
    return {};
}

void frmConsole::AggiornaBarraComandi()
{
    mStato->setText(mContesto.Stato().Descrizione());
    mStato->setEnabled(!mContesto.Occupato());
    AbilitaDocumenti();
}

void frmConsole::AbilitaDocumenti()
{
    if (mVista)
        mVista->AbilitaPulsanti(mVista->NumeroSelezionati() > 0 && !mContesto.Occupato());
}

qsizetype frmConsole::AggiornaConteggi()
{
    const PxConsoleResDll& testi = mContesto.Testi();
    const qsizetype selezionati = mVista ? mVista->NumeroSelezionati() : 0;
    mConteggi->setText(testi.LoadDllString(8014) + u' ' + QLocale().toString(mModello->NumeroRighe()) + QStringLiteral("   ")
                       + testi.LoadDllString(8015) + u' ' + QLocale().toString(selezionati));
    return selezionati;
}

void frmConsole::VisualizzaServer(const QString& caption, const QString& chiave)
{
    modTraccia::Proteggi("VisualizzaServer", [&] {
        mVista.reset();
        mAttesa->setVisible(false); // what the last view held went with it
        mChiaveVisualizzata = chiave;
        mPosizione->ImpostaChiaveVisualizzata(chiave);
        setWindowTitle(mContesto.Testi().LoadDllString(8000) + QStringLiteral(" - ") + caption);
        // The node's sheet; the pane hands its log on to the log pane.
        mProprieta->VisualizzaServer(caption, chiave);
        mVista = modViste::Crea(*mAmbiente, chiave);
        clsSrvVista* vista = mVista.get();
        connect(vista, &clsSrvVista::ContenutoCambiato, this, [this] {
            // The selection is counted once for both.
            const qsizetype selezionati = AggiornaConteggi();
            if (mVista)
                mVista->AbilitaPulsanti(selezionati > 0 && !mContesto.Occupato());
        });
        connect(vista, &clsSrvVista::InAttesaCambiata, this, [this](qsizetype n) {
            mAttesa->setText(QLocale().toString(n) + u' ' + mContesto.Testi().LoadDllString(8018));
            mAttesa->setVisible(n > 0);
        });
        connect(vista, &clsSrvVista::Messaggio, this, &frmConsole::MostraMessaggio);
        connect(vista, &clsSrvVista::MostraDocumento, this, &frmConsole::MostraDocumento);
        connect(vista, &clsSrvVista::OggettoCorrenteCambiato, this, [this] {
            if (!mVista)
                return;
            PxOggettoVista oggetto = mVista->OggettoCorrente();
            if (oggetto.Collegato)
                mProprieta->Collegato(std::move(oggetto));
            else
                mProprieta->Oggetto(std::move(oggetto));
        });
        connect(vista, &clsSrvVista::Prova, this, &frmConsole::ApriProva);
        if (auto* catalogo = qobject_cast<clsSrvCatalogo*>(vista))
            connect(catalogo, &clsSrvCatalogo::ProvaOggetto, this, &frmConsole::ApriProvaOggetto);
        if (auto* servizi = qobject_cast<clsSrvServizi*>(vista))
            connect(servizi, &clsSrvServizi::PaginaDiProva, this, &frmConsole::InviaPaginaDiProva);
        vista->Blocca(mComandi.value(IdBlocca)->isChecked());
        vista->Avvia();
        AggiornaConteggi();
        ConfiguraPulsantiServer();
        NascondiBarreVuote();
    });
}

void frmConsole::InviaPaginaDiProva(const QStringList& chiaviStampanti)
{
    modTraccia::Proteggi("InviaPaginaDiProva", [&] {
        const PxConsoleResDll& testi = mContesto.Testi();
        PxSrvServer* server = mContesto.Server();
        PxSrvServizio* stampe = server ? server->Servizio(QStringLiteral("PxSrvStampe")) : nullptr;
        if (!stampe || stampe->CartellaIngresso().isEmpty()) {
            MostraMessaggio(testi.LoadDllString(8037) + QStringLiteral(" ") + testi.LoadDllString(8022));
            return;
        }
        for (const QString& chiave : chiaviStampanti) {
            // Each job is waited for from before it is handed over, so that the service's word
            // on it is heard however fast it comes; "delivered" is said only once it took it.
            auto* attesa = new PxAttesaLavoro(stampe, this);
            connect(attesa, &PxAttesaLavoro::Preso, this, [this](const QString& base) { EsitoProva(8036, base); });
            connect(attesa, &PxAttesaLavoro::Respinto, this,
                    [this](const QString& base, const QString& motivo) { EsitoProva(8075, base, motivo); });
            connect(attesa, &PxAttesaLavoro::Scaduto, this, [this](const QString& base) { EsitoProva(8076, base); });
            connect(attesa, &PxAttesaLavoro::Scaduto, attesa, &QObject::deleteLater);
            connect(attesa, &PxAttesaLavoro::Preso, attesa, &QObject::deleteLater);
            connect(attesa, &PxAttesaLavoro::Respinto, attesa, &QObject::deleteLater);
            modContenuto::InviaPaginaDiProva(server, chiave, testi, attesa, [this, attesa](const PxRisposta& r) {
                if (r.Riuscita()) {
                    attesa->Attendi(r.Testo, frmInvioProva::AttesaPredefinita);
                    return;
                }
                attesa->deleteLater();
                MostraMessaggio(mContesto.Testi().LoadDllString(8037) + u' ' + r.Testo);
            });
        }
    });
}

void frmConsole::ApriProva(qint32 id)
{
    modTraccia::Proteggi("ApriProva", [&] {
        frmInvioProva* modulo = nullptr;
        switch (id) {
        case 5310: modulo = new frmInvioProvaEmail(mContesto, QStringLiteral("PxSrvEmail"), this); break;
        case 5311: modulo = new frmInvioProvaFax(mContesto, QStringLiteral("PxSrvFax"), this); break;
        // The publication service publishes by e-mail: its test is the e-mail form's.
        case 5312: modulo = new frmInvioProvaEmail(mContesto, QStringLiteral("PxSrvPbl"), this); break;
        case 5313: modulo = new frmInvioProvaFax(mContesto, QStringLiteral("PxSrvPFax"), this); break;
        case 5314: modulo = new frmInvioProvaEFax(mContesto, this); break;
        default: return;
        }
        MostraProva(modulo);
    });
}

void frmConsole::ApriProvaOggetto(qint32 id, const QString& catalogo, const QString& chiave)
{
    PxSrvCatalogo* oggetti = mContesto.Server() ? mContesto.Server()->Catalogo(catalogo) : nullptr;
    if (!oggetti)
        return;
    // The format's description comes from the server; the form opens with it.
    oggetti->Oggetto(chiave, this, [this, id, catalogo, chiave](const PxRisposta& r) {
        modTraccia::Proteggi("ApriProvaOggetto", [&] {
            if (!r.Riuscita()) {
                MostraMessaggio(mContesto.Testi().LoadDllString(8021) + QStringLiteral(": ") + r.Testo);
                return;
            }
            if (catalogo == u"PxSrvFirme") {
                auto* modulo = new frmInvioProvaEmail(mContesto, QStringLiteral("PxSrvEmail"), this);
                modulo->Firma = chiave;
                MostraProva(modulo);
                return;
            }
            pugi::xml_document doc;
            const QByteArray xml = r.Testo.toUtf8();
            doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size()));
            const pugi::xml_node p = doc.document_element().child("Proprieta");
            modProva::Formato f;
            f.Key = QString::fromUtf8(p.child_value("Key")).trimmed();
            f.Descrizione = QString::fromUtf8(p.child_value("Descrizione")).trimmed();
            f.Id = QString::fromUtf8(p.child_value("Id")).trimmed();
            f.RigheModulo = p.child("RigheModulo").text().as_int(70);
            f.Lingua = p.child("Lingua").child("Codice").text().as_int(0);
            if (f.Key.isEmpty())
                f.Key = chiave;
            if (id == 5311) {
                auto* modulo = new frmInvioProvaFax(mContesto, QStringLiteral("PxSrvFax"), this);
                modulo->Formato = f;
                MostraProva(modulo);
            } else {
                auto* modulo = new frmInvioProvaEmail(mContesto, QStringLiteral("PxSrvEmail"), this);
                modulo->Formato = f;
                MostraProva(modulo);
            }
        });
    });
}

void frmConsole::MostraProva(frmInvioProva* modulo)
{
    modTraccia::Proteggi("MostraProva", [&] {
        modulo->setAttribute(Qt::WA_DeleteOnClose);
        connect(modulo, &frmInvioProva::Consegnato, this, [this](const QString& base) { EsitoProva(8036, base); });
        connect(modulo, &frmInvioProva::Respinto, this,
                [this](const QString& base, const QString& motivo) { EsitoProva(8075, base, motivo); });
        connect(modulo, &frmInvioProva::NonPreso, this, [this](const QString& base) { EsitoProva(8076, base); });
        modulo->open();
    });
}

void frmConsole::EsitoProva(qint32 testo, const QString& base, const QString& motivo)
{
    QString riga = mContesto.Testi().LoadDllString(testo) + u' ' + QFileInfo(base).fileName();
    if (!motivo.isEmpty())
        riga += QStringLiteral(": ") + motivo;
    statusBar()->showMessage(riga, 15000);
    modTraccia::Scrivi(1, riga);
}

void frmConsole::MostraMessaggio(const QString& testo)
{
    statusBar()->showMessage(testo, 10000);
    auto* avviso = new QMessageBox(QMessageBox::Warning, mContesto.Testi().LoadDllString(8000), testo, QMessageBox::Ok, this);
    avviso->setAttribute(Qt::WA_DeleteOnClose);
    avviso->open();
}

void frmConsole::MostraDocumento(const QString& xml)
{
    // "Visualizza documento": the document's body and script in their viewers, the body in front.
    modTraccia::Proteggi("MostraDocumento", [&] {
        pugi::xml_document doc;
        const QByteArray testo = xml.toUtf8();
        if (!doc.load_buffer(testo.constData(), static_cast<size_t>(testo.size())))
            return;
        const pugi::xml_node proprieta = doc.document_element().child("Proprieta");
        mCorpo->CaricaCorpo(proprieta);
        mScript->CaricaScript(proprieta);
        findChild<QDockWidget*>(QStringLiteral("pnlCorpo"))->raise();
    });
}

void frmConsole::closeEvent(QCloseEvent* evento)
{
    // Closing only hides the window: the engine's next tick closes the console properly.
    evento->ignore();
    hide();
}

void frmConsole::FotografaEChiudi(const QString& cartella)
{
    mCartellaFotografie = cartella;
}

void frmConsole::Fotografa()
{
    const QString cartella = std::exchange(mCartellaFotografie, {});
    QDir().mkpath(cartella);
    const auto salva = [cartella](QWidget* finestra, const char* nome) {
        const QString file = QDir(cartella).filePath(QString::fromLatin1(nome));
        const bool ok = finestra->grab().save(file);
        std::printf("%s %s\n", ok ? "saved" : "FAILED", qPrintable(file));
    };
    const PxConsoleResDll& testi = mContesto.Testi();
    const auto vai = [this, &testi](int caption) {
        const auto trovati = mPosizione->Albero()->findItems(testi.LoadDllString(caption), Qt::MatchExactly | Qt::MatchRecursive);
        if (!trovati.isEmpty())
            mPosizione->Albero()->setCurrentItem(trovati.first());
    };
    const auto pannello = [this](const char* nome) { return findChild<QDockWidget*>(QString::fromLatin1(nome)); };
    // The first document row whose cells hold `testo` (any row when empty), in the groups too.
    const auto documento = [this](const QString& testo) {
        for (int g = 0; g < mModello->rowCount(); ++g) {
            const QModelIndex gi = mModello->index(g, 0);
            for (int r = 0; r < std::max(1, mModello->rowCount(gi)); ++r) {
                const QModelIndex d = mModello->rowCount(gi) ? mModello->index(r, 0, gi) : gi;
                for (int c = 0; c < mModello->columnCount(); ++c)
                    if (testo.isEmpty() || d.siblingAtColumn(c).data().toString().contains(testo))
                        return d;
            }
        }
        return QModelIndex();
    };
    // Each step runs its wait after the one before.
    struct Passo
    {
        int Attesa;
        std::function<void()> Fai;
    };
    auto passi = std::make_shared<std::vector<Passo>>(std::vector<Passo>{
        // The fax folder, grouped by stage, the first group open with a linked document shown.
        {0, [vai] { vai(212); }},
        {1500, [this] {
             // The groups show the stages' colours; open are a rejected stage (red) and the smallest
             // stage with a document that has a linked document, opened too.
             mxrpContenuto->collapseAll();
             QModelIndex scelto, verde;
             int piccolo = 1 << 30;
             for (int g = 0; g < mModello->rowCount(); ++g) {
                 const QModelIndex gi = mModello->index(g, 0);
                 const QColor colore = gi.data(Qt::ForegroundRole).value<QColor>();
                 if (colore == QColor(255, 0, 0) && mModello->rowCount(gi) < 6)
                     mxrpContenuto->expand(gi);
                 if (colore == QColor(0, 192, 0) && !verde.isValid())
                     verde = gi;
                 for (int r = 0; r < mModello->rowCount(gi) && mModello->rowCount(gi) < piccolo; ++r)
                     if (const QModelIndex d = mModello->index(r, 0, gi); mModello->hasChildren(d)) {
                         scelto = d;
                         piccolo = mModello->rowCount(gi);
                     }
             }
             if (scelto.isValid()) {
                 mxrpContenuto->expand(scelto.parent());
                 mxrpContenuto->expand(scelto);
                 mxrpContenuto->selectionModel()->select(scelto, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
                 mxrpContenuto->selectionModel()->setCurrentIndex(scelto, QItemSelectionModel::NoUpdate);
             }
             mxrpContenuto->scrollToTop();
             if (verde.isValid())
                 mxrpContenuto->scrollTo(verde, QAbstractItemView::PositionAtTop);
         }},
        // The sheet of the chosen fax document, once the pane has loaded it.
        {600, [=, this] {
             salva(this, "console.png");
             salva(mProprieta, "proprieta-fax.png");
             vai(202);
         }},
        {800, [=, this] {
             salva(this, "stampe.png");
             // The log pane on a service's log: the fax worker's, which the demo has written.
             vai(219);
             resizeDocks({pannello("pnlLog")}, {330}, Qt::Vertical);
         }},
        {800, [=, this] {
             salva(mLog, "log.png");
             salva(mProprieta, "proprieta-servizio.png");
             vai(201); // a front-page format's sheet
         }},
        {1200, [this] {
             if (const QModelIndex primo = mModello->index(0, 0); primo.isValid())
                 mxrpContenuto->setCurrentIndex(primo);
         }},
        {600, [=, this] {
             salva(mProprieta, "proprieta-formato.png");
             vai(229); // a signature in its viewer
         }},
        {1200, [this] {
             if (const QModelIndex primo = mModello->index(3, 0); primo.isValid())
                 mxrpContenuto->setCurrentIndex(primo);
         }},
        {700, [=, this] {
             pannello("pnlFirma")->raise();
             salva(mFirma, "firma.png");
             vai(206); // a label printer's job in the body viewer
         }},
        {1500, [=, this] {
             if (const QModelIndex d = documento(QStringLiteral("Etichette")); d.isValid()) {
                 mxrpContenuto->scrollTo(d);
                 mxrpContenuto->setCurrentIndex(d);
             }
         }},
        {900, [=, this] {
             pannello("pnlCorpo")->raise();
             salva(mCorpo, "corpo.png");
             pannello("pnlScript")->raise();
             salva(mScript, "script.png");
         }},
        {0, [=, this, &testi] {
             // The machine's load, after a few samples.
             pannello("pnlInfoSistema")->raise();
             mInfoSistema->resize(mLog->size());
             salva(mInfoSistema, "infosistema.png");
             // The three test forms as an operator first opens them.
             frmInvioProvaFax fax(mContesto);
             fax.show();
             salva(&fax, "prova-fax.png");
             frmInvioProvaEFax efax(mContesto);
             efax.show();
             salva(&efax, "prova-efax.png");
             frmInvioProvaEmail email(mContesto);
             email.show();
             salva(&email, "prova-email.png");
             frmApertura apertura(mContesto.Server());
             for (int i = 0; i < apertura.Massimo() / 2; ++i)
                 apertura.Avanzamento(testi.LoadDllString(8006) + QStringLiteral(" ") + testi.LoadDllString(212)
                                      + QStringLiteral(" ") + testi.LoadDllString(8007));
             apertura.show();
             salva(&apertura, "apertura.png");
             frmChiusura chiusura;
             chiusura.show();
             salva(&chiusura, "chiusura.png");
             close();
         }},
    });
    auto prossimo = std::make_shared<std::function<void(size_t)>>();
    *prossimo = [this, passi, prossimo](size_t i) {
        if (i >= passi->size()) {
            *prossimo = nullptr; // the step list and this function let go of each other
            return;
        }
        QTimer::singleShot((*passi)[i].Attesa, this, [passi, prossimo, i] {
            (*passi)[i].Fai();
            if (*prossimo)
                (*prossimo)(i + 1);
        });
    };
    (*prossimo)(0);
}

void frmConsole::showEvent(QShowEvent* evento)
{
    QMainWindow::showEvent(evento);
    // The docks' sizes hold only once the window has its own: the panes are put back again
    // at the first show.
    if (const QByteArray pannelli = std::exchange(mPannelliSalvati, {}); !pannelli.isEmpty())
        restoreState(pannelli);
    if (std::exchange(mPrimaDisposizione, false)) {
        // The first time, the list gets the room; the panes can be widened by hand.
        resizeDocks({findChild<QDockWidget*>(QStringLiteral("pnlPosizione")), findChild<QDockWidget*>(QStringLiteral("pnlProprieta"))},
                    {270, 330}, Qt::Horizontal);
        resizeDocks({findChild<QDockWidget*>(QStringLiteral("pnlLog"))}, {140}, Qt::Vertical);
    }
    if (!mCartellaFotografie.isEmpty())
        QTimer::singleShot(0, this, &frmConsole::Fotografa);
}
