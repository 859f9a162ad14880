// plxsrvd: the reference dispatch server as a program of its own. It serves one server folder
// for as long as it runs, in the foreground (a service manager or a console starts it), and
// publishes its objects to the consoles and clients that attach to it.

#include "PxBloccoCartella.h"
#include "PxLettoreIni.h"
#include "PxTls.h"
#include "PxRigaLog.h"
#include "PxSegnaliArresto.h"
#include "RefLog.h"
#include "RefOspite.h"
#include "modDemo.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QUrl>

#include <cstdio>
#include <memory>
#include <fcntl.h>
#include <unistd.h>

namespace {

// Exit statuses, as --help lists them.
enum : int { Fermato = 0, NonAvviato = 1, Uso = 2, CartellaOccupata = 3 };

void Scrivi(const QString& testo) { std::fprintf(stderr, "plxsrvd: %s\n", qPrintable(testo)); }

const char* const Descrizione = R"(Reference dispatch server: serves a server folder to the consoles and clients that attach to it.

It runs in the foreground until SIGTERM, SIGINT or SIGHUP, then tells its consoles, stops taking
work, syncs the folder and exits 0. Its log goes to the folder's Log/ and to standard error.
One server per folder: the folder's plxsrvd.lock holds this process's id and addresses.

Addresses:
  local:/path/name.sock   a local socket (the default: one in the user's runtime folder,
                          named after the folder); only the server's user and group may connect
  tls://host:port         TCP inside TLS ("*" for every interface): the server shows its
                          certificate and requires a client certificate from the same
                          authority (--tls-cert, --tls-key, --tls-ca, or the keys CertificatoTls,
                          ChiaveTls, AutoritaTls of section "Server di riferimento" of
                          PlxConfigurazione.ini). Plain TCP is never offered.

Roles: local clients are operators; a TLS client is what the folder's Ruoli.txt says of its
certificate's common name ("operatore NAME" or "osservatore NAME", a line each), an observer
otherwise. Observers may only read. Every command carried out is logged with who asked.

Exit statuses:
  0  stopped cleanly (or --help, --version, --make-demo, --init-folder done)
  1  could not start: not a server folder, cannot listen, cannot write the lock
  2  bad command line
  3  the folder is already served by another server (its process id and address are named))";

// A local socket whose file is left behind by a server that died can be taken again; one a
// live process answers on cannot.
QString PreparaSocket(const QString& percorso)
{
    QLocalSocket prova;
    prova.connectToServer(percorso);
    if (prova.waitForConnected(300)) {
        prova.abort();
        return QStringLiteral("%1 is in use by another process").arg(percorso);
    }
    QDir().mkpath(QFileInfo(percorso).absolutePath());
    QLocalServer::removeServer(percorso);
    return {};
}

// Checks an address of --listen and readies what it needs; "" when it can be listened on.
QString Prepara(const QUrl& indirizzo)
{
    if (indirizzo.scheme() == u"local") {
        if (indirizzo.path().isEmpty())
            return QStringLiteral("\"%1\": a local address names a socket, as local:/run/plxsrvd/plxsrvd.sock").arg(indirizzo.toString());
        return QDir::isAbsolutePath(indirizzo.path()) ? PreparaSocket(indirizzo.path()) : QString();
    }
    if (indirizzo.scheme() == u"tcp")
        return QStringLiteral("\"%1\": the server never listens on plain TCP; use tls://host:port").arg(indirizzo.toString());
    if (indirizzo.scheme() == u"tls")
        return indirizzo.port() > 0 ? QString() : QStringLiteral("\"%1\": a port is needed").arg(indirizzo.toString());
    return QStringLiteral("\"%1\": unknown kind of address (local:/path, tls://host:port)").arg(indirizzo.toString());
}

