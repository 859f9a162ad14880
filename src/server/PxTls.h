#pragma once

#include <QString>

#include <QList>

class QCommandLineOption;
class QCommandLineParser;
class QSslConfiguration;

// The files of a TLS connection, on either side: this side's certificate and private key (PEM)
// and the certificate authority that the other side's certificate must come from. Both sides
// present a certificate and both check the other's.
struct PxTls
{
    QString Certificato;
    QString Chiave;
    QString Ca;

    bool Vuota() const { return Certificato.isEmpty() && Chiave.isEmpty() && Ca.isEmpty(); }
    // The configuration of either side; false, with the reason, when a file is missing,
    // unreadable or not what it should be.
    bool Configura(QSslConfiguration& configurazione, QString* errore) const;

    // --tls-cert, --tls-key, --tls-ca: the same three options in every program.
    static QList<QCommandLineOption> Opzioni();
    static PxTls DaRiga(const QCommandLineParser& riga);
};
