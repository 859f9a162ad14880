#include "PxCollegamento.h"
#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxIconResource.h"
#include "PxImpostazioni.h"
#include "PxLogConsole.h"
#include "PxSrvEventiServer.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"
#include "RefOspite.h"
#include "RefServer.h"
#include "RefServizio.h"
#include "frmApertura.h"
#include "frmConsole.h"
#include "frmPosizione.h"
#include "PxBarraComandi.h"
#include "PxModelloContenuto.h"
#include "clsSrvCartella.h"
#include "clsSrvServizi.h"
#include "frmInvioProvaFax.h"
#include "modDemo.h"
#include "modTraccia.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QLabel>
#include <QStatusBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

#include <pugixml.hpp>

using namespace Qt::StringLiterals;

struct PxContestoSonda
{
    static void Occupato(PxContesto& c, bool occupato)
    {
        c.mOccupato = occupato;
        emit c.CambioOccupato(occupato);
    }
};

namespace {

// Lets events through until `condizione` holds; false if it does not within 10 s.
bool Attendi(const std::function<bool()>& condizione) { return QTest::qWaitFor(condizione, 10000); }

QString RecordUtente(const QString& key, const QString& utente, int processId)
{
    return QStringLiteral("<Utente><KeyUtente>%1</KeyUtente><Utente>%2</Utente><ProcessId>%3</ProcessId>"
                          "<Stato><Codice>4</Codice></Stato><TcpConnessione><Stato><Codice>2</Codice></Stato>"
                          "</TcpConnessione></Utente>")
        .arg(key, utente)
        .arg(processId);
}

QString RecordStampante(const QString& chiave, int numero, const QString& nome, int modello = 3)
{
    return QStringLiteral("<Stampante><Chiave>%1</Chiave><NumeroTarquel>%2</NumeroTarquel>"
                          "<NomeStampanteWindows>%3</NomeStampanteWindows><Modello><Codice>%4</Codice></Modello>"
                          "<Stato><Codice>4</Codice></Stato><InfoStampante><PortName>LPT1:</PortName>"
                          "<Attributes>64</Attributes><Usable>True</Usable></InfoStampante></Stampante>")
        .arg(chiave)
        .arg(numero)
        .arg(nome)
        .arg(modello);
}

QString RecordFtp(const QString& key, const QString& ip)
{
    return QStringLiteral("<FtpClient><Ip>%1</Ip><Key>%2</Key><Stato><Codice>4</Codice></Stato></FtpClient>").arg(ip, key);
}

class Albero : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(modDemo::CreaServerDemo(mDir.path(), Documenti()), QString());
        Prepara(mDir.path());
        mLog.NomeApplicazione = QStringLiteral("albero");
        mLog.Cartella = mDirLog.path();
        mLog.TracciaProcedure = false;
        ASSERT_TRUE(mLog.Apri());
        modTraccia::ImpostaLog(&mLog);
        // The demo server on its own thread, as the console runs it.
        mOspite = std::make_unique<RefOspite>(mDir.path(), OpzioniServer());
        mCollegamento = std::make_unique<PxCollegamentoDiretto>([this](const QString& nome) { return mOspite->Oggetto(nome); });
        mServer = std::make_unique<PxSrvServer>(mCollegamento.get());
        mServer->Connetti();
        mOspite->Avvia();
        ASSERT_TRUE(Attendi([this] { return mServer->Caricato(); }));
        mContesto = std::make_unique<PxContesto>(mTesti, mIcone, mImpostazioni, mLog, mServer.get());
        mPosizione = std::make_unique<frmPosizione>(*mContesto);
        mApertura = std::make_unique<frmApertura>(mServer.get());
        mPosizione->Inizializza(mApertura.get());
    }

    void TearDown() override
    {
        modTraccia::ImpostaLog(nullptr);
        mPosizione.reset();
        mContesto.reset();
        mServer.reset();
        mOspite.reset();
    }

    // Changes the demo's server folder before the server starts.
    virtual void Prepara(const QString&) {}
    virtual int Documenti() const { return 0; }
    virtual RefServer::Opzioni OpzioniServer() const { return {}; }

    QTreeWidgetItem* Nodo(const QString& testo) const
    {
        const auto trovati = mPosizione->Albero()->findItems(testo, Qt::MatchExactly | Qt::MatchRecursive);
        return trovati.isEmpty() ? nullptr : trovati.first();
    }

    QString Testo(const QString& chiave) const
    {
        const QTreeWidgetItem* nodo = mPosizione->Nodo(chiave);
        return nodo ? nodo->text(0) : QStringLiteral("<nessun nodo>");
    }

    QString Padre(const QString& chiave) const
    {
        const QTreeWidgetItem* nodo = mPosizione->Nodo(chiave);
        return nodo && nodo->parent() ? nodo->parent()->text(0) : QString();
    }

    // Runs `azione` on the server's own thread and returns what it returned.
    bool SulServer(const std::function<bool(RefServer&)>& azione)
    {
        auto* server = qobject_cast<RefServer*>(mOspite->Oggetto(QStringLiteral("PxSrvServer")));
        bool esito = false;
        if (server)
            QMetaObject::invokeMethod(server, [&] { esito = azione(*server); }, Qt::BlockingQueuedConnection);
        return esito;
    }

    // Changes the state of `servizio` on the server and publishes it.
    bool CambiaStato(const char* servizio, const std::function<void(pugi::xml_node)>& cambia)
    {
        return SulServer([&](RefServer& s) {
            RefServizio* r = s.ServizioRef(QString::fromLatin1(servizio));
            if (!r)
                return false;
            cambia(r->Elemento("Stato").parent()); // the state's root
            r->Pubblica();
            return true;
        });
    }

    // What the main window wires: each service's state change to its refresh...
    void CollegaStati()
    {
        for (const QString& chiave : mServer->Chiavi())
            QObject::connect(mServer->Servizio(chiave), &PxSrvServizio::StatoXmlCambiato, mPosizione.get(),
                             [this, chiave] { mPosizione->AggiornaServizio(chiave); });
    }

    // ...and the server's notices of clients, printers and FTP clients to the lists.
    void CollegaEventi()
    {
        PxSrvEventiServer* eventi = mServer->Eventi();
        frmPosizione* p = mPosizione.get();
        QObject::connect(eventi, &PxSrvEventiServer::UtenteConnesso, p, &frmPosizione::AggiungiUtente);
        QObject::connect(eventi, &PxSrvEventiServer::UtenteDisconnesso, p, &frmPosizione::RimuoviUtente);
        QObject::connect(eventi, &PxSrvEventiServer::StampanteAggiunta, p, &frmPosizione::AggiungiStampante);
        QObject::connect(eventi, &PxSrvEventiServer::StampanteRimossa, p, &frmPosizione::RimuoviStampante);
        QObject::connect(eventi, &PxSrvEventiServer::FtpClienteConnesso, p, &frmPosizione::AggiungiFtpCliente);
        QObject::connect(eventi, &PxSrvEventiServer::FtpClienteDisconnesso, p, &frmPosizione::RimuoviFtpCliente);
    }

    // How many times the console log holds "Errore in <procedura>".
    int Errori(const char* procedura) const
    {
        QFile file(mLog.File());
        if (!file.open(QIODevice::ReadOnly))
            return -1;
        const QString riga = QStringLiteral("Errore in ") + QString::fromLatin1(procedura) + u':';
        return static_cast<int>(QString::fromUtf8(file.readAll()).count(riga));
    }

    // The icon PxIconResource gives for a record.
    template <typename F>
    qint32 IconaDi(F funzione, const QString& record) const
    {
        pugi::xml_document doc;
        const QByteArray xml = record.toUtf8();
        doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size()));
        return (mIcone.*funzione)(doc.document_element());
    }

    QTemporaryDir mDir;
    QTemporaryDir mDirLog;
    PxConsoleResDll mTesti;
    PxIconResource mIcone;
    PxImpostazioni mImpostazioni;
    PxLogConsole mLog;
    std::unique_ptr<RefOspite> mOspite;
    std::unique_ptr<PxCollegamentoDiretto> mCollegamento;
    std::unique_ptr<PxSrvServer> mServer;
    std::unique_ptr<PxContesto> mContesto;
    std::unique_ptr<frmPosizione> mPosizione;
    std::unique_ptr<frmApertura> mApertura;
};