// The data reach the disk before the process reports a clean stop.
void Sincronizza(const QString& cartella)
{
    const int fd = ::open(QFile::encodeName(cartella).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return;
    if (::syncfs(fd) != 0)
        Scrivi(QStringLiteral("syncing %1 failed").arg(cartella));
    ::close(fd);
}

int CreaDemo(const QString& cartella, const QString& quanti)
{
    bool ok = false;
    const int numero = quanti.toInt(&ok);
    if (!ok || numero < 0 || numero > 10'000'000) {
        Scrivi(QStringLiteral("--documents wants a number from 0 to 10000000, not \"%1\"").arg(quanti));
        return Uso;
    }
    QElapsedTimer tempo;
    tempo.start();
    if (const QString errore = modDemo::CreaServerDemo(cartella, numero); !errore.isEmpty()) {
        Scrivi(errore);
        return NonAvviato;
    }
    std::printf("demo server folder ready: %s (%d documents, %lld ms)\n", qPrintable(QDir(cartella).absolutePath()), numero,
                static_cast<long long>(tempo.elapsed()));
    return Fermato;
}

// An installation's first start: the folder is made a server folder once, and left alone after.
int PreparaCartella(const QString& cartella)
{
    if (modDemo::EServer(cartella)) {
        std::printf("already a server folder: %s\n", qPrintable(QDir(cartella).absolutePath()));
        return Fermato;
    }
    if (const QString errore = modDemo::CreaCartellaServer(cartella); !errore.isEmpty()) {
        Scrivi(errore);
        return NonAvviato;
    }
    Sincronizza(cartella);
    std::printf("server folder ready: %s\n", qPrintable(QDir(cartella).absolutePath()));
    return Fermato;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("plxsrvd"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PLX_VERSION));

    QCommandLineParser riga;
    riga.setApplicationDescription(QString::fromUtf8(Descrizione));
    const QCommandLineOption aiuto = riga.addHelpOption();
    const QCommandLineOption versione = riga.addVersionOption();
    const QCommandLineOption cartella({QStringLiteral("s"), QStringLiteral("server-folder")},
                                      QStringLiteral("The server folder to serve."), QStringLiteral("folder"));
    const QCommandLineOption ascolta({QStringLiteral("l"), QStringLiteral("listen")},
                                     QStringLiteral("An address to listen on (repeatable; default: a local socket named after the folder)."),
                                     QStringLiteral("address"));
    const QCommandLineOption demo(QStringLiteral("make-demo"), QStringLiteral("Create a demo server folder and exit."),
                                  QStringLiteral("folder"));
    const QCommandLineOption documenti(QStringLiteral("documents"), QStringLiteral("With --make-demo: how many documents (default 2000)."),
                                       QStringLiteral("n"), QStringLiteral("2000"));
    const QCommandLineOption prepara(QStringLiteral("init-folder"),
                                     QStringLiteral("Prepare an empty server folder (settings with their defaults, every "
                                                    "service's configuration, no documents) unless it is one already, and exit."),
                                     QStringLiteral("folder"));
    const QCommandLineOption quieto(QStringLiteral("quiet"),
                                    QStringLiteral("Only warnings and errors on standard error (the folder's logs keep everything)."));
    riga.addOptions({cartella, ascolta, quieto, prepara, demo, documenti});
    riga.addOptions(PxTls::Opzioni());
    if (!riga.parse(app.arguments())) {
        Scrivi(riga.errorText() + QStringLiteral(" (see --help)"));
        return Uso;
    }
    if (riga.isSet(aiuto)) {
        std::printf("%s", qPrintable(riga.helpText()));
        return Fermato;
    }
    if (riga.isSet(versione)) {
        std::printf("plxsrvd %s\n", PLX_VERSION);
        return Fermato;
    }
    if (!riga.positionalArguments().isEmpty()) {
        Scrivi(QStringLiteral("unexpected argument \"%1\" (see --help)").arg(riga.positionalArguments().constFirst()));
        return Uso;
    }
    if (riga.isSet(demo))
        return CreaDemo(riga.value(demo), riga.value(documenti));
    if (riga.isSet(prepara))
        return PreparaCartella(riga.value(prepara));
    if (!riga.isSet(cartella)) {
        Scrivi(QStringLiteral("--server-folder is needed (see --help)"));
        return Uso;
    }

    const QString server = QDir(riga.value(cartella)).absolutePath();
    if (!modDemo::EServer(server)) {
        Scrivi(QStringLiteral("%1 is not a server folder (it has no Servizi/)").arg(server));
        return NonAvviato;
    }
    PxBloccoCartella blocco;
    if (!blocco.Prendi(server)) {
        Scrivi(blocco.Errore());
        return blocco.Occupato() ? CartellaOccupata : NonAvviato;
    }

    QStringList indirizzi = riga.values(ascolta);
    if (indirizzi.isEmpty())
        indirizzi << PxBloccoCartella::IndirizzoPredefinito(server);
    for (const QString& i : std::as_const(indirizzi))
        if (const QString errore = Prepara(QUrl(i)); !errore.isEmpty()) {
            Scrivi(errore);
            return QUrl(i).scheme() == u"local" && QDir::isAbsolutePath(QUrl(i).path()) ? NonAvviato : Uso;
        }

    const int livelloMassimo = riga.isSet(quieto) ? modRigaLog::LivelloAvviso : modRigaLog::LivelloDettaglio;
    RefLog::ImpostaEco([livelloMassimo](const QString& log, int livello, const QString& testo) {
        if (livello > livelloMassimo)
            return;
        static constexpr char Livelli[] = {'E', 'W', 'I', 'D'};
        const char l = livello >= 0 && livello < 4 ? Livelli[livello] : '?';
        std::fprintf(stderr, "%c %s: %s\n", l, qPrintable(log), qPrintable(testo));
    });

    // The TLS files: from the command line, else from the folder's ini file.
    PxTls tls = PxTls::DaRiga(riga);
    if (tls.Vuota()) {
        const PxLettoreIni ini(QDir(server).filePath(QStringLiteral("PlxConfigurazione.ini")));
        const QString sezione = QStringLiteral("Server di riferimento");
        const auto percorso = [&](const QString& chiave) {
            const QString p = ini.Stringa(sezione, chiave, {}).trimmed();
            return p.isEmpty() || QDir::isAbsolutePath(p) ? p : QDir(server).filePath(p);
        };
        tls = {percorso(QStringLiteral("CertificatoTls")), percorso(QStringLiteral("ChiaveTls")), percorso(QStringLiteral("AutoritaTls"))};
    }

    auto ospite = std::make_unique<RefOspite>(server);
    // Listening comes before loading, so that consoles attach and watch the loading.
    int attesi = static_cast<int>(indirizzi.size());
    QStringList errori;
    for (const QString& i : std::as_const(indirizzi))
        ospite->PubblicaRemoto(QUrl(i), [&](const QString& errore) {
            if (!errore.isEmpty())
                errori << errore;
            if (--attesi == 0)
                QCoreApplication::exit(errori.isEmpty() ? 0 : 1);
        }, tls);
    ospite->Avvia();
    if (QCoreApplication::exec() != 0) {
        Scrivi(errori.join(u"; "));
        return NonAvviato;
    }
    if (!blocco.ScriviIndirizzi(indirizzi)) {
        Scrivi(blocco.Errore());
        return NonAvviato;
    }
    Scrivi(QStringLiteral("serving %1 on %2 (process %3)").arg(server, indirizzi.join(u", ")).arg(QCoreApplication::applicationPid()));

    PxSegnaliArresto segnali;
    int segnale = 0;
    QObject::connect(&segnali, &PxSegnaliArresto::Arresto, &app, [&segnale](int s) {
        segnale = s;
        QCoreApplication::quit();
    });
    QCoreApplication::exec();

    Scrivi(QStringLiteral("stopping (signal %1)").arg(segnale));
    ospite->AnnunciaArresto();
    // The server ends on its own thread, then everything it wrote is synced, and the lock
    // goes last, so that a new server never finds a folder still being written.
    ospite.reset();
    Sincronizza(server);
    blocco.Rilascia();
    Scrivi(QStringLiteral("stopped"));
    return Fermato;
}
