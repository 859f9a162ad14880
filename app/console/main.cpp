// plxsrvconsole: plays the host's part. It opens the server, creates the engine, hands it
// the server and its events, the GUI and log folders, and drives it through its life.

#include "PxAttesaLavoro.h"
#include "PxCollegamentoRemoto.h"
#include "PxErrore.h"
#include "PxSegnaliArresto.h"
#include "PxSrvConsole.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"
#include "PxServerFiglio.h"
#include "PxTls.h"
#include "RefServer.h"
#include "PxConsoleResDll.h"
#include "frmConsole.h"
#include "modContenuto.h"
#include "modDemo.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QMessageBox>
#include <QStandardPaths>
#include <QTimer>
#include <QUrl>


#include <algorithm>
#include <cstdio>
#include <memory>

using namespace Qt::StringLiterals;

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

// Hands the test page of printer `nome` to the printing service of the server attached to, the
// way the console's command does, and waits until the service took it (or says why not): for
// scripts and for checking a printer from a terminal. 0 taken, 1 refused, 3 no server.
int StampaPaginaDiProva(PxSrvServer& server, const QString& nome)
{
    QEventLoop attesa;
    QTimer::singleShot(15000, &attesa, &QEventLoop::quit);
    QObject::connect(&server, &PxSrvServer::Pronto, &attesa, &QEventLoop::quit);
    QObject::connect(&server, &PxSrvServer::Interrotto, &attesa, &QEventLoop::quit);
    if (!server.Caricato())
        attesa.exec();
    PxSrvServizio* stampe = server.Servizio(QStringLiteral("PxSrvStampe"));
    if (!server.Caricato() || !stampe) {
        Errore(QStringLiteral("the server is not ready: %1").arg(server.Interruzione()));
        return 3;
    }
    const PxConsoleResDll testi;
    int esito = 1;
    QEventLoop fine;
    QObject richiedente;
    auto* sorte = new PxAttesaLavoro(stampe, &richiedente);
    QObject::connect(sorte, &PxAttesaLavoro::Preso, &fine, [&](const QString& base, const QString& id) {
        std::printf("%s: taken as %s\n", qPrintable(QFileInfo(base).fileName()), qPrintable(id));
        esito = 0;
        fine.quit();
    });
    QObject::connect(sorte, &PxAttesaLavoro::Respinto, &fine, [&](const QString& base, const QString& motivo) {
        Errore(QStringLiteral("%1: set aside: %2").arg(QFileInfo(base).fileName(), motivo));
        fine.quit();
    });
    QObject::connect(sorte, &PxAttesaLavoro::Scaduto, &fine, [&](const QString& base) {
        std::printf("%s: handed over, not yet taken by the printing service\n", qPrintable(QFileInfo(base).fileName()));
        esito = 0;
        fine.quit();
    });
    modContenuto::InviaPaginaDiProva(&server, nome, testi, &richiedente, [&](const PxRisposta& r) {
        if (!r.Riuscita()) {
            Errore(r.Testo);
            esito = r.Esito == modContratto::NonDisponibile ? 3 : 1;
            fine.quit();
            return;
        }
        sorte->Attendi(r.Testo, 10000);
    });
    fine.exec();
    return esito;
}

