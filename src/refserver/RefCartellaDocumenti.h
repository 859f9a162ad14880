#pragma once

#include "DatiDocumento.h"
#include "RefCaricamentoCartella.h"
#include "PxContratto.h"
#include "modCartelle.h"

#include <QHash>
#include <QMap>
#include <QObject>

#include <atomic>
#include <functional>
#include <map>
#include <vector>

class RefLog;
class RefServizio;

// A document folder of the reference server. Each document is a folder on disk,
//   Documenti/<Chiave>/Coda_<n>/<id>/   (<id>.xml description, .bpx, .spx, .hpx, output, <id>.log)
// so a document is in exactly one queue, and a move is one rename. The folder keeps an
// index in memory (loaded once at start) from which listings are written; every change of
// queue updates disk first, then the index, the counters, and raises DocumentoSpostato
// through the owning service. Beside it: the start from disk (RefCaricamentoCartella), the
// listing's node writer (modNodoElenco), the commands that make documents in other folders
// (modComandiCartella); here the index, the moves and the requests.
class RefCartellaDocumenti : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Chiave READ Chiave CONSTANT)
    Q_PROPERTY(QString ChiaveServizio READ ChiaveServizio CONSTANT)

public:
    // `servizio` raises the notices; `stato` is the folder's own state object (its counters).
    RefCartellaDocumenti(const modCartelle::Definizione& definizione, const QString& cartellaServer,
                         RefServizio* servizio, RefServizio* stato, RefLog& logServer, QObject* parent = nullptr);
    // A batch of moves still open reaches the disk (its notices and answers are not sent).
    ~RefCartellaDocumenti() override;

    QString Chiave() const { return QString::fromLatin1(mDef.Chiave); }
    QString ChiaveServizio() const { return QString::fromLatin1(mDef.Servizio); }
    const modCartelle::Definizione& Definizione() const { return mDef; }
    QString Radice() const { return mRadice; }

    // Loading, in two steps: Prepara() sets aside interrupted creations and lists the
    // document folders (returns how many); Carica() reads them, calling `avanzamento` now and
    // then with how many it has read, and returns the number loaded. Corrupt ones are skipped
    // with a line in the server log. When `interrompi` becomes true the reading stops early
    // (the server is closing) and nothing is loaded.
    qint64 Prepara();
    int Carica(const std::function<void(qint64 letti)>& avanzamento = {}, const std::atomic<bool>* interrompi = nullptr);

    // A file of a new document: its final name inside the document folder, and either the
    // bytes to write or a file to move in (a rename on the same file system).
    struct FileNuovo
    {
        QString Nome;
        QByteArray Dati;
        QString DaSpostare;
    };
    // Creates a document in queue d.Coda: its folder appears complete or not at all.
    // Returns "" or the reason it could not.
    QString Crea(DatiDocumento d, const std::vector<FileNuovo>& file, bool annuncia = true);
    // Moves one document to `coda`; `stato` (when not empty) becomes its state text, and
    // `tentativi` (when not negative) its count of attempts, both only once it has moved.
    QString Sposta(const QString& id, qint32 coda, const QString& stato = {}, qint32 tentativi = -1);
    // Rejects a document: records the error, counts the rejection and moves it to `coda`.
    QString Respingi(const QString& id, qint32 coda, qint32 codice, const QString& motivo, qint32 tentativi = -1);
    // Writes the output file (PDF or TIFF) of a document and records it.
    QString ScriviUscita(const QString& id, modCartelle::Uscita tipo);

    const DatiDocumento* Trova(const QString& id) const;
    // The ids in queue `coda`, in the server's order (arrival in the queue), leaving out
    // those `salta` says (a worker's stuck documents).
    QStringList Coda(qint32 coda, int massimo = -1, const std::function<bool(const QString&)>& salta = {}) const;
    // Records `stato` as the state text of `id` (its description and listing node) and
    // raises DocumentoSpostato for its row, in the queue it stays in.
    QString ImpostaStato(const QString& id, const QString& stato);
    qsizetype Conteggio(qint32 coda) const;
    qsizetype Totale() const { return mIndice.size(); }
    QString CartellaDi(const DatiDocumento& d) const;
    // A new id for this folder ("FAX-000123").
    QString NuovoId();
    // The hidden folder in which a creation of `id` in queue 0 builds the document.
    QString CartellaNuova(const QString& id) const { return CartellaCoda(0) + QStringLiteral("/.") + id + QStringLiteral(".nuovo"); }

    // The description file's text of `d`, whose folder is `cartella`.
    static QByteArray TestoDescrizione(const DatiDocumento& d, const QString& cartella);
    // Where the documents of `def` live under a server folder.
    static QString RadiceDi(const modCartelle::Definizione& def, const QString& cartellaServer);

    // The listing text and one document's listing node.
    QByteArray TestoElenco() const;
    QString Nodo(const QString& id) const;

    // Called for documents the folder receives from other folders (previews, compressed sends).
    using Destinazione = std::function<RefCartellaDocumenti*(GenereCartella)>;
    void ImpostaDestinazioni(Destinazione destinazione) { mDestinazione = std::move(destinazione); }
    void ImpostaEstensioneZip(const QString& estensione) { mEstensioneZip = estensione; }

    // The commands, done now. Moves are all or nothing: an unknown id, an invalid queue or a
    // malformed selection refuses the whole selection (Rifiutato); a disk failure puts back
    // what had moved (Fallito).
    PxRisposta SpostaSelezione(const QString& selezioneXml, qint32 coda);
    PxRisposta Anteprime(const QString& selezioneXml, const QString& indirizzo);
    PxRisposta Comprimi(const QString& selezioneXml);
    // The working folder, the output file and the object XML of `id`; "" when unknown.
    QString CartellaDocumentoDi(const QString& id) const;
    QString FileOutputDi(const QString& id) const;
    QString DocumentoXml(const QString& id) const;

