#pragma once

#include "PxSrvServer.h"
#include "RefLog.h"

#include <QHash>

#include <memory>

class PxSrvEventiServer;
class RefServizio;
class RefUsoSistema;

// The reference dispatch server: everything lives in one server folder.
//
//   PlxConfigurazione.ini       installation settings (sections "Console", "Server anteprime")
//   Servizi/<Chiave>.xml        each service's configuration, the base of its state XML
//   Log/<Chiave>.log            each service's log; Log/PxSrvServer.log the server's own
//
// A configuration file that is missing or malformed leaves that service with its live
// elements only, and a line in the server's log; the server never refuses to start for it.
class RefServer : public PxSrvServer
{
    Q_OBJECT

public:
    explicit RefServer(const QString& cartella, QObject* parent = nullptr);
    ~RefServer() override;

    QString Cartella() const override { return mCartella; }
    QString Identificativo() const override;
    qint32 Stato() const override { return mStato; }
    PxSrvServizio* Servizio(const QString& chiave) const override;
    PxSrvCartellaDocumenti* CartellaDocumenti(const QString& chiave) const override;
    QStringList Chiavi() const override;
    PxSrvEventiServer* Eventi() const override;
    PxSrvBkgConsole* CreaBkgConsole() override;
    PxSrvUsoSistema* UsoSistema() const override;

    RefServizio* ServizioRef(const QString& chiave) const { return mServizi.value(chiave); }
    RefLog& Log() { return mLog; }

    static QString CartellaServizi(const QString& server);
    static QString CartellaLog(const QString& server);

private:
    QString mCartella;
    RefLog mLog;
    qint32 mStato = 4;
    QHash<QString, RefServizio*> mServizi;
    QStringList mChiavi;
    PxSrvEventiServer* mEventi;
    RefUsoSistema* mUsoSistema;
};
