#pragma once

#include "clsSrvVista.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>

class PxContesto;
class PxModelloProprieta;
class PxSrvServizio;
class QAction;
class QLabel;
class QTreeView;
class frmCorpoDocumento;
class frmLog;
class frmScriptDocumento;
class frmVisFirma;
namespace pugi { class xml_node; class xml_document; }

// The property pane: the sheet of the service node selected in the server tree or, when a
// document, format or signature is selected in the content list, that object's sheet. Sheets
// are built from their layout tables once per layout number and refreshed on a 100 ms timer;
// a burst of selections loads only the last one. Nothing shown can be edited; a value can be
// selected and copied (Ctrl+C), and an item holding a path opens it with the desktop's handler
// (button, Enter or F4): a folder, or a file of a document kind; nothing is ever run.
class frmProprieta : public QWidget
{
    Q_OBJECT

public:
    // A selected object: its key and how to ask the server for its description.
    using Riferimento = PxOggettoVista;

    explicit frmProprieta(PxContesto& contesto, QWidget* parent = nullptr);
    ~frmProprieta() override;

    // The log pane that shows the log of what is on display (may be null).
    void ImpostaLog(frmLog* log) { mLog = log; }
    // The viewers the pane feeds with the selected document's body and script and the selected
    // signature (each may be null).
    void ImpostaVisualizzatori(frmCorpoDocumento* corpo, frmScriptDocumento* script, frmVisFirma* firma);

    int IconWidth() const;
    const Riferimento& Oggetto() const { return mOggetto; }
    // Selects an object (an invalid one: none); its sheet is loaded on the next tick.
    void Oggetto(Riferimento oggetto);
    const Riferimento& Collegato() const { return mCollegato; }
    // Selects the document linked to the selection; refreshed on its own timer.
    void Collegato(Riferimento collegato);

    // The loaders, one per kind, each given the object's description (the root element).
    void CaricaProprietaDocStampa(const pugi::xml_node& oggetto);
    void CaricaProprietaDocEmail(const pugi::xml_node& oggetto);
    void CaricaProprietaDocFax(const pugi::xml_node& oggetto);
    void CaricaProprietaDocPFax(const pugi::xml_node& oggetto);
    void CaricaProprietaDocEFax(const pugi::xml_node& oggetto);
    void CaricaProprietaFormatoFronte(const pugi::xml_node& oggetto);
    void CaricaProprietaFormatoRetro(const pugi::xml_node& oggetto);
    void CaricaProprietaFormatoFrontespizio(const pugi::xml_node& oggetto);
    void CaricaProprietaFirmaEmail(const pugi::xml_node& oggetto);
    void CaricaProprietaDocAnterpima(const pugi::xml_node& oggetto);
    void CaricaProprietaDocPbl(const pugi::xml_node& oggetto);
    void PulisciLayout();

    const QString& FileLog() const { return mFileLog; }
    // Hands `nome` to the log pane when it differs from the one shown.
    void FileLog(const QString& nome);
    int LayoutVisualizzato() const;
    const QString& ServerVisualizzato() const { return mServerVisualizzato; }
    // Shows the sheet of the tree node `chiave` ("SrvFax", "SrvStampante|3") captioned `caption`.
    void VisualizzaServer(const QString& caption, const QString& chiave);
    qint32 IconaVisualizzata() const { return mIconaVisualizzata; }
    void AvviaServizio();
    void SospendiServizio();
    void InfoDescrizione();
    void AggiornaInformazioniClasseVisualizzata();

    PxModelloProprieta* Modello() const { return mModello; }
    // The pane's start and suspend buttons: for a service, a worker or an entry of a list, by
    // the state of the service they act on; never for the formats, signatures and folders.
    QAction* ComandoAvvia() const { return mAvvia; }
    QAction* ComandoSospendi() const { return mSospendi; }
    QTreeView* Griglia() const { return mxpgProprieta; }
    // The state code last shown for the service (-1: none yet).
    int StatoMostrato() const { return mStatoMostrato; }
    // What an item's action opens ("" when it opens nothing).
    static QString TestoAzione(int azione, const QString& valore, const QString& secondo);
    // Sets the header's Avvia/Sospendi again: by the state on display, and only while the
    // server answers and lets this console act.
    void AbilitaComandi();

signals:
    // The shown service's state code changed: the main window updates its start and suspend
    // commands (4: running, 8: its own branch).
    void StatoServizioCambiato(int codice);
    // Something the operator must read (a path that cannot be opened).
    void Messaggio(const QString& testo);
    // A sheet was filled (tests and screenshots wait on it).
    void Caricato(int layout);


private slots:
    void mobjTimerProprieta_TimerEvent();
    void mobjTimerCollegato_TimerEvent();

private:
    void Carica(int layout, const pugi::xml_node& oggetto);
    // Builds `layout` afresh (its categories without a caption of their own take `categoria`).
    void Costruisci(int layout, const QString& categoria);
    void RiempiServizio();
    void Descrivi(const pugi::xml_document& doc, bool collegato);
    void ChiediDescrizione(const Riferimento& r, bool collegato);
    void ImpostaStato(int codice);
    void Esegui(const QModelIndex& indice);
    // For a console without the server's files: a copy of a document's file, fetched through
    // the server, opens; a folder says it is the server's.
    void ApriDalServer(const QString& percorso);
    void Copia();
    PxSrvServizio* ServizioVisualizzato() const;
    // The viewers' calls, each only while its pane exists.
    void CaricaCorpo(const pugi::xml_node& proprieta);
    void CaricaScript(const pugi::xml_node& proprieta);
    void PulisciCorpo();
    void PulisciScript();

    PxContesto& mContesto;
    QLabel* mIcona;
    QLabel* mTitolo;
    QTreeView* mxpgProprieta;
    QAction* mAvvia;
    QAction* mSospendi;
    PxModelloProprieta* mModello;
    QPointer<frmLog> mLog;
    QPointer<frmCorpoDocumento> mCorpo;
    QPointer<frmScriptDocumento> mScript;
    QPointer<frmVisFirma> mFirma;
    QTimer mobjTimerProprieta;
    QTimer mobjTimerCollegato;
    Riferimento mOggetto;
    Riferimento mCollegato;
    QString mFileLog;
    QString mServerVisualizzato;
    QString mCaptionVisualizzata;
    qint32 mIconaVisualizzata = 0;
    int mStatoMostrato = -1;
    QString mStatoRiempito;         // the state XML the sheet was last filled from
    int mStatoAzionabile = -1;      // the state code of what the start and suspend commands act on
    quint64 mGenerazione = 0;       // bumped at every selection: late answers are dropped
    bool mInAttesa = false;         // a description request is out
    qint64 mUltimaRisposta = 0;     // msecs since epoch of the last description read
    QString mDescrizione;           // the last description shown
    bool mFallita = false;          // the last request failed (its reason is already logged)
};
