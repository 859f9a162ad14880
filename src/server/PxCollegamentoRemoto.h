#pragma once

#include "PxCollegamento.h"
#include "PxTls.h"

#include <QHash>
#include <QRemoteObjectNode>
#include <QUrl>

#include <memory>

class QRemoteObjectDynamicReplica;

// A server in another process, reached through Qt Remote Objects: each published object is a
// dynamic replica, usable once it has received its source's description. A replica that
// loses its source interrupts the connection.
class PxCollegamentoRemoto : public PxCollegamento
{
    Q_OBJECT

public:
    // `indirizzo`: "local:<name>" or "local:/path.sock" (same machine), or "tls://host:port"
    // with the files of `tls` (this side's certificate and key, the server's authority).
    explicit PxCollegamentoRemoto(const QUrl& indirizzo, const PxTls& tls = {}, QObject* parent = nullptr);
    ~PxCollegamentoRemoto() override;

    void Acquisisci(const QString& nome, QObject* contesto, Pronta pronta) override;
    bool Ricollega() override;
    bool Ricollegabile() const override { return true; }
    // Over a local socket the server's files are this machine's files, unless said otherwise
    // (a server run by a user whose folder this one may not read).
    bool FileLocali() const override { return mFileLocali && mIndirizzo.scheme() == u"local"; }
    void NegaFileLocali() { mFileLocali = false; }

private:
    QUrl mIndirizzo;
    PxTls mTls;
    bool mFileLocali = true;
    void Connetti();
    // Says once, for this connection, that it is lost.
    void Interrompi(const QString& motivo);

    std::unique_ptr<QRemoteObjectNode> mNodo;
    QHash<QString, QRemoteObjectDynamicReplica*> mRepliche;
    bool mInterrotto = false;
};
