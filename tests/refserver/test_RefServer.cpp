#include "PxIconResource.h"
#include "PxRigaLog.h"
#include "RefCatalogo.h"
#include "RefBkgConsole.h"
#include "RefServer.h"
#include "RefServizio.h"
#include "modCatalogo.h"
#include "modDemo.h"

#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <pugixml.hpp>

namespace {

pugi::xml_document Stato(const RefServizio* s)
{
    pugi::xml_document d;
    EXPECT_TRUE(d.load_string(s->StatoXml().toUtf8().constData()));
    return d;
}

QByteArray ImprontaCartella(const QString& cartella)
{
    QCryptographicHash h(QCryptographicHash::Sha256);
    QStringList file;
    QDirIterator it(cartella, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        file << it.next();
    file.sort();
    for (const QString& f : file) {
        QFile in(f);
        EXPECT_TRUE(in.open(QIODevice::ReadOnly));
        h.addData(QDir(cartella).relativeFilePath(f).toUtf8());
        // Paths into the folder itself differ between two folders; the rest must not.
        h.addData(in.readAll().replace(cartella.toUtf8(), "<server>"));
    }
    return h.result();
}

class Server : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_EQ(modDemo::CreaServerDemo(mDir.path(), 0), QString()); }
    QTemporaryDir mDir;
};

} // namespace

TEST_F(Server, EveryServiceHasAStateWithTheElementsTheConsoleReads)
{
    RefServer s(mDir.path());
    EXPECT_EQ(s.Stato(), 4);
    for (const modCatalogo::VoceServizio& v : modCatalogo::Voci()) {
        const RefServizio* servizio = s.ServizioRef(QString::fromLatin1(v.Chiave));
        ASSERT_NE(servizio, nullptr) << v.Chiave;
        const pugi::xml_document d = Stato(servizio);
        const pugi::xml_node r = d.document_element();
        EXPECT_STREQ(r.name(), v.Chiave);
        for (const char* p : {"Stato/Codice", "Stato/Descrizione", "Attivita/Descrizione", "Errore/Codice",
                              "Errore/Descrizione", "FileLog"})
            EXPECT_TRUE(r.select_node(p)) << v.Chiave << " lacks " << p;
        EXPECT_NO_THROW(PxIconResource::CodiceStato(r));
    }
    EXPECT_EQ(s.ServizioRef(QStringLiteral("PxSrvNessuno")), nullptr);
    // The demo's formats and signatures are served by their catalogues.
    ASSERT_NE(s.CatalogoRef(QStringLiteral("PxSrvFormati")), nullptr);
    ASSERT_NE(s.CatalogoRef(QStringLiteral("PxSrvFirme")), nullptr);
    EXPECT_EQ(s.CatalogoRef(QStringLiteral("PxSrvStampe")), nullptr);
    EXPECT_TRUE(s.CatalogoRef(QStringLiteral("PxSrvFormati"))->Descrizione(QStringLiteral("F001")).contains(QStringLiteral("<Key>F001</Key>")));
    EXPECT_FALSE(s.CatalogoRef(QStringLiteral("PxSrvFirme"))->Descrizione(QStringLiteral("MROSSI")).isEmpty());
}

