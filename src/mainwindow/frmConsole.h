#pragma once

#include "IFrmConsole.h"
#include "clsSrvVista.h"

#include <QDeadlineTimer>
#include <QMainWindow>

#include <memory>

class PxBarraComandi;
class PxContesto;
class PxModelloContenuto;
class QAction;
class QDockWidget;
class QLabel;
class QMenu;
class QToolBar;
class QTreeView;
class QTreeWidgetItem;
class frmInvioProva;
class frmInfoSistema;
class frmLog;
class frmProprieta;
class frmCorpoDocumento;
class frmScriptDocumento;
class frmVisFirma;
class frmPosizione;

// The main window: it assembles the panes and owns the content list, one command-bar set and
// the status bar; the live view fills them. The server tree sits on the left, the property,
// log and system-information panes around the list. Each service's notices reach one handler
// here, which refreshes the tree and passes them to the live view. Closing the window hides
// it; the engine notices and closes the console.
class frmConsole : public QMainWindow, public IFrmConsole
{
    Q_OBJECT

public:
    explicit frmConsole(PxContesto& contesto, QWidget* parent = nullptr);
    ~frmConsole() override;

    // Once shown, saves pictures of this window (the fax folder, the printing service), the
    // opening window and the closing window into `cartella` (for the docs), then closes.
    void FotografaEChiudi(const QString& cartella);

    void Inizializza(frmApertura* apertura) override;
    void Mostra() override;
    void Nascondi() override;
    bool Visibile() const override { return isVisible(); }
    void Termina() override;
    void ConfiguraPulsanti() override;
    void ConfiguraPulsantiServer() override;
    void AggiornaBarraComandi() override;

    // Releases the live view and makes the view of `chiave` live.
    void VisualizzaServer(const QString& caption, const QString& chiave);
    QString ChiaveVisualizzata() const { return mChiaveVisualizzata; }
    frmPosizione* Posizione() const { return mPosizione; }
    frmLog* Log() const { return mLog; }
    clsSrvVista* Vista() const { return mVista.get(); }
    QTreeView* Contenuto() const { return mxrpContenuto; }
    PxModelloContenuto* Modello() const { return mModello; }
    PxBarraComandi* Barra() const { return mBarra; }
    // The list-wide commands (5100, 5101, refresh, freeze, ...) by id.
    QAction* Comando(int id) const;
    // The node commands: start and suspend the service of the node on display, and exit.
    QAction* ComandoAvvia() const { return mAvviaServizio; }
    QAction* ComandoSospendi() const { return mSospendiServizio; }
    QAction* ComandoEsci() const { return mEsci; }
    // What the context menu of the content list offers: the live view's commands, as its bar
    // holds them, then the list's own.
    QList<QAction*> AzioniContestoElenco() const;
    // What the context menu of the tree offers for the node on display.
    QList<QAction*> AzioniContestoNodo() const;
    // The pane holding the keyboard focus (a dock, or the content list); nullptr when the
    // focus is elsewhere. It carries the property "fuoco" that draws its mark.
    QWidget* PannelloAttivo() const { return mPannelloAttivo; }
    // Suspends the service of the node on display; asks first when it has documents in work.
    void SospendiServizio();
    void AvviaServizio();

protected:
    void closeEvent(QCloseEvent* evento) override;
    void showEvent(QShowEvent* evento) override;

private:
    QDockWidget* AggiungiPannello(int titolo, const char* nome, QWidget* contenuto, Qt::DockWidgetArea area);
    void CreaComandi();
    void CollegaServer();
    // The server was lost: every node says so, commands wait, the status bar counts down to
    // the next try. Found again: states re-read, the view reloaded where the operator was.
    void ServerPerso(const QString& motivo);
    void ServerRiprova(qint32 millisecondi);
    void ServerRitrovato();
    void MostraContoAllaRovescia();
    // Commands follow whether the server answers and whether this console's role may act.
    void AggiornaPermessi();
    // One handler per service event source.
    void mobjServizio_CambioStato(const QString& chiaveOggetto);
    void mobjServizio_DocumentoSpostato(const QString& chiaveOggetto, qint32 coda, const QString& id, const QString& nodo);
    void mobjServizio_Avanzamento(const QString& chiaveOggetto, const QString& attivita, qint32 fatti, qint32 totale);
    // Shows the row and selection counts; returns the selection's.
    qsizetype AggiornaConteggi();
    void AbilitaDocumenti();
    void MostraMessaggio(const QString& testo);
    void MostraDocumento(const QString& xml);
    void RaggruppaPer(int colonna);
    // Writes the test page of each printer (by its key) into the printing service's input
    // folder, off the interface thread; says how it went in the status bar and the log.
    void InviaPaginaDiProva(const QStringList& chiaviStampanti);
    // Opens the test form of a folder's test command (5310-5314), window-modal.
    void ApriProva(qint32 id);
    // The test form of a format or signature, preset with it.
    void ApriProvaOggetto(qint32 id, const QString& catalogo, const QString& chiave);
    void MostraProva(frmInvioProva* modulo);
    // What became of a test job (text 8036 taken, 8075 set aside, 8076 not yet taken), in the
    // status bar and the log.
    void EsitoProva(qint32 testo, const QString& base, const QString& motivo = {});
    void PreparaMenuRaggruppa();
    // The context menus, at `dove` (global); the tree's is for `nodo`, made the node on display.
    void MenuContestoElenco(const QPoint& dove);
    void MenuContestoNodo(QTreeWidgetItem* nodo, const QPoint& dove);
    // A tool bar with nothing to show is hidden, and shown again once it has something.
    void NascondiBarreVuote();
    void SegnaFuoco(QWidget* fuoco);
    QString NomeLog(const QString& file) const;
    void Sospendi(const QString& oggetto);
    void ConfermaSospensione(const QString& oggetto, qsizetype documenti);

    void Fotografa();

    PxContesto& mContesto;
    QString mCartellaFotografie;
    frmPosizione* mPosizione;
    QTreeView* mxrpContenuto;
    PxModelloContenuto* mModello;
    QToolBar* mBarraVista;
    QMenu* mMenuComandi;
    QMenu* mMenuRaggruppa;
    PxBarraComandi* mBarra;
    std::unique_ptr<PxAmbienteVista> mAmbiente;
    std::unique_ptr<clsSrvVista> mVista;
    QHash<int, QAction*> mComandi;
    QAction* mAvviaServizio = nullptr;
    QAction* mSospendiServizio = nullptr;
    QAction* mEsci = nullptr;
    QWidget* mPannelloAttivo = nullptr;
    frmLog* mLog;
    frmProprieta* mProprieta;
    frmCorpoDocumento* mCorpo;
    frmScriptDocumento* mScript;
    frmVisFirma* mFirma;
    frmInfoSistema* mInfoSistema;
    QLabel* mConteggi;
    QLabel* mAttesa;
    QLabel* mStato;
    QLabel* mCollegamento; // shown while the server cannot be reached
    QTimer* mContoAllaRovescia;
    QDeadlineTimer mProssimoTentativo;
    QLabel* mRuolo; // shown when the server lets this console only read
    QLabel* mIdentita; // the server and its folder, under any passing message
    QString mChiaveVisualizzata;
    bool mPrimaDisposizione = false;
    QByteArray mPannelliSalvati; // restored again at the first show
};
