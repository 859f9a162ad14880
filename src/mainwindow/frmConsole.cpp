#include "frmConsole.h"

#include "PxImmagini.h"
#include "PxImpostazioni.h"
#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxIconResource.h"
#include "frmApertura.h"
#include "frmChiusura.h"
#include "PxSrvServer.h"
#include "frmPosizione.h"
#include "modTraccia.h"

#include <QCloseEvent>
#include <QDockWidget>
#include <QLabel>
#include <QSettings>
#include <QStatusBar>
#include <QTimer>
#include <QTreeView>
#include <QTreeWidget>
#include <QDir>

#include <cstdio>
#include <utility>

frmConsole::frmConsole(PxContesto& contesto, QWidget* parent)
    : QMainWindow(parent),
      mContesto(contesto),
      mPosizione(new frmPosizione(contesto)),
      mxrpContenuto(new QTreeView),
      mStato(new QLabel)
{
    setObjectName(QStringLiteral("frmConsole"));
    const PxConsoleResDll& testi = mContesto.Testi();
    setWindowTitle(testi.LoadDllString(8000));
    setWindowIcon(PxImmagini::Istanza().Icona(modIcone::Server));
    resize(1200, 760);
    setDockOptions(QMainWindow::AnimatedDocks | QMainWindow::AllowNestedDocks | QMainWindow::AllowTabbedDocks);

    mxrpContenuto->setObjectName(QStringLiteral("xrpContenuto"));
    mxrpContenuto->setUniformRowHeights(true);
    mxrpContenuto->setRootIsDecorated(false);
    mxrpContenuto->setAlternatingRowColors(mContesto.Impostazioni().AlternateRow);
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
    connect(&mContesto, &PxContesto::CambioStato, this, [this] { AggiornaBarraComandi(); });
    connect(&mContesto, &PxContesto::CambioOccupato, this, [this] { AggiornaBarraComandi(); });
    AggiornaBarraComandi();
    mPosizione->ImpostaNavigazione([this](const QString& caption, const QString& chiave) {
        VisualizzaServer(caption, chiave);
    });
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

void frmConsole::Inizializza(frmApertura* apertura)
{
    modTraccia::Proteggi("frmConsole_Inizializza", [&] {
        mPosizione->Inizializza(apertura);
        if (const PxSrvServer* server = mContesto.Server())
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
    mStato->setText(mContesto.Stato().Descrizione());
    mStato->setEnabled(!mContesto.Occupato());
}

void frmConsole::VisualizzaServer(const QString& caption, const QString& chiave)
{
    modTraccia::Proteggi("VisualizzaServer", [&] {
        mChiaveVisualizzata = chiave;
        mPosizione->ImpostaChiaveVisualizzata(chiave);
        setWindowTitle(mContesto.Testi().LoadDllString(8000) + QStringLiteral(" - ") + caption);
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
    // The printing service's node, the one the picture shows selected.
    const auto trovati = mPosizione->Albero()->findItems(testi.LoadDllString(202), Qt::MatchExactly | Qt::MatchRecursive);
    if (!trovati.isEmpty())
        mPosizione->Albero()->setCurrentItem(trovati.first());
    QTimer::singleShot(300, this, [this, salva, &testi] {
        salva(this, "console.png");
        frmApertura apertura(mContesto.Server());
        for (int i = 0; i < apertura.Massimo() / 2; ++i)
            apertura.Avanzamento(testi.LoadDllString(8006) + QStringLiteral(" ") + testi.LoadDllString(212) + QStringLiteral(" ")
                                 + testi.LoadDllString(8007));
        apertura.show();
        salva(&apertura, "apertura.png");
        frmChiusura chiusura;
        chiusura.show();
        salva(&chiusura, "chiusura.png");
        close();
    });
}

void frmConsole::showEvent(QShowEvent* evento)
{
    QMainWindow::showEvent(evento);
    if (!mCartellaFotografie.isEmpty())
        QTimer::singleShot(0, this, &frmConsole::Fotografa);
}