// The demo with three bad printer records in its configuration: two without a key, ahead
// of the good ones, and a repeat of printer 1 at the end.
class AlberoConVociGuaste : public Albero
{
protected:
    void Prepara(const QString& cartella) override
    {
        const QByteArray file = QFile::encodeName(QDir(RefServer::CartellaServizi(cartella)).filePath(QStringLiteral("PxSrvStampe.xml")));
        pugi::xml_document doc;
        ASSERT_TRUE(doc.load_file(file.constData()));
        pugi::xml_node stampanti = doc.document_element().child("Stampanti");
        ASSERT_TRUE(stampanti);
        pugi::xml_document senzaChiave, chiaveVuota, doppione;
        senzaChiave.load_string("<Stampante><NumeroTarquel>90</NumeroTarquel>"
                                "<NomeStampanteWindows>Senza chiave</NomeStampanteWindows></Stampante>");
        chiaveVuota.load_string(RecordStampante(QStringLiteral(" "), 91, QStringLiteral("Chiave vuota")).toUtf8().constData());
        doppione.load_string(RecordStampante(QStringLiteral("1"), 1, QStringLiteral("Doppione")).toUtf8().constData());
        stampanti.prepend_copy(chiaveVuota.document_element());
        stampanti.prepend_copy(senzaChiave.document_element());
        stampanti.append_copy(doppione.document_element());
        mVoci = static_cast<int>(std::distance(stampanti.children().begin(), stampanti.children().end()));
        ASSERT_TRUE(doc.save_file(file.constData()));
    }

