#include "RefOspite.h"

#include "modRemoto.h"

#include <QDir>
#include <QFile>
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

void RefOspite::PubblicaRemoto(const QUrl& indirizzo, std::function<void(const QString& errore)> esito)
{
    RefServer* server = mServer;
    QPointer<RefOspite> ospite(this);
    QMetaObject::invokeMethod(server, [server, indirizzo, esito = std::move(esito), ospite] {
        auto* host = new QRemoteObjectHost(server);
        QString errore;
        if (!host->setHostUrl(indirizzo))
            errore = QStringLiteral("cannot listen on %1 (Qt Remote Objects error %2)")
                         .arg(indirizzo.toString())
                         .arg(static_cast<int>(host->lastError()));
        else if (indirizzo.scheme() == u"local" && QDir::isAbsolutePath(indirizzo.path()))
            // Only the server's user and group may connect; the folder holding the socket
            // decides who can reach it at all.
            QFile::setPermissions(indirizzo.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::WriteGroup);
        if (!errore.isEmpty()) {
            delete host;
        } else {
            // What exists from the start now; folders, services and catalogues once loaded.
            modRemoto::Pubblica(*host, *server);
            if (!server->Caricato())
                QObject::connect(server, &RefServer::Pronto, host, [host, server] { modRemoto::Pubblica(*host, *server); },
                                 Qt::SingleShotConnection);
        }
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