TEST_F(Server, DemoPrintersCoverEveryModelAndTheirIconsCompute)
{
    RefServer s(mDir.path());
    const pugi::xml_document d = Stato(s.ServizioRef(QStringLiteral("PxSrvStampe")));
    QSet<int> modelli;
    bool duePunti = false;
    const PxIconResource icone;
    for (const pugi::xml_node p : d.document_element().child("Stampanti").children()) {
        modelli << p.select_node("Modello/Codice").node().text().as_int(-1);
        duePunti |= QString::fromUtf8(p.child_value("NomeStampanteWindows")).contains(u':');
        EXPECT_NO_THROW(icone.IconaSrvStampanteXml(p));
        // A label printer's code is its language's, so its test page is written in it.
        const QString driver = QString::fromUtf8(p.select_node("InfoStampante/DriverName").node().child_value()).toUpper();
        const int codice = p.select_node("Modello/Codice").node().text().as_int(-1);
        for (const auto& [marca, atteso] : {std::pair{"DATAMAX", 1}, {"ZPL", 2}, {"EPL", 8}, {"TOSHIBA", 10}})
            if (driver.contains(QLatin1StringView(marca))) {
                EXPECT_EQ(codice, atteso) << qPrintable(driver);
            }
    }
    for (int m = 0; m <= 12; ++m)
        EXPECT_TRUE(modelli.contains(m)) << "no printer of model " << m;
    EXPECT_TRUE(duePunti);
    for (const char* k : {"PxSrvEmlPdfVm", "PxSrvPblPdfVm", "PxSrvEFaxPdfVm"}) {
        const pugi::xml_document w = Stato(s.ServizioRef(QString::fromLatin1(k)));
        EXPECT_NO_THROW(icone.IconaSrvEmlPdfVmXml(w.document_element())) << k;
        EXPECT_STRNE(w.document_element().child_value("NomeStampanteWindows"), "");
    }
    const pugi::xml_document a = Stato(s.ServizioRef(QStringLiteral("PxSrvAnteprime")));
    for (const pugi::xml_node u : a.document_element().child("Utenti").children())
        EXPECT_NO_THROW(icone.IconaSrvUtenteXml(u));
}

TEST_F(Server, StartAndSuspendChangeTheStateAndAreLogged)
{
    RefServer s(mDir.path());
    RefServizio* fax = s.ServizioRef(QStringLiteral("PxSrvFax"));
    ASSERT_EQ(fax->CodiceStato(), 4);
    QSignalSpy cambio(fax, &RefServizio::CambioStato);
    QSignalSpy xml(fax, &RefServizio::StatoXmlCambiato);
    fax->SospendiServizio();
    EXPECT_EQ(cambio.size(), 1);
    EXPECT_EQ(xml.size(), 1);
    EXPECT_EQ(PxIconResource().IconaSrvFaxXml(Stato(fax).document_element()), -240);
    fax->SospendiServizio(); // already suspended: no event
    EXPECT_EQ(cambio.size(), 1);
    fax->AvviaServizio();
    EXPECT_EQ(cambio.size(), 2);
    EXPECT_EQ(PxIconResource().IconaSrvFaxXml(Stato(fax).document_element()), 240);

    const QString fileLog = QString::fromUtf8(Stato(fax).document_element().child_value("FileLog"));
    QFile f(fileLog);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly)) << qPrintable(fileLog);
    const QStringList righe = QString::fromUtf8(f.readAll()).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    ASSERT_EQ(righe.size(), 2);
    EXPECT_TRUE(modRigaLog::Analizza(righe[0])->Testo.contains(QStringLiteral("Sospeso")));
    EXPECT_TRUE(modRigaLog::Analizza(righe[1])->Testo.contains(QStringLiteral("In funzione")));
}

TEST_F(Server, ActivityAndErrorsRaiseTheirEvents)
{
    RefServer s(mDir.path());
    RefServizio* tif = s.ServizioRef(QStringLiteral("PxSrvTifVm"));
    QSignalSpy attivita(tif, &RefServizio::CambioAttivita);
    QSignalSpy errori(tif, &RefServizio::NotificaErrore);
    tif->ImpostaAttivita(QStringLiteral("Conversione di 3 documenti"));
    tif->ImpostaAttivita(QStringLiteral("Conversione di 3 documenti"));
    EXPECT_EQ(attivita.size(), 1);
    tif->ImpostaErrore(17, QStringLiteral("Driver non trovato"));
    ASSERT_EQ(errori.size(), 1);
    EXPECT_EQ(errori[0][0].toInt(), 17);
    const pugi::xml_document d = Stato(tif);
    EXPECT_STREQ(d.document_element().select_node("Errore/Descrizione").node().child_value(), "Driver non trovato");
    EXPECT_STREQ(d.document_element().select_node("Attivita/Descrizione").node().child_value(), "Conversione di 3 documenti");
    tif->ImpostaErrore(0, QString());
    EXPECT_EQ(errori.size(), 1) << "clearing is not an error";
}

