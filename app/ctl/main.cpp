// plxsrvctl: the dispatch server from the command line, for scripts and monitoring: the
// services' states, a folder's documents, moves, starting and suspending services, and the
// notices as they come.

#include "PxCollegamentoRemoto.h"
#include "PxCtl.h"
#include "PxSegnaliArresto.h"
#include "PxServerFiglio.h"
#include "PxSrvServer.h"
#include "PxTls.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTimer>
#include <QUrl>

#include <cstdio>

namespace {

const char* const Descrizione = R"(Command-line client of the dispatch server.

Commands:
  status                      the server and each service's state
  list FOLDER [--queue N]     a document folder's documents (queue, id, fields; tab-separated)
  move FOLDER --to N ID...    move documents to queue N (all or nothing)
  start SERVICE               start a service
  suspend SERVICE             suspend a service
  watch                       print the server's notices as they come, until interrupted
  test-page PRINTER           send a printer's test page (its key or Windows name); done once
                              the printing service has taken it

FOLDER and SERVICE: a key ("PxSrvDocFax", "PxSrvFax") or its short form ("DocFax", "Fax").
The server: --server ADDRESS, or --server-folder DIR (the address the folder's server wrote);
with neither, the installed system server (local:/run/plxsrvd/plxsrvd.sock).
ADDRESS: local:/path.sock, or tls://host:port with --tls-cert, --tls-key and --tls-ca.
An observer's commands that change things are refused (status 1, with the reason).

Exit statuses:
  0  done
  1  refused or failed (the server's reason on standard error)
  2  bad command line
  3  server unreachable)";

int Esci(int esito, const QString& messaggio)
{
    std::fprintf(stderr, "plxsrvctl: %s\n", qPrintable(messaggio));
    return esito;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("plxsrvctl"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PLX_VERSION));

    QCommandLineParser riga;
    riga.setApplicationDescription(QString::fromUtf8(Descrizione));
    const QCommandLineOption aiuto = riga.addHelpOption();
    const QCommandLineOption versione = riga.addVersionOption();
    const QCommandLineOption indirizzo(QStringLiteral("server"), QStringLiteral("Address of the server (local:/path/to.sock)."),
                                       QStringLiteral("address"));
    const QCommandLineOption cartella({QStringLiteral("s"), QStringLiteral("server-folder")},
                                      QStringLiteral("Server folder whose server to reach."), QStringLiteral("folder"));
    const QCommandLineOption json(QStringLiteral("json"), QStringLiteral("Output for machines: JSON (watch: one object a line)."));
    const QCommandLineOption attesa(QStringLiteral("timeout"), QStringLiteral("Seconds to wait for the server (default 10)."),
                                    QStringLiteral("s"), QStringLiteral("10"));
    riga.addOptions({indirizzo, cartella, json, attesa});
    riga.addOptions(PxTls::Opzioni());
    riga.addPositionalArgument(QStringLiteral("command"), QStringLiteral("status, list, move, start, suspend, watch, test-page"));
    // What follows the command is the command's own (--queue, --to).
    riga.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    if (!riga.parse(app.arguments()))
        return Esci(PxCtl::Uso, riga.errorText() + QStringLiteral(" (see --help)"));
    if (riga.isSet(aiuto)) {
        std::printf("%s", qPrintable(riga.helpText()));
        return PxCtl::Fatto;
    }
    if (riga.isSet(versione)) {
        std::printf("plxsrvctl %s\n", PLX_VERSION);
        return PxCtl::Fatto;
    }
    QStringList argomenti = riga.positionalArguments();
    const bool perMacchine = riga.isSet(json) || argomenti.removeAll(QStringLiteral("--json")) > 0;
    if (argomenti.isEmpty())
        return Esci(PxCtl::Uso, QStringLiteral("a command is needed (see --help)"));
    const QString comando = argomenti.takeFirst();
    if (!PxCtl::Conosciuto(comando))
        return Esci(PxCtl::Uso, QStringLiteral("unknown command \"%1\" (see --help)").arg(comando));
    bool ok = false;
    const int secondi = riga.value(attesa).toInt(&ok);
    if (!ok || secondi <= 0)
        return Esci(PxCtl::Uso, QStringLiteral("--timeout wants a number of seconds"));
    if (riga.isSet(indirizzo) && riga.isSet(cartella))
        return Esci(PxCtl::Uso, QStringLiteral("--server and --server-folder exclude each other"));

    QString dove = riga.value(indirizzo);
    if (!riga.isSet(indirizzo) && !riga.isSet(cartella)) {
        QString perche;
        dove = PxServerFiglio::IndirizzoDiSistema(&perche);
        if (dove.isEmpty())
            return Esci(PxCtl::Irraggiungibile, perche + QStringLiteral(" (or give --server ADDRESS or --server-folder DIR)"));
    } else if (dove.isEmpty()) {
        PxServerFiglio ricerca;
        dove = ricerca.Trova(riga.value(cartella), false, secondi * 1000);
        if (dove.isEmpty())
            return Esci(PxCtl::Irraggiungibile, ricerca.Errore());
    }

    PxCollegamentoRemoto collegamento{QUrl(dove), PxTls::DaRiga(riga)};
    PxSrvServer server(&collegamento);
    PxCtl ctl(server, perMacchine);
    int esito = PxCtl::Irraggiungibile;
    QObject::connect(&ctl, &PxCtl::Fine, &app, [&esito](int e) {
        esito = e;
        QCoreApplication::exit();
    });
    QObject::connect(&server, &PxSrvServer::Interrotto, &app, [&esito](const QString& motivo) {
        std::fprintf(stderr, "plxsrvctl: the server is unreachable: %s\n", qPrintable(motivo));
        esito = PxCtl::Irraggiungibile;
        QCoreApplication::exit();
    });
    QObject::connect(&server, &PxSrvServer::Pronto, &ctl, [&] { ctl.Esegui(comando, argomenti); });
    // Waiting ends with the server's answer; watching ends when interrupted.
    QTimer limite;
    limite.setSingleShot(true);
    QObject::connect(&limite, &QTimer::timeout, &app, [&] {
        if (server.Caricato())
            return;
        std::fprintf(stderr, "plxsrvctl: the server at %s did not answer within %d s\n", qPrintable(dove), secondi);
        esito = PxCtl::Irraggiungibile;
        QCoreApplication::exit();
    });
    limite.start(secondi * 1000);
    PxSegnaliArresto segnali;
    QObject::connect(&segnali, &PxSegnaliArresto::Arresto, &app, [&esito] {
        esito = PxCtl::Fatto;
        QCoreApplication::exit();
    });
    server.Connetti();
    QCoreApplication::exec();
    return esito;
}
