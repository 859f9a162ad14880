#include "frmConsole.h"

#include "PxImmagini.h"
#include "PxImpostazioni.h"
#include "PxSrvConsole.h"
#include "PxSrvServer.h"
#include "frmPosizione.h"
#include "modTraccia.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QLabel>
#include <QSettings>
#include <QStatusBar>
#include <QTreeView>

frmConsole::frmConsole(PxSrvConsole& engine, QWidget* parent)
    : QMainWindow(parent),
      mEngine(engine),
      mPosizione(new frmPosizione(engine)),
      mxrpContenuto(new QTreeView),
      mStato(new QLabel)
{
    setObjectName(QStringLiteral("frmConsole"));
    const PxConsoleResDll& testi = mEngine.Risorse();
    setWindowTitle(testi.LoadDllString(8000));
    setWindowIcon(PxImmagini::Istanza().Icona(modIcone::Server));
    resize(1200, 760);
    setDockOptions(QMainWindow::AnimatedDocks | QMainWindow::AllowNestedDocks | QMainWindow::AllowTabbedDocks);

    mxrpContenuto->setObjectName(QStringLiteral("xrpContenuto"));
    mxrpContenuto->setUniformRowHeights(true);
    mxrpContenuto->setRootIsDecorated(false);
    mxrpContenuto->setAlternatingRowColors(mEngine.Impostazioni().AlternateRow);
    setCentralWidget(mxrpContenuto);

    // The panes' places; each later pane takes its dock as it lands.
    AggiungiPannello(7000, "pnlPosizione", mPosizione, Qt::LeftDockWidgetArea);
    QDockWidget* proprieta = AggiungiPannello(7001, "pnlProprieta", new QWidget, Qt::RightDockWidgetArea);
    QDockWidget* log = AggiungiPannello(7004, "pnlLog", new QWidget, Qt::BottomDockWidgetArea);
    QDockWidget* sistema = AggiungiPannello(7005, "pnlInfoSistema", new QWidget, Qt::BottomDockWidgetArea);
    tabifyDockWidget(log, sistema);
    log->raise();
    resizeDocks({findChild<QDockWidget*>(QStringLiteral("pnlPosizione")), proprieta}, {280, 320}, Qt::Horizontal);
    resizeDocks({log}, {180}, Qt::Vertical);

    statusBar()->addPermanentWidget(mStato);
    // Where the operator left the window and its panes.
    const auto registro = PxImpostazioni::ApriRegistro();
    restoreGeometry(registro->value(QStringLiteral("frmConsole/Geometria")).toByteArray());
    restoreState(registro->value(QStringLiteral("frmConsole/Pannelli")).toByteArray());
    connect(mEngine.ConsoleEventi(), &PxConsoleEventi::CambioStato, this, [this] { AggiornaBarraComandi(); });
    AggiornaBarraComandi();
    mPosizione->ImpostaNavigazione([this](const QString& caption, const QString& chiave) {
        VisualizzaServer(caption, chiave);
    });
}

QDockWidget* frmConsole::AggiungiPannello(int titolo, const char* nome, QWidget* contenuto, Qt::DockWidgetArea area)
{
    auto* dock = new QDockWidget(mEngine.Risorse().LoadDllString(titolo), this);
    dock->setObjectName(QString::fromLatin1(nome));
    dock->setWidget(contenuto);
    dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    addDockWidget(area, dock);
    return dock;
}

void frmConsole::Inizializza(frmApertura* apertura)
{
    modTraccia::Proteggi("frmConsole_Inizializza", [&] {
        mPosizione->Inizializza(apertura);
        if (const PxSrvServer* server = mEngine.SrvServer())
            statusBar()->showMessage(server->Identificativo() + QStringLiteral("  —  ") + server->Cartella());
    });
}

void frmConsole::Mostra() { show(); }

void frmConsole::Nascondi() { hide(); }

void frmConsole::Termina()
{
    modTraccia::Proteggi("frmConsole_Termina", [&] {
        mChiaveVisualizzata.clear();
        const auto registro = PxImpostazioni::ApriRegistro();
        registro->setValue(QStringLiteral("frmConsole/Geometria"), saveGeometry());
        registro->setValue(QStringLiteral("frmConsole/Pannelli"), saveState());
    });
}

void frmConsole::ConfiguraPulsanti() {}

void frmConsole::ConfiguraPulsantiServer() {}

void frmConsole::AggiornaBarraComandi()
{
    mStato->setText(mEngine.Stato().Descrizione());
    mStato->setEnabled(!mEngine.Occupato());
}

void frmConsole::VisualizzaServer(const QString& caption, const QString& chiave)
{
    modTraccia::Proteggi("VisualizzaServer", [&] {
        mChiaveVisualizzata = chiave;
        mPosizione->ImpostaChiaveVisualizzata(chiave);
        setWindowTitle(mEngine.Risorse().LoadDllString(8000) + QStringLiteral(" - ") + caption);
    });
}

void frmConsole::closeEvent(QCloseEvent* evento)
{
    // Closing only hides the window: the engine's next tick closes the console properly.
    evento->ignore();
    hide();
}
