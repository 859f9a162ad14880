#pragma once

#include "PxSrvOggetto.h"

#include <pugixml.hpp>

// A service or worker of the dispatch server, as the console sees it: a local copy of its
// state XML, read synchronously, kept current by the server's notices; its commands go out
// as requests.
class PxSrvServizio : public PxSrvOggetto
{
    Q_OBJECT
    Q_PROPERTY(QString Chiave READ Chiave CONSTANT)
    Q_PROPERTY(QString StatoXml READ StatoXml NOTIFY StatoXmlCambiato)

public:
    // `statoXml`: the state as the server last described it.
    PxSrvServizio(const QString& chiave, const QString& statoXml, QObject* parent = nullptr);

    // The object key ("PxSrvFax", "PxSrvTifVm", ...).
    QString Chiave() const { return mChiave; }
    // The state document: root named after the service, with Stato (Codice, Descrizione),
    // Attivita, Errore (Codice, Descrizione), FileLog and the service's own elements.
    QString StatoXml() const { return mStatoXml; }
    // The state parsed into `doc`; false (and an empty document) when it does not read.
    bool LeggiStato(pugi::xml_document& doc) const;
    // The service's input folder, as its state names it ("" when it has none).
    QString CartellaIngresso() const;

    // Start the service (Stato/Codice becomes 4); refused when it cannot run.
    void Avvia(QObject* richiedente = nullptr, Esito fatto = {});
    // Suspend the service: it keeps its documents but stops moving them.
    void Sospendi(QObject* richiedente = nullptr, Esito fatto = {});
    // Hands the job `file` (see modPacchettoLavoro) to the service's input folder under the
    // name `base`; the answer's text is the name the server used (`base`, or `base (2)`, ...
    // when a job of that name still waits), the one its LavoroPreso or LavoroRespinto carries.
    void ConsegnaLavoro(const QString& base, const QByteArray& file, QObject* richiedente, Esito fatto);

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
    // A job dropped in this service's input folder, named by its file name without extension,
    // became the document `id`, or was set aside (not taken) because of `motivo`.
    void LavoroPreso(const QString& base, const QString& id);
    void LavoroRespinto(const QString& base, const QString& motivo);

protected:
    void AlCollegamento(QObject* sorgente) override;

private slots:
    void AlStatoXml(const QString& xml);
    void AlDocumentiSpostati(const QByteArray& lotto);

private:
    QString mChiave;
    QString mStatoXml;
};