    int mVoci = 0;
};

} // namespace

TEST_F(Albero, BuildsOneNodePerServiceFolderAndEntryAndTellsTheOpeningWindowEachOne)
{
    // What the demo server holds: its services (the server's own state object among them, the
    // tree's root), its folders (which share their keys with state objects), and the entries
    // of its three lists.
    int servizi = 0;
    int cartelle = 0;
    for (const QString& chiave : mServer->Chiavi())
        ++(mServer->CartellaDocumenti(chiave) ? cartelle : servizi);
    int voci = 0;
    const std::pair<const char*, const char*> elenchi[] = {
        {"PxSrvAnteprime", "Utenti"}, {"PxSrvStampe", "Stampanti"}, {"PxSrvFtp", "FtpClients"}};
    for (const auto& [servizio, elenco] : elenchi) {
        pugi::xml_document doc;
        ASSERT_TRUE(doc.load_string(mServer->Servizio(QString::fromLatin1(servizio))->StatoXml().toUtf8().constData()));
        const auto figli = doc.document_element().child(elenco).children();
        voci += static_cast<int>(std::distance(figli.begin(), figli.end()));
    }
    ASSERT_GT(cartelle, 0);
    ASSERT_GT(voci, 0);
    ASSERT_NE(mServer->Servizio(QStringLiteral("PxSrvServer")), nullptr);
    const int atteso = servizi + cartelle + voci;
    EXPECT_EQ(mPosizione->ConteggioNodi(), atteso);
    EXPECT_EQ(mApertura->Passi(), atteso) << "one step told per node built";
    EXPECT_EQ(mApertura->Massimo(), atteso) << "the bar's length is the steps it will be told";
    EXPECT_TRUE(mApertura->Informazione().startsWith(QStringLiteral("Creazione nodo ")));

    EXPECT_EQ(mPosizione->Albero()->topLevelItemCount(), 1);
    EXPECT_EQ(mPosizione->Albero()->currentItem()->text(0), QStringLiteral("Servizi"));
    const QString stampante3 = frmPosizione::ChiaveVoce("SrvStampante", QStringLiteral("3"));
    EXPECT_EQ(Testo(stampante3), QStringLiteral("3) Etichette magazzino"));
    EXPECT_EQ(Padre(stampante3), QStringLiteral("Stampe"));
    EXPECT_EQ(mPosizione->IconaNodo(stampante3), 1313) << "a Datamax (model 1) label printer, running";
    EXPECT_EQ(Testo(QStringLiteral("SrvEmlPdfVm")), QStringLiteral("Pelorix PDF Email")) << "PDF workers show their printer's name";
    EXPECT_EQ(Testo(QStringLiteral("SrvFtpSrv")), QStringLiteral("Ftp server (0.0.0.0:21)"));
    const QString utente = frmPosizione::ChiaveVoce("SrvUtente", QStringLiteral("U-0001"));
    EXPECT_EQ(Testo(utente), QStringLiteral("mrossi (PC-AMM-01)"));
    EXPECT_EQ(Padre(utente), QStringLiteral("Anteprime"));
    for (const char* chiave : {"1", "2"}) {
        const QString ftp = frmPosizione::ChiaveVoce("SrvFtpCln", QString::fromLatin1(chiave));
        EXPECT_EQ(Testo(ftp), mTesti.LoadDllString(210)) << "an FTP client's caption is the text alone, without its address";
        EXPECT_EQ(Padre(ftp), QStringLiteral("Ftp"));
    }
    EXPECT_EQ(mPosizione->IconaNodo(QStringLiteral("SrvServer")), 200);
    EXPECT_EQ(mPosizione->IconaNodo(QStringLiteral("SrvReportFax")), 244) << "runs in the demo, so faxes' reports drain";
    EXPECT_EQ(mPosizione->IconaNodo(QStringLiteral("SrvFtpSrv")), -271) << "suspended in the demo";
}

