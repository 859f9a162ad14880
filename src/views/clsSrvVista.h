#pragma once

#include "PxModelloContenuto.h"
#include "PxSrvOggetto.h"

#include <QByteArray>
#include <QObject>
#include <QPersistentModelIndex>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

class PxBarraComandi;
class PxContesto;
class QTimer;
class QTreeView;
namespace pugi { class xml_node; }

// An object a row stands for (a document, format or signature): its key and how to ask the
// server for its description. Invalid when the row stands for nothing with a sheet.
struct PxOggettoVista
{
    QString Chiave;
    bool Collegato = false; // a document linked to the row's document
    std::function<void(QObject* richiedente, PxSrvOggetto::Esito fatto)> Descrizione;
    bool Valido() const { return static_cast<bool>(Descrizione); }
};

// What the main window lends the live view: the content list, its model and the command bars.
struct PxAmbienteVista
{
    PxContesto& Contesto;
    QTreeView& Lista;
    PxModelloContenuto& Modello;
    PxBarraComandi& Barra;
};

// The frame every view of the family shares. A view is made for one node of the server tree,
// takes over the shared list and command bars, declares its columns and controls, fills the
// rows and keeps them in step with the server until it is released. Column layout, grouping,
// sorting and the toggles' state are kept under the view's key and version in the layout
// document, so that a view reopens as the operator left it.
class clsSrvVista : public QObject
{
    Q_OBJECT

public:
    clsSrvVista(PxAmbienteVista& ambiente, QString chiave, QString versione, QObject* parent = nullptr);
    // Saves the layout and clears the list and the controls.
    ~clsSrvVista() override;

    // The creation steps: controls (and their saved state), columns (and their saved layout),
    // then the first listing.
    void Avvia();

    // The layout key ("SrvDocFax") and version ("01.00.04").
    const QString& Chiave() const { return mChiave; }
    const QString& Versione() const { return mVersione; }

    // Asks the server for the whole content again.
    virtual void AggiornaContenuto() = 0;
    // The state of service `chiaveOggetto` changed (a row of this view, or its own).
    virtual void AggiornaSrv(const QString& chiaveOggetto) { (void)chiaveOggetto; }
    // A service of this view reports progress.
    virtual void Avanzamento(const QString& chiaveOggetto, const QString& attivita, qint32 fatti, qint32 totale);
    // One document of the view's service changed queue.
    virtual void DocumentoSpostato(qint32 coda, const QString& id, const QString& nodoXml);
    // Enables the commands that need a selected row, when `abilita` (a row is selected and
    // the console is not busy).
    virtual void AbilitaPulsanti(bool abilita) { (void)abilita; }
    // A control of the command bars was executed.
    virtual void Esegui(int id) { (void)id; }
    // A row was double-clicked or Enter was pressed on it.
    virtual void Attiva() {}

    // Select all rows (5100) / invert the selection (5101).
    void SelezionaTutto();
    void InvertiSelezione();
    qsizetype NumeroSelezionati() const;
    // The selected rows' keys, in selection order; the selection document of a command.
    QStringList ChiaviSelezionate() const;
    QString CreaXmlSelezione() const;
    // The key of the focused row ("" when none).
    QString ChiaveCorrente() const;
    // The object of the focused row (a linked document's row included).
    virtual PxOggettoVista OggettoCorrente() const { return {}; }

    // Holds the rows still: what the server sends is kept and applied on release.
    void Blocca(bool bloccata);
    bool Bloccata() const { return mBloccata; }
    qsizetype InAttesa() const { return static_cast<qsizetype>(mInAttesa.size()); }

    // Groups by `colonna` (-1 none), keeping the operator's place.
    void Raggruppa(int colonna);
    // Whether the group of `chiaveGruppo` (RuoloChiaveGruppo) is open: as the operator left
    // it, else as the options say for a new group.
    bool GruppoAperto(const QString& chiaveGruppo) const;

    static constexpr int IdSelezionaTutto = 5100, IdInvertiSelezione = 5101;

signals:
    // A full reload has been asked for.
    void ContenutoInAggiornamento();
    // The rows or the selection changed: counts and command states need a refresh.
    void ContenutoCambiato();
    void InAttesaCambiata(qsizetype numero);
    // Something the operator must read (a refused command, an unreachable server).
    void Messaggio(const QString& testo);
    // The focused row changed: the property pane shows its object (OggettoCorrente).
    void OggettoCorrenteCambiato();
    // A document object to show (its XML description).
    void MostraDocumento(const QString& xml);
    // The operator asked for the test form of command `id` (5310-5314).
    void Prova(qint32 id);

protected:
    virtual void CreaPulsanti() {}
    virtual QList<PxModelloContenuto::Colonna> CreaColonne() = 0;
    // The column grouped by when the operator never chose (-1: none).
    virtual int RaggruppamentoPredefinito() const { return -1; }
    // The column that tells a row's stage (grouped by it, a group is a stage); -1: none.
    virtual int ColonnaFase() const { return -1; }
    // The stages in the order of the work, with their captions.
    virtual QList<PxModelloContenuto::Fase> Fasi() const { return {}; }

    // Runs `cambio` now, or, while the rows are held, when they are released. A full listing
    // (`sostituisce`) makes every change held before it pointless.
    void Applica(std::function<void()> cambio, bool sostituisce = false);
    // Runs `carica` (which resets the model) keeping the selection, the focused row, the
    // scroll position and the expanded rows where they were.
    void RicaricaMantenendo(const std::function<void()>& carica);

    // Opens or closes every group as the operator left it (a new one as the options say) and
    // makes group rows span the row.
    void SegnaGruppi();
    // Widens the columns to their content, measured as the best-fit mode says: on the rows on
    // screen (0) or on the rows of the list (1; a sample of a large list).
    void AdattaColonne();
    // The documents the operator has just acted on: once they show up (moved, or reloaded),
    // their groups open and the list scrolls to them.
    void Segui(const QStringList& chiavi);
    void MostraSeguiti();
    // A fitted column that a changed row no longer fits grows to it.
    void Allarga(const QModelIndex& da, const QModelIndex& a);
    static constexpr int LarghezzaMassima = 480;

    PxAmbienteVista& mAmbiente;
    PxContesto& mContesto;

private:
    pugi::xml_node NodoLayout(bool crea) const;
    void SalvaLayout();
    void CaricaLayout();
    // Keeps the rows under the pointer still while rows come and go above them.
    void PrendiCima();
    void FissaCima();
    void RipristinaCima();
    void ApplicaStatoGruppi(int primo, int ultimo);

    QString mChiave;
    QString mVersione;
    bool mBloccata = false;
    bool mMisura = false;
    bool mInRiempimento = false; // a full reload is filling the list: layout events wait
    std::vector<std::function<void()>> mInAttesa;
    QHash<QString, bool> mGruppiAperti; // by group key, as the operator left them
    QSet<QString> mSeguiti;
    QPersistentModelIndex mCima, mCimaDopo;
    int mCimaY = 0;
    bool mCambioInCorso = false;
    bool mAdatto = false;  // the columns are being fitted by us
    bool mCresci = false;  // fitted: columns grow with their content
    QSet<int> mColonneDellOperatore;
    QTimer* mTimerLayout;
};
