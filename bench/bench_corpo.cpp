// The body viewer: a 1 MiB print body (the demo's kind: text with ESC/P sequences every few
// lines and a server command on each) turned into RTF, read back into coloured stretches and
// shown, first screen painted. The peer hands the same coloured text to a QTextEdit as HTML,
// the usual way.

#include "PxVistaTesto.h"
#include "modCorpo.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QTextEdit>

namespace {

modCorpo::Catalogo EscP()
{
    modCorpo::Catalogo c;
    c.On = {"\x1b" "E", "\x0f", "\x1b" "w1", "\x1b" "G", "\x1b" "M", "\x1b" "x1", "\x1b" "-1", "\x1b" "4", "\x1b" "W1", "\x1b" "p1"};
    c.Off = {"\x1b" "F", "\x12", "\x1b" "w0", "\x1b" "H", "\x1b" "P", "\x1b" "x0", "\x1b" "-0", "\x1b" "5", "\x1b" "W0", "\x1b" "p0"};
    return c;
}

QByteArray Corpo()
{
    QByteArray c;
    for (int i = 0; c.size() < modCorpo::Massimo; ++i) {
        if (i % 8 == 0)
            c += "\x1b" "EFattura n. " + QByteArray::number(i) + "\x1b" "F\r\n";
        c += "  " + QByteArray::number(i) + "  Articolo 000" + QByteArray::number(i % 97)
            + "  quantita' 3  importo 28,34  [%#PLX CAMPO " + QByteArray::number(i % 5) + "%]\r\n";
    }
    return c.left(modCorpo::Massimo);
}

const QByteArray& Dati()
{
    static const QByteArray c = Corpo();
    return c;
}

// What the viewer does: the conversion (off the interface thread in the console), then the
// view takes the prepared text and paints its first screen.
void Mostra(PxVistaTesto& vista, QImage& schermo, const QByteArray& corpo, const modCorpo::Catalogo& c)
{
    vista.Imposta(PxVistaTesto::Prepara(modCorpo::Leggi(modCorpo::Rtf(corpo, c))));
    vista.viewport()->render(&schermo);
}

void BM_Corpo_Rtf(benchmark::State& state)
{
    const modCorpo::Catalogo c = EscP();
    for (auto _ : state)
        benchmark::DoNotOptimize(modCorpo::Rtf(Dati(), c));
    state.SetBytesProcessed(state.iterations() * Dati().size());
}

// A catalogue made of the markers' own characters, as any client's header may send, and a body of
// nothing but those: every byte is a marker. The time grows with the body (before the markers were
// read once, eight sequences "%" and a body "%%%%" took over a second and 30 MB).
void BM_Corpo_RtfCatalogoDeiSegni(benchmark::State& state)
{
    const char simboli[] = "%[]$#!cf\\1 OnGR0FCMD";
    modCorpo::Catalogo c;
    for (size_t i = 0; i < 20; ++i)
        (i < 10 ? c.On[i] : c.Off[i - 10]) = QByteArray(1, simboli[i]);
    QByteArray corpo;
    for (size_t k = 0; corpo.size() < state.range(0); ++k)
        corpo += simboli[(k * 7) % 20];
    qsizetype uscita = 0;
    for (auto _ : state) {
        const QByteArray rtf = modCorpo::Rtf(corpo, c);
        uscita = rtf.size();
        benchmark::DoNotOptimize(rtf.constData());
    }
    state.SetBytesProcessed(state.iterations() * corpo.size());
    state.SetComplexityN(state.range(0));
    state.counters["rtf/corpo"] = static_cast<double>(uscita) / static_cast<double>(corpo.size());
}

void BM_Corpo_ConvertitoEMostrato(benchmark::State& state)
{
    const modCorpo::Catalogo c = EscP();
    PxVistaTesto vista;
    vista.resize(1000, 400);
    QImage schermo(vista.viewport()->size(), QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        Mostra(vista, schermo, Dati(), c);
        benchmark::DoNotOptimize(vista.Righe());
    }
    state.counters["righe"] = static_cast<double>(vista.Righe());
}

void BM_Corpo_Leggi(benchmark::State& state)
{
    const QByteArray rtf = modCorpo::Rtf(Dati(), EscP());
    for (auto _ : state)
        benchmark::DoNotOptimize(modCorpo::Leggi(rtf).Tratti.size());
}

void BM_Peer_HtmlInQTextEdit(benchmark::State& state)
{
    // The same coloured text, as HTML.
    const modCorpo::Documento d = modCorpo::Leggi(modCorpo::Rtf(Dati(), EscP()));
    QString html = QStringLiteral("<pre style=\"font-family:'Courier New'; font-size:9pt\">");
    qsizetype fatto = 0;
    for (const modCorpo::Tratto& t : d.Tratti) {
        html += d.Testo.mid(fatto, t.Inizio - fatto).toHtmlEscaped() + QStringLiteral("<span style=\"color:#ff00ff\">")
            + d.Testo.mid(t.Inizio, t.Fine - t.Inizio).toHtmlEscaped() + QStringLiteral("</span>");
        fatto = t.Fine;
    }
    html += d.Testo.mid(fatto).toHtmlEscaped() + QStringLiteral("</pre>");
    QTextEdit box;
    for (auto _ : state) {
        box.setHtml(html);
        benchmark::DoNotOptimize(box.document()->blockCount());
    }
}

} // namespace

BENCHMARK(BM_Corpo_Rtf)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Corpo_RtfCatalogoDeiSegni)->RangeMultiplier(4)->Range(16 * 1024, modCorpo::Massimo)->Complexity(benchmark::oN)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Corpo_Leggi)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Corpo_ConvertitoEMostrato)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Peer_HtmlInQTextEdit)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