TEST_F(AlberoConVociGuaste, BadEntriesAreSkippedAndLoggedAndTheOthersStillAppear)
{
    QTreeWidgetItem* stampe = mPosizione->Nodo(QStringLiteral("SrvStampe"));
    ASSERT_NE(stampe, nullptr);
    // Two records without a key and one repeat make no node; the folder is the one other child.
    EXPECT_EQ(stampe->childCount() - 1, mVoci - 3);
    EXPECT_EQ(Testo(frmPosizione::ChiaveVoce("SrvStampante", QStringLiteral("1"))), QStringLiteral("1) Generica testo"))
        << "the first record of a key wins";
    EXPECT_EQ(Testo(frmPosizione::ChiaveVoce("SrvStampante", QStringLiteral("14"))), QStringLiteral("14) \\\\srvstampa\\TEC:B-EX4"));
    EXPECT_EQ(Errori("frmPosizione_AggiungiStampante"), 2);
    EXPECT_EQ(mApertura->Passi(), mPosizione->ConteggioNodi());
    EXPECT_EQ(mApertura->Massimo(), mPosizione->ConteggioNodi()) << "the bar does not count what the tree skips";
}

TEST_F(Albero, ServiceStatesReachTheTreeOnlyThroughTheMainWindowsWiring)
{
    PxSrvServizio* fax = mServer->Servizio(QStringLiteral("PxSrvFax"));
    QSignalSpy stati(fax, &PxSrvServizio::StatoXmlCambiato);
    fax->Sospendi();
    ASSERT_TRUE(stati.wait(10000));
    EXPECT_EQ(mPosizione->IconaNodo(QStringLiteral("SrvFax")), 240) << "the pane does not follow the services by itself";
    fax->Avvia();
    ASSERT_TRUE(stati.wait(10000));

    CollegaStati();
    fax->Sospendi();
    EXPECT_EQ(mPosizione->IconaNodo(QStringLiteral("SrvFax")), 240) << "a request is answered later, never inside the call";
    EXPECT_TRUE(Attendi([&] { return mPosizione->IconaNodo(QStringLiteral("SrvFax")) == -240; }));
    EXPECT_EQ(Testo(QStringLiteral("SrvFax")), QStringLiteral("Fax"));
    fax->Avvia();
    EXPECT_TRUE(Attendi([&] { return mPosizione->IconaNodo(QStringLiteral("SrvFax")) == 240; }));
}

TEST_F(Albero, APdfWorkersCaptionFollowsItsPrinterNameAndAnEmptyNameKeepsIt)
{
    CollegaStati();
    QSignalSpy stati(mServer->Servizio(QStringLiteral("PxSrvPblPdfVm")), &PxSrvServizio::StatoXmlCambiato);
    ASSERT_TRUE(CambiaStato("PxSrvPblPdfVm", [](pugi::xml_node r) { r.child("NomeStampanteWindows").text().set("Pelorix PDF Albo"); }));
    ASSERT_TRUE(stati.wait(10000));
    EXPECT_EQ(Testo(QStringLiteral("SrvPblPdfVm")), QStringLiteral("Pelorix PDF Albo"));
    ASSERT_TRUE(CambiaStato("PxSrvPblPdfVm", [](pugi::xml_node r) { r.child("NomeStampanteWindows").text().set(""); }));
    ASSERT_TRUE(stati.wait(10000));
    EXPECT_EQ(Testo(QStringLiteral("SrvPblPdfVm")), QStringLiteral("Pelorix PDF Albo"));
    EXPECT_EQ(Testo(QStringLiteral("SrvEmlPdfVm")), QStringLiteral("Pelorix PDF Email")) << "another worker is untouched";
}