TEST_F(Server, AMalformedConfigurationIsLoggedAndTheServiceStillRuns)
{
    QFile f(QDir(RefServer::CartellaServizi(mDir.path())).filePath(QStringLiteral("PxSrvSmtp.xml")));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write("<PxSrvSmtp><Stato><Codice>4</Codice>");
    f.close();
    RefServer s(mDir.path());
    const RefServizio* smtp = s.ServizioRef(QStringLiteral("PxSrvSmtp"));
    ASSERT_NE(smtp, nullptr);
    EXPECT_EQ(PxIconResource().IconaSrvSmtpXml(Stato(smtp).document_element()), 232);
    QFile log(QDir(RefServer::CartellaLog(mDir.path())).filePath(QStringLiteral("PxSrvServer.log")));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(log.readAll().contains("PxSrvSmtp.xml non valida"));
}

TEST_F(Server, AServiceLogThatCannotBeWrittenIsReportedOnceOnTheStateAndInTheServersLog)
{
    // The log's name taken by a folder: no line can reach it (root or not).
    ASSERT_TRUE(QDir().mkpath(QDir(RefServer::CartellaLog(mDir.path())).filePath(QStringLiteral("PxSrvFax.log"))));
    RefServer s(mDir.path());
    RefServizio* fax = s.ServizioRef(QStringLiteral("PxSrvFax"));
    QSignalSpy errori(fax, &RefServizio::NotificaErrore);
    fax->SospendiServizio();
    EXPECT_FALSE(fax->Log().Scrivi(2, QStringLiteral("ancora")));
    EXPECT_FALSE(fax->Log().Scrivi(2, QStringLiteral("e ancora")));
    ASSERT_EQ(errori.size(), 1) << "once, not once per line";
    EXPECT_EQ(errori[0][0].toInt(), 31);
    EXPECT_STREQ(Stato(fax).document_element().select_node("Errore/Codice").node().child_value(), "31");
    // Starting the service clears its error; the log still failing sets it again, once.
    fax->AvviaServizio();
    EXPECT_EQ(errori.size(), 2);
    EXPECT_STREQ(Stato(fax).document_element().select_node("Errore/Codice").node().child_value(), "31");
    QFile log(QDir(RefServer::CartellaLog(mDir.path())).filePath(QStringLiteral("PxSrvServer.log")));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_EQ(log.readAll().count("PxSrvFax.log non scrivibile"), 2);
}

TEST_F(Server, BackgroundWorkerReportsAVanishedServerFolderOnce)
{
    QTemporaryDir altra;
    RefBkgConsole bkg;
    QSignalSpy inizio(&bkg, &RefBkgConsole::Inizio);
    QSignalSpy fine(&bkg, &RefBkgConsole::Fine);
    QSignalSpy errore(&bkg, &RefBkgConsole::Errore);
    bkg.AvviaControllo(altra.path(), QStringLiteral("prova"), altra.path());
    bkg.Controlla();
    EXPECT_EQ(inizio.size(), 1);
    EXPECT_EQ(fine.size(), 1);
    EXPECT_EQ(errore.size(), 0);
    ASSERT_TRUE(altra.remove());
    bkg.Controlla();
    bkg.Controlla();
    ASSERT_EQ(errore.size(), 1);
    EXPECT_EQ(errore[0][0].toInt(), 76);
    EXPECT_EQ(fine.size(), inizio.size()) << "every start is matched by an end";
}

