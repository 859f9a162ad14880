#pragma once

#include "PxSrvServizio.h"
#include "RefLog.h"
#include "modCatalogo.h"

#include <pugixml.hpp>

// A service, worker or folder of the reference server. Its state XML is its configuration
// (the file "Servizi/<Chiave>.xml" of the server folder) with the live elements laid over
// it: Stato, Attivita, Errore and FileLog. The text is rebuilt only when something changes.
class RefServizio : public PxSrvServizio
{
    Q_OBJECT

public:
    // `configurazione` is the root element to copy (may be empty); `cartellaLog` holds the log.
    RefServizio(const modCatalogo::VoceServizio& voce, const pugi::xml_node& configurazione,
                const QString& cartellaLog, QObject* parent = nullptr);

    QString Chiave() const override { return mChiave; }
    QString StatoXml() const override { return mStatoXml; }
    const modCatalogo::VoceServizio& Voce() const { return mVoce; }
    qint32 CodiceStato() const { return mCodice; }
    RefLog& Log() { return mLog; }

    void ImpostaAttivita(const QString& attivita);
    // Records an error (code 0 clears it) and raises NotificaErrore for a real one.
    void ImpostaErrore(qint32 codice, const QString& descrizione);
    // The element `nome` directly under the root, created when missing: the live values
    // a service publishes beside its configuration (counters, lists).
    pugi::xml_node Elemento(const char* nome);
    // Call after changing elements through Elemento(): republishes the state XML.
    void Pubblica();
    // Raises DocumentoSpostato for a document of one of this service's folders.
    void AnnunciaSpostamento(qint32 coda, const QString& id, const QString& nodo) { emit DocumentoSpostato(coda, id, nodo); }
    // Reports progress of the work under way.
    void AnnunciaAvanzamento(const QString& attivita, qint32 fatti, qint32 totale) { emit Avanzamento(attivita, fatti, totale); }

public slots:
    void Avvia() override;
    void Sospendi() override;

private:
    void CambiaStato(qint32 codice);
    void Componi();

    const modCatalogo::VoceServizio& mVoce;
    QString mChiave;
    RefLog mLog;
    pugi::xml_document mDoc;
    qint32 mCodice = modCatalogo::StatoArrestato;
    QString mStatoXml;
};