TEST_F(Albero, TheServersNoticesAddAndRemoveClientsPrintersAndFtpClients)
{
    CollegaEventi(); // the notices alone: the states are not followed here
    const int prima = mPosizione->ConteggioNodi();
    const QString utente = frmPosizione::ChiaveVoce("SrvUtente", QStringLiteral("U-0042"));
    const QString stampante = frmPosizione::ChiaveVoce("SrvStampante", QStringLiteral("40"));
    const QString ftp = frmPosizione::ChiaveVoce("SrvFtpCln", QStringLiteral("9"));
    const QString recordUtente = RecordUtente(QStringLiteral("U-0042"), QStringLiteral("rneri (PC-LOG-02)"), 7310);
    const QString recordStampante = RecordStampante(QStringLiteral("40"), 21, QStringLiteral("Laser logistica"), 11);
    ASSERT_TRUE(SulServer([&](RefServer& s) { return s.ConnettiUtente(recordUtente); }));
    ASSERT_TRUE(SulServer([&](RefServer& s) { return s.AggiungiStampante(recordStampante); }));
    const QString recordFtp = RecordFtp(QStringLiteral("9"), QStringLiteral("192.168.10.90"));
    ASSERT_TRUE(SulServer([&](RefServer& s) { return s.ConnettiFtpCliente(recordFtp); }));
    ASSERT_TRUE(Attendi([&] { return mPosizione->Nodo(ftp) != nullptr; }));

    EXPECT_EQ(Testo(utente), QStringLiteral("rneri (PC-LOG-02)"));
    EXPECT_EQ(Padre(utente), QStringLiteral("Anteprime"));
    EXPECT_EQ(mPosizione->IconaNodo(utente), IconaDi(&PxIconResource::IconaSrvUtenteXml, recordUtente));
    EXPECT_TRUE(mPosizione->Nodo(utente)->toolTip(0).contains(QStringLiteral("7310")));
    EXPECT_EQ(Testo(stampante), QStringLiteral("21) Laser logistica"));
    EXPECT_EQ(Padre(stampante), QStringLiteral("Stampe"));
    EXPECT_EQ(mPosizione->IconaNodo(stampante), IconaDi(&PxIconResource::IconaSrvStampanteXml, recordStampante));
    EXPECT_EQ(mPosizione->IconaNodo(stampante), 1600) << "a plotter's image";
    EXPECT_EQ(Testo(ftp), mTesti.LoadDllString(210));
    EXPECT_EQ(Padre(ftp), QStringLiteral("Ftp"));
    EXPECT_EQ(mPosizione->ConteggioNodi(), prima + 3);

    // The same record again, and removals of keys the tree does not have, change nothing.
    mPosizione->AggiungiStampante(RecordStampante(QStringLiteral("40"), 22, QStringLiteral("Doppione")));
    mPosizione->RimuoviStampante(QStringLiteral("999"));
    mPosizione->RimuoviUtente(QStringLiteral("U-9999"));
    mPosizione->RimuoviFtpCliente(QString());
    EXPECT_EQ(Testo(stampante), QStringLiteral("21) Laser logistica"));
    EXPECT_EQ(mPosizione->ConteggioNodi(), prima + 3);

    ASSERT_TRUE(SulServer([](RefServer& s) { return s.DisconnettiUtente(QStringLiteral("U-0042")); }));
    ASSERT_TRUE(SulServer([](RefServer& s) { return s.RimuoviStampante(QStringLiteral("3")); }));
    ASSERT_TRUE(SulServer([](RefServer& s) { return s.DisconnettiFtpCliente(QStringLiteral("9")); }));
    ASSERT_TRUE(Attendi([&] { return mPosizione->Nodo(ftp) == nullptr; }));
    EXPECT_EQ(mPosizione->Nodo(utente), nullptr);
    EXPECT_EQ(mPosizione->Nodo(frmPosizione::ChiaveVoce("SrvStampante", QStringLiteral("3"))), nullptr);
    EXPECT_NE(mPosizione->Nodo(stampante), nullptr);
    EXPECT_EQ(mPosizione->ConteggioNodi(), prima);
    EXPECT_EQ(Nodo(QStringLiteral("3) Etichette magazzino")), nullptr) << "no stray item left in the tree";
}

TEST_F(Albero, AStateRefreshReconcilesTheListsItOwns)
{
    CollegaStati(); // the states alone: the notices are not followed here
    const int prima = mPosizione->ConteggioNodi();
    const QString nuova = frmPosizione::ChiaveVoce("SrvStampante", QStringLiteral("41"));
    const QString uno = frmPosizione::ChiaveVoce("SrvStampante", QStringLiteral("1"));
    ASSERT_GT(mPosizione->IconaNodo(uno), 0);
    ASSERT_TRUE(SulServer([](RefServer& s) {
        return s.AggiungiStampante(RecordStampante(QStringLiteral("41"), 41, QStringLiteral("Laser qualità")))
            && s.RimuoviStampante(QStringLiteral("2"));
    }));
    // Printer 1 stops, and a client leaves.
    ASSERT_TRUE(CambiaStato("PxSrvStampe", [](pugi::xml_node r) {
        for (pugi::xml_node s : r.child("Stampanti").children())
            if (std::string_view(s.child_value("Chiave")) == "1")
                s.child("Stato").child("Codice").text().set(3);
    }));
    ASSERT_TRUE(SulServer([](RefServer& s) { return s.DisconnettiUtente(QStringLiteral("U-0002")); }));
    ASSERT_TRUE(Attendi([&] { return mPosizione->Nodo(frmPosizione::ChiaveVoce("SrvUtente", QStringLiteral("U-0002"))) == nullptr; }));
    EXPECT_EQ(Testo(nuova), QStringLiteral("41) Laser qualità"));
    EXPECT_EQ(Padre(nuova), QStringLiteral("Stampe"));
    EXPECT_EQ(mPosizione->Nodo(frmPosizione::ChiaveVoce("SrvStampante", QStringLiteral("2"))), nullptr);
    EXPECT_LT(mPosizione->IconaNodo(uno), 0) << "a stopped printer's icon is negative";
    EXPECT_NE(mPosizione->Nodo(frmPosizione::ChiaveVoce("SrvUtente", QStringLiteral("U-0001"))), nullptr);
    EXPECT_EQ(mPosizione->ConteggioNodi(), prima - 1);
    EXPECT_EQ(Errori("frmPosizione_AggiornaVoce"), 0);
}

