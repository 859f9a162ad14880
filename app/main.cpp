// plxsrvconsole: plays the host's part. It opens the server, creates the engine, hands it
// the server and its events, the GUI and log folders, and drives it through its life.

#include "PxErrore.h"
#include "PxSrvConsole.h"
#include "PxSrvServer.h"
#include "RefServer.h"
#include "frmApertura.h"
#include "frmChiusura.h"
#include "frmConsole.h"
#include "frmPosizione.h"
#include "modDemo.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QStandardPaths>
#include <QTimer>
#include <QTreeWidget>

#include <cstdio>
#include <memory>

namespace {

QString CartellaDemo()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)).filePath(QStringLiteral("demo"));
}

void Errore(const QString& testo)
{
    std::fprintf(stderr, "plxsrvconsole: %s\n", qPrintable(testo));
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) && QGuiApplication::platformName() != u"offscreen")
        QMessageBox::critical(nullptr, PxSrvConsole::TitoloProgramma(), testo);
}

bool Salva(QWidget* finestra, const QString& cartella, const QString& nome)
{
    const QString file = QDir(cartella).filePath(nome);
    const bool ok = finestra->grab().save(file);
    std::printf("%s %s\n", ok ? "saved" : "FAILED", qPrintable(file));
    return ok;
}

// Pictures of the opening window, the main window and the closing window, for the docs.
void Fotografie(PxSrvConsole& engine, const QString& cartella)
{
    QDir().mkpath(cartella);
    auto* attesa = new QTimer(&engine);
    QObject::connect(attesa, &QTimer::timeout, &engine, [&engine, cartella, attesa] {
        if (engine.Stato().Codice != PxConsoleStato::Avviato)
            return;
        attesa->stop();
        auto* console = dynamic_cast<frmConsole*>(engine.Console());
        if (!console)
            return;
        QTreeWidget* albero = console->Posizione()->Albero();
        const auto trovati = albero->findItems(engine.Risorse().LoadDllString(202), Qt::MatchExactly | Qt::MatchRecursive);
        if (!trovati.isEmpty())
            albero->setCurrentItem(trovati.first());
        QTimer::singleShot(300, console, [&engine, console, cartella] {
            Salva(console, cartella, QStringLiteral("console.png"));
            frmApertura apertura(engine.SrvServer());
            for (int i = 0; i < apertura.Massimo() / 2; ++i)
                apertura.Avanzamento(engine.Risorse().LoadDllString(8006) + QStringLiteral(" Documenti fax ")
                                     + engine.Risorse().LoadDllString(8007));
            apertura.show();
            Salva(&apertura, cartella, QStringLiteral("apertura.png"));
            frmChiusura chiusura;
            chiusura.show();
            Salva(&chiusura, cartella, QStringLiteral("chiusura.png"));
            console->close();
        });
    });
    attesa->start(100);
}

} // namespace

// Making a demo folder needs no display: it runs without the windowing system.
bool SoloDemo(int argc, char* argv[])
{
    for (int i = 1; i < argc; ++i)
        if (QByteArrayView(argv[i]).startsWith("--make-demo"))
            return true;
    return false;
}

