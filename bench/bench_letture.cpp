// What a console pays to read a server file through the boundary instead of from the disk:
// the first MiB of a document body (what the body viewer asks for) and a page of a growing log
// (what the log pane asks for every second). The baseline is the console reading the file
// itself, as it did when it shared the server's files; then LeggiFile with the server on its
// own thread (the embedded server), then across Qt Remote Objects on a local socket (a server
// in another process). Also the hand-over of a test job: written by the console into the input
// folder (baseline) or handed to the server by ConsegnaLavoro.

#include "PxCollegamento.h"
#include "PxCollegamentoRemoto.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"
#include "RefOspite.h"
#include "modDemo.h"
#include "modLavoro.h"
#include "modPacchettoLavoro.h"

#include "Attesa.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <memory>

namespace {

// A demo server folder with a 1 MiB body beside its documents.
struct Cartella
{
    Cartella()
    {
        modDemo::CreaServerDemo(Dir.path(), 0);
        QFile f(Corpo());
        if (f.open(QIODevice::WriteOnly))
            f.write(QByteArray(1024 * 1024, 'x'));
    }
    QString Corpo() const { return QDir(Dir.path()).filePath(QStringLiteral("corpo.bpx")); }
    QTemporaryDir Dir;
};

std::vector<modLavoro::File> Lavoro()
{
    return {{".bpx", QByteArray(20 * 1024, 'c')}, {".hpx", QByteArray(4 * 1024, 'h')}, {".spx", QByteArray(8 * 1024, 's')}};
}

void BM_BaselineCorpoDalDisco(benchmark::State& state)
{
    const Cartella c;
    for (auto _ : state) {
        QFile f(c.Corpo());
        f.open(QIODevice::ReadOnly);
        benchmark::DoNotOptimize(f.read(1024 * 1024));
    }
}

void Letture(benchmark::State& state, RefOspite& ospite, PxCollegamento& collegamento, const Cartella& c, qint32 quanti)
{
    PxSrvServer server(&collegamento);
    if (!Caricato(state, server, [&] { ospite.Avvia(); }))
        return;
    for (auto _ : state) {
        bool risposto = false;
        server.LeggiFile(c.Corpo(), 0, quanti, nullptr, [&](const PxRisposta& r) {
            risposto = true;
            benchmark::DoNotOptimize(r.Dati);
        });
        if (!Attendi([&] { return risposto; })) {
            state.SkipWithError("no answer");
            return;
        }
    }
}

void BM_CorpoTraFili(benchmark::State& state)
{
    const Cartella c;
    RefOspite ospite(c.Dir.path(), RefServer::Opzioni{false, false});
    PxCollegamentoDiretto collegamento([&](const QString& nome) { return ospite.Oggetto(nome); }, nullptr, false);
    Letture(state, ospite, collegamento, c, static_cast<qint32>(state.range(0)));
}

void BM_CorpoQtRemoteObjects(benchmark::State& state)
{
    const Cartella c;
    RefOspite ospite(c.Dir.path(), RefServer::Opzioni{false, false});
    const QUrl indirizzo(QStringLiteral("local:plx-bench-letture-%1").arg(QCoreApplication::applicationPid()));
    ospite.PubblicaRemoto(indirizzo);
    PxCollegamentoRemoto collegamento(indirizzo);
    Letture(state, ospite, collegamento, c, static_cast<qint32>(state.range(0)));
}

void BM_BaselineLavoroScrittoDallaConsole(benchmark::State& state)
{
    const Cartella c;
    const QString ingresso = QDir(c.Dir.path()).filePath(QStringLiteral("Ingresso/PxSrvStampe"));
    QDir().mkpath(ingresso);
    const std::vector<modLavoro::File> lavoro = Lavoro();
    int n = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(modLavoro::Consegna(ingresso, QStringLiteral("prova %1").arg(++n), lavoro));
}

void BM_LavoroConsegnatoAlServer(benchmark::State& state)
{
    const Cartella c;
    RefOspite ospite(c.Dir.path(), RefServer::Opzioni{false, false});
    PxCollegamentoDiretto collegamento([&](const QString& nome) { return ospite.Oggetto(nome); }, nullptr, false);
    PxSrvServer server(&collegamento);
    if (!Caricato(state, server, [&] { ospite.Avvia(); }))
        return;
    const QByteArray pacchetto = modPacchettoLavoro::Componi(Lavoro());
    int n = 0;
    for (auto _ : state) {
        bool risposto = false;
        server.Servizio(QStringLiteral("PxSrvStampe"))->ConsegnaLavoro(QStringLiteral("prova %1").arg(++n), pacchetto, nullptr,
                                                                      [&](const PxRisposta&) { risposto = true; });
        if (!Attendi([&] { return risposto; })) {
            state.SkipWithError("no answer");
            return;
        }
    }
}

} // namespace

BENCHMARK(BM_BaselineCorpoDalDisco)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_CorpoTraFili)->Arg(1024 * 1024)->Arg(4096)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_CorpoQtRemoteObjects)->Arg(1024 * 1024)->Arg(4096)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_BaselineLavoroScrittoDallaConsole)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(BM_LavoroConsegnatoAlServer)->Unit(benchmark::kMicrosecond)->UseRealTime();
