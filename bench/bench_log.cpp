// A service log in the log pane: a 1 MiB tail read, parsed and handed to the list's model;
// a thousand lines appended to a followed log. The peer reads the same file the way a typical
// Qt program does (QTextStream line by line into a QStandardItemModel).

#include "PxModelloLog.h"
#include "PxRigaLog.h"
#include "modLog.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTextStream>

namespace {

constexpr modLog::Livelli Tutti{true, true, true, true};

QByteArray Righe(int n, int da = 0)
{
    QByteArray dati;
    for (int i = da; i < da + n; ++i)
        dati += modRigaLog::Formatta(i % 4, QTime(8 + i / 3600 % 12, i / 60 % 60, i % 60),
                                     QStringLiteral("FAX-%1 trasmesso al numero 02 7654321 in 42 secondi, pagine 3").arg(i));
    return dati;
}

struct File
{
    File()
    {
        percorso = dir.filePath(QStringLiteral("PxSrvFax.log"));
        QFile f(percorso);
        f.open(QIODevice::WriteOnly);
        QByteArray dati;
        int i = 0;
        while (dati.size() < modLog::MassimoCoda * 3 / 2)
            dati += Righe(1000, i += 1000);
        f.write(dati);
    }
    QTemporaryDir dir;
    QString percorso;
};

File& Log()
{
    static File f;
    return f;
}

void BM_CaricaLog(benchmark::State& state)
{
    PxModelloLog modello(QStringLiteral("Del"), QStringLiteral("Descrizione"));
    for (auto _ : state) {
        modLog::Lettura l = modLog::Leggi(Log().percorso, 0, Tutti);
        modello.Sostituisci(std::move(l.Righe));
        benchmark::DoNotOptimize(modello.rowCount());
    }
    state.counters["righe"] = modello.rowCount();
}

void BM_PeerQTextStreamStandardModel(benchmark::State& state)
{
    for (auto _ : state) {
        QFile f(Log().percorso);
        f.open(QIODevice::ReadOnly);
        f.seek(f.size() - modLog::MassimoCoda);
        QTextStream in(&f);
        in.readLine();
        QStandardItemModel modello;
        while (!in.atEnd()) {
            const QString riga = in.readLine();
            if (riga.size() < 12)
                continue;
            modello.appendRow({new QStandardItem(riga.mid(3, 5)), new QStandardItem(riga.mid(12))});
        }
        benchmark::DoNotOptimize(modello.rowCount());
    }
}

// A thousand new lines of a followed log: read from where the last read ended, appended.
void BM_Aggiungi1000Righe(benchmark::State& state)
{
    QTemporaryDir dir;
    const QString percorso = dir.filePath(QStringLiteral("segue.log"));
    PxModelloLog modello(QStringLiteral("Del"), QStringLiteral("Descrizione"));
    const QByteArray mille = Righe(1000);
    QFile f(percorso);
    f.open(QIODevice::WriteOnly);
    qint64 fine = 0;
    for (auto _ : state) {
        state.PauseTiming();
        f.write(mille);
        f.flush();
        if (modello.rowCount() > 200000)
            modello.Svuota();
        state.ResumeTiming();
        modLog::Lettura l = modLog::Leggi(percorso, fine, Tutti);
        fine = l.Fine;
        modello.Aggiungi(std::move(l.Righe));
    }
}

} // namespace

BENCHMARK(BM_CaricaLog)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PeerQTextStreamStandardModel)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Aggiungi1000Righe)->Unit(benchmark::kMicrosecond);
