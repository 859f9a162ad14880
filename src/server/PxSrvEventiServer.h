#pragma once

#include <QObject>
#include <QString>

// The server's own event source: what comes and goes beside the services' states.
class PxSrvEventiServer : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

signals:
    // The server's run state changed (see PxSrvServer::Stato).
    void CambioStatoServer(qint32 codice);
    // A preview client connected or left; `nodoXml` is its record as in the "Utenti" list.
    void UtenteConnesso(const QString& nodoXml);
    void UtenteDisconnesso(const QString& keyUtente);
    // A printer was added to or removed from the "Stampanti" list.
    void StampanteAggiunta(const QString& nodoXml);
    void StampanteRimossa(const QString& chiave);
    // An FTP client connected or left ("FtpClients" list).
    void FtpClienteConnesso(const QString& nodoXml);
    void FtpClienteDisconnesso(const QString& chiave);
};
