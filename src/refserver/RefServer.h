#pragma once

#include "PxSrvServer.h"
#include "DatiDocumento.h"
#include "RefLog.h"

#include <QHash>

#include <memory>

class PxSrvEventiServer;
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
// A configuration file that is missing or malformed leaves that service with its live
// elements only, and a line in the server's log; the server never refuses to start for it.
class RefServer : public PxSrvServer
{
    Q_OBJECT

public:
    struct Opzioni
    {
        bool Automatico = true; // workers and input folders on timers; false: a caller drives them
    };

    explicit RefServer(const QString& cartella, QObject* parent = nullptr) : RefServer(cartella, Opzioni{}, parent) {}
    RefServer(const QString& cartella, Opzioni opzioni, QObject* parent = nullptr);
    ~RefServer() override;

    QString Cartella() const override { return mCartella; }
    QString Identificativo() const override;
    qint32 Stato() const override { return mStato; }
    PxSrvServizio* Servizio(const QString& chiave) const override;
    PxSrvCartellaDocumenti* CartellaDocumenti(const QString& chiave) const override;
    PxSrvCatalogo* Catalogo(const QString& chiave) const override;
    QStringList Chiavi() const override;
    PxSrvEventiServer* Eventi() const override;
    PxSrvBkgConsole* CreaBkgConsole() override;
    PxSrvUsoSistema* UsoSistema() const override;

    RefServizio* ServizioRef(const QString& chiave) const { return mServizi.value(chiave); }
    RefCartellaDocumenti* Cartella(GenereCartella genere) const;
    RefCartellaDocumenti* CartellaRef(const QString& chiave) const { return mCartelle.value(chiave); }
    RefLavoratori& Lavoratori() const { return *mLavoratori; }
    RefIngresso* Ingresso(const QString& servizio) const { return mIngressi.value(servizio); }
    RefLog& Log() { return mLog; }

    static QString CartellaServizi(const QString& server);
    static QString CartellaLog(const QString& server);

private:
    QString mCartella;
    RefLog mLog;
    qint32 mStato = 4;
    QHash<QString, RefServizio*> mServizi;
    QHash<QString, RefCartellaDocumenti*> mCartelle;
    QHash<QString, RefIngresso*> mIngressi;
    QHash<QString, RefCatalogo*> mCataloghi;
    RefLavoratori* mLavoratori = nullptr;
    QStringList mChiavi;
    PxSrvEventiServer* mEventi;
    RefUsoSistema* mUsoSistema;
};
