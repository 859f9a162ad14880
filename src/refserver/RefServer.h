#pragma once

#include "DatiDocumento.h"
#include "PxContratto.h"
#include "RefLog.h"

#include <QHash>
#include <QMutex>
#include <QObject>
#include <QStringList>

#include <atomic>

class RefBkgConsole;
class RefCartellaDocumenti;
class RefCatalogo;
class RefIngresso;
class RefLavoratori;
class RefServizio;
class RefUsoSistema;

// The reference dispatch server: everything lives in one server folder.
//
//   PlxConfigurazione.ini       installation settings (sections "Console", "Server anteprime")
//   Servizi/<Chiave>.xml        each service's configuration, the base of its state XML
//   Log/<Chiave>.log            each service's log; Log/PxSrvServer.log the server's own
//   Documenti/<Cartella>/Coda_<n>/<id>/   the documents (see RefCartellaDocumenti)
//   Ingresso/<Servizio>/        where print jobs are dropped (see RefIngresso)
//   LavoriRespinti/<Servizio>/  jobs whose header could not be read
//   Formati/<Key>.xml, Firme/<Key>.xml   page formats and e-mail signatures
//
// Section "Server di riferimento" of PlxConfigurazione.ini sets the pace of the workers:
// IntervalloLavoro (ms, default 2000), PercentualeRespinti (default 5), DocumentiPerPasso
// (default 3), IntervalloIngresso (ms, default 1000).
//
// This object is the root of what the server publishes (see modContratto): it and its parts
// live on one thread, the server's, and are reached from elsewhere only by name, through
// their signals and slots. Constructing it touches no disk; Carica() does the loading and
// reports it (Caricamento), then Pronto. A configuration file that is missing or malformed
// leaves that service with its live elements only, and a line in the server's log; the
// server never refuses to start for it.
class RefServer : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Cartella READ Cartella CONSTANT)
    Q_PROPERTY(QString Identificativo READ Identificativo CONSTANT)
    Q_PROPERTY(qint32 Stato READ Stato NOTIFY CambioStatoServer)

public:
    struct Opzioni
    {
        bool Automatico = true;   // workers and input folders on timers; false: a caller drives them
        bool CaricaSubito = true; // false: the caller calls Carica(), on the server's thread
    };

    explicit RefServer(const QString& cartella, QObject* parent = nullptr) : RefServer(cartella, Opzioni{}, parent) {}
    RefServer(const QString& cartella, Opzioni opzioni, QObject* parent = nullptr);
    ~RefServer() override;

    // Constant for the server's life: safe to read from any thread.
    QString Cartella() const { return mCartella; }
    QString Identificativo() const { return mIdentificativo; }
    qint32 Stato() const { return mStato; }
    bool Caricato() const { return mCaricato; }

    // The published object of name `nome` (see modContratto), nullptr if none. Safe from any
    // thread; the objects live as long as the server.
    QObject* Oggetto(const QString& nome) const;
    // Asks a loading under way to stop early, because the server is closing; from any thread.
    void InterrompiCaricamento() { mInterrompi = true; }
    // Every published name, in publication order.
    QStringList Nomi() const;

    RefServizio* ServizioRef(const QString& chiave) const { return mServizi.value(chiave); }
    RefCartellaDocumenti* Cartella(GenereCartella genere) const;
    RefCartellaDocumenti* CartellaRef(const QString& chiave) const { return mCartelle.value(chiave); }
    RefCatalogo* CatalogoRef(const QString& chiave) const { return mCataloghi.value(chiave); }
    RefBkgConsole* BkgConsoleRef() const { return mBkgConsole; }
    RefUsoSistema* UsoSistemaRef() const { return mUsoSistema; }
    RefLavoratori& Lavoratori() const { return *mLavoratori; }
    RefIngresso* Ingresso(const QString& servizio) const { return mIngressi.value(servizio); }
    RefLog& Log() { return mLog; }

    // The lists of connected preview clients ("Utenti" of PxSrvAnteprime), printers
    // ("Stampanti" of PxSrvStampe) and FTP clients ("FtpClients" of PxSrvFtp). A change
    // publishes the owning service's new state, then raises its notice (UtenteConnesso, ...).
    // `nodoXml` is one record as the list holds it: <Utente> keyed by KeyUtente, <Stampante>
    // by Chiave, <FtpClient> by Key. Call on the server's thread, once it has loaded. False,
    // and nothing changes, for a record that does not parse, is of another kind or has no
    // key, for a key already listed (add) or not listed (remove), and before the loading.
    bool ConnettiUtente(const QString& nodoXml);
    bool DisconnettiUtente(const QString& keyUtente);
    bool AggiungiStampante(const QString& nodoXml);
    bool RimuoviStampante(const QString& chiave);
    bool ConnettiFtpCliente(const QString& nodoXml);
    bool DisconnettiFtpCliente(const QString& chiave);

    // The server's run state: running, and going away (its consoles then end as they end
    // when told to stop).
    static constexpr qint32 StatoInFunzione = modContratto::ServerInFunzione;
    static constexpr qint32 StatoInArresto = modContratto::ServerInArresto;

    static QString CartellaServizi(const QString& server);
    static QString CartellaLog(const QString& server);

