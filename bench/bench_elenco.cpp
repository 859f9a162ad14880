// The fax folder's full listing from the server's in-memory index (what every refresh of a
// folder costs the server), against the peer baseline of building the same fields as a
// pugixml DOM and saving it. The demo folder is made once per run in a temporary folder.

#include "RefCartellaDocumenti.h"
#include "RefServer.h"
#include "modCartelle.h"
#include "modDemo.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QTemporaryDir>

#include <pugixml.hpp>

#include <memory>
#include <sstream>

namespace {

struct Demo
{
    explicit Demo(int documenti)
    {
        modDemo::CreaServerDemo(dir.path(), documenti);
        server = std::make_unique<RefServer>(dir.path(), RefServer::Opzioni{false});
    }
    QTemporaryDir dir;
    std::unique_ptr<RefServer> server;
};

Demo& DemoDi(int documenti)
{
    static std::map<int, std::unique_ptr<Demo>> demo;
    auto& d = demo[documenti];
    if (!d)
        d = std::make_unique<Demo>(documenti);
    return *d;
}

void BM_ElencoFaxIndice(benchmark::State& state)
{
    RefCartellaDocumenti& fax = *DemoDi(static_cast<int>(state.range(0))).server->Cartella(GenereCartella::Fax);
    for (auto _ : state) {
        const QByteArray xml = fax.TestoElenco();
        benchmark::DoNotOptimize(xml.constData());
    }
    state.counters["documenti"] = static_cast<double>(fax.Totale());
    state.SetItemsProcessed(state.iterations() * fax.Totale());
}

void BM_BaselineElencoFaxDom(benchmark::State& state)
{
    RefCartellaDocumenti& fax = *DemoDi(static_cast<int>(state.range(0))).server->Cartella(GenereCartella::Fax);
    for (auto _ : state) {
        pugi::xml_document doc;
        pugi::xml_node radice = doc.append_child("Elenco");
        for (qint32 coda = 0; coda < fax.Definizione().NumeroCode; ++coda) {
            pugi::xml_node q = radice.append_child(("Coda_" + std::to_string(coda)).c_str());
            for (const QString& id : fax.Coda(coda)) {
                const DatiDocumento& d = *fax.Trova(id);
                pugi::xml_node n = q.append_child("D");
                for (const QString& campo : {d.Id, d.Descrizione, d.Stato, d.Utente, d.PrefissoInternazionale,
                                             d.PrefissoLocale, d.NumeroFax, QString::number(d.Priorita),
                                             modDate::Testo(d.Inserito), modDate::Testo(d.Elaborato)})
                    n.append_child("F").text().set(campo.toUtf8().constData());
                pugi::xml_node c = n.append_child("C");
                for (const Collegato& l : d.Collegati) {
                    pugi::xml_node x = c.append_child("L");
                    x.append_child("F").text().set(l.Id.toUtf8().constData());
                    x.append_child("F").text().set(l.Descrizione.toUtf8().constData());
                }
            }
        }
        std::ostringstream out;
        doc.save(out, "", pugi::format_raw);
        benchmark::DoNotOptimize(out.str().data());
    }
    state.SetItemsProcessed(state.iterations() * fax.Totale());
}

} // namespace

BENCHMARK(BM_ElencoFaxIndice)->Arg(2000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BaselineElencoFaxDom)->Arg(2000)->Arg(100000)->Unit(benchmark::kMillisecond);
