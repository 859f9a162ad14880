// The server as its own program, and the command-line client, run as real processes: one
// server per folder, a clean stop that tells the consoles, a death that frees the folder,
// consoles that see each other's moves, and the client's exit statuses.
#include "PxBloccoCartella.h"
#include "PxCollegamentoRemoto.h"
#include "PxIntestazioneHpx.h"
#include "modPacchettoLavoro.h"
#include "PxServerFiglio.h"
#include "PxSrvCartellaDocumenti.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"
#include "PxTls.h"
#include "PxXmlCallBack.h"
#include "modDemo.h"

#include "Pki.h"
#include "Selezione.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSet>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <pugixml.hpp>

#include <csignal>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

// A demo folder, and plxsrvd serving it on a socket of the test's own.
class ServerProcesso : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(mDir.isValid());
        ASSERT_EQ(modDemo::CreaServerDemo(Cartella(), 40), QString());
    }

    void TearDown() override
    {
        for (auto& p : mProcessi)
            if (p->state() != QProcess::NotRunning) {
                p->kill();
                p->waitForFinished(5000);
            }
    }

    QString Cartella() const { return mDir.filePath(u"server"_s); }
    QString Indirizzo(const QString& nome = u"s"_s) const { return u"local:"_s + mDir.filePath(nome + u".sock"_s); }

    QProcess& Avvia(const QString& programma, const QStringList& argomenti)
    {
        auto& p = *mProcessi.emplace_back(std::make_unique<QProcess>());
        p.start(programma, argomenti);
        EXPECT_TRUE(p.waitForStarted(10000));
        return p;
    }

    // Starts a server and waits until its lock file shows it listening.
    QProcess& AvviaServer(const QString& indirizzo)
    {
        QProcess& p = Avvia(QStringLiteral(PLX_SRVD), {u"--server-folder"_s, Cartella(), u"--listen"_s, indirizzo});
        EXPECT_TRUE(QTest::qWaitFor([&] { return !PxBloccoCartella::Leggi(Cartella()).Indirizzi.isEmpty(); }, 15000))
            << p.readAllStandardError().constData();
        return p;
    }

    // plxsrvctl with `argomenti`: its status, standard output and standard error.
    struct Esito
    {
        int Stato = -1;
        QString Uscita, Errori;
    };
    Esito Ctl(const QStringList& argomenti)
    {
        QProcess p;
        p.start(QStringLiteral(PLX_SRVCTL), argomenti);
        EXPECT_TRUE(p.waitForFinished(30000));
        return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1, QString::fromUtf8(p.readAllStandardOutput()),
                QString::fromUtf8(p.readAllStandardError())};
    }

    QTemporaryDir mDir;
    std::vector<std::unique_ptr<QProcess>> mProcessi;
};

// A console's side of the server, attached by address and loaded.
struct Console
{
    explicit Console(const QString& indirizzo) : Collegamento(QUrl(indirizzo)), Server(&Collegamento) { Server.Connetti(); }
    bool Pronta() { return QTest::qWaitFor([&] { return Server.Caricato(); }, 15000); }

    PxCollegamentoRemoto Collegamento;
    PxSrvServer Server;
};

// The ids of queue `coda` in a folder's listing.
QStringList Coda(PxSrvCartellaDocumenti& cartella, int coda)
{
    PxXmlCallBack callback;
    QSignalSpy elenco(&callback, &PxXmlCallBack::XmlCallBack);
    cartella.Elenca(&callback);
    if (!elenco.wait(10000))
        return {};
    const QByteArray xml = elenco[0][0].toByteArray();
    pugi::xml_document doc;
    doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size()));
    QStringList id;
    for (const pugi::xml_node d : doc.document_element().child(("Coda_" + std::to_string(coda)).c_str()).children("D"))
        id << QString::fromUtf8(d.child("F").child_value());
    return id;
}

} // namespace

