#pragma once

#include "PxContratto.h"
#include "RefLog.h"
#include "modCatalogo.h"

#include <QObject>

#include <span>

#include <pugixml.hpp>

// A service, worker or folder of the reference server. Its state XML is its configuration
// (the file "Servizi/<Chiave>.xml" of the server folder) with the live elements laid over
// it: Stato, Attivita, Errore and FileLog. The text is rebuilt only when something changes,
// and published with StatoXmlCambiato before any notice that follows the change.
class RefServizio : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Chiave READ Chiave CONSTANT)
    Q_PROPERTY(QString StatoXml READ StatoXml NOTIFY StatoXmlCambiato)

public:
    // `configurazione` is the root element to copy (may be empty); `cartellaLog` holds the log.
    RefServizio(const modCatalogo::VoceServizio& voce, const pugi::xml_node& configurazione,
                const QString& cartellaLog, QObject* parent = nullptr);

    QString Chiave() const { return mChiave; }
    QString StatoXml() const { return mStatoXml; }
    const modCatalogo::VoceServizio& Voce() const { return mVoce; }
    qint32 CodiceStato() const { return mCodice; }
    RefLog& Log() { return mLog; }

    // Runs the service (Stato/Codice 4); false when it cannot run (disabled, code 8).
    bool AvviaServizio();
    // Suspends it: it keeps its documents but stops moving them.
    bool SospendiServizio();
    void ImpostaAttivita(const QString& attivita);
    // Records an error (code 0 clears it) and raises NotificaErrore for a real one.
    void ImpostaErrore(qint32 codice, const QString& descrizione);
    // The element `nome` directly under the root, created when missing: the live values
    // a service publishes beside its configuration (counters, lists).
    pugi::xml_node Elemento(const char* nome);
    // Call after changing elements through Elemento(): rebuilds the state XML and raises
    // StatoXmlCambiato now, or, with `presto`, once when the server's event loop next turns
    // (a burst of counter changes then makes one notice).
    void Pubblica(bool presto = false);
    // Raises DocumentiSpostati for documents of one of this service's folders: one move, or
    // the moves a folder made together.
    void AnnunciaSpostamento(qint32 coda, const QString& id, const QString& nodo);
    void AnnunciaSpostamenti(std::span<const modContratto::Spostamento> spostamenti);
    // Tells whoever dropped the job `base` (its file name without extension) in this
    // service's input folder what became of it: the document `id`, or set aside for `motivo`.
    void AnnunciaLavoroPreso(const QString& base, const QString& id) { emit LavoroPreso(base, id); }
    void AnnunciaLavoroRespinto(const QString& base, const QString& motivo) { emit LavoroRespinto(base, motivo); }
    // The input folder where this service takes jobs ("" when it takes none).
    void ImpostaCartellaIngresso(const QString& cartella) { mCartellaIngresso = cartella; }
    QString CartellaIngressoRef() const { return mCartellaIngresso; }
    // Reports progress of the work under way.
    void AnnunciaAvanzamento(const QString& attivita, qint32 fatti, qint32 totale) { emit Avanzamento(attivita, fatti, totale); }

public slots:
    void RichiediStato(quint64 richiesta);
    void Avvia(quint64 richiesta);
    void Sospendi(quint64 richiesta);
    // Puts the job `file` (see modPacchettoLavoro) into the input folder under `base`, or
    // under `base (2)`, ... when a job of that name still waits there; answered with the
    // name used. Refused for a service without input folder, a name that is not a plain file
    // name, a malformed job; failed when the disk refused (nothing of the job is left).
    void ConsegnaLavoro(quint64 richiesta, const QString& base, const QByteArray& file);

signals:
    void StatoXmlCambiato(const QString& xml);
    void CambioStato();
    void CambioAttivita();
    void NotificaErrore(qint32 codice, const QString& descrizione);
    void Avanzamento(const QString& attivita, qint32 fatti, qint32 totale);
    // Packed by modContratto::ImpacchettaSpostamenti.
    void DocumentiSpostati(const QByteArray& lotto);
    void LavoroPreso(const QString& base, const QString& id);
    void LavoroRespinto(const QString& base, const QString& motivo);
    void Risposta(quint64 richiesta, qint32 esito, const QString& testo, const QByteArray& dati);

private:
    // Whether the caller may do `operazione`: refused with the reason if not, logged with who
    // asked if so.
    bool Consentito(quint64 richiesta, const QString& operazione);
    void CambiaStato(qint32 codice);
    void Componi();
    void PubblicaInAttesa();

    const modCatalogo::VoceServizio& mVoce;
    QString mChiave;
    RefLog mLog;
    pugi::xml_document mDoc;
    qint32 mCodice = modCatalogo::StatoArrestato;
    QString mStatoXml;
    QString mCartellaIngresso;
    bool mInAttesa = false;
};
