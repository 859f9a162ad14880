#pragma once

#include "IPxStatoServer.h"

#include <QObject>
#include <QString>
#include <QStringList>

class PxSrvBkgConsole;
class PxSrvCartellaDocumenti;
class PxSrvCatalogo;
class PxSrvEventiServer;
class PxSrvServizio;
class PxSrvUsoSistema;

// The dispatch server's root object as the console needs it. Objects it hands out stay
// owned by the server and live as long as it does; a key it does not know gives nullptr.
class PxSrvServer : public QObject, public IPxStatoServer
{
    Q_OBJECT
    Q_PROPERTY(QString Cartella READ Cartella CONSTANT)
    Q_PROPERTY(QString Identificativo READ Identificativo CONSTANT)
    Q_PROPERTY(qint32 Stato READ Stato NOTIFY StatoCambiato)

public:
    using QObject::QObject;
    ~PxSrvServer() override = default;

    // The server folder: configuration, documents, logs.
    virtual QString Cartella() const = 0;
    // The text that identifies this server (name and version).
    virtual QString Identificativo() const = 0;
    // The server's run state: 4 running.
    qint32 Stato() const override = 0;

    // The service or worker of key "PxSrv..." ("PxSrvFax", "PxSrvTifVm").
    virtual PxSrvServizio* Servizio(const QString& chiave) const = 0;
    // The document folder of key "PxSrvDoc..." ("PxSrvDocFax").
    virtual PxSrvCartellaDocumenti* CartellaDocumenti(const QString& chiave) const = 0;
    // The catalogue of a service that keeps objects ("PxSrvFormati", "PxSrvFirme").
    virtual PxSrvCatalogo* Catalogo(const QString& chiave) const = 0;
    // The keys of every service, worker and folder the server has.
    virtual QStringList Chiavi() const = 0;
    // The server's event source.
    virtual PxSrvEventiServer* Eventi() const = 0;
    // A new background worker for one console; the caller owns it.
    virtual PxSrvBkgConsole* CreaBkgConsole() = 0;
    // The machine's load sampler.
    virtual PxSrvUsoSistema* UsoSistema() const = 0;

signals:
    void StatoCambiato(qint32 codice);
};