TEST_F(ServerProcesso, ASecondServerOnTheFolderIsRefusedNamingTheFirst)
{
    QProcess& primo = AvviaServer(Indirizzo());
    // Another address does not help: the folder is what is held.
    QProcess& secondo = Avvia(QStringLiteral(PLX_SRVD), {u"--server-folder"_s, Cartella(), u"--listen"_s, Indirizzo(u"altro"_s)});
    ASSERT_TRUE(secondo.waitForFinished(10000));
    EXPECT_EQ(secondo.exitCode(), 3);
    const QString errore = QString::fromUtf8(secondo.readAllStandardError());
    EXPECT_TRUE(errore.contains(QString::number(primo.processId()))) << qPrintable(errore);
    EXPECT_TRUE(errore.contains(Indirizzo())) << qPrintable(errore);
    EXPECT_EQ(primo.state(), QProcess::Running);
    EXPECT_FALSE(QFile::exists(mDir.filePath(u"altro.sock"_s)));
}

TEST_F(ServerProcesso, AClientGivenOnlyTheFolderFindsItsServer)
{
    AvviaServer(Indirizzo());
    PxServerFiglio ricerca;
    const QString trovato = ricerca.Trova(Cartella(), false);
    EXPECT_EQ(trovato, Indirizzo()) << qPrintable(ricerca.Errore());
    Console console(trovato);
    ASSERT_TRUE(console.Pronta());
    EXPECT_EQ(QDir(console.Server.Cartella()).canonicalPath(), QDir(Cartella()).canonicalPath());

    // A folder nobody serves is said to be so, without waiting.
    QTemporaryDir vuota;
    EXPECT_EQ(ricerca.Trova(vuota.path(), false), QString());
    EXPECT_TRUE(ricerca.Errore().contains(u"no server"_s)) << qPrintable(ricerca.Errore());
}

