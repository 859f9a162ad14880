// A notice storm across the process boundary, and a server's return, measured as an operator
// lives them: plxsrvd serving a demo folder, real consoles attached (each on the fax folder,
// its event-loop monitor on), and probe clients, each on a thread of its own as a console in
// another process would be. A driver moves fax documents back and forth between two queues at
// a steady rate (those in one queue to the other); each probe notes when the notice of every move reaches it, and keeps the
// folder's rows as the notices leave them. Then:
//   - notice latency: from the move's request to the notice at a probe, p50 and p99;
//   - each console's longest event-loop hold (its log's "pausa massima ... in tutto");
//   - whether each probe's rows equal a fresh listing once the storm is over;
//   - the server killed and started again: from its start to each probe bound again.
// Run through scripts/measure-boundary, which gives it a display.

#include "PxCollegamentoRemoto.h"
#include "PxSrvCartellaDocumenti.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"
#include "PxXmlCallBack.h"
#include "modDemo.h"

#include "Attesa.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QProcess>
#include <QRegularExpression>
#include <QTime>
#include <QThread>
#include <QTimer>
#include <QUrl>

#include <pugixml.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <memory>
#include <mutex>

namespace {

using Orologio = std::chrono::steady_clock;

double Ms(Orologio::duration d) { return std::chrono::duration<double, std::milli>(d).count(); }

// Queue of each document of the fax folder in a listing.
QHash<QString, int> Code(const QByteArray& xml)
{
    QHash<QString, int> code;
    pugi::xml_document doc;
    if (!doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size())))
        return code;
    for (const pugi::xml_node c : doc.document_element().children()) {
        const std::string_view nome = c.name();
        if (!nome.starts_with("Coda_"))
            continue;
        const int numero = std::atoi(c.name() + 5);
        for (const pugi::xml_node d : c.children("D"))
            code.insert(QString::fromUtf8(d.child("F").child_value()), numero);
    }
    return code;
}

// The moves sent, by id and target queue, with their time; read by the probes' threads.
struct Registro
{
    std::mutex Mutex;
    QHash<QString, Orologio::time_point> Inviati; // "id|queue"
    Orologio::time_point Inizio;                   // the storm's start
};

// A console's side of the server on a thread of its own.
class Sonda : public QObject
{
public:
    Sonda(const QString& indirizzo, Registro& registro) : mIndirizzo(indirizzo), mRegistro(registro) {}

    void Avvia() // on its thread
    {
        mCollegamento = std::make_unique<PxCollegamentoRemoto>(QUrl(mIndirizzo));
        mServer = std::make_unique<PxSrvServer>(mCollegamento.get());
        connect(mServer.get(), &PxSrvServer::Pronto, this, [this] {
            connect(mServer->Servizio(QStringLiteral("PxSrvFax")), &PxSrvServizio::DocumentoSpostato, this,
                    [this](qint32 coda, const QString& id, const QString&) { AlMovimento(coda, id); });
            Elenca([this](const QByteArray& xml) {
                mRighe = Code(xml);
                mPronta = true;
            });
        });
        connect(mServer.get(), &PxSrvServer::Ricollegato, this, [this] { mRitrovata = Orologio::now(); });
        mServer->Connetti();
    }

    void Elenca(std::function<void(const QByteArray&)> fatto)
    {
        auto* callback = new PxXmlCallBack(this);
        connect(callback, &PxXmlCallBack::XmlCallBack, this, [callback, fatto](const QByteArray& xml) {
            fatto(xml);
            callback->deleteLater();
        });
        mServer->CartellaDocumenti(QStringLiteral("PxSrvDocFax"))->Elenca(callback);
    }

    // Compares the rows the notices left with a fresh listing: how many differ.
    void Confronta()
    {
        Elenca([this](const QByteArray& xml) {
            const QHash<QString, int> fresche = Code(xml);
            int diverse = 0;
            for (auto it = fresche.cbegin(); it != fresche.cend(); ++it)
                diverse += mRighe.value(it.key(), -1) != it.value();
            for (auto it = mRighe.cbegin(); it != mRighe.cend(); ++it)
                diverse += !fresche.contains(it.key());
            mDiverse = diverse;
            mRighePerConfronto = static_cast<int>(fresche.size());
        });
    }