// Parses the command line on `app`: prints help, the version or an error and exits there.
struct RigaComando
{
    QCommandLineParser Parser;
    QCommandLineOption Server{{QStringLiteral("s"), QStringLiteral("server-folder")},
                              QStringLiteral("Server folder whose server to attach to; one is started for it when none "
                                             "serves it, and stopped with the console (default: the installed system "
                                             "server, for a member of its group; else a demo folder, created on first use)."),
                              QStringLiteral("folder")};
    QCommandLineOption Indirizzo{QStringLiteral("server"),
                                 QStringLiteral("Address of a running server to attach to (local:/path/to.sock, or "
                                                "tls://host:port with --tls-cert, --tls-key and --tls-ca)."),
                                 QStringLiteral("address")};
    QCommandLineOption Log{{QStringLiteral("l"), QStringLiteral("log-folder")},
                           QStringLiteral("Folder of the console log (default: the server's Log folder)."), QStringLiteral("folder")};
    QCommandLineOption Gui{{QStringLiteral("g"), QStringLiteral("gui-folder")},
                           QStringLiteral("Folder of the console's own files (default: the program's folder)."),
                           QStringLiteral("folder")};
    QCommandLineOption Demo{QStringLiteral("make-demo"), QStringLiteral("Create a demo server folder and exit."),
                            QStringLiteral("folder")};
    QCommandLineOption Documenti{QStringLiteral("documents"), QStringLiteral("With --make-demo: how many documents (default 2000)."),
                                 QStringLiteral("n"), QStringLiteral("2000")};
    QCommandLineOption Fotografie{QStringLiteral("screenshots"),
                                  QStringLiteral("Start, save pictures of the windows into a folder, and exit."),
                                  QStringLiteral("folder")};
    QCommandLineOption Prova{QStringLiteral("print-test-page"),
                             QStringLiteral("Send the test page of a printer (its key or Windows name) to the printing "
                                            "service of the server attached to, wait until the service took it, and exit "
                                            "(0 taken, 1 refused, 3 no server)."),
                             QStringLiteral("printer")};
    QCommandLineOption Aiuto = Parser.addHelpOption();
    QCommandLineOption Versione = Parser.addVersionOption();

    RigaComando()
    {
        Parser.setApplicationDescription(QStringLiteral("Operator's console of the Pelorix document-dispatch server."));
        Parser.addOptions(PxTls::Opzioni());
        Parser.addOptions({Server, Indirizzo, Log, Gui, Demo, Documenti, Fotografie, Prova});
        // "-platform xcb" and the other options of Qt's own read as one word each.
        Parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    }