TEST_F(ServerProcesso, ASignalStopsTheServerCleanlyAndItsConsolesAreTold)
{
    QProcess& server = AvviaServer(Indirizzo());
    Console console(Indirizzo());
    ASSERT_TRUE(console.Pronta());
    QSignalSpy stato(&console.Server, &PxSrvServer::StatoCambiato);
    QSignalSpy interrotto(&console.Server, &PxSrvServer::Interrotto);
    ASSERT_EQ(::kill(static_cast<pid_t>(server.processId()), SIGTERM), 0);
    // The console's loop runs meanwhile, as a console's does.
    ASSERT_TRUE(stato.wait(10000)) << "the console heard of the stop";
    EXPECT_EQ(stato.constFirst().constFirst().toInt(), modContratto::ServerInArresto);
    ASSERT_TRUE(server.waitForFinished(20000));
    EXPECT_EQ(server.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(server.exitCode(), 0) << server.readAllStandardError().constData();
    ASSERT_TRUE(!interrotto.isEmpty() || interrotto.wait(5000));
    EXPECT_FALSE(console.Server.Riprovando()) << "a server that stopped for good is not waited for";
    EXPECT_FALSE(PxBloccoCartella::Leggi(Cartella()).Vivo);
}

TEST_F(ServerProcesso, AServerKilledOutrightLeavesTheFolderAndAddressToTheNext)
{
    QProcess& primo = AvviaServer(Indirizzo());
    primo.kill();
    ASSERT_TRUE(primo.waitForFinished(10000));
    EXPECT_FALSE(PxBloccoCartella::Leggi(Cartella()).Vivo) << "the kernel released the lock";
    ASSERT_TRUE(QFile::exists(mDir.filePath(u"s.sock"_s))) << "a dead server leaves its socket file";
    QProcess& secondo = AvviaServer(Indirizzo());
    Console console(Indirizzo());
    EXPECT_TRUE(console.Pronta()) << secondo.readAllStandardError().constData();
}

TEST_F(ServerProcesso, BadStartsEndWithTheirDocumentedStatus)
{
    const auto stato = [&](const QStringList& argomenti) {
        QProcess p;
        p.start(QStringLiteral(PLX_SRVD), argomenti);
        return p.waitForFinished(15000) ? p.exitCode() : -1;
    };
    EXPECT_EQ(stato({}), 2) << "no folder";
    EXPECT_EQ(stato({u"--frob"_s}), 2);
    EXPECT_EQ(stato({u"--server-folder"_s, mDir.path()}), 1) << "not a server folder";
    EXPECT_EQ(stato({u"--server-folder"_s, Cartella(), u"--listen"_s, u"tcp://127.0.0.1:7420"_s}), 2) << "never plain TCP";
    EXPECT_FALSE(PxBloccoCartella::Leggi(Cartella()).Vivo);
    EXPECT_EQ(stato({u"--help"_s}), 0);
}

// An installation's first start prepares its folder: settings and services, no documents; the
// next starts leave what the administrator changed.
TEST_F(ServerProcesso, AnInstallationsFolderIsPreparedOnceThenServedAsItIs)
{
    const QString installata = mDir.filePath(u"var/lib/plxsrvd"_s);
    const auto prepara = [&] {
        QProcess p;
        p.start(QStringLiteral(PLX_SRVD), {u"--init-folder"_s, installata});
        return p.waitForFinished(15000) ? p.exitCode() : -1;
    };
    ASSERT_EQ(prepara(), 0);
    ASSERT_TRUE(modDemo::EServer(installata));
    QFile ini(QDir(installata).filePath(u"PlxConfigurazione.ini"_s));
    ASSERT_TRUE(ini.open(QIODevice::Append));
    ini.write("; cambiato dall'amministratore\r\n");
    ini.close();
    ASSERT_EQ(prepara(), 0);
    ASSERT_TRUE(ini.open(QIODevice::ReadOnly));
    EXPECT_TRUE(ini.readAll().contains("cambiato dall'amministratore")) << "an existing folder is left alone";
    ini.close();

    Avvia(QStringLiteral(PLX_SRVD), {u"--server-folder"_s, installata, u"--listen"_s, Indirizzo()});
    Console console(Indirizzo());
    ASSERT_TRUE(console.Pronta());
    EXPECT_NE(console.Server.Servizio(u"PxSrvStampe"_s), nullptr);
    PxSrvCartellaDocumenti* fax = console.Server.CartellaDocumenti(u"PxSrvDocFax"_s);
    ASSERT_NE(fax, nullptr);
    for (int coda = 0; coda < 10; ++coda)
        EXPECT_TRUE(Coda(*fax, coda).isEmpty()) << "no documents in queue " << coda;
    const Esito stato = Ctl({u"--server"_s, Indirizzo(), u"status"_s});
    EXPECT_EQ(stato.Stato, 0) << qPrintable(stato.Errori);
}

TEST_F(ServerProcesso, AMoveMadeByOneConsoleReachesEveryConsole)
{
    AvviaServer(Indirizzo());
    std::vector<std::unique_ptr<Console>> console;
    for (int i = 0; i < 3; ++i) {
        console.push_back(std::make_unique<Console>(Indirizzo()));
        ASSERT_TRUE(console.back()->Pronta());
    }
    PxSrvCartellaDocumenti* fax = console[0]->Server.CartellaDocumenti(u"PxSrvDocFax"_s);
    ASSERT_NE(fax, nullptr);
    const QStringList trasmessi = Coda(*fax, 8);
    ASSERT_FALSE(trasmessi.isEmpty());
    std::vector<std::unique_ptr<QSignalSpy>> spie;
    for (auto& c : console)
        spie.push_back(std::make_unique<QSignalSpy>(c->Server.Servizio(u"PxSrvFax"_s), &PxSrvServizio::DocumentoSpostato));
    std::optional<PxRisposta> risposta;
    fax->SpostaDocumenti(Selezione({trasmessi[0]}), 2, nullptr, [&](const PxRisposta& r) { risposta = r; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return risposta.has_value(); }, 10000));
    ASSERT_TRUE(risposta->Riuscita()) << qPrintable(risposta->Testo);
    for (auto& spia : spie) {
        const auto visto = [&] {
            return std::any_of(spia->cbegin(), spia->cend(), [&](const QList<QVariant>& n) {
                return n[1].toString() == trasmessi[0] && n[0].toInt() == 2;
            });
        };
        EXPECT_TRUE(QTest::qWaitFor(visto, 10000));
    }
}

