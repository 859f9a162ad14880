#include "PxTls.h"

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QFile>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>

QList<QCommandLineOption> PxTls::Opzioni()
{
    return {{QStringLiteral("tls-cert"), QStringLiteral("TLS: this side's certificate (PEM)."), QStringLiteral("file")},
            {QStringLiteral("tls-key"), QStringLiteral("TLS: this side's private key (PEM, unencrypted)."), QStringLiteral("file")},
            {QStringLiteral("tls-ca"), QStringLiteral("TLS: the authority the other side's certificate must come from (PEM)."),
             QStringLiteral("file")}};
}

PxTls PxTls::DaRiga(const QCommandLineParser& riga)
{
    return {riga.value(QStringLiteral("tls-cert")), riga.value(QStringLiteral("tls-key")), riga.value(QStringLiteral("tls-ca"))};
}

namespace {

bool Leggi(const QString& percorso, const char* cosa, QByteArray& dati, QString* errore)
{
    QFile f(percorso);
    if (percorso.isEmpty()) {
        *errore = QStringLiteral("TLS needs a %1 file").arg(QString::fromLatin1(cosa));
        return false;
    }
    if (!f.open(QIODevice::ReadOnly)) {
        *errore = QStringLiteral("cannot read the %1 %2: %3").arg(QString::fromLatin1(cosa), percorso, f.errorString());
        return false;
    }
    dati = f.read(1024 * 1024);
    return true;
}

} // namespace

bool PxTls::Configura(QSslConfiguration& configurazione, QString* errore) const
{
    QByteArray certificato, chiave, ca;
    if (!Leggi(Certificato, "certificate", certificato, errore) || !Leggi(Chiave, "private key", chiave, errore)
        || !Leggi(Ca, "certificate authority", ca, errore))
        return false;
    const QList<QSslCertificate> propri = QSslCertificate::fromData(certificato, QSsl::Pem);
    const QSslKey privata(chiave, QSsl::Rsa, QSsl::Pem);
    const QSslKey privataEc(chiave, QSsl::Ec, QSsl::Pem);
    const QList<QSslCertificate> autorita = QSslCertificate::fromData(ca, QSsl::Pem);
    if (propri.isEmpty()) {
        *errore = QStringLiteral("%1 holds no PEM certificate").arg(Certificato);
        return false;
    }
    if (privata.isNull() && privataEc.isNull()) {
        *errore = QStringLiteral("%1 holds no PEM private key (RSA or EC, unencrypted)").arg(Chiave);
        return false;
    }
    if (autorita.isEmpty()) {
        *errore = QStringLiteral("%1 holds no PEM certificate").arg(Ca);
        return false;
    }
    configurazione = QSslConfiguration::defaultConfiguration();
    configurazione.setLocalCertificateChain(propri);
    configurazione.setPrivateKey(privata.isNull() ? privataEc : privata);
    // Only our own authority: a certificate the system trusts is not one of ours.
    configurazione.setCaCertificates(autorita);
    configurazione.setPeerVerifyMode(QSslSocket::VerifyPeer);
    configurazione.setProtocol(QSsl::TlsV1_2OrLater);
    return true;
}
