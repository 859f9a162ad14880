#pragma once

#include "PxTls.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStringList>

// A certificate authority, the server's certificate and clients' ones, made with openssl.
class Pki
{
public:
    explicit Pki(const QString& cartella) : mDir(cartella)
    {
        Autorita(QStringLiteral("ca"));
        Autorita(QStringLiteral("altra"));
        Certificato(QStringLiteral("ca"), QStringLiteral("localhost"), QStringLiteral("DNS:localhost,IP:127.0.0.1"));
        for (const QString& cliente : {QStringLiteral("console-sala"), QStringLiteral("monitor-noc")})
            Certificato(QStringLiteral("ca"), cliente);
        Certificato(QStringLiteral("altra"), QStringLiteral("intruso"));
    }
    bool Pronta() const { return mOk; }
    QString File(const QString& nome) const { return mDir.filePath(nome); }
    PxTls Di(const QString& nome) const { return {File(nome + QStringLiteral(".pem")), File(nome + QStringLiteral(".key")), File(QStringLiteral("ca.pem"))}; }
    QStringList Opzioni(const QString& nome) const
    {
        return {QStringLiteral("--tls-cert"), File(nome + QStringLiteral(".pem")), QStringLiteral("--tls-key"), File(nome + QStringLiteral(".key")), QStringLiteral("--tls-ca"), File(QStringLiteral("ca.pem"))};
    }

private:
    void Esegui(const QStringList& argomenti)
    {
        QProcess p;
        p.setWorkingDirectory(mDir.path());
        p.start(QStringLiteral("openssl"), argomenti);
        mOk = mOk && p.waitForFinished(30000) && p.exitCode() == 0;
    }
    void Autorita(const QString& nome)
    {
        Esegui({QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"), QStringLiteral("rsa:2048"), QStringLiteral("-nodes"), QStringLiteral("-keyout"), nome + QStringLiteral(".key"), QStringLiteral("-out"),
                nome + QStringLiteral(".pem"), QStringLiteral("-days"), QStringLiteral("2"), QStringLiteral("-subj"), QStringLiteral("/CN=") + nome});
    }
    void Certificato(const QString& ca, const QString& nome, const QString& san = {})
    {
        Esegui({QStringLiteral("req"), QStringLiteral("-newkey"), QStringLiteral("rsa:2048"), QStringLiteral("-nodes"), QStringLiteral("-keyout"), nome + QStringLiteral(".key"), QStringLiteral("-out"), nome + QStringLiteral(".csr"),
                QStringLiteral("-subj"), QStringLiteral("/CN=") + nome});
        QFile estensioni(mDir.filePath(nome + QStringLiteral(".ext")));
        mOk = mOk && estensioni.open(QIODevice::WriteOnly);
        if (!san.isEmpty())
            estensioni.write("subjectAltName=" + san.toUtf8() + '\n');
        estensioni.close();
        Esegui({QStringLiteral("x509"), QStringLiteral("-req"), QStringLiteral("-in"), nome + QStringLiteral(".csr"), QStringLiteral("-CA"), ca + QStringLiteral(".pem"), QStringLiteral("-CAkey"), ca + QStringLiteral(".key"),
                QStringLiteral("-CAcreateserial"), QStringLiteral("-out"), nome + QStringLiteral(".pem"), QStringLiteral("-days"), QStringLiteral("2"), QStringLiteral("-extfile"), nome + QStringLiteral(".ext")});
    }

    QDir mDir;
    bool mOk = true;
};