TEST_F(ServerProcesso, TheClientSaysWhatItDidAndEndsWithItsStatus)
{
    AvviaServer(Indirizzo());
    const QStringList server = {u"--server-folder"_s, Cartella()};

    const Esito stato = Ctl(server + QStringList{u"status"_s});
    EXPECT_EQ(stato.Stato, 0) << qPrintable(stato.Errori);
    EXPECT_TRUE(stato.Uscita.contains(u"PxSrvFax"_s) && stato.Uscita.contains(u"running"_s)) << qPrintable(stato.Uscita);

    const Esito json = Ctl({u"--server"_s, Indirizzo(), u"--json"_s, u"list"_s, u"fax"_s, u"--queue"_s, u"8"_s});
    ASSERT_EQ(json.Stato, 0) << qPrintable(json.Errori);
    const QJsonObject elenco = QJsonDocument::fromJson(json.Uscita.toUtf8()).object();
    EXPECT_EQ(elenco[u"folder"_s].toString(), u"PxSrvDocFax"_s);
    const QJsonArray code = elenco[u"queues"_s].toArray();
    ASSERT_EQ(code.size(), 1);
    const QJsonArray documenti = code[0].toObject()[u"documents"_s].toArray();
    ASSERT_FALSE(documenti.isEmpty());
    const QString id = documenti[0].toArray()[0].toString();

    const Esito mossa = Ctl(server + QStringList{u"move"_s, u"DocFax"_s, u"--to"_s, u"2"_s, id});
    EXPECT_EQ(mossa.Stato, 0) << qPrintable(mossa.Errori);
    const Esito testo = Ctl(server + QStringList{u"list"_s, u"PxSrvDocFax"_s});
    EXPECT_FALSE(testo.Uscita.contains(u"8\t"_s + id + u'\t')) << "no longer among the sent";

    const Esito rifiutato = Ctl(server + QStringList{u"move"_s, u"fax"_s, u"--to"_s, u"2"_s, u"NESSUNO"_s});
    EXPECT_EQ(rifiutato.Stato, 1);
    EXPECT_TRUE(rifiutato.Errori.contains(u"NESSUNO"_s)) << "the server's reason: " << qPrintable(rifiutato.Errori);
    EXPECT_EQ(Ctl(server + QStringList{u"suspend"_s, u"Nessuno"_s}).Stato, 1);

    // A test page goes the console's way, and is done once the printing service took it.
    const Esito pagina = Ctl(server + QStringList{u"test-page"_s, u"Zebra banco"_s});
    EXPECT_EQ(pagina.Stato, 0) << qPrintable(pagina.Errori);
    EXPECT_TRUE(pagina.Uscita.contains(u"taken STP-"_s)) << qPrintable(pagina.Uscita);
    const Esito sconosciuta = Ctl(server + QStringList{u"test-page"_s, u"Nessuna"_s});
    EXPECT_EQ(sconosciuta.Stato, 1);
    EXPECT_TRUE(sconosciuta.Errori.contains(u"Nessuna"_s));

    EXPECT_EQ(Ctl(server).Stato, 2) << "no command";
    EXPECT_EQ(Ctl(server + QStringList{u"frob"_s}).Stato, 2);
    EXPECT_EQ(Ctl(server + QStringList{u"move"_s, u"fax"_s, u"--to"_s, u"x"_s, id}).Stato, 2);
    EXPECT_EQ(Ctl({u"--server"_s, Indirizzo(), u"--server-folder"_s, Cartella(), u"status"_s}).Stato, 2) << "two servers named";
    if (!QFileInfo::exists(PxServerFiglio::SocketDiSistema())) {
        // No server named and none installed: unreachable, saying what to give.
        const Esito nessuno = Ctl({u"status"_s});
        EXPECT_EQ(nessuno.Stato, 3);
        EXPECT_TRUE(nessuno.Errori.contains(u"--server"_s)) << qPrintable(nessuno.Errori);
    }

    QTemporaryDir vuota;
    EXPECT_EQ(Ctl({u"--server-folder"_s, vuota.path(), u"status"_s}).Stato, 3);
    EXPECT_EQ(Ctl({u"--server"_s, Indirizzo(u"nessuno"_s), u"--timeout"_s, u"1"_s, u"status"_s}).Stato, 3);
}

