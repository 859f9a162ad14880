#pragma once

#include <QObject>
#include <QString>

// A service or worker of the dispatch server, as the console sees it.
//
// Shaped for replication across processes: the state XML is a property with a change
// signal (read from the local copy, never a round trip), commands are slots, notices are
// signals. Only ids and XML text cross this boundary.
class PxSrvServizio : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Chiave READ Chiave CONSTANT)
    Q_PROPERTY(QString StatoXml READ StatoXml NOTIFY StatoXmlCambiato)

public:
    using QObject::QObject;
    ~PxSrvServizio() override = default;

    // The object key ("PxSrvFax", "PxSrvTifVm", ...).
    virtual QString Chiave() const = 0;
    // The state document: root named after the service, with Stato (Codice, Descrizione),
    // Attivita, Errore (Codice, Descrizione), FileLog and the service's own elements.
    virtual QString StatoXml() const = 0;

public slots:
    // Start the service (Stato/Codice becomes 4); refused silently when it cannot run.
    virtual void Avvia() = 0;
    // Suspend the service: it keeps its documents but stops moving them.
    virtual void Sospendi() = 0;

signals:
    void StatoXmlCambiato();
    // The run state changed.
    void CambioStato();
    // The activity text changed.
    void CambioAttivita();
    // The service met an error: its number and text (also in Errore of the state XML).
    void NotificaErrore(qint32 codice, const QString& descrizione);
    // Progress of a long piece of work: what is being done, how much of how much.
    void Avanzamento(const QString& attivita, qint32 fatti, qint32 totale);
    // One document of this service changed queue; `nodoXml` is its listing node.
    void DocumentoSpostato(qint32 coda, const QString& id, const QString& nodoXml);
};