public slots:
    // Loads the configuration, the catalogues and every document folder, reporting progress;
    // then starts the workers and input folders. Once only.
    void Carica();
    // Answered, once the server has loaded, with the description of what it publishes:
    // <Server Stato="4"><Servizio Chiave="PxSrvFax">state XML, as text</Servizio>...
    // <Cartella Chiave="PxSrvDocFax" Servizio="PxSrvFax"/>...<Catalogo Chiave="PxSrvFormati"/></Server>
    void RichiediDescrizione(quint64 richiesta);
    // Answered with the caller's role ("operatore", "osservatore") and, in the bytes, the name
    // it is known by.
    void RichiediRuolo(quint64 richiesta);
    // Tells every console that the server is stopping (Stato StatoInArresto), and stops the
    // workers and input folders taking new work; the owner then destroys the server.
    void AnnunciaArresto();
    // Answers with a piece of a file under the server folder (see modLetturaFile).
    void LeggiFile(quint64 richiesta, const QString& percorso, qint64 inizio, qint32 quanti);

signals:
    void Caricamento(qint32 fatti, qint32 totale, const QString& testo);
    void Pronto();
    void CambioStatoServer(qint32 codice);
    // A preview client connected or left; `nodoXml` is its record as in the "Utenti" list.
    void UtenteConnesso(const QString& nodoXml);
    void UtenteDisconnesso(const QString& keyUtente);
    // A printer was added to or removed from the "Stampanti" list.
    void StampanteAggiunta(const QString& nodoXml);
    void StampanteRimossa(const QString& chiave);
    // An FTP client connected or left ("FtpClients" list).
    void FtpClienteConnesso(const QString& nodoXml);
    void FtpClienteDisconnesso(const QString& chiave);
    void Risposta(quint64 richiesta, qint32 esito, const QString& testo, const QByteArray& dati);

private:
    struct Elenco;
    static const Elenco Utenti, Stampanti, ClientiFtp;
    bool AggiungiVoce(const Elenco& elenco, const QString& nodoXml);
    bool RimuoviVoce(const Elenco& elenco, const QString& chiave);
    void Pubblica(const QString& nome, QObject* oggetto);
    QByteArray Descrizione() const;

    Opzioni mOpzioni;
    QString mCartella;
    QString mIdentificativo;
    RefLog mLog;
    qint32 mStato = StatoInFunzione;
    bool mCaricato = false;
    QList<quint64> mDescrizioniAttese;
    QHash<QString, RefServizio*> mServizi;
    QStringList mChiavi;
    QHash<QString, RefCartellaDocumenti*> mCartelle;
    QList<RefCartellaDocumenti*> mOrdineCartelle;
    QHash<QString, RefIngresso*> mIngressi;
    QHash<QString, RefCatalogo*> mCataloghi;
    RefLavoratori* mLavoratori = nullptr;
    RefBkgConsole* mBkgConsole;
    RefUsoSistema* mUsoSistema;

    std::atomic<bool> mInterrompi{false};
    mutable QMutex mMutexNomi;
    QHash<QString, QObject*> mPubblicati;
    QStringList mNomi;
};