TEST_F(ServerProcesso, WatchPrintsNoticesUntilTheServerStops)
{
    QProcess& server = AvviaServer(Indirizzo());
    QProcess& osserva = Avvia(QStringLiteral(PLX_SRVCTL), {u"--server"_s, Indirizzo(), u"watch"_s, u"--json"_s});
    // The demo's workers move documents every few seconds.
    ASSERT_TRUE(QTest::qWaitFor([&] { return osserva.canReadLine(); }, 15000));
    const QJsonObject primo = QJsonDocument::fromJson(osserva.readLine()).object();
    EXPECT_FALSE(primo[u"event"_s].toString().isEmpty());
    EXPECT_FALSE(primo[u"service"_s].toString().isEmpty());
    ::kill(static_cast<pid_t>(server.processId()), SIGTERM);
    ASSERT_TRUE(osserva.waitForFinished(15000));
    EXPECT_EQ(osserva.exitCode(), 0);
    EXPECT_TRUE(osserva.readAll().contains("\"stopping\""));
}

TEST_F(ServerProcesso, AConsoleWaitsOutALostServerAndBindsAgainWhenItComesBack)
{
    QProcess* server = &AvviaServer(Indirizzo());
    Console console(Indirizzo());
    ASSERT_TRUE(console.Pronta());
    PxSrvCartellaDocumenti* fax = console.Server.CartellaDocumenti(u"PxSrvDocFax"_s);
    PxSrvServizio* servizio = console.Server.Servizio(u"PxSrvFax"_s);
    QSignalSpy interrotto(&console.Server, &PxSrvServer::Interrotto);
    QSignalSpy riprova(&console.Server, &PxSrvServer::Riprova);
    QSignalSpy ricollegato(&console.Server, &PxSrvServer::Ricollegato);

    server->kill();
    ASSERT_TRUE(server->waitForFinished(10000));
    ASSERT_TRUE(interrotto.wait(10000));
    EXPECT_FALSE(console.Server.Raggiungibile());
    EXPECT_TRUE(console.Server.Riprovando()) << "waited for, not given up";
    // A request meanwhile fails at once, saying why.
    std::optional<PxRisposta> persa;
    fax->SpostaDocumenti(Selezione({u"FAX-000001"_s}), 2, nullptr, [&](const PxRisposta& r) { persa = r; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return persa.has_value(); }, 5000));
    EXPECT_EQ(persa->Esito, modContratto::NonDisponibile);
    EXPECT_FALSE(persa->Testo.isEmpty());
    // Tried again at growing intervals while nobody answers.
    ASSERT_TRUE(QTest::qWaitFor([&] { return riprova.size() >= 3; }, 10000));
    EXPECT_EQ(riprova[0][0].toInt(), PxSrvServer::PrimaAttesa);
    EXPECT_GT(riprova[2][0].toInt(), riprova[1][0].toInt());
    EXPECT_TRUE(ricollegato.isEmpty());

    server = &AvviaServer(Indirizzo());
    ASSERT_TRUE(ricollegato.wait(20000)) << server->readAllStandardError().constData();
    EXPECT_TRUE(console.Server.Raggiungibile());
    EXPECT_EQ(interrotto.size(), 1) << "one loss, however many attempts";
    // The same objects the console holds work against the new server: a listing, and a
    // move with its notice.
    const QStringList trasmessi = Coda(*fax, 8);
    ASSERT_FALSE(trasmessi.isEmpty());
    QSignalSpy spostati(servizio, &PxSrvServizio::DocumentoSpostato);
    std::optional<PxRisposta> mossa;
    fax->SpostaDocumenti(Selezione({trasmessi[0]}), 2, nullptr, [&](const PxRisposta& r) { mossa = r; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return mossa.has_value(); }, 10000));
    EXPECT_TRUE(mossa->Riuscita()) << qPrintable(mossa->Testo);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return std::any_of(spostati.cbegin(), spostati.cend(), [&](const auto& n) { return n[1].toString() == trasmessi[0]; });
    }, 10000));
}

