#pragma once

#include "RefServer.h"

#include <QObject>
#include <QUrl>

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
    // Publishes every object of the server at `indirizzo` ("local:name", "tcp://host:port")
    // once it has loaded, from the server's thread.
    void PubblicaRemoto(const QUrl& indirizzo);

private:
    RefServer* mServer;
    QThread* mFilo;
};