TEST_F(Albero, AMalformedEntryInARefreshOrANoticeIsSkippedAndLogged)
{
    CollegaStati();
    const int prima = mPosizione->ConteggioNodi();
    // A record without its key ahead of a good new one, and one with an empty key.
    ASSERT_TRUE(CambiaStato("PxSrvFtp", [](pugi::xml_node r) {
        pugi::xml_node elenco = r.child("FtpClients");
        elenco.prepend_child("FtpClient").append_child("Ip").text().set("10.0.0.1");
        pugi::xml_node vuota = elenco.append_child("FtpClient");
        vuota.append_child("Key").text().set("");
        pugi::xml_node buona = elenco.append_child("FtpClient");
        buona.append_child("Ip").text().set("10.0.0.3");
        buona.append_child("Key").text().set("3");
        buona.append_child("Stato").append_child("Codice").text().set(4);
    }));
    ASSERT_TRUE(Attendi([&] { return mPosizione->Nodo(frmPosizione::ChiaveVoce("SrvFtpCln", QStringLiteral("3"))) != nullptr; }));
    EXPECT_NE(mPosizione->Nodo(frmPosizione::ChiaveVoce("SrvFtpCln", QStringLiteral("1"))), nullptr);
    EXPECT_NE(mPosizione->Nodo(frmPosizione::ChiaveVoce("SrvFtpCln", QStringLiteral("2"))), nullptr);
    EXPECT_EQ(mPosizione->ConteggioNodi(), prima + 1);
    EXPECT_EQ(Errori("frmPosizione_AggiornaVoce"), 2);

    // A notice whose record has no key, or is no record at all.
    mPosizione->AggiungiUtente(QStringLiteral("<Utente><Utente>anonimo</Utente></Utente>"));
    mPosizione->AggiungiUtente(QStringLiteral("<Utente"));
    mPosizione->AggiungiStampante(QStringLiteral("<Stampante><Chiave>77</Chiave></Stampante>")); // no elements for its icon
    EXPECT_EQ(Errori("frmPosizione_AggiungiUtente"), 2);
    EXPECT_EQ(Errori("frmPosizione_AggiungiStampante"), 1);
    EXPECT_EQ(Nodo(QStringLiteral("anonimo")), nullptr);
    EXPECT_EQ(mPosizione->Nodo(frmPosizione::ChiaveVoce("SrvStampante", QStringLiteral("77"))), nullptr);
    EXPECT_EQ(mPosizione->ConteggioNodi(), prima + 1);
}

TEST_F(Albero, AggiornaIconaKeepsTheTextOnAnEmptyCaptionAndIgnoresUnknownKeys)
{
    mPosizione->AggiornaIcona(QStringLiteral("SrvFax"), -240, QString());
    EXPECT_EQ(Testo(QStringLiteral("SrvFax")), QStringLiteral("Fax"));
    EXPECT_EQ(mPosizione->IconaNodo(QStringLiteral("SrvFax")), -240);
    mPosizione->AggiornaIcona(QStringLiteral("SrvFax"), 240, QStringLiteral("Fax centrale"));
    EXPECT_EQ(Testo(QStringLiteral("SrvFax")), QStringLiteral("Fax centrale"));
    const int nodi = mPosizione->ConteggioNodi();
    mPosizione->AggiornaIcona(QStringLiteral("SrvInesistente"), 1, QStringLiteral("x"));
    mPosizione->AggiornaServizio(QStringLiteral("PxSrvInesistente"));
    EXPECT_EQ(Nodo(QStringLiteral("x")), nullptr);
    EXPECT_EQ(mPosizione->ConteggioNodi(), nodi);
}

