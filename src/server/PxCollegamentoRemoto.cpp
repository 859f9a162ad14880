#include "PxCollegamentoRemoto.h"

#include <QPointer>
#include <QRemoteObjectDynamicReplica>

PxCollegamentoRemoto::PxCollegamentoRemoto(const QUrl& indirizzo, QObject* parent)
    : PxCollegamento(parent), mIndirizzo(indirizzo)
{
    Connetti();
}

void PxCollegamentoRemoto::Connetti()
{
    mNodo = std::make_unique<QRemoteObjectNode>();
    mInterrotto = false;
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
