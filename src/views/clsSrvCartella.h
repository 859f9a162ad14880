#pragma once

#include "clsSrvVista.h"
#include "modTabellaCartelle.h"

#include <QPointer>

class PxSrvCartellaDocumenti;
struct PxRisposta;
class PxXmlCallBack;

// A document folder: one mechanism for the seven folders, fed by the folder's row of the
// shared folder table (columns, queues with their toggles and colours, move entries, commands).
// The listing is asked for through a callback object and arrives whole; each notice of the
// folder's service rewrites, adds or removes one row.
class clsSrvCartella : public clsSrvVista
{
    Q_OBJECT

public:
    clsSrvCartella(PxAmbienteVista& ambiente, const modTabellaCartelle::Cartella& definizione, QObject* parent = nullptr);
    ~clsSrvCartella() override;

    const modTabellaCartelle::Cartella& Definizione() const { return mDef; }

    void AggiornaContenuto() override;
    void DocumentoSpostato(qint32 coda, const QString& id, const QString& nodoXml) override;
    void AbilitaPulsanti(bool abilita) override;
    void Esegui(int id) override;
    void Attiva() override;
    PxOggettoVista OggettoCorrente() const override;

    // Whether a full listing keeps queue `coda` (a queue without a toggle is kept; the
    // optional queue only when the server runs it and its toggle is checked).
    bool CodaMostrata(int coda) const;
    quint32 ColoreCoda(int coda) const;

    // The full listing, as the callback object delivers it.
    void mobjBkgXmlEventi_XmlCallBack(const QByteArray& xml);

protected:
    void CreaPulsanti() override;
    QList<PxModelloContenuto::Colonna> CreaColonne() override;
    int RaggruppamentoPredefinito() const override;
    int ColonnaFase() const override { return RaggruppamentoPredefinito(); }
    QList<PxModelloContenuto::Fase> Fasi() const override;

private:
    void Sposta(qint32 coda);
    void CartellaDocumento();
    void VisualizzaUscita();
    void VisualizzaDocumento();
    void GeneraAnteprime();
    void InviaCompresso();
    // The answer to a command: a refusal is shown to the operator and logged.
    std::function<void(const PxRisposta&)> Esito(const char* procedura, bool ricarica);
    void Avvisa(qint32 testo, const QString& dettaglio);
    QString DocumentoScelto() const;

    const modTabellaCartelle::Cartella& mDef;
    QPointer<PxSrvCartellaDocumenti> mCartella;
    PxXmlCallBack* mobjBkgXmlEventi;
    QByteArray mNomeAggiungi; // "AggiungiDocFax"
    QByteArray mNomeAggiorna; // "AggiornaDocFax"
    QString mAbilitatoPer;    // the document the folder and output checks were asked for
};
