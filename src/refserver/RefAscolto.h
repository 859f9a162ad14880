#pragma once

#include "PxTls.h"

#include <QObject>
#include <QUrl>

class QIODevice;
class QRemoteObjectHostBase;
class RefLog;

// Where the server listens: a local socket, or TCP inside TLS with client certificates. It
// accepts each connection itself and hands it to the Qt Remote Objects host, so that it knows
// who is at the other end: before the host reads a connection's requests, the caller is named
// (RefAccesso). Lives on the server's thread, with the host.
class RefAscolto : public QObject
{
    Q_OBJECT

public:
    RefAscolto(QRemoteObjectHostBase& host, QString cartellaServer, RefLog& log, QObject* parent = nullptr);

    // Listens on `indirizzo`: "local:/path.sock" (or "local:name") or "tls://host:port" with
    // `tls`. "" once listening, else the reason.
    QString Ascolta(const QUrl& indirizzo, const PxTls& tls);

private:
    // Hands a connection to the host; the caller is named each time it has data to read.
    void Accetta(QIODevice* connessione, const QString& nome, bool locale);

    QRemoteObjectHostBase& mHost;
    QString mCartella;
    RefLog& mLog;
};