    std::atomic<bool> mPronta = false;
    std::atomic<int> mDiverse = -1;
    std::atomic<int> mRighePerConfronto = 0;
    Orologio::time_point mRitrovata{};
    std::vector<double> mLatenze; // read once the thread is idle
    std::vector<int> mSecondo;    // the second of the storm each move was asked in

private:
    void AlMovimento(qint32 coda, const QString& id)
    {
        const Orologio::time_point ora = Orologio::now();
        if (!mPronta)
            return;
        mRighe.insert(id, coda);
        std::lock_guard blocco(mRegistro.Mutex);
        const auto it = mRegistro.Inviati.constFind(id + u'|' + QString::number(coda));
        if (it != mRegistro.Inviati.cend()) {
            mLatenze.push_back(Ms(ora - it.value()));
            mSecondo.push_back(static_cast<int>(Ms(it.value() - mRegistro.Inizio) / 1000));
        }
    }

    QString mIndirizzo;
    Registro& mRegistro;
    std::unique_ptr<PxCollegamentoRemoto> mCollegamento;
    std::unique_ptr<PxSrvServer> mServer;
    QHash<QString, int> mRighe;
};

double Percentile(std::vector<double> v, double p)
{
    if (v.empty())
        return 0;
    std::sort(v.begin(), v.end());
    return v[std::min(v.size() - 1, static_cast<size_t>(p * static_cast<double>(v.size())))];
}

// The longest event-loop hold a console wrote to its log: over the whole run, or (with a
// window) of those it wrote one by one between `da` and `a` (log times are to the second; a
// hold under the monitor's 20 ms gets no line, so 0 there means "under 20 ms").
int PausaMassima(const QString& log, QTime da = {}, QTime a = {})
{
    QFile f(log);
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    const QString testo = QString::fromUtf8(f.readAll());
    int massima = da.isValid() ? 0 : -1;
    static const QRegularExpression tutte(QStringLiteral("pausa (?:massima )?(?:di )?(\\d+) ms"));
    static const QRegularExpression una(QStringLiteral("^\\s*\\d+ (\\d\\d:\\d\\d:\\d\\d) Ciclo eventi: pausa di (\\d+) ms"),
                                        QRegularExpression::MultilineOption);
    for (auto it = (da.isValid() ? una : tutte).globalMatch(testo); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        if (da.isValid()) {
            const QTime quando = QTime::fromString(m.captured(1), QStringLiteral("HH:mm:ss"));
            if (quando < da || quando > a)
                continue;
        }
        massima = std::max(massima, m.captured(da.isValid() ? 2 : 1).toInt());
    }
    return massima;
}