    // Whether the program can do what was asked without windows: help, version, a bad command
    // line (its message), a demo folder or a test page. Read before any application exists, so
    // that none of these needs a display.
    bool SenzaFinestre(int argc, char* argv[])
    {
        QStringList argomenti;
        for (int i = 0; i < argc; ++i)
            argomenti << QString::fromLocal8Bit(argv[i]);
        if (!Parser.parse(argomenti)) {
            // The options QApplication takes for itself are not ours: with one of them the
            // windows are wanted, and QApplication removes it before we parse again.
            static const QStringList opzioniQt = {
                u"platform"_s, u"platformpluginpath"_s, u"platformtheme"_s, u"plugin"_s, u"qwindowgeometry"_s,
                u"qwindowtitle"_s, u"qwindowicon"_s, u"reverse"_s, u"session"_s, u"style"_s, u"stylesheet"_s,
                u"widgetcount"_s, u"display"_s, u"geometry"_s, u"title"_s, u"name"_s, u"visual"_s,
                u"qmljsdebugger"_s, u"nograb"_s, u"dograb"_s, u"sync"_s};
            const QStringList sconosciute = Parser.unknownOptionNames();
            return sconosciute.isEmpty() || std::any_of(sconosciute.cbegin(), sconosciute.cend(), [](const QString& o) {
                       return !opzioniQt.contains(o.section(u'=', 0, 0));
                   });
        }
        return Parser.isSet(Aiuto) || Parser.isSet(QStringLiteral("help-all")) || Parser.isSet(Versione)
            || Parser.isSet(Demo) || Parser.isSet(Prova);
    }
};

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication::setOrganizationName(QString::fromLatin1(PxImpostazioni::Produttore));
    QCoreApplication::setApplicationName(PxSrvConsole::TitoloProgramma());
    QCoreApplication::setApplicationVersion(QStringLiteral(PLX_VERSION));
    RigaComando riga;
    std::unique_ptr<QCoreApplication> applicazione = riga.SenzaFinestre(argc, argv)
        ? std::make_unique<QCoreApplication>(argc, argv)
        : std::make_unique<QApplication>(argc, argv);
    QCoreApplication& app = *applicazione;
    // The engine decides when the console ends, not the last window closing.
    if (auto* gui = qobject_cast<QApplication*>(&app))
        gui->setQuitOnLastWindowClosed(false);

    QCommandLineParser& opzioni = riga.Parser;
    const QCommandLineOption &server = riga.Server, &log = riga.Log, &gui = riga.Gui, &demo = riga.Demo,
                             &documenti = riga.Documenti, &fotografie = riga.Fotografie, &prova = riga.Prova;
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

    // The server lives in a process of its own: the one serving the folder, or one started
    // here for it, which ends with the console.
    PxServerFiglio figlio;
    QString indirizzo = opzioni.value(riga.Indirizzo);
    // With neither an address nor a folder: the installed server, when this user may reach it.
    if (indirizzo.isEmpty() && !opzioni.isSet(server)) {
        QString perche;
        indirizzo = PxServerFiglio::IndirizzoDiSistema(&perche);
        if (indirizzo.isEmpty() && QFileInfo::exists(PxServerFiglio::SocketDiSistema()))
            std::fprintf(stderr, "plxsrvconsole: %s; opening the demo instead\n", qPrintable(perche));
    }
    if (indirizzo.isEmpty()) {
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
        indirizzo = figlio.Trova(cartellaServer, true);
        if (indirizzo.isEmpty()) {
            Errore(figlio.Errore());
            return 1;
        }
    }
    PxCollegamentoRemoto collegamento{QUrl(indirizzo), PxTls::DaRiga(opzioni)};
    PxSrvServer srv(&collegamento);
    // The root's folder and text come first: the log folder depends on them.
    {
        QEventLoop attesa;
        QObject::connect(&srv, &PxSrvServer::Collegato, &attesa, &QEventLoop::quit);
        QObject::connect(&srv, &PxSrvServer::Interrotto, &attesa, &QEventLoop::quit);
        QTimer::singleShot(15000, &attesa, &QEventLoop::quit);
        srv.Connetti();
        if (srv.Cartella().isEmpty())
            attesa.exec();
        if (srv.Cartella().isEmpty()) {
            Errore(QStringLiteral("The server at %1 does not answer%2")
                       .arg(indirizzo, srv.Interruzione().isEmpty() ? QString() : QStringLiteral(": ") + srv.Interruzione()));
            return 3;
        }
    }

    if (opzioni.isSet(prova))
        return StampaPaginaDiProva(srv, opzioni.value(prova));

    PxSrvConsole engine;
    engine.SetSrvServer(&srv);
    engine.SetServerEventi(srv.Eventi());
    engine.SetPercorsoGui(opzioni.isSet(gui) ? opzioni.value(gui) : QCoreApplication::applicationDirPath());
    // The console's log goes beside the server's when they share the disk and this user may
    // write there.
    const QString logLocale = srv.FileLocali() && QFileInfo(RefServer::CartellaLog(srv.Cartella())).isWritable()
        ? RefServer::CartellaLog(srv.Cartella())
        : QDir(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation)).filePath(QStringLiteral("Log"));
    engine.SetPercorsoLog(opzioni.isSet(log) ? opzioni.value(log) : logLocale);
    const QString cartellaFotografie = opzioni.value(fotografie);
    engine.SetFabbricaConsole([cartellaFotografie](PxContesto& contesto) {
        auto console = std::make_unique<frmConsole>(contesto);
        if (!cartellaFotografie.isEmpty())
            console->FotografaEChiudi(cartellaFotografie);
        return console;
    });

    int esito = 0;
    const auto termina = [&engine, &esito] {
        try {
            engine.Termina();
        } catch (const PxErrore& e) {
            Errore(QStringLiteral("%1 (%2)").arg(e.Descrizione()).arg(e.Numero()));
            esito = 1;
        }
        QCoreApplication::exit(esito);
    };
    QObject::connect(engine.ConsoleEventi(), &PxConsoleEventi::CambioStato, &app, [termina](qint32 codice) {
        if (codice == PxConsoleStato::Arrestato)
            termina();
    });
    // A stop asked by the system goes the way of the server's Arresta: closing window, layout
    // saved, "Server terminato", status 0.
    PxSegnaliArresto segnali;
    QObject::connect(&segnali, &PxSegnaliArresto::Arresto, &app, [&engine, termina] {
        if (!engine.RichiediArresto() && engine.Inizializzato())
            termina();
    });

    try {
        engine.Inizializza();
        engine.Avvia();
    } catch (const PxErrore& e) {
        Errore(QStringLiteral("%1: %2 (%3)").arg(e.Sorgente(), e.Descrizione()).arg(e.Numero()));
        return 1;
    }
    return QCoreApplication::exec();
}
