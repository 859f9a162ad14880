// The listing round trip through the server boundary: from the console's request to the
// listing handed to its callback, for the fax folder of a 100,000-document demo (about
// 30,000 fax documents). The baseline is the server in the console's own thread; then the
// server on its own thread (as the console runs it), then across Qt Remote Objects on a
// local socket (as a server in another process would be reached), and over TLS on loopback
// (as a console across the network reaches it).
//
// The demo folder is made once and kept ($PLX_BENCH_DEMO, default /var/tmp/plx-bench-100000):
// making it takes about half a minute and 3.4 GB.

#include "PxCollegamento.h"
#include "PxCollegamentoRemoto.h"
#include "PxSrvCartellaDocumenti.h"
#include "PxSrvServer.h"
#include "PxXmlCallBack.h"
#include "RefCartellaDocumenti.h"
#include "RefOspite.h"
#include "RefServer.h"
#include "modDemo.h"

#include "Pki.h"

#include "Attesa.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QRemoteObjectHost>
#include <QTcpServer>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>

namespace {

QString CartellaDemo()
{
    const QString cartella = qEnvironmentVariable("PLX_BENCH_DEMO", QStringLiteral("/var/tmp/plx-bench-100000"));
    if (!modDemo::EServer(cartella)) {
        std::fprintf(stderr, "making the 100,000-document demo in %s (once)...\n", qPrintable(cartella));
        if (const QString errore = modDemo::CreaServerDemo(cartella, 100000); !errore.isEmpty())
            std::fprintf(stderr, "%s\n", qPrintable(errore));
    }
    return cartella;
}

// One console-side server over `collegamento`, loaded, and its fax folder's round trip.
void Giro(benchmark::State& state, PxCollegamento& collegamento)
{
    PxSrvServer server(&collegamento);
    if (!Caricato(state, server, [] {}))
        return;
    PxSrvCartellaDocumenti* fax = server.CartellaDocumenti(QStringLiteral("PxSrvDocFax"));
    PxXmlCallBack callback;
    QByteArray ricevuto;
    QObject::connect(&callback, &PxXmlCallBack::XmlCallBack, [&](const QByteArray& xml) { ricevuto = xml; });
    for (auto _ : state) {
        ricevuto.clear();
        fax->Elenca(&callback);
        if (!Attendi([&] { return !ricevuto.isEmpty(); })) {
            state.SkipWithError("no listing");
            return;
        }
    }
    state.counters["MB"] = static_cast<double>(ricevuto.size()) / 1e6;
    state.counters["documenti"] = static_cast<double>(ricevuto.count("<D>"));
}

void BM_BaselineElencoNelloStessoFilo(benchmark::State& state)
{
    RefServer sorgente(CartellaDemo(), RefServer::Opzioni{false, true});
    PxCollegamentoDiretto collegamento([&](const QString& nome) { return sorgente.Oggetto(nome); });
    Giro(state, collegamento);
}

void BM_ElencoTraFili(benchmark::State& state)
{
    RefOspite ospite(CartellaDemo(), RefServer::Opzioni{false, false});
    PxCollegamentoDiretto collegamento([&](const QString& nome) { return ospite.Oggetto(nome); });
    ospite.Avvia();
    Giro(state, collegamento);
}

void BM_ElencoQtRemoteObjects(benchmark::State& state)
{
    RefOspite ospite(CartellaDemo(), RefServer::Opzioni{false, false});
    const QUrl indirizzo(QStringLiteral("local:plx-bench-%1").arg(QCoreApplication::applicationPid()));
    ospite.PubblicaRemoto(indirizzo);
    ospite.Avvia();
    PxCollegamentoRemoto collegamento(indirizzo);
    Giro(state, collegamento);
}

// As a console across the network reaches it: TCP on loopback inside TLS, with client
// certificates made for the run.
void BM_ElencoTls(benchmark::State& state)
{
    QTemporaryDir dir;
    const Pki pki(dir.path());
    if (!pki.Pronta()) {
        state.SkipWithError("openssl could not make the certificates");
        return;
    }
    QTcpServer libera;
    libera.listen(QHostAddress::LocalHost);
    const QString porta = QString::number(libera.serverPort());
    libera.close();
    RefOspite ospite(CartellaDemo(), RefServer::Opzioni{false, false});
    QString errore = QStringLiteral("?");
    ospite.PubblicaRemoto(QUrl(QStringLiteral("tls://127.0.0.1:") + porta), [&](const QString& e) { errore = e; },
                          pki.Di(QStringLiteral("localhost")));
    ospite.Avvia();
    if (!Attendi([&] { return errore != u"?"; }) || !errore.isEmpty()) {
        state.SkipWithError(qPrintable(errore));
        return;
    }
    PxCollegamentoRemoto collegamento(QUrl(QStringLiteral("tls://localhost:") + porta), pki.Di(QStringLiteral("console-sala")));
    Giro(state, collegamento);
}

} // namespace

BENCHMARK(BM_BaselineElencoNelloStessoFilo)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);
BENCHMARK(BM_ElencoTraFili)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);
BENCHMARK(BM_ElencoQtRemoteObjects)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);
BENCHMARK(BM_ElencoTls)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);