TEST_F(Albero, ABurstOfSelectionsNavigatesOnceToTheLast)
{
    QStringList navigazioni;
    mPosizione->ImpostaNavigazione([&](const QString&, const QString& chiave) {
        navigazioni << chiave;
        mPosizione->ImpostaChiaveVisualizzata(chiave);
    });
    const auto quieto = [&] { return QTest::qWaitFor([&] { return !mPosizione->NavigazioneInAttesa(); }, 5000); };
    ASSERT_TRUE(quieto());
    navigazioni.clear();
    for (const char* testo : {"Fax", "Email", "Stampe", "Ftp", "Fax", "Email", "Stampe", "Ftp", "Firme", "Fax"})
        mPosizione->Albero()->setCurrentItem(Nodo(QString::fromLatin1(testo)));
    EXPECT_TRUE(mPosizione->NavigazioneInAttesa());
    ASSERT_TRUE(quieto());
    EXPECT_EQ(navigazioni, QStringList{QStringLiteral("SrvFax")});
    emit mPosizione->Albero()->itemClicked(Nodo(QStringLiteral("Fax")), 0); // the node already on display
    ASSERT_TRUE(quieto());
    EXPECT_EQ(navigazioni.size(), 1);
}

TEST_F(Albero, ClosingTheMainWindowOnlyHidesIt)
{
    frmConsole console(*mContesto);
    console.Inizializza(nullptr);
    console.Mostra();
    EXPECT_TRUE(console.Visibile());
    console.close();
    EXPECT_FALSE(console.Visibile());
    EXPECT_FALSE(console.testAttribute(Qt::WA_DeleteOnClose));
}

TEST_F(Albero, TheMainWindowReopensWhereTheOperatorLeftIt)
{
    {
        frmConsole console(*mContesto);
        console.Mostra();
        console.resize(900, 640);
        auto* log = console.findChild<QDockWidget*>(QStringLiteral("pnlLog"));
        ASSERT_NE(log, nullptr);
        log->hide();
        console.Termina();
    }
    frmConsole riaperta(*mContesto);
    riaperta.Mostra();
    EXPECT_EQ(riaperta.size(), QSize(900, 640));
    EXPECT_FALSE(riaperta.findChild<QDockWidget*>(QStringLiteral("pnlLog"))->isVisible());
}

// The main window over the same server: its own tree, wired by the window itself.
class Finestra : public Albero
{
protected:
    void SetUp() override
    {
        Albero::SetUp();
        mConsole = std::make_unique<frmConsole>(*mContesto);
        mConsole->Inizializza(nullptr);
        // The tree selects its root, and the window shows the server, once the timer fires.
        ASSERT_TRUE(Attendi([&] { return mConsole->ChiaveVisualizzata() == u"SrvServer"_s; }));
    }

    void TearDown() override
    {
        mConsole.reset();
        Albero::TearDown();
    }

    // Documents that stay where they are: only the test moves things.
    int Documenti() const override { return 200; }
    RefServer::Opzioni OpzioniServer() const override { return {false, true}; }

    PxModelloContenuto& Modello() const { return *mConsole->Modello(); }
    frmPosizione& Pannello() const { return *mConsole->Posizione(); }

    std::unique_ptr<frmConsole> mConsole;
};

TEST_F(Finestra, AStateChangeReachesTheLiveViewOnlyIfItShowsThatService)
{
    mConsole->VisualizzaServer(u"Documenti fax"_s, u"SrvDocFax"_s);
    ASSERT_NE(dynamic_cast<clsSrvCartella*>(mConsole->Vista()), nullptr);
    ASSERT_TRUE(Attendi([&] { return Modello().NumeroRighe() > 0; }));
    QSignalSpy azzeramenti(&Modello(), &QAbstractItemModel::modelReset);
    QSignalSpy cambi(&Modello(), &QAbstractItemModel::dataChanged);
    PxSrvServizio* tif = mServer->Servizio(u"PxSrvTifVm"_s);
    tif->Sospendi();
    ASSERT_TRUE(Attendi([&] { return Pannello().IconaNodo(u"SrvTifVm"_s) < 0; }));
    EXPECT_EQ(azzeramenti.size(), 0) << "the folder's rows are not the worker's";
    EXPECT_EQ(cambi.size(), 0);

    // The group view shows the worker: its row follows.
    mConsole->VisualizzaServer(u"Fax"_s, u"SrvFax"_s);
    EXPECT_EQ(mConsole->ChiaveVisualizzata(), u"SrvFax"_s);
    ASSERT_TRUE(Attendi([&] { return Modello().Riga(u"SrvTifVm"_s) >= 0; }));
    const QString sospeso = Modello().Testo(Modello().Riga(u"SrvTifVm"_s), 2);
    tif->Avvia();
    EXPECT_TRUE(Attendi([&] { return Modello().Testo(Modello().Riga(u"SrvTifVm"_s), 2) != sospeso; }));
    EXPECT_GT(Pannello().IconaNodo(u"SrvTifVm"_s), 0);
}

