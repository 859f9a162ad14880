#include "RefLavoratori.h"

#include "RefCartellaDocumenti.h"
#include "RefServizio.h"
#include "modCatalogo.h"
#include "modProprieta.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace {

// What went wrong, when a document is rejected.
std::pair<qint32, QString> MotivoRifiuto(std::mt19937& caso)
{
    static const std::pair<qint32, QString> motivi[] = {
        {12, u"Errore 12: destinatario non raggiungibile"_s},
        {27, u"Errore 27: linea occupata dopo 3 tentativi"_s},
        {41, u"Errore 41: formato del corpo non riconosciuto"_s},
        {55, u"Errore 55: stampante non disponibile"_s},
        {63, u"Errore 63: il server smtp ha rifiutato il messaggio (550)"_s},
    };
    return motivi[caso() % std::size(motivi)];
}

} // namespace

RefLavoratori::RefLavoratori(QList<RefCartellaDocumenti*> cartelle, Servizio servizio, QObject* parent)
    : QObject(parent), mCartelle(std::move(cartelle)), mServizio(std::move(servizio)), mTimer(this)
{
    connect(&mTimer, &QTimer::timeout, this, &RefLavoratori::Lavora);
}

void RefLavoratori::ImpostaIntervallo(int millisecondi)
{
    mIntervallo = std::max(0, millisecondi);
    if (mIntervallo > 0)
        mTimer.start(mIntervallo);
    else
        mTimer.stop();
}

int RefLavoratori::Lavora()
{
    int spostati = 0;
    QHash<RefServizio*, QPair<QString, int>> attivita; // per worker: what it did this tick
    for (RefCartellaDocumenti* cartella : std::as_const(mCartelle)) {
        const modCartelle::Definizione& def = cartella->Definizione();
        RefServizio* proprietario = mServizio(QString::fromLatin1(def.Servizio));
        if (!proprietario || proprietario->CodiceStato() != modCatalogo::StatoInFunzione)
            continue; // a suspended service moves none of its documents
        // Later stages first, so that a document moves one stage per tick.
        for (auto passo = def.Passi.rbegin(); passo != def.Passi.rend(); ++passo) {
            RefServizio* lavoratore = mServizio(QString::fromLatin1(passo->Lavoratore));
            if (!lavoratore || lavoratore->CodiceStato() != modCatalogo::StatoInFunzione)
                continue;
            const QStringList presi = cartella->Coda(passo->Da, mPerPasso);
            if (presi.isEmpty())
                continue;
            const qint32 totale = static_cast<qint32>(cartella->Conteggio(passo->Da));
            qint32 fatti = 0;
            for (const QString& id : presi) {
                const DatiDocumento* d = cartella->Trova(id);
                if (!d)
                    continue;
                const bool respinto = passo->PuoRespingere && static_cast<int>(mCaso() % 100) < mRespinti;
                QString errore;
                if (respinto) {
                    const qint32 destinazione = d->Rifiuti > 0 ? def.CodaScartati : def.CodaRespinti;
                    const auto [codice, motivo] = MotivoRifiuto(mCaso);
                    errore = cartella->Respingi(id, destinazione, codice, motivo);
                    if (errore.isEmpty())
                        lavoratore->Log().Scrivi(1, QStringLiteral("%1 respinto").arg(id));
                } else {
                    if (passo->Produce != modCartelle::Uscita::Nessuna)
                        errore = cartella->ScriviUscita(id, passo->Produce);
                    if (errore.isEmpty())
                        errore = cartella->Sposta(id, passo->A, modProprieta::DescrizioneCoda(def.Genere, passo->A));
                }
                if (!errore.isEmpty()) {
                    lavoratore->ImpostaErrore(30, errore);
                    continue;
                }
                ++fatti;
                ++spostati;
            }
            const QString testo = QString::fromUtf8(passo->Attivita);
            lavoratore->AnnunciaAvanzamento(testo, fatti, totale);
            attivita[lavoratore] = {testo, attivita.value(lavoratore).second + fatti};
        }
    }
    // Each worker says what it is doing, or that it is waiting.
    for (RefCartellaDocumenti* cartella : std::as_const(mCartelle))
        for (const modCartelle::Passo& passo : cartella->Definizione().Passi)
            if (RefServizio* l = mServizio(QString::fromLatin1(passo.Lavoratore)); l && !attivita.contains(l))
                attivita.insert(l, {QString(), 0});
    for (auto it = attivita.cbegin(); it != attivita.cend(); ++it)
        it.key()->ImpostaAttivita(it->second > 0 ? QStringLiteral("%1: %2 documenti").arg(it->first).arg(it->second)
                                                 : u"In attesa"_s);
    return spostati;
}