namespace {

quint16 PortaLibera()
{
    QTcpServer prova;
    prova.listen(QHostAddress::LocalHost);
    return prova.serverPort();
}

} // namespace

TEST_F(ServerProcesso, OverTlsOnlyClientsOfItsAuthorityGetInAndObserversOnlyRead)
{
    QDir(mDir.path()).mkdir(u"pki"_s);
    const Pki pki(mDir.filePath(u"pki"_s));
    ASSERT_TRUE(pki.Pronta()) << "openssl made the certificates";
    QFile ruoli(QDir(Cartella()).filePath(u"Ruoli.txt"_s));
    ASSERT_TRUE(ruoli.open(QIODevice::WriteOnly));
    ruoli.write("# chi può fare cosa\noperatore   console-sala\nosservatore monitor-noc\n");
    ruoli.close();
    const QString tls = u"tls://localhost:"_s + QString::number(PortaLibera());
    QProcess& server = Avvia(QStringLiteral(PLX_SRVD), QStringList{u"--server-folder"_s, Cartella(), u"--listen"_s, Indirizzo(),
                                                                   u"--listen"_s, u"tls://127.0.0.1:"_s + tls.section(u':', -1)}
                                                           + pki.Opzioni(u"localhost"_s));
    ASSERT_TRUE(QTest::qWaitFor([&] { return PxBloccoCartella::Leggi(Cartella()).Indirizzi.size() == 2; }, 15000))
        << server.readAllStandardError().constData();

    // The operator: everything.
    PxCollegamentoRemoto viaOperatore(QUrl(tls), pki.Di(u"console-sala"_s));
    PxSrvServer operatore(&viaOperatore);
    operatore.Connetti();
    ASSERT_TRUE(QTest::qWaitFor([&] { return operatore.Caricato() && operatore.Ruolo() == u"operatore"; }, 15000));
    EXPECT_FALSE(operatore.FileLocali()) << "across the network the server's files are not ours";
    const QStringList trasmessi = Coda(*operatore.CartellaDocumenti(u"PxSrvDocFax"_s), 8);
    ASSERT_GE(trasmessi.size(), 2);
    std::optional<PxRisposta> mossa;
    operatore.CartellaDocumenti(u"PxSrvDocFax"_s)->SpostaDocumenti(Selezione({trasmessi[0]}), 2, nullptr,
                                                                   [&](const PxRisposta& r) { mossa = r; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return mossa.has_value(); }, 10000));
    EXPECT_TRUE(mossa->Riuscita()) << qPrintable(mossa->Testo);

    // The observer: reads, and is refused every change with the reason.
    PxCollegamentoRemoto viaOsservatore(QUrl(tls), pki.Di(u"monitor-noc"_s));
    PxSrvServer osservatore(&viaOsservatore);
    osservatore.Connetti();
    ASSERT_TRUE(QTest::qWaitFor([&] { return osservatore.Caricato() && osservatore.SoloLettura(); }, 15000));
    EXPECT_EQ(Coda(*osservatore.CartellaDocumenti(u"PxSrvDocFax"_s), 8).size() + 1, trasmessi.size()) << "it reads";
    std::optional<PxRisposta> rifiutata, sospesa;
    osservatore.CartellaDocumenti(u"PxSrvDocFax"_s)->SpostaDocumenti(Selezione({trasmessi[1]}), 2, nullptr,
                                                                     [&](const PxRisposta& r) { rifiutata = r; });
    osservatore.Servizio(u"PxSrvFax"_s)->Sospendi(nullptr, [&](const PxRisposta& r) { sospesa = r; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return rifiutata.has_value() && sospesa.has_value(); }, 10000));
    EXPECT_EQ(rifiutata->Esito, modContratto::Rifiutato);
    EXPECT_TRUE(rifiutata->Testo.contains(u"osservatore"_s)) << qPrintable(rifiutata->Testo);
    EXPECT_EQ(sospesa->Esito, modContratto::Rifiutato);
    PxIntestazioneHpx h;
    h.ScriviIntero({}, u"Tipo"_s, 2);
    h.ScriviTesto(u"FAX"_s, u"NumeroFax"_s, u"5551234"_s);
    std::optional<PxRisposta> prova;
    osservatore.Servizio(u"PxSrvFax"_s)
        ->ConsegnaLavoro(u"prova-osservatore"_s, modPacchettoLavoro::Componi({{".bpx", "Testo\r\n"}, {".hpx", h.Serializza()}}),
                         nullptr, [&](const PxRisposta& r) { prova = r; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return prova.has_value(); }, 10000));
    EXPECT_EQ(prova->Esito, modContratto::Rifiutato) << "no test job from an observer";
    EXPECT_FALSE(QFile::exists(QDir(Cartella()).filePath(u"Ingresso/PxSrvFax/prova-osservatore.hpx"_s)));
    EXPECT_TRUE(Coda(*operatore.CartellaDocumenti(u"PxSrvDocFax"_s), 8).contains(trasmessi[1])) << "nothing moved";

    // A certificate from another authority, and a client that speaks no TLS, never get in.
    PxCollegamentoRemoto viaIntruso(QUrl(tls), pki.Di(u"intruso"_s));
    PxSrvServer intruso(&viaIntruso);
    QSignalSpy respinto(&intruso, &PxSrvServer::Interrotto);
    intruso.Connetti();
    ASSERT_TRUE(respinto.wait(15000));
    EXPECT_FALSE(intruso.Caricato());
    QTcpSocket semplice;
    semplice.connectToHost(QHostAddress::LocalHost, static_cast<quint16>(QUrl(tls).port()));
    ASSERT_TRUE(semplice.waitForConnected(5000));
    semplice.write("QtRO\n");
    EXPECT_TRUE(semplice.waitForDisconnected(15000)) << "the server hangs up on plain TCP";

    // The log says who did what, and who was turned away.
    QFile log(QDir(Cartella()).filePath(u"Log/PxSrvServer.log"_s));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    const QString righe = QString::fromUtf8(log.readAll());
    EXPECT_TRUE(righe.contains(u"chiesto da console-sala (operatore)"_s));
    EXPECT_TRUE(righe.contains(u"non consentito: monitor-noc"_s));
    EXPECT_GE(righe.count(u"Connessione rifiutata da 127.0.0.1"_s), 2) << qPrintable(righe.right(2000));
}

