#pragma once

#include "PxTls.h"
#include "RefServer.h"

#include <QObject>
#include <QUrl>

#include <functional>

class QThread;

// Hosts a reference server on a thread of its own: the server is made here (no disk), moved
// to its thread, and loads there; every disk operation of it (loading, moves, workers, input
// folders, outputs) runs on that thread. The console reaches it by name (Oggetto, for a
// PxCollegamentoDiretto) or, once published, through Qt Remote Objects. Destroying the host
// destroys the server on its own thread, then ends the thread.
class RefOspite : public QObject
{
    Q_OBJECT

public:
    explicit RefOspite(const QString& cartella, RefServer::Opzioni opzioni = {}, QObject* parent = nullptr);
    ~RefOspite() override;

    // Starts the thread; the server loads and then raises Pronto.
    void Avvia();
    // The published object of `nome`; safe from any thread.
    QObject* Oggetto(const QString& nome) const;
    QString Cartella() const;
    // Publishes the server at `indirizzo` ("local:name", "local:/path.sock", or
    // "tls://host:port" with the files of `tls`) from its thread: the root, the worker and the
    // sampler at once, the rest once loaded. Called before Avvia, the server listens before it
    // starts loading. `esito` runs on this object's thread with "" once it listens, or the
    // reason it cannot.
    void PubblicaRemoto(const QUrl& indirizzo, std::function<void(const QString& errore)> esito = {}, const PxTls& tls = {});
    // Tells the consoles that the server stops and stops its work; returns once the notice
    // has been sent. Destroying the host then ends the server.
    void AnnunciaArresto();

private:
    RefServer* mServer;
    QThread* mFilo;
};
