// The printing service's state XML with N printers: reading it and computing every printer's
// icon with pugixml (what the console does on each state event), against the peer baseline of
// only parsing the same text with QDomDocument.

#include "PxIconResource.h"

#include <benchmark/benchmark.h>

#include <QDomDocument>
#include <QString>

#include <pugixml.hpp>

namespace {

QByteArray StatoStampe(int stampanti)
{
    QByteArray xml = "<PxSrvStampe><Stato><Codice>4</Codice><Descrizione>In funzione</Descrizione></Stato>"
                     "<Attivita><Descrizione>In attesa</Descrizione></Attivita><Stampanti>";
    for (int i = 0; i < stampanti; ++i) {
        xml += "<Stampante><Chiave>" + QByteArray::number(i) + "</Chiave><NumeroTarquel>" + QByteArray::number(i)
            + "</NumeroTarquel><NomeStampanteWindows>Stampante " + QByteArray::number(i)
            + "</NomeStampanteWindows><Modello><Codice>" + QByteArray::number(i % 13)
            + "</Codice></Modello><Stato><Codice>" + QByteArray::number(i % 5 ? 4 : 3)
            + "</Codice></Stato><InfoStampante><PrinterName>Stampante</PrinterName><DriverName>Driver</DriverName>"
              "<PortName>" + QByteArray(i % 3 ? "IP_10.0.0.1" : "FILE:") + "</PortName><Attributes>"
            + QByteArray::number((i % 4) * 8) + "</Attributes><Usable>True</Usable>"
              "<PrinterIPToPing>10.0.0.1</PrinterIPToPing></InfoStampante></Stampante>";
    }
    return xml + "</Stampanti></PxSrvStampe>";
}

void BM_IconePugixml(benchmark::State& state)
{
    const QByteArray xml = StatoStampe(static_cast<int>(state.range(0)));
    const PxIconResource icone;
    for (auto _ : state) {
        pugi::xml_document doc;
        doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size()));
        qint64 somma = 0;
        for (const pugi::xml_node p : doc.document_element().child("Stampanti").children())
            somma += icone.IconaSrvStampanteXml(p);
        benchmark::DoNotOptimize(somma);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_BaselineSoloParseQDom(benchmark::State& state)
{
    const QByteArray xml = StatoStampe(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        QDomDocument doc;
        benchmark::DoNotOptimize(doc.setContent(xml));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

BENCHMARK(BM_IconePugixml)->Arg(14)->Arg(1000);
BENCHMARK(BM_BaselineSoloParseQDom)->Arg(14)->Arg(1000);
BENCHMARK_MAIN();