TEST_F(Server, AListChangePublishesTheStateBeforeItsNoticeAndRefusesWhatItCannotApply)
{
    RefServer s(mDir.path(), RefServer::Opzioni{false});
    RefServizio* stampe = s.ServizioRef(QStringLiteral("PxSrvStampe"));
    // What a console sees, in order: the state's printer keys at each notice.
    QStringList visti;
    const auto chiavi = [stampe] {
        QStringList k;
        const auto stato = Stato(stampe); // kept alive for the loop: the nodes live in it
        for (const pugi::xml_node p : stato.document_element().child("Stampanti").children("Stampante"))
            k << QString::fromUtf8(p.child_value("Chiave"));
        return k.join(u',');
    };
    QObject::connect(stampe, &RefServizio::StatoXmlCambiato, &s, [&] { visti << QStringLiteral("stato"); });
    QStringList record;
    QObject::connect(&s, &RefServer::StampanteAggiunta, &s, [&](const QString& nodo) {
        visti << QStringLiteral("aggiunta, l'ultima è ") + chiavi().section(u',', -1);
        record << nodo;
    });
    QObject::connect(&s, &RefServer::StampanteRimossa, &s, [&](const QString& chiave) {
        visti << QStringLiteral("rimossa ") + chiave + (chiavi().split(u',').contains(chiave) ? QStringLiteral(" ancora") : QString());
    });
    const QString nuova = QStringLiteral("<Stampante><Chiave>15</Chiave><NumeroTarquel>15</NumeroTarquel></Stampante>");
    EXPECT_TRUE(s.AggiungiStampante(nuova));
    EXPECT_TRUE(s.RimuoviStampante(QStringLiteral(" 15 ")));
    EXPECT_EQ(visti, (QStringList{QStringLiteral("stato"), QStringLiteral("aggiunta, l'ultima è 15"), QStringLiteral("stato"),
                                  QStringLiteral("rimossa 15")}));
    EXPECT_EQ(record, QStringList{nuova}) << "the notice carries the record as listed";

    visti.clear();
    const QString prima = stampe->StatoXml();
    EXPECT_FALSE(s.AggiungiStampante(QStringLiteral("<Stampante><Chiave>3</Chiave></Stampante>"))) << "already listed";
    EXPECT_FALSE(s.AggiungiStampante(QStringLiteral("<Stampante><Chiave> </Chiave></Stampante>")));
    EXPECT_FALSE(s.AggiungiStampante(QStringLiteral("<Stampante><NumeroTarquel>9</NumeroTarquel></Stampante>")));
    EXPECT_FALSE(s.AggiungiStampante(QStringLiteral("<Utente><Chiave>16</Chiave></Utente>"))) << "another list's kind";
    EXPECT_FALSE(s.AggiungiStampante(QStringLiteral("<Stampante><Chiave>16</Chiave>")));
    EXPECT_FALSE(s.RimuoviStampante(QStringLiteral("15"))) << "no longer listed";
    EXPECT_FALSE(s.ConnettiUtente(QStringLiteral("<Utente><KeyUtente>U-0001</KeyUtente></Utente>")));
    EXPECT_FALSE(s.DisconnettiFtpCliente(QString()));
    EXPECT_TRUE(visti.isEmpty());
    EXPECT_EQ(stampe->StatoXml(), prima);

    RefServer vuoto(mDir.path(), RefServer::Opzioni{false, false});
    EXPECT_FALSE(vuoto.ConnettiUtente(QStringLiteral("<Utente><KeyUtente>U-0009</KeyUtente></Utente>"))) << "not loaded";
}

TEST(modDemo, SameCallSameFolder)
{
    QTemporaryDir a, b;
    ASSERT_EQ(modDemo::CreaServerDemo(a.path(), 0), QString());
    ASSERT_EQ(modDemo::CreaServerDemo(b.path(), 0), QString());
    EXPECT_TRUE(modDemo::EServer(a.path()));
    EXPECT_FALSE(modDemo::EServer(QDir(a.path()).filePath(QStringLiteral("Log"))));
    EXPECT_EQ(ImprontaCartella(a.path()), ImprontaCartella(b.path()));
}