TEST_F(Finestra, AClientThatConnectsWhileTheConsoleRunsAppearsAndGoes)
{
    const QString chiave = frmPosizione::ChiaveVoce("SrvUtente", u"U-0077"_s);
    ASSERT_EQ(Pannello().Nodo(chiave), nullptr);
    ASSERT_TRUE(SulServer([](RefServer& s) { return s.ConnettiUtente(RecordUtente(u"U-0077"_s, u"tverdi (PC-MAG-01)"_s, 4410)); }));
    ASSERT_TRUE(Attendi([&] { return Pannello().Nodo(chiave) != nullptr; }));
    EXPECT_EQ(Pannello().Nodo(chiave)->text(0), u"tverdi (PC-MAG-01)"_s);
    ASSERT_TRUE(SulServer([](RefServer& s) { return s.DisconnettiUtente(u"U-0077"_s); }));
    EXPECT_TRUE(Attendi([&] { return Pannello().Nodo(chiave) == nullptr; }));
}

TEST_F(Finestra, TheBusyMarkDisablesTheDocumentCommandsAndTheCountsFollowTheSelection)
{
    mConsole->VisualizzaServer(u"Documenti fax"_s, u"SrvDocFax"_s);
    ASSERT_TRUE(Attendi([&] { return Modello().NumeroRighe() > 0; }));
    mConsole->Comando(clsSrvVista::IdSelezionaTutto)->trigger();
    EXPECT_TRUE(mConsole->Barra()->Azione(5300)->isEnabled());
    const QString conteggi = mConsole->findChild<QLabel*>(u"lblConteggi"_s)->text();
    EXPECT_TRUE(conteggi.contains(QLocale().toString(Modello().NumeroRighe()))) << qPrintable(conteggi);
    PxContestoSonda::Occupato(*mContesto, true);
    for (const int id : {5315, 5302, 5303, 5300})
        EXPECT_FALSE(mConsole->Barra()->Azione(id)->isEnabled()) << id;
    PxContestoSonda::Occupato(*mContesto, false);
    EXPECT_TRUE(mConsole->Barra()->Azione(5300)->isEnabled());
}

TEST_F(Finestra, ThePrintersTestPageReachesThePrintingServicesInputFolder)
{
    mConsole->VisualizzaServer(u"Stampe"_s, u"SrvStampe"_s);
    ASSERT_TRUE(Attendi([&] { return Modello().Riga(u"SrvStampante|9"_s) >= 0; }));
    QAction* prova = mConsole->Barra()->Azione(clsSrvServizi::IdPaginaDiProva);
    ASSERT_NE(prova, nullptr);
    EXPECT_FALSE(prova->isEnabled()) << "nothing selected";
    const QModelIndex zebra = Modello().Indice(Modello().Riga(u"SrvStampante|9"_s));
    mConsole->Contenuto()->selectionModel()->select(zebra, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    ASSERT_TRUE(prova->isEnabled());
    prova->trigger();
    const QDir ingresso(QDir(mDir.path()).filePath(u"Ingresso/PxSrvStampe"_s));
    ASSERT_TRUE(Attendi([&] { return ingresso.exists(u"Pagina di prova di Zebra spedizioni.hpx"_s); }));
    EXPECT_TRUE(ingresso.exists(u"Pagina di prova di Zebra spedizioni.bpx"_s));
    EXPECT_FALSE(ingresso.exists(u"Pagina di prova di Zebra spedizioni.spx"_s)) << "a label has no page script";
}

TEST_F(Finestra, AFormatIsTestedByFaxFromTheFormatsList)
{
    mConsole->VisualizzaServer(u"Formati immagini"_s, u"SrvFormati"_s);
    ASSERT_TRUE(Attendi([&] { return Modello().NumeroRighe() > 0; }));
    QAction* fax = mConsole->Barra()->Azione(5311);
    ASSERT_NE(fax, nullptr);
    const QModelIndex primo = Modello().index(0, 0);
    const QString chiave = Modello().Chiave(primo);
    mConsole->Contenuto()->selectionModel()->select(primo, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    ASSERT_TRUE(fax->isEnabled());
    fax->trigger();
    frmInvioProvaFax* modulo = nullptr;
    ASSERT_TRUE(Attendi([&] { return (modulo = mConsole->findChild<frmInvioProvaFax*>()) != nullptr; }));
    ASSERT_TRUE(modulo->Formato.has_value());
    EXPECT_EQ(modulo->Formato->Key, chiave);
    EXPECT_FALSE(modulo->Formato->Descrizione.isEmpty());
    modulo->reject();
}
