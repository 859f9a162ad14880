#include "RefOspite.h"

#include "modRemoto.h"

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

void RefOspite::PubblicaRemoto(const QUrl& indirizzo)
{
    RefServer* server = mServer;
    const auto pubblica = [server, indirizzo] {
        auto* host = new QRemoteObjectHost(indirizzo, server);
        modRemoto::Pubblica(*host, *server);
    };
    QMetaObject::invokeMethod(server, [server, pubblica] {
        if (server->Caricato())
            pubblica();
        else
            QObject::connect(server, &RefServer::Pronto, server, pubblica, Qt::SingleShotConnection);
    }, Qt::QueuedConnection);
}