TEST_F(ServerProcesso, LocalClientsAreOperatorsAndTheClientRefusesPlainTcp)
{
    AvviaServer(Indirizzo());
    Console console(Indirizzo());
    ASSERT_TRUE(console.Pronta());
    EXPECT_TRUE(QTest::qWaitFor([&] { return console.Server.Ruolo() == u"operatore"; }, 5000));
    EXPECT_FALSE(console.Server.SoloLettura());

    PxCollegamentoRemoto semplice(QUrl(u"tcp://127.0.0.1:7420"_s));
    PxSrvServer server(&semplice);
    QSignalSpy interrotto(&server, &PxSrvServer::Interrotto);
    server.Connetti();
    ASSERT_TRUE(interrotto.wait(5000));
    EXPECT_TRUE(interrotto[0][0].toString().contains(u"TLS"_s)) << qPrintable(interrotto[0][0].toString());
}

namespace {

// Every document on disk (one folder each, in its queue), by id; and every job waiting or set
// aside, by name.
struct Censimento
{
    QStringList Documenti;
    QStringList Lavori;
};

Censimento Conta(const QString& cartella)
{
    Censimento c;
    for (const QFileInfo& f : QDir(cartella + u"/Documenti"_s).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot))
        for (const QFileInfo& coda : QDir(f.filePath()).entryInfoList({u"Coda_*"_s}, QDir::Dirs))
            c.Documenti += QDir(coda.filePath()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const char* dove : {"Ingresso", "LavoriRespinti"})
        for (const QFileInfo& s : QDir(cartella + u'/' + QLatin1StringView(dove)).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot))
            c.Lavori += QDir(s.filePath()).entryList({u"*.hpx"_s}, QDir::Files);
    return c;
}

} // namespace