QProcess* AvviaServer(const QString& srvd, const QString& cartella, const QString& indirizzo)
{
    auto* p = new QProcess;
    p->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    p->start(srvd, {QStringLiteral("--server-folder"), cartella, QStringLiteral("--listen"), indirizzo, QStringLiteral("--quiet")});
    return p;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser riga;
    riga.addHelpOption();
    const QCommandLineOption srvd(QStringLiteral("srvd"), QStringLiteral("plxsrvd"), QStringLiteral("path"));
    const QCommandLineOption console(QStringLiteral("console"), QStringLiteral("plxsrvconsole"), QStringLiteral("path"));
    const QCommandLineOption cartellaOpz(QStringLiteral("folder"), QStringLiteral("work folder"), QStringLiteral("dir"));
    const QCommandLineOption secondiOpz(QStringLiteral("seconds"), QStringLiteral("storm length"), QStringLiteral("s"), QStringLiteral("20"));
    const QCommandLineOption ritmoOpz(QStringLiteral("rate"), QStringLiteral("moves a second"), QStringLiteral("n"), QStringLiteral("2000"));
    const QCommandLineOption quanteOpz(QStringLiteral("consoles"), QStringLiteral("consoles and probes"), QStringLiteral("n"),
                                       QStringLiteral("3"));
    riga.addOptions({srvd, console, cartellaOpz, secondiOpz, ritmoOpz, quanteOpz});
    riga.process(app);
    const QDir lavoro(riga.value(cartellaOpz));
    const QString cartella = lavoro.filePath(QStringLiteral("server"));
    const int secondi = riga.value(secondiOpz).toInt(), ritmo = riga.value(ritmoOpz).toInt(),
              quante = riga.value(quanteOpz).toInt();
    if (!modDemo::EServer(cartella)) {
        std::fprintf(stderr, "making a 20,000-document demo in %s...\n", qPrintable(cartella));
        if (const QString e = modDemo::CreaServerDemo(cartella, 20000); !e.isEmpty()) {
            std::fprintf(stderr, "%s\n", qPrintable(e));
            return 1;
        }
    }
    // The consoles watch their event loops; the workers keep their usual pace.
    // The first of two equal keys wins: ours go first in the section.
    QFile ini(QDir(cartella).filePath(QStringLiteral("PlxConfigurazione.ini")));
    if (ini.open(QIODevice::ReadWrite)) {
        QByteArray testo = ini.readAll();
        const QByteArray nostre = "MonitorCicloEventi=-1\r\nLogTracciaProcedure=0\r\n";
        testo.replace(nostre, "");
        const qsizetype sezione = testo.indexOf("[Console]");
        if (sezione < 0)
            testo += "\r\n[Console]\r\n" + nostre;
        else
            testo.insert(testo.indexOf('\n', sezione) + 1, nostre);
        ini.resize(0);
        ini.write(testo);
    }
    ini.close();
    const QString indirizzo = QStringLiteral("local:") + lavoro.filePath(QStringLiteral("s.sock"));

    std::unique_ptr<QProcess> server(AvviaServer(riga.value(srvd), cartella, indirizzo));
    std::vector<std::unique_ptr<QProcess>> consoles;
    for (int i = 0; i < quante; ++i) {
        const QString propria = lavoro.filePath(QStringLiteral("console%1").arg(i));
        QDir(propria).mkpath(QStringLiteral("config/PlxSoftware"));
        QFile registro(QDir(propria).filePath(QStringLiteral("config/PlxSoftware/Pelorix.conf")));
        if (registro.open(QIODevice::WriteOnly))
            registro.write("[frmConsole]\nNodo=SrvDocFax\n");
        registro.close();
        QFile::remove(QDir(propria).filePath(QStringLiteral("PlxSrvConsole.log")));
        auto p = std::make_unique<QProcess>();
        QProcessEnvironment ambiente = QProcessEnvironment::systemEnvironment();
        ambiente.insert(QStringLiteral("XDG_CONFIG_HOME"), QDir(propria).filePath(QStringLiteral("config")));
        p->setProcessEnvironment(ambiente);
        p->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        p->setStandardOutputFile(QProcess::nullDevice());
        p->start(riga.value(console), {QStringLiteral("--server"), indirizzo, QStringLiteral("--log-folder"), propria,
                                       QStringLiteral("--gui-folder"), propria});
        consoles.push_back(std::move(p));
    }

    Registro registro;
    std::vector<std::unique_ptr<QThread>> fili;
    std::vector<Sonda*> sonde;
    for (int i = 0; i < quante; ++i) {
        auto filo = std::make_unique<QThread>();
        auto* sonda = new Sonda(indirizzo, registro);
        sonda->moveToThread(filo.get());
        QObject::connect(filo.get(), &QThread::finished, sonda, &QObject::deleteLater);
        filo->start();
        QMetaObject::invokeMethod(sonda, [sonda] { sonda->Avvia(); });
        sonde.push_back(sonda);
        fili.push_back(std::move(filo));
    }
    QThread::msleep(300);
    // The driver: a console of its own, on this thread.
    PxCollegamentoRemoto collegamento{QUrl(indirizzo)};
    PxSrvServer pilota(&collegamento);
    pilota.Connetti();
    if (!Attendi([&] {
            return pilota.Caricato() && std::all_of(sonde.begin(), sonde.end(), [](Sonda* s) { return s->mPronta.load(); });
        })) {
        std::fprintf(stderr, "the server or the probes did not get ready\n");
        return 1;
    }
    QThread::sleep(8); // the consoles show the fax folder
    PxSrvCartellaDocumenti* fax = pilota.CartellaDocumenti(QStringLiteral("PxSrvDocFax"));
    QByteArray elenco;
    PxXmlCallBack callback;
    QObject::connect(&callback, &PxXmlCallBack::XmlCallBack, [&](const QByteArray& xml) { elenco = xml; });
    fax->Elenca(&callback);
    Attendi([&] { return !elenco.isEmpty(); });
    QStringList pool;
    const QHash<QString, int> iniziali = Code(elenco);
    for (auto it = iniziali.cbegin(); it != iniziali.cend(); ++it)
        if (it.value() == 8 || it.value() == 9)
            pool << it.key();
    std::sort(pool.begin(), pool.end());
    const int perPasso = std::max(1, ritmo / 100); // a request every 10 ms
    std::fprintf(stderr, "storm: %d moves a second for %d s over %lld documents, %d consoles and probes\n", ritmo, secondi,
                 static_cast<long long>(pool.size()), quante);

    QHash<QString, int> dove;
    for (const QString& id : std::as_const(pool))
        dove.insert(id, iniziali.value(id));
    qsizetype prossimo = 0;
    long long inviati = 0, riusciti = 0, falliti = 0;
    const Orologio::time_point inizio = Orologio::now();
    {
        std::lock_guard blocco(registro.Mutex);
        registro.Inizio = inizio;
    }
    const QTime inizioOra = QTime::currentTime().addMSecs(-1000); // whole seconds in the log
    QTimer passo;
    passo.setTimerType(Qt::PreciseTimer);
    QObject::connect(&passo, &QTimer::timeout, [&] {
        if (Orologio::now() - inizio > std::chrono::seconds(secondi)) {
            passo.stop();
            return;
        }
        // Each turn takes the next documents of the pool, each to the other queue of the two:
        // one request for those going to 9, one for those going to 8.
        QStringList verso[2];
        for (int i = 0; i < perPasso && !pool.isEmpty(); ++i, prossimo = (prossimo + 1) % pool.size())
            verso[dove.value(pool[prossimo]) == 8 ? 1 : 0] << pool[prossimo];
        for (const int coda : {8, 9}) {
            const QStringList& presi = verso[coda - 8];
            if (presi.isEmpty())
                continue;
            QString selezione = QStringLiteral("<Root>");
            {
                std::lock_guard blocco(registro.Mutex);
                for (const QString& id : presi) {
                    selezione += QStringLiteral("<ID>%1</ID>").arg(id);
                    registro.Inviati.insert(id + u'|' + QString::number(coda), Orologio::now());
                    dove.insert(id, coda);
                }
            }
            selezione += QStringLiteral("</Root>");
            inviati += presi.size();
            fax->SpostaDocumenti(selezione, coda, nullptr, [&, n = presi.size()](const PxRisposta& r) {
                (r.Riuscita() ? riusciti : falliti) += n;
            });
        }
    });
    passo.start(10);
    Attendi([&] { return !passo.isActive(); }, (secondi + 5) * 1000);
    const double durata = Ms(Orologio::now() - inizio) / 1000.0;
    Attendi([&] { return riusciti + falliti >= inviati; }, 60000);
    const double finePassi = Ms(Orologio::now() - inizio) / 1000.0;
    const QTime fineOra = QTime::currentTime().addMSecs(1000);
    QThread::sleep(2);
    for (Sonda* s : sonde)
        QMetaObject::invokeMethod(s, [s] { s->Confronta(); });
    Attendi([&] { return std::all_of(sonde.begin(), sonde.end(), [](Sonda* s) { return s->mDiverse >= 0; }); });

    std::vector<double> tutte, dopoIlPrimo; // every notice; those of moves asked after the storm's first second
    std::vector<double> peggiorePerSecondo(static_cast<size_t>(secondi) + 1, 0.0);
    std::printf("\n| probe | notices | p50 ms | p99 ms | max ms | rows differing from a fresh listing |\n|---|---|---|---|---|---|\n");
    for (size_t i = 0; i < sonde.size(); ++i) {
        std::vector<double> l;
        std::vector<int> quando;
        QMetaObject::invokeMethod(sonde[i], [&] { l = sonde[i]->mLatenze; quando = sonde[i]->mSecondo; }, Qt::BlockingQueuedConnection);
        for (size_t k = 0; k < l.size(); ++k) {
            const auto s = static_cast<size_t>(std::clamp(quando[k], 0, secondi));
            peggiorePerSecondo[s] = std::max(peggiorePerSecondo[s], l[k]);
            if (s > 0)
                dopoIlPrimo.push_back(l[k]);
        }
        tutte.insert(tutte.end(), l.begin(), l.end());
        std::printf("| %zu | %zu | %.1f | %.1f | %.1f | %d of %d |\n", i + 1, l.size(), Percentile(l, 0.5), Percentile(l, 0.99),
                    l.empty() ? 0.0 : *std::max_element(l.begin(), l.end()), sonde[i]->mDiverse.load(),
                    sonde[i]->mRighePerConfronto.load());
    }
    std::printf("\nmoves asked %lld in %.1f s (%.0f a second), done %lld, refused %lld; all answered after %.1f s\n", inviati,
                durata, static_cast<double>(inviati) / durata, riusciti, falliti, finePassi);
    std::printf("notice latency over all probes: p50 %.1f ms, p99 %.1f ms\n", Percentile(tutte, 0.5), Percentile(tutte, 0.99));
    std::printf("the same after the storm's first second: p50 %.1f ms, p99 %.1f ms\n", Percentile(dopoIlPrimo, 0.5),
                Percentile(dopoIlPrimo, 0.99));
    std::printf("longest notice latency by second of the storm (ms):");
    for (const double m : peggiorePerSecondo)
        std::printf(" %.0f", m);
    std::printf("\n");

    // The server killed outright, then started again: the probes and the consoles bind again.
    server->kill();
    server->waitForFinished(10000);
    QThread::sleep(3);
    for (Sonda* s : sonde)
        s->mRitrovata = {};
    const Orologio::time_point ripartenza = Orologio::now();
    server.reset(AvviaServer(riga.value(srvd), cartella, indirizzo));
    Attendi([&] {
        return std::all_of(sonde.begin(), sonde.end(), [](Sonda* s) { return s->mRitrovata != Orologio::time_point{}; });
    }, 30000);
    std::printf("\nserver started again: probes bound again after");
    for (Sonda* s : sonde)
        std::printf(" %.0f ms", s->mRitrovata == Orologio::time_point{} ? -1.0 : Ms(s->mRitrovata - ripartenza));
    std::printf("\n");
    QThread::sleep(3);

    std::printf("\n| console | longest event-loop hold during the storm | longest over the run (start, loss, return) | bound again |\n"
                "|---|---|---|---|\n");
    for (size_t i = 0; i < consoles.size(); ++i) {
        ::kill(static_cast<pid_t>(consoles[i]->processId()), SIGTERM);
        consoles[i]->waitForFinished(20000);
        const QString log = lavoro.filePath(QStringLiteral("console%1/PlxSrvConsole.log").arg(i));
        QFile f(log);
        const bool ritrovata = f.open(QIODevice::ReadOnly) && f.readAll().contains("SrvServer_Ricollegato");
        const int tempesta = PausaMassima(log, inizioOra, fineOra);
        std::printf("| %zu | %s | %d ms | %s |\n", i + 1,
                    tempesta == 0 ? "under 20 ms" : qPrintable(QString::number(tempesta) + QStringLiteral(" ms")), PausaMassima(log),
                    ritrovata ? "yes" : "no");
    }
    for (auto& f : fili) {
        f->quit();
        f->wait();
    }
    ::kill(static_cast<pid_t>(server->processId()), SIGTERM);
    server->waitForFinished(20000);
    return 0;
}