public slots:
    // The contract's requests: each answered with Risposta.
    void RichiediElenco(quint64 richiesta);
    void SpostaDocumenti(quint64 richiesta, const QString& selezioneXml, qint32 coda);
    void GeneraAnteprime(quint64 richiesta, const QString& selezioneXml, const QString& indirizzo);
    void InviaCompresso(quint64 richiesta, const QString& selezioneXml);
    void CartellaDocumento(quint64 richiesta, const QString& id);
    // Testo: the path; with `conDati`, Dati: the file's bytes (at most MassimoFileInviato).
    void FileOutput(quint64 richiesta, const QString& id, bool conDati);
    void Documento(quint64 richiesta, const QString& id);

signals:
    void Risposta(quint64 richiesta, qint32 esito, const QString& testo, const QByteArray& dati);

private:
    struct Voce
    {
        DatiDocumento Dati;
        quint64 Ordine = 0;
        QByteArray Nodo; // the listing node, kept so that a listing is one concatenation
    };

    QString CartellaCoda(qint32 coda) const;
    // Moves the next new id past the one `nome` carries, if it carries one of this folder's.
    void OsservaId(QStringView nome);
    bool ScriviDescrizione(const DatiDocumento& d, QString* errore = nullptr) const;
    void Inserisci(DatiDocumento d);
    void AggiornaContatori();
    void Registra(const DatiDocumento& d, const QString& testo) const;
    void AppendiNodo(QByteArray& out, const DatiDocumento& d) const;
    void Rinnova(Voce& voce) const { voce.Nodo.clear(); AppendiNodo(voce.Nodo, voce.Dati); }
    PxRisposta Rifiuta(const QString& motivo, qint32 esito = modContratto::Rifiutato) const;
    void Rispondi(quint64 richiesta, const PxRisposta& r) { emit Risposta(richiesta, r.Esito, r.Testo, r.Dati); }
    // Whether the caller may do `operazione`: refuses the request with the reason if not, and
    // logs the command with who asked if so.
    bool Consentito(quint64 richiesta, const QString& operazione, const QString& selezioneXml);
    // "" when `id` is known and `coda` a queue of this folder, else why not.
    QString Verifica(const QString& id, qint32 coda) const;

    // A command's answer, logged when it is a refusal or a failure.
    PxRisposta Esito(const PxRisposta& r) const;

    // The group commit of the moves consoles ask for. While a batch is open (mDifferite) a move
    // renames the document's folder and writes its new description into the spare beside it,
    // unsynced, and keeps its notice; Consolida, from the event loop once the requests at hand
    // are done, syncs the file system once, exchanges each description with its spare, syncs
    // again, and only then sends the notices, all in one, and the answers. Every other change
    // completes the batch first, so that nothing moves a folder under a description still
    // waiting in its spare.
    struct DescrizioneAParte
    {
        QString Id, Finale; // the new description waits in Finale's spare (modDisco::NomeRiserva)
    };
    void Consolida(bool avvisa = true);
    void CompletaInSospeso();
    std::vector<DescrizioneAParte> mAParte;
    std::vector<modContratto::Spostamento> mSpostati;
    std::vector<std::function<void()>> mDopo;
    bool mDifferite = false;
    bool mDaSincronizzare = false;
    bool mConsolidaProgrammata = false;

    const modCartelle::Definizione& mDef;
    QString mCartellaServer;
    QString mRadice;
    RefServizio* mServizio;
    RefServizio* mStato;
    RefLog& mLogServer;
    QHash<QString, Voce> mIndice;
    std::vector<std::map<quint64, QString>> mCode;
    quint64 mProssimoOrdine = 1;
    quint64 mProssimoId = 1;
    Destinazione mDestinazione;
    QString mEstensioneZip = QStringLiteral(".pxz");
    RefCaricamentoCartella mCaricamento;
};