TEST_F(ServerProcesso, AServerStoppedUnderLoadLosesNoJobAndNoDocument)
{
    // The fastest pace: jobs taken every 50 ms, every stage moving twenty documents a tick.
    QFile ini(QDir(Cartella()).filePath(u"PlxConfigurazione.ini"_s));
    ASSERT_TRUE(ini.open(QIODevice::Append));
    ini.write("\r\n[Server di riferimento]\r\nIntervalloLavoro=50\r\nDocumentiPerPasso=20\r\nIntervalloIngresso=50\r\n");
    ini.close();
    const Censimento prima = Conta(Cartella());
    QProcess& server = AvviaServer(Indirizzo());
    const QString ingresso = QDir(Cartella()).filePath(u"Ingresso/PxSrvFax"_s);
    ASSERT_TRUE(QDir().mkpath(ingresso));
    PxIntestazioneHpx h;
    h.ScriviIntero({}, u"Tipo"_s, 2);
    h.ScriviTesto(u"PROPRIETA"_s, u"Descrizione"_s, u"Fax sotto carico"_s);
    h.ScriviTesto(u"FAX"_s, u"NumeroFax"_s, u"5551234"_s);
    const QByteArray intestazione = h.Serializza();
    // Jobs as a client hands them over: body, then header, each published by a rename.
    const auto consegna = [&](int n) {
        const QString base = ingresso + u"/carico-"_s + QString::number(n);
        for (const auto& [estensione, dati] : {std::pair{u".bpx"_s, QByteArray("Testo\r\n")}, std::pair{u".hpx"_s, intestazione}}) {
            QFile f(base + u".tmp"_s);
            ASSERT_TRUE(f.open(QIODevice::WriteOnly));
            f.write(dati);
            f.close();
            ASSERT_TRUE(QFile::rename(base + u".tmp"_s, base + estensione));
        }
    };
    constexpr int Lavori = 120;
    for (int n = 0; n < Lavori; ++n) {
        consegna(n);
        if (n == Lavori / 2) {
            ASSERT_EQ(::kill(static_cast<pid_t>(server.processId()), SIGTERM), 0); // mid-stream
        }
        QTest::qWait(5);
    }
    ASSERT_TRUE(server.state() == QProcess::NotRunning || server.waitForFinished(30000));
    EXPECT_EQ(server.exitCode(), 0) << server.readAllStandardError().constData();

    // Every job accepted is a document or still a job; no document is in two queues.
    const Censimento dopo = Conta(Cartella());
    EXPECT_EQ(dopo.Documenti.size() + dopo.Lavori.size(), prima.Documenti.size() + prima.Lavori.size() + Lavori);
    EXPECT_EQ(QSet<QString>(dopo.Documenti.cbegin(), dopo.Documenti.cend()).size(), dopo.Documenti.size());
    EXPECT_GT(dopo.Documenti.size(), prima.Documenti.size()) << "the server took jobs before it stopped";

    // The next server finds all of it: as many documents listed as on disk.
    AvviaServer(Indirizzo());
    Console console(Indirizzo());
    ASSERT_TRUE(console.Pronta());
    const QStringList tutte = [&] {
        QStringList id;
        for (int coda = 0; coda <= 12; ++coda)
            id += Coda(*console.Server.CartellaDocumenti(u"PxSrvDocFax"_s), coda);
        return id;
    }();
    const qsizetype suDisco = std::count_if(dopo.Documenti.cbegin(), dopo.Documenti.cend(),
                                            [](const QString& id) { return id.startsWith(u"FAX-"_s); });
    EXPECT_GE(tutte.size(), suDisco);
}
