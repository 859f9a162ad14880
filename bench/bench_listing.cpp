// The fax folder's listing turned into the content list's rows, at 10 thousand to a million
// documents, against the peer way of a typical Qt program (QDomDocument into a
// QStandardItemModel); one notice on a loaded million-row model; a sort of a million rows by
// a date column. The listings are generated here with a fixed seed, in the server's format.

#include "PxModelloContenuto.h"
#include "modElenco.h"

#include <benchmark/benchmark.h>

#include <QDomDocument>
#include <QRandomGenerator>
#include <QStandardItemModel>

#include <pugixml.hpp>

#include <map>
#include <memory>

namespace {

const char* const Stati[] = {"Da convertire in tiff", "In conversione in tiff", "Da inviare", "In uscita",
                             "Da stampare", "In stampa", "Da notificare", "In notifica", "Trasmesso",
                             "Respinto: linea occupata", "Scartato", "Da confermare", "Da pubblicare"};
const char* const Utenti[] = {"mrossi", "lbianchi", "gverdi", "sgallo", "pconti", "fricci", "afontana"};
const char* const Clienti[] = {"Ferramenta Bassi", "Trasporti Lario", "Studio Greco", "Edil Nord", "Ottica Moretti"};
const char* const Priorita[] = {"Normale", "Alta", "Urgente"};

QString Data(QRandomGenerator& caso)
{
    return QStringLiteral("%1/%2/2026 %3:%4:%5")
        .arg(1 + caso.bounded(28), 2, 10, QLatin1Char('0'))
        .arg(1 + caso.bounded(12), 2, 10, QLatin1Char('0'))
        .arg(caso.bounded(24), 2, 10, QLatin1Char('0'))
        .arg(caso.bounded(60), 2, 10, QLatin1Char('0'))
        .arg(caso.bounded(60), 2, 10, QLatin1Char('0'));
}

QByteArray Nodo(QRandomGenerator& caso, int i, int coda)
{
    QByteArray d = "<D><F>FAX-" + QByteArray::number(i).rightJustified(7, '0') + "</F>";
    d += "<F>Fattura n. " + QByteArray::number(1000 + i) + " - " + Clienti[caso.bounded(5)] + "</F>";
    d += QByteArray("<F>") + Stati[coda] + "</F>";
    d += QByteArray("<F>") + Utenti[caso.bounded(7)] + "</F>";
    d += "<F>39</F><F>0" + QByteArray::number(10 + caso.bounded(80)) + "</F>";
    d += "<F>" + QByteArray::number(5000000 + caso.bounded(4999999)) + "</F>";
    d += QByteArray("<F>") + Priorita[caso.bounded(3)] + "</F>";
    d += "<F>" + Data(caso).toUtf8() + "</F>";
    d += coda < 2 ? QByteArray("<F></F>") : "<F>" + Data(caso).toUtf8() + "</F>";
    d += "<C>";
    if (caso.bounded(10) == 0)
        d += "<L><F>FAX-" + QByteArray::number(i).rightJustified(7, '0') + "-C</F><F>Copertina</F></L>";
    d += "</C></D>";
    return d;
}

// A listing of `n` fax documents spread over the thirteen queues, most of them done.
const QByteArray& Elenco(int n)
{
    static std::map<int, QByteArray> elenchi;
    QByteArray& testo = elenchi[n];
    if (!testo.isEmpty())
        return testo;
    QRandomGenerator caso(20261123);
    std::vector<QByteArray> code(13);
    for (int i = 0; i < n; ++i) {
        const int p = caso.bounded(100);
        const int coda = p < 60 ? 8 : p < 70 ? 9 : p < 75 ? 10 : p % 13;
        code[static_cast<size_t>(coda)] += Nodo(caso, i, coda);
    }
    testo = R"(<?xml version="1.0" encoding="UTF-8"?><Elenco>)";
    for (int c = 0; c < 13; ++c)
        testo += "<Coda_" + QByteArray::number(c) + ">" + code[static_cast<size_t>(c)] + "</Coda_" + QByteArray::number(c) + ">";
    testo += "</Elenco>";
    return testo;
}

QList<PxModelloContenuto::Colonna> Colonne()
{
    QList<PxModelloContenuto::Colonna> c;
    for (const char* t : {"ID documento", "Descrizione", "Stato", "Utente", "P. Internazionale", "P. Locale", "Numero fax",
                          "Priorità"})
        c.append({QString::fromUtf8(t)});
    c.append({QStringLiteral("Inserito il"), true});
    c.append({QStringLiteral("Elaborato il"), true});
    return c;
}

const modElenco::Code TutteLeCode{[](int) { return true; }, [](int c) { return c == 8 ? 49152u : c == 9 || c == 10 ? 255u : 0u; }};

void BM_CaricaElenco(benchmark::State& state)
{
    const QByteArray& testo = Elenco(static_cast<int>(state.range(0)));
    PxModelloContenuto modello;
    modello.ImpostaColonne(Colonne());
    modello.ImpostaRaggruppamento(2);
    for (auto _ : state) {
        const modElenco::Esito esito = modElenco::Carica(modello, testo, TutteLeCode, {});
        benchmark::DoNotOptimize(esito.Righe);
    }
    const double righe = static_cast<double>(modello.NumeroRighe());
    state.counters["righe"] = righe;
    state.counters["byte_riga_strutture"] = static_cast<double>(modello.MemoriaStrutture()) / righe;
    state.counters["byte_riga_testo"] = static_cast<double>(modello.MemoriaTesto()) / righe;
    state.counters["byte_riga_elenco"] = static_cast<double>(testo.size()) / righe;
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(righe));
}

