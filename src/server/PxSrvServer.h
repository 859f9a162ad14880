#pragma once

#include "IPxStatoServer.h"
#include "PxLettoreIni.h"
#include "PxSrvOggetto.h"

#include <QHash>
#include <QStringList>

class PxCollegamento;
class QTimer;
class PxSrvBkgConsole;
class PxSrvCartellaDocumenti;
class PxSrvCatalogo;
class PxSrvEventiServer;
class PxSrvServizio;
class PxSrvUsoSistema;

// The dispatch server as the console sees it: its folder and identifying text, its state,
// and the console-side parts of its services, folders and catalogues. All of them live on
// the console's thread and belong to this object; the server's own objects are reached only
// through the transport, by name.
//
// Connetti() binds the root (Collegato: folder and text known), then asks the server for its
// description, which it answers once it has loaded (Caricamento reports the loading); the
// parts are then made and bound, and Pronto follows.
class PxSrvServer : public PxSrvOggetto, public IPxStatoServer
{
    Q_OBJECT
    Q_PROPERTY(QString Cartella READ Cartella CONSTANT)
    Q_PROPERTY(QString Identificativo READ Identificativo CONSTANT)
    Q_PROPERTY(qint32 Stato READ Stato NOTIFY StatoCambiato)

public:
    explicit PxSrvServer(PxCollegamento* collegamento, QObject* parent = nullptr);
    ~PxSrvServer() override;

    void Connetti();
    // Whether the parts are there (Pronto was raised).
    bool Caricato() const { return mCaricato; }

    // The server folder: configuration, documents, logs.
    QString Cartella() const { return mCartella; }
    // A path as the server wrote it (native separators, perhaps relative to the server folder),
    // as this machine names it; "" stays "".
    static QString PercorsoLocale(const QString& scritto, const QString& cartellaServer);
    QString PercorsoLocale(const QString& scritto) const { return PercorsoLocale(scritto, mCartella); }
    // The text that identifies this server (name and version).
    QString Identificativo() const { return mIdentificativo; }
    // The server's run state: 4 running.
    qint32 Stato() const override { return mStato; }

    // The service or worker of key "PxSrv..." ("PxSrvFax", "PxSrvTifVm"); nullptr if none.
    PxSrvServizio* Servizio(const QString& chiave) const { return mServizi.value(chiave); }
    // The document folder of key "PxSrvDoc..." ("PxSrvDocFax").
    PxSrvCartellaDocumenti* CartellaDocumenti(const QString& chiave) const { return mCartelle.value(chiave); }
    // The catalogue of a service that keeps objects ("PxSrvFormati", "PxSrvFirme").
    PxSrvCatalogo* Catalogo(const QString& chiave) const { return mCataloghi.value(chiave); }
    // The keys of every service and worker, in the server's order.
    QStringList Chiavi() const { return mChiavi; }
    PxSrvEventiServer* Eventi() const { return mEventi; }
    PxSrvBkgConsole* BkgConsole() const { return mBkgConsole; }
    PxSrvUsoSistema* UsoSistema() const { return mUsoSistema; }
    // Whether this console shares the server's files (same machine): only opening a folder
    // for the operator needs it; everything else the console reads goes through LeggiFile.
    bool FileLocali() const;

    // A piece of a file of the server folder (a path as the server wrote it), answered later:
    // at most `quanti` bytes from `inizio` (negative: the last -inizio bytes). See LetturaFile.
    void LeggiFile(const QString& percorso, qint64 inizio, qint32 quanti, QObject* richiedente, Esito fatto);
    // A whole file of the server folder, asked in pieces: done with every byte in Dati (and
    // the last piece's Testo), refused when the file is larger than `massimo` bytes.
    void LeggiTutto(const QString& percorso, qint64 massimo, QObject* richiedente, Esito fatto);
    // The installation's settings ("PlxConfigurazione.ini" of the server folder), as read
    // through the server while it loaded; empty when it has none.
    const PxLettoreIni& Configurazione() const { return mConfigurazione; }
    static constexpr const char* FileConfigurazione = "PlxConfigurazione.ini";
    // Why the connection failed or was lost; "" while it holds.
    QString Interruzione() const { return mInterruzione; }
    // What this console may do on the server: "operatore" everything, "osservatore" only read
    // (a server that does not say is taken to allow everything); and why not, for the user.
    bool SoloLettura() const { return mRuolo == u"osservatore"; }
    QString Ruolo() const { return mRuolo; }
    QString NomeChiamante() const { return mNomeChiamante; }
    // Whether the server is reachable now. After a loss (not a stop: Stato 5) the server is
    // tried again after 0.5 s, then 1, 2, 4, 8 and every 10 s, until it answers; the parts
    // are then bound to it again and Ricollegato follows.
    bool Raggiungibile() const { return mInterruzione.isEmpty(); }
    // Whether a next attempt is due (the loss is being waited out, not given up on).
    bool Riprovando() const;
    static constexpr int PrimaAttesa = 500;
    static constexpr int AttesaMassima = 10000;

signals:
    void Collegato();
    // The server's loading: `fatti` of `totale` steps, what it is doing.
    void Caricamento(qint32 fatti, qint32 totale, const QString& testo);
    void Pronto();
    void StatoCambiato(qint32 codice);
    // The connection failed or was lost; every pending request has failed.
    void Interrotto(const QString& motivo);
    // The next attempt to reach the server is in `millisecondi`.
    void Riprova(qint32 millisecondi);
    // The server answers again: every part is bound to it and has re-read its state.
    void Ricollegato();
    // The server said what this console may do.
    void RuoloCambiato();

protected:
    void AlCollegamento(QObject* sorgente) override;

private slots:
    void AlCambioStatoServer(qint32 codice);

private:
    void AlDescrizione(const PxRisposta& risposta);
    void LeggiDa(const QString& percorso, QByteArray letti, const QString& identita, qint64 massimo, QObject* richiedente,
                 Esito fatto);
    // `parteDescritta`: one of the parts Pronto waits for.
    void Acquisisci(PxSrvOggetto* parte, bool parteDescritta);
    void ParteCollegata();
    void AlInterruzione(const QString& motivo);
    void Lega();
    void ProgrammaTentativo();
    void Tentativo();

    PxCollegamento* mCollegamento;
    QString mCartella;
    QString mIdentificativo;
    qint32 mStato = 0;
    bool mCaricato = false;
    QString mInterruzione;
    QString mRuolo = QStringLiteral("operatore");
    QString mNomeChiamante;
    int mDaCollegare = 0;
    bool mLegatoUnaVolta = false;
    bool mInRiconnessione = false;
    int mAttesa = PrimaAttesa;
    QStringList mChiavi;
    QHash<QString, PxSrvServizio*> mServizi;
    QHash<QString, PxSrvCartellaDocumenti*> mCartelle;
    QHash<QString, PxSrvCatalogo*> mCataloghi;
    PxSrvEventiServer* mEventi;
    PxSrvBkgConsole* mBkgConsole;
    PxSrvUsoSistema* mUsoSistema;
    QTimer* mRiprova;
    PxLettoreIni mConfigurazione;
};
