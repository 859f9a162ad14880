#pragma once

#include "IPxStatoServer.h"
#include "PxLettoreIni.h"
#include "PxSrvOggetto.h"

#include <QHash>
#include <QStringList>

class PxCollegamento;
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

signals:
    void Collegato();
    // The server's loading: `fatti` of `totale` steps, what it is doing.
    void Caricamento(qint32 fatti, qint32 totale, const QString& testo);
    void Pronto();
    void StatoCambiato(qint32 codice);
    // The connection failed or was lost; every pending request has failed.
    void Interrotto(const QString& motivo);

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

    PxCollegamento* mCollegamento;
    QString mCartella;
    QString mIdentificativo;
    qint32 mStato = 0;
    bool mCaricato = false;
    QString mInterruzione;
    int mDaCollegare = 0;
    QStringList mChiavi;
    QHash<QString, PxSrvServizio*> mServizi;
    QHash<QString, PxSrvCartellaDocumenti*> mCartelle;
    QHash<QString, PxSrvCatalogo*> mCataloghi;
    PxSrvEventiServer* mEventi;
    PxSrvBkgConsole* mBkgConsole;
    PxSrvUsoSistema* mUsoSistema;
    PxLettoreIni mConfigurazione;
};