// The peer: what a typical Qt program does with the same text.
void BM_PeerQDomStandardModel(benchmark::State& state)
{
    const QByteArray& testo = Elenco(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        QDomDocument doc;
        doc.setContent(testo);
        QStandardItemModel modello;
        modello.setColumnCount(10);
        for (QDomElement coda = doc.documentElement().firstChildElement(); !coda.isNull(); coda = coda.nextSiblingElement())
            for (QDomElement d = coda.firstChildElement(); !d.isNull(); d = d.nextSiblingElement()) {
                QList<QStandardItem*> riga;
                QDomElement f = d.firstChildElement();
                for (int k = 0; k < 10 && !f.isNull(); ++k, f = f.nextSiblingElement())
                    riga.append(new QStandardItem(f.text()));
                for (QDomElement l = f.firstChildElement(); !l.isNull(); l = l.nextSiblingElement())
                    riga.first()->appendRow({new QStandardItem(l.firstChildElement().text()),
                                             new QStandardItem(l.firstChildElement().nextSiblingElement().text())});
                modello.appendRow(riga);
            }
        benchmark::DoNotOptimize(modello.rowCount());
    }
}

struct Caricato
{
    PxModelloContenuto Modello;
    std::vector<QByteArray> Notizie; // one listing node per document, as a notice carries it
};

Caricato& MilioneCaricato(bool raggruppato)
{
    static std::map<bool, std::unique_ptr<Caricato>> cache;
    auto& c = cache[raggruppato];
    if (!c) {
        c = std::make_unique<Caricato>();
        c->Modello.ImpostaColonne(Colonne());
        c->Modello.ImpostaRaggruppamento(raggruppato ? 2 : -1);
        modElenco::Carica(c->Modello, Elenco(1000000), TutteLeCode, {});
        c->Modello.sort(0, Qt::AscendingOrder);
        QRandomGenerator caso(5);
        for (int i = 0; i < 1000; ++i) {
            const int id = caso.bounded(1000000);
            c->Notizie.push_back(Nodo(caso, id, raggruppato ? caso.bounded(13) : 8));
        }
    }
    return *c;
}

// One notice: its node parsed, its row found and rewritten, the view told. Ungrouped the
// row stays where it is; grouped by stage it moves to the group of its new stage.
void Notizia(benchmark::State& state, bool raggruppato)
{
    Caricato& c = MilioneCaricato(raggruppato);
    modElenco::Nodo nodo;
    size_t i = 0;
    for (auto _ : state) {
        const QByteArray& testo = c.Notizie[i++ % c.Notizie.size()];
        pugi::xml_document doc;
        doc.load_buffer(testo.constData(), static_cast<size_t>(testo.size()), pugi::parse_default | pugi::parse_embed_pcdata);
        modElenco::LeggiNodo(doc.document_element(), 10, nodo);
        const qint32 riga = c.Modello.Riga(nodo.Celle[0]);
        c.Modello.Aggiorna(riga, nodo.Celle, 49152);
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_DocumentoSpostato(benchmark::State& state) { Notizia(state, false); }
void BM_DocumentoSpostatoCambiaGruppo(benchmark::State& state) { Notizia(state, true); }

void BM_Ordina(benchmark::State& state)
{
    Caricato& c = MilioneCaricato(false);
    bool discendente = false;
    for (auto _ : state) {
        c.Modello.sort(8, discendente ? Qt::DescendingOrder : Qt::AscendingOrder);
        discendente = !discendente;
    }
    state.SetItemsProcessed(state.iterations() * c.Modello.NumeroRighe());
}

} // namespace

BENCHMARK(BM_CaricaElenco)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PeerQDomStandardModel)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_DocumentoSpostato)->Arg(1000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DocumentoSpostatoCambiaGruppo)->Arg(1000000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Ordina)->Arg(1000000)->Unit(benchmark::kMillisecond);
