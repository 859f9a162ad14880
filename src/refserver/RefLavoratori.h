#pragma once

#include "modCartelle.h"

#include <QHash>
#include <QObject>
#include <QTimer>

#include <functional>
#include <random>

class RefCartellaDocumenti;
class RefServizio;

// The workers of the reference server: on each tick every stage of every folder takes a few
// documents from its queue and moves them on, when both the folder's service and the stage's
// worker are running. A configurable share of the passes fails with one of the worker's own
// errors (modDemoErrori); a document rejected for the second time is discarded.
//
// A stage that delivers (prints, transmits, publishes) counts each pass as an attempt in the
// document's Tentativi. A passing fault there (a busy line) sends the document back to the
// queue before the stage, to be tried again after a few ticks; after the worker's last attempt
// (its NumeroTentativiInvio, else 3) it is rejected with a text that names that many attempts.
//
// A document that cannot be moved (the disk refuses) never stops its stage: it is left out,
// retried after 1, 2, 4 ... up to 256 ticks, its state shows "Bloccato: <reason>", and the
// worker reports it once per change of reason, not once per tick.
class RefLavoratori : public QObject
{
    Q_OBJECT

public:
    using Servizio = std::function<RefServizio*(const QString& chiave)>;

    RefLavoratori(QList<RefCartellaDocumenti*> cartelle, Servizio servizio, QObject* parent = nullptr);

    // Milliseconds between ticks; 0 stops the timer (a test then calls Lavora itself).
    void ImpostaIntervallo(int millisecondi);
    int Intervallo() const { return mIntervallo; }
    // Percent of the documents that a stage able to reject does reject (0-100).
    void ImpostaPercentualeRespinti(int percento) { mRespinti = std::clamp(percento, 0, 100); }
    // Documents each stage takes per tick.
    void ImpostaPerPasso(int documenti) { mPerPasso = std::max(1, documenti); }
    void ImpostaSeme(quint32 seme) { mCaso.seed(seme); }
    // How many documents are waiting to be retried.
    qsizetype Bloccati() const { return mBloccati.size(); }
    static constexpr quint64 AttesaMassima = 256; // ticks
    static constexpr quint64 AttesaTentativo = 3; // ticks between two attempts of a delivery

    // Whether each pass of `passo` is a delivery attempt, counted in the document's Tentativi.
    static bool ContaTentativi(const modCartelle::Passo& passo)
    {
        return passo.PuoRespingere && passo.Produce == modCartelle::Uscita::Nessuna;
    }
    // Where a document waits for its next attempt at `passo`: the queue of the stage that
    // leads into it, or the stage's own queue when none does.
    static qint32 CodaNuovoTentativo(const modCartelle::Definizione& def, const modCartelle::Passo& passo);
    // The state text of a document waiting for its next attempt, after `fatti` of `massimo`.
    static QString StatoNuovoTentativo(qint32 fatti, qint32 massimo)
    {
        return QStringLiteral("Tentativo %1 di %2 non riuscito, nuovo tentativo fra poco").arg(fatti).arg(massimo);
    }

public slots:
    // One tick of every stage; returns the number of documents moved.
    int Lavora();

private:
    QList<RefCartellaDocumenti*> mCartelle;
    Servizio mServizio;
    QTimer mTimer;
    int mIntervallo = 0;
    int mRespinti = 5;
    int mPerPasso = 3;
    struct Blocco
    {
        quint64 ProssimoTentativo = 0; // tick
        quint64 Attesa = 1;            // ticks, doubled at each failure
        QString Errore;
    };
    // Returns true when the failure is new or its reason changed (worth a report).
    bool RegistraBlocco(const QString& chiave, const QString& errore);
    // Attempts `lavoratore` makes before it rejects for a passing fault.
    qint32 TentativiMassimi(RefServizio* lavoratore);

    std::mt19937 mCaso{20261122u};
    quint64 mTick = 0;
    QHash<QString, Blocco> mBloccati; // "<folder>/<id>"
    QHash<QString, quint64> mNuoviTentativi; // "<folder>/<id>" -> the tick from which it may be tried again
    QHash<const RefServizio*, qint32> mTentativiMassimi;
};
