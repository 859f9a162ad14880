#include "RefAscolto.h"

#include "PxRigaLog.h"
#include "RefAccesso.h"
#include "RefLog.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QRemoteObjectHostBase>
#include <QSslConfiguration>
#include <QSslServer>
#include <QSslSocket>
#include <QTimer>

RefAscolto::RefAscolto(QRemoteObjectHostBase& host, QString cartellaServer, RefLog& log, QObject* parent)
    : QObject(parent), mHost(host), mCartella(std::move(cartellaServer)), mLog(log)
{
}

void RefAscolto::Accetta(QIODevice* connessione, const QString& nome, bool locale)
{
    // Qt Remote Objects keeps a pointer to the device after it closes and writes through it
    // until it has dropped the connection itself: the device goes well after that.
    connessione->setParent(this);
    connect(connessione, &QIODevice::aboutToClose, connessione,
            [connessione] { QTimer::singleShot(30000, connessione, &QObject::deleteLater); });
    RefAccesso::Chiamante chiamante;
    chiamante.Nome = nome;
    chiamante.Permessi = locale ? RefAccesso::Ruolo::Operatore : RefAccesso::RuoloDi(mCartella, nome);
    // Connected before the host's own handler, so that it runs first on every read: the
    // requests the host then reads and carries out are this caller's.
    connect(connessione, &QIODevice::readyRead, this, [chiamante] { RefAccesso::ImpostaCorrente(chiamante); });
    if (!locale)
        mLog.Scrivi(modRigaLog::LivelloInformazione, QStringLiteral("Console collegata via TLS: %1 (%2)")
                                                         .arg(nome, RefAccesso::NomeRuolo(chiamante.Permessi)));
    mHost.addHostSideConnection(connessione);
}

QString RefAscolto::Ascolta(const QUrl& indirizzo, const PxTls& tls)
{
    if (indirizzo.scheme() == u"local") {
        auto* server = new QLocalServer(this);
        // Only the server's user and group may open the socket.
        server->setSocketOptions(QLocalServer::UserAccessOption | QLocalServer::GroupAccessOption);
        if (!server->listen(indirizzo.path())) {
            const QString errore = QStringLiteral("cannot listen on %1: %2").arg(indirizzo.toString(), server->errorString());
            delete server;
            return errore;
        }
        connect(server, &QLocalServer::newConnection, this, [this, server] {
            while (QLocalSocket* s = server->nextPendingConnection()) {
                Accetta(s, QStringLiteral("locale"), true);
            }
        });
        return {};
    }
    if (indirizzo.scheme() != u"tls")
        return QStringLiteral("\"%1\": unknown kind of address").arg(indirizzo.toString());
    QSslConfiguration configurazione;
    QString errore;
    if (!tls.Configura(configurazione, &errore))
        return errore;
    auto* server = new QSslServer(this);
    server->setSslConfiguration(configurazione);
    server->setHandshakeTimeout(10000);
    const QHostAddress dove = indirizzo.host().isEmpty() || indirizzo.host() == u"*" ? QHostAddress(QHostAddress::Any)
                                                                                      : QHostAddress(indirizzo.host());
    if (dove.isNull() || indirizzo.port() <= 0 || !server->listen(dove, static_cast<quint16>(indirizzo.port()))) {
        errore = QStringLiteral("cannot listen on %1: %2").arg(indirizzo.toString(), server->errorString());
        delete server;
        return errore;
    }
    // A client without TLS, or whose certificate is not from our authority, never gets in;
    // the attempt is logged with the reason.
    const auto rifiuta = [this](QSslSocket* s, const QString& motivo) {
        mLog.Scrivi(modRigaLog::LivelloAvviso, QStringLiteral("Connessione rifiutata da %1: %2")
                                                   .arg(s ? s->peerAddress().toString() : QStringLiteral("?"), motivo));
    };
    connect(server, &QSslServer::peerVerifyError, this,
            [rifiuta](QSslSocket* s, const QSslError& e) { rifiuta(s, e.errorString()); });
    connect(server, &QSslServer::errorOccurred, this, [rifiuta](QSslSocket* s, QAbstractSocket::SocketError) {
        if (s && !s->isEncrypted())
            rifiuta(s, QStringLiteral("nessuna sessione TLS (%1)").arg(s->errorString()));
    });
    connect(server, &QSslServer::pendingConnectionAvailable, this, [this, server] {
        while (auto* s = qobject_cast<QSslSocket*>(server->nextPendingConnection())) {
            const QString nome = s->peerCertificate().subjectInfo(QSslCertificate::CommonName).join(u' ');
            Accetta(s, nome.isEmpty() ? s->peerAddress().toString() : nome, false);
        }
    });
    return {};
}
