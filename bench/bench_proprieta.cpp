// The property pane's work on each 100 ms tick: a sheet built and filled from its XML the
// first time a kind is shown, and a refresh of an unchanged sheet afterwards. The largest
// layout (the fax document's) with every element present. The peer does it the way a typical
// Qt program would: QDomDocument for the XML and a QStandardItemModel rebuilt on every load.

#include "PxConsoleResDll.h"
#include "PxModelloProprieta.h"
#include "modSchede.h"

#include <benchmark/benchmark.h>

#include <QDomDocument>
#include <QStandardItemModel>

#include <pugixml.hpp>

#include <sstream>

namespace {

// Which layout has the most entries.
int PiuGrande()
{
    int numero = 0;
    size_t voci = 0;
    for (const modSchede::Layout& l : modSchede::Layouts())
        if (modSchede::Espansa(l.Numero).size() > voci) {
            voci = modSchede::Espansa(l.Numero).size();
            numero = l.Numero;
        }
    return numero;
}

// A description with every path of layout `numero` filled.
QByteArray Descrizione(int numero)
{
    pugi::xml_document doc;
    pugi::xml_node radice = doc.append_child("Documento");
    radice.append_attribute("Tipo") = modSchede::Trova(numero)->Oggetto;
    const pugi::xml_node base = radice.append_child("Proprieta");
    int k = 0;
    for (const std::string& percorso : modSchede::Percorsi(numero)) {
        pugi::xml_node n = base;
        std::istringstream passi(percorso);
        for (std::string passo; std::getline(passi, passo, '/');)
            n = n.child(passo.c_str()) ? n.child(passo.c_str()) : n.append_child(passo.c_str());
        n.text() = ("valore " + std::to_string(++k)).c_str();
    }
    std::ostringstream testo;
    doc.save(testo);
    return QByteArray::fromStdString(testo.str());
}

struct Dati
{
    int Numero = PiuGrande();
    QByteArray Xml = Descrizione(Numero);
    PxConsoleResDll Testi;
};

Dati& D()
{
    static Dati d;
    return d;
}

void Riempi(PxModelloProprieta& modello, const QByteArray& xml)
{
    pugi::xml_document doc;
    doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size()));
    modello.Riempi(doc.document_element().child("Proprieta"));
}

void BM_Proprieta_PrimaVolta(benchmark::State& state)
{
    PxModelloProprieta modello(D().Testi);
    for (auto _ : state) {
        modello.Pulisci();
        modello.Costruisci(D().Numero, {});
        Riempi(modello, D().Xml);
        benchmark::DoNotOptimize(modello.rowCount());
    }
    state.counters["voci"] = static_cast<double>(modSchede::Espansa(D().Numero).size());
    state.counters["layout"] = D().Numero;
}

void BM_Proprieta_Aggiorna(benchmark::State& state)
{
    PxModelloProprieta modello(D().Testi);
    modello.Costruisci(D().Numero, {});
    Riempi(modello, D().Xml);
    for (auto _ : state) {
        Riempi(modello, D().Xml);
        benchmark::DoNotOptimize(modello.rowCount());
    }
}

// The peer: parse with QDomDocument, clear the model and add every row again.
void Peer(QStandardItemModel& modello, const QByteArray& xml)
{
    QDomDocument doc;
    doc.setContent(xml);
    const QDomElement base = doc.documentElement().firstChildElement(QStringLiteral("Proprieta"));
    modello.clear();
    std::vector<QStandardItem*> aperti{modello.invisibleRootItem()};
    for (const modSchede::VoceEspansa& v : modSchede::Espansa(D().Numero)) {
        aperti.resize(static_cast<size_t>(v.Livello) + 1);
        QString valore;
        if (!v.Percorso.empty()) {
            QDomElement e = base;
            for (const QString& passo : QString::fromStdString(v.Percorso).split(u'/'))
                e = e.firstChildElement(passo);
            valore = e.text();
        }
        auto* caption = new QStandardItem(D().Testi.LoadDllString(v.Testo));
        aperti.back()->appendRow({caption, new QStandardItem(valore)});
        aperti.push_back(caption);
    }
}

void BM_Peer_Carica(benchmark::State& state)
{
    QStandardItemModel modello;
    for (auto _ : state) {
        Peer(modello, D().Xml);
        benchmark::DoNotOptimize(modello.rowCount());
    }
}

} // namespace

BENCHMARK(BM_Proprieta_PrimaVolta)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Proprieta_Aggiorna)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Peer_Carica)->Unit(benchmark::kMicrosecond);
