#include "RefOspite.h"

#include "RefAscolto.h"
#include "modRemoto.h"

#include <QCoreApplication>
#include <QPointer>
#include <QRemoteObjectHost>
#include <QThread>

namespace {

// The server's thread: its event loop, then the server destroyed on this same thread.
class FiloServer : public QThread
{
public:
    explicit FiloServer(RefServer*& server) : mServer(server) {}

protected:
    void run() override
    {
        exec();
        delete mServer;
        mServer = nullptr;
    }

private:
    RefServer*& mServer;
};

} // namespace

RefOspite::RefOspite(const QString& cartella, RefServer::Opzioni opzioni, QObject* parent) : QObject(parent)
{
    opzioni.CaricaSubito = false;
    mServer = new RefServer(cartella, opzioni);
    mFilo = new FiloServer(mServer);
    mFilo->setObjectName(QStringLiteral("PxSrvServer"));
    mServer->moveToThread(mFilo);
}

RefOspite::~RefOspite()
{
    if (mServer)
        mServer->InterrompiCaricamento(); // a load under way ends early
    mFilo->quit();
    mFilo->wait();
    delete mFilo;
}

void RefOspite::Avvia()
{
    if (mFilo->isRunning())
        return;
    // Posted before the thread runs: the loading is the first thing its loop does.
    QMetaObject::invokeMethod(mServer, &RefServer::Carica, Qt::QueuedConnection);
    mFilo->start();
}

QObject* RefOspite::Oggetto(const QString& nome) const { return mServer ? mServer->Oggetto(nome) : nullptr; }

QString RefOspite::Cartella() const { return mServer ? mServer->Cartella() : QString(); }

void RefOspite::PubblicaRemoto(const QUrl& indirizzo, std::function<void(const QString& errore)> esito, const PxTls& tls)
{
    RefServer* server = mServer;
    QPointer<RefOspite> ospite(this);
    QMetaObject::invokeMethod(server, [server, indirizzo, tls, esito = std::move(esito), ospite] {
        // One host for every address, made on the first: each connection is accepted by us
        // and handed to it.
        auto* host = server->findChild<QRemoteObjectHost*>(QString(), Qt::FindDirectChildrenOnly);
        if (!host) {
            host = new QRemoteObjectHost(server);
            host->setHostUrl(QUrl(QStringLiteral("plxsrvd://") + QString::number(QCoreApplication::applicationPid())),
                             QRemoteObjectHost::AllowExternalRegistration);
            // What exists from the start now; folders, services and catalogues once loaded.
            modRemoto::Pubblica(*host, *server);
            if (!server->Caricato())
                QObject::connect(server, &RefServer::Pronto, host, [host, server] { modRemoto::Pubblica(*host, *server); },
                                 Qt::SingleShotConnection);
        }
        auto* ascolto = new RefAscolto(*host, server->Cartella(), server->Log(), host);
        const QString errore = ascolto->Ascolta(indirizzo, tls);
        if (!errore.isEmpty())
            delete ascolto;
        if (esito)
            QMetaObject::invokeMethod(ospite, [esito, errore] { esito(errore); }, Qt::QueuedConnection);
    }, Qt::QueuedConnection);
}

void RefOspite::AnnunciaArresto()
{
    if (!mFilo->isRunning())
        return;
    QMetaObject::invokeMethod(mServer, &RefServer::AnnunciaArresto, Qt::BlockingQueuedConnection);
    // The notice is queued on each connection's socket; give the server's loop a moment to
    // write it out before the sockets close.
    QThread::msleep(200);
}
