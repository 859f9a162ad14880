#include "PxCollegamentoRemoto.h"

#include <QPointer>
#include <QRemoteObjectDynamicReplica>
#include <QSslConfiguration>
#include <QSslSocket>

PxCollegamentoRemoto::PxCollegamentoRemoto(const QUrl& indirizzo, const PxTls& tls, QObject* parent)
    : PxCollegamento(parent), mIndirizzo(indirizzo), mTls(tls)
{
    Connetti();
}

void PxCollegamentoRemoto::Connetti()
{
    mNodo = std::make_unique<QRemoteObjectNode>();
    mInterrotto = false;
    if (mIndirizzo.scheme() == u"tls") {
        // The node speaks through a socket of ours once it is encrypted: our certificate
        // shown, the server's checked against our authority only.
        QSslConfiguration configurazione;
        QString errore;
        if (!mTls.Configura(configurazione, &errore)) {
            QMetaObject::invokeMethod(this, [this, errore] { Interrompi(errore); }, Qt::QueuedConnection);
            return;
        }
        auto* socket = new QSslSocket(mNodo.get());
        socket->setSslConfiguration(configurazione);
        QRemoteObjectNode* nodo = mNodo.get();
        connect(socket, &QSslSocket::encrypted, nodo, [nodo, socket] { nodo->addClientSideConnection(socket); });
        connect(socket, &QSslSocket::errorOccurred, this, [this, socket, nodo](QAbstractSocket::SocketError) {
            if (nodo == mNodo.get())
                Interrompi(QStringLiteral("%1: %2").arg(mIndirizzo.toString(), socket->errorString()));
        });
        socket->connectToHostEncrypted(mIndirizzo.host(), static_cast<quint16>(mIndirizzo.port()));
        return;
    }
    if (mIndirizzo.scheme() != u"local") {
        const QString motivo = mIndirizzo.scheme() == u"tcp"
            ? QStringLiteral("%1: il server non si raggiunge in TCP semplice, solo in TLS (tls://host:porta)").arg(mIndirizzo.toString())
            : QStringLiteral("%1: indirizzo non valido (local:/percorso.sock, tls://host:porta)").arg(mIndirizzo.toString());
        QMetaObject::invokeMethod(this, [this, motivo] { Interrompi(motivo); }, Qt::QueuedConnection);
        return;
    }
    if (!mNodo->connectToNode(mIndirizzo)) {
        mInterrotto = true;
        QMetaObject::invokeMethod(
            this, [this] { emit Interrotto(QStringLiteral("impossibile raggiungere %1").arg(mIndirizzo.toString())); },
            Qt::QueuedConnection);
    }
}

PxCollegamentoRemoto::~PxCollegamentoRemoto()
{
    // The replicas go before the node they belong to.
    mInterrotto = true;
    qDeleteAll(mRepliche);
}

void PxCollegamentoRemoto::Interrompi(const QString& motivo)
{
    if (mInterrotto)
        return;
    mInterrotto = true;
    emit Interrotto(motivo);
}

bool PxCollegamentoRemoto::Ricollega()
{
    // A new node, rather than the old one's own retries: its replicas would come back with
    // whatever the old connection left half-done, and at a pace that is not ours to set.
    mInterrotto = true;
    qDeleteAll(std::exchange(mRepliche, {}));
    Connetti();
    return true;
}

void PxCollegamentoRemoto::Acquisisci(const QString& nome, QObject* contesto, Pronta pronta)
{
    if (!contesto || !pronta)
        return;
    QRemoteObjectDynamicReplica* replica = mRepliche.value(nome);
    if (!replica) {
        replica = mNodo->acquireDynamic(nome);
        replica->setParent(this);
        mRepliche.insert(nome, replica);
        connect(replica, &QRemoteObjectReplica::stateChanged, this,
                [this, nome](QRemoteObjectReplica::State stato, QRemoteObjectReplica::State prima) {
                    if (mInterrotto || prima != QRemoteObjectReplica::Valid)
                        return;
                    if (stato == QRemoteObjectReplica::Suspect || stato == QRemoteObjectReplica::SignatureMismatch) {
                        mInterrotto = true;
                        emit Interrotto(QStringLiteral("collegamento con %1 perso").arg(nome));
                    }
                });
    }
    if (replica->isInitialized()) {
        pronta(replica);
        return;
    }
    // The replica's signals and slots exist only once its source has described them.
    auto connessione = std::make_shared<QMetaObject::Connection>();
    *connessione = connect(replica, &QRemoteObjectReplica::initialized, contesto, [replica, pronta, connessione] {
        QObject::disconnect(*connessione);
        pronta(replica);
    });
}