int main(int argc, char* argv[])
{
    std::unique_ptr<QCoreApplication> applicazione =
        SoloDemo(argc, argv) ? std::make_unique<QCoreApplication>(argc, argv) : std::make_unique<QApplication>(argc, argv);
    QCoreApplication& app = *applicazione;
    // The engine decides when the console ends, not the last window closing.
    if (auto* gui = qobject_cast<QApplication*>(&app))
        gui->setQuitOnLastWindowClosed(false);
    QCoreApplication::setOrganizationName(QString::fromLatin1(PxImpostazioni::Produttore));
    QCoreApplication::setApplicationName(PxSrvConsole::TitoloProgramma());
    QCoreApplication::setApplicationVersion(QStringLiteral(PLX_VERSION));

    QCommandLineParser opzioni;
    opzioni.setApplicationDescription(QStringLiteral("Operator's console of the Pelorix document-dispatch server."));
    opzioni.addHelpOption();
    opzioni.addVersionOption();
    const QCommandLineOption server({QStringLiteral("s"), QStringLiteral("server-folder")},
                                    QStringLiteral("Server folder to run against (default: a demo folder, created on first use)."),
                                    QStringLiteral("folder"));
    const QCommandLineOption log({QStringLiteral("l"), QStringLiteral("log-folder")},
                                 QStringLiteral("Folder of the console log (default: the server's Log folder)."),
                                 QStringLiteral("folder"));
    const QCommandLineOption gui({QStringLiteral("g"), QStringLiteral("gui-folder")},
                                 QStringLiteral("Folder of the console's own files (default: the program's folder)."),
                                 QStringLiteral("folder"));
    const QCommandLineOption demo(QStringLiteral("make-demo"), QStringLiteral("Create a demo server folder and exit."),
                                  QStringLiteral("folder"));
    const QCommandLineOption documenti(QStringLiteral("documents"),
                                       QStringLiteral("With --make-demo: how many documents (default 2000)."),
                                       QStringLiteral("n"), QStringLiteral("2000"));
    const QCommandLineOption fotografie(QStringLiteral("screenshots"),
                                       QStringLiteral("Start, save pictures of the windows into a folder, and exit."),
                                       QStringLiteral("folder"));
    opzioni.addOptions({server, log, gui, demo, documenti, fotografie});
    opzioni.process(app);

    if (opzioni.isSet(demo)) {
        bool ok = false;
        const int numero = opzioni.value(documenti).toInt(&ok);
        if (!ok || numero < 0 || numero > 10'000'000) {
            Errore(QStringLiteral("--documents wants a number from 0 to 10000000, not \"%1\"").arg(opzioni.value(documenti)));
            return 2;
        }
        QElapsedTimer tempo;
        tempo.start();
        const QString errore = modDemo::CreaServerDemo(opzioni.value(demo), numero);
        if (!errore.isEmpty()) {
            Errore(errore);
            return 1;
        }
        std::printf("demo server folder ready: %s (%d documents, %lld ms)\n",
                    qPrintable(QDir(opzioni.value(demo)).absolutePath()), numero, static_cast<long long>(tempo.elapsed()));
        return 0;
    }

    const QString cartellaServer = opzioni.isSet(server) ? opzioni.value(server) : CartellaDemo();
    if (!opzioni.isSet(server) && !modDemo::EServer(cartellaServer)) {
        if (const QString errore = modDemo::CreaServerDemo(cartellaServer); !errore.isEmpty()) {
            Errore(errore);
            return 1;
        }
    }
    if (!QFileInfo(cartellaServer).isDir()) {
        Errore(QStringLiteral("Server folder not found: %1").arg(cartellaServer));
        return 1;
    }

    RefServer srv(cartellaServer);
    PxSrvConsole engine;
    engine.SetSrvServer(&srv);
    engine.SetServerEventi(srv.Eventi());
    engine.SetPercorsoGui(opzioni.isSet(gui) ? opzioni.value(gui) : QCoreApplication::applicationDirPath());
    engine.SetPercorsoLog(opzioni.isSet(log) ? opzioni.value(log) : RefServer::CartellaLog(srv.Cartella()));
    engine.SetFabbricaConsole([](PxSrvConsole& e) { return std::make_unique<frmConsole>(e); });

    QObject::connect(engine.ConsoleEventi(), &PxConsoleEventi::CambioStato, &app, [&engine](qint32 codice) {
        if (codice != PxConsoleStato::Arrestato)
            return;
        try {
            engine.Termina();
            QCoreApplication::exit(0);
        } catch (const PxErrore& e) {
            Errore(QStringLiteral("%1 (%2)").arg(e.Descrizione()).arg(e.Numero()));
            QCoreApplication::exit(1);
        }
    });

    try {
        engine.Inizializza();
        engine.Avvia();
    } catch (const PxErrore& e) {
        Errore(QStringLiteral("%1: %2 (%3)").arg(e.Sorgente(), e.Descrizione()).arg(e.Numero()));
        return 1;
    }
    if (opzioni.isSet(fotografie))
        Fotografie(engine, opzioni.value(fotografie));
    return QCoreApplication::exec();
}
