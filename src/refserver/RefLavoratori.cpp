#include "RefLavoratori.h"

#include "RefCartellaDocumenti.h"
#include "RefServizio.h"
#include "modCatalogo.h"
#include "modDemoErrori.h"
#include "modProprieta.h"

#include <QHash>

#include <pugixml.hpp>

#include <algorithm>
#include <string_view>

using namespace Qt::StringLiterals;

qint32 RefLavoratori::CodaNuovoTentativo(const modCartelle::Definizione& def, const modCartelle::Passo& passo)
{
    for (const modCartelle::Passo& p : def.Passi)
        if (p.A == passo.Da && p.Da != passo.Da)
            return p.Da;
    return passo.Da;
}

qint32 RefLavoratori::TentativiMassimi(RefServizio* lavoratore)
{
    const auto it = mTentativiMassimi.constFind(lavoratore);
    if (it != mTentativiMassimi.cend())
        return *it;
    // The worker's own setting, wherever its configuration keeps it (a fax line keeps it
    // under Trasmissione); read once.
    qint32 massimo = modDemoErrori::TentativiPredefiniti;
    pugi::xml_document doc;
    if (doc.load_string(lavoratore->StatoXml().toUtf8().constData()))
        if (const pugi::xml_node n = doc.document_element().find_node([](const pugi::xml_node& x) {
                return std::string_view(x.name()) == "NumeroTentativiInvio";
            }))
            massimo = std::clamp(n.text().as_int(massimo), 1, 99);
    mTentativiMassimi.insert(lavoratore, massimo);
    return massimo;
}

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

bool RefLavoratori::RegistraBlocco(const QString& chiave, const QString& errore)
{
    const auto it = mBloccati.find(chiave);
    if (it == mBloccati.end()) {
        mBloccati.insert(chiave, Blocco{mTick + 1, 2, errore});
        return true;
    }
    it->ProssimoTentativo = mTick + it->Attesa;
    it->Attesa = std::min(it->Attesa * 2, AttesaMassima);
    if (it->Errore == errore)
        return false;
    it->Errore = errore;
    return true;
}

int RefLavoratori::Lavora()
{
    ++mTick;
    if (mTick % 64 == 0) {
        // A stuck document the operator moved or removed meanwhile is forgotten.
        for (auto it = mBloccati.begin(); it != mBloccati.end();) {
            const qsizetype barra = it.key().indexOf(u'/');
            const auto cartella = std::find_if(mCartelle.cbegin(), mCartelle.cend(), [&](const RefCartellaDocumenti* c) {
                return c->Chiave() == QStringView(it.key()).left(barra);
            });
            it = cartella == mCartelle.cend() || !(*cartella)->Trova(it.key().mid(barra + 1)) ? mBloccati.erase(it) : std::next(it);
        }
    }
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
            const QString chiaveCartella = cartella->Chiave() + u'/';
            const QStringList presi = cartella->Coda(passo->Da, mPerPasso, [&](const QString& id) {
                const QString chiave = chiaveCartella + id;
                const auto b = mBloccati.constFind(chiave);
                if (b != mBloccati.cend() && b->ProssimoTentativo > mTick)
                    return true;
                const auto t = mNuoviTentativi.constFind(chiave);
                return t != mNuoviTentativi.cend() && *t > mTick;
            });
            if (presi.isEmpty())
                continue;
            const qint32 totale = static_cast<qint32>(cartella->Conteggio(passo->Da));
            qint32 fatti = 0;
            for (const QString& id : presi) {
                const DatiDocumento* d = cartella->Trova(id);
                if (!d)
                    continue;
                const QString chiave = chiaveCartella + id;
                const bool tentativo = ContaTentativi(*passo);
                const qint32 tentativi = d->Tentativi + (tentativo ? 1 : 0);
                const bool fallito = passo->PuoRespingere && static_cast<int>(mCaso() % 100) < mRespinti;
                QString errore;
                if (fallito) {
                    const auto errori = modDemoErrori::Di(QString::fromLatin1(passo->Lavoratore));
                    const modDemoErrori::Errore& e = errori[mCaso() % errori.size()];
                    const qint32 massimo = TentativiMassimi(lavoratore);
                    if (tentativo && e.Ripetibile && tentativi < massimo) {
                        // A passing fault: back to wait for the next attempt.
                        const QString stato = StatoNuovoTentativo(tentativi, massimo);
                        errore = cartella->Sposta(id, CodaNuovoTentativo(def, *passo), stato, tentativi);
                        if (errore.isEmpty()) {
                            mNuoviTentativi.insert(chiave, mTick + AttesaTentativo);
                            lavoratore->Log().Scrivi(2, QStringLiteral("%1: %2").arg(id, stato));
                        }
                    } else {
                        const qint32 destinazione = d->Rifiuti > 0 ? def.CodaScartati : def.CodaRespinti;
                        // The attempts the text names are the ones the document records: a
                        // passing fault met outside a delivery stage was retried inside the worker.
                        const qint32 contati = tentativo ? tentativi : (e.Ripetibile ? massimo : -1);
                        const QString motivo = modDemoErrori::Testo(e, contati);
                        errore = cartella->Respingi(id, destinazione, e.Codice, motivo, contati);
                        if (errore.isEmpty())
                            lavoratore->Log().Scrivi(1, QStringLiteral("%1 respinto: %2").arg(id, motivo));
                    }
                } else {
                    if (passo->Produce != modCartelle::Uscita::Nessuna)
                        errore = cartella->ScriviUscita(id, passo->Produce);
                    if (errore.isEmpty())
                        errore = cartella->Sposta(id, passo->A, modProprieta::DescrizioneCoda(def.Genere, passo->A),
                                                  tentativo ? tentativi : -1);
                }
                if (!errore.isEmpty()) {
                    if (RegistraBlocco(chiave, errore)) {
                        lavoratore->ImpostaErrore(30, errore);
                        cartella->ImpostaStato(id, u"Bloccato: "_s + errore);
                    }
                    continue;
                }
                mBloccati.remove(chiave);
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
