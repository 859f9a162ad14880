// Every test job the console makes, handed by the console's own code to a real reference server
// by a console that does not share the server's files, written by the server into its input
// folder, taken by the folder's own code, and read back through what the server publishes: the
// folder's listing and the document's description. One table of cases, one test body.
#include "ServerInLinea.h"
#include "PxIntestazioneHpx.h"
#include "PxSrvCartellaDocumenti.h"
#include "PxSrvServizio.h"
#include "PxXmlCallBack.h"
#include "RefIngresso.h"
#include "frmInvioProvaEmail.h"
#include "frmInvioProvaFax.h"
#include "modContenuto.h"
#include "modPortachiavi.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QDir>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

#include <pugixml.hpp>

#include <functional>
#include <memory>
#include <ostream>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

bool Attendi(const std::function<bool()>& c) { return QTest::qWaitFor(c, 10000); }

// How the console makes the job: one of the test forms, or the printer test page command.
enum class Origine { Fax, PFax, EFax, Email, Pubblicazione, PaginaDiProva };
enum class Variante { Standard, Formato, Firma };

// What the document's description must hold: a path below Proprieta and its text.
struct Atteso
{
    const char* Percorso;
    QString Valore;
    bool Inizio = false; // the text only starts so
};

struct Caso
{
    const char* Nome;
    Origine Da;
    Variante Come;
    const char* Servizio;
    const char* Cartella;
    std::vector<Atteso> Attesi;
    int Modello = -1;              // printer test page: the printer's model code
    const char* Stampante = "";    // its Windows name (the document's Stampante; its page's Descrizione)
    bool Script = false;           // the job brings a page script (.spx)
    const char* Firma = "";        // the signature under test
};

// A failing case is named by its name, not by its bytes.
void PrintTo(const Caso& c, std::ostream* os) { *os << c.Nome; }

// What the operator types into the forms.
const QString Numero = u"7654321"_s, Locale = u"02"_s, Internazionale = u"39"_s, OggettoFax = u"Ordine 4711"_s;
const QString A = u"cliente@rossi.it"_s, Da = u"console@ditta.it"_s, OggettoEmail = u"Prova di consegna"_s;
const modProva::Formato FormatoFax{u"F003"_s, u"Fattura fronte"_s, u"PG0003"_s, 66, 0};
const modProva::Formato FormatoEmail{u"F007"_s, u"Lettera clienti"_s, u"PG0007"_s, 72, 1};

std::vector<Atteso> NumeroFax(std::vector<Atteso> altri = {})
{
    altri.push_back({"NumeroFax/Numero", Numero});
    altri.push_back({"NumeroFax/PrefissoLocale", Locale});
    altri.push_back({"NumeroFax/PrefissoInternazionale", Internazionale});
    return altri;
}

const Caso Casi[] = {
    {"FaxDiProva", Origine::Fax, Variante::Standard, "PxSrvFax", "PxSrvDocFax",
     NumeroFax({{"Oggetto", OggettoFax}, {"Descrizione", u"Fax di prova di "_s, true}})},
    {"FaxFormato", Origine::Fax, Variante::Formato, "PxSrvFax", "PxSrvDocFax",
     NumeroFax({{"Descrizione", u"Fax formato Fattura fronte"_s}})},
    {"PrinterFaxDiProva", Origine::PFax, Variante::Standard, "PxSrvPFax", "PxSrvDocPFax",
     NumeroFax({{"Oggetto", OggettoFax}, {"Descrizione", u"Fax di prova di "_s, true}})},
    {"EFaxDiProva", Origine::EFax, Variante::Standard, "PxSrvEFax", "PxSrvDocEFax",
     NumeroFax({{"Oggetto", OggettoFax}, {"Da/IndirizziEmail", Da}, {"Descrizione", u"Fax di prova di "_s, true}})},
    {"EFaxFormato", Origine::EFax, Variante::Formato, "PxSrvEFax", "PxSrvDocEFax",
     NumeroFax({{"Da/IndirizziEmail", Da}, {"Descrizione", u"Fax formato Fattura fronte"_s}})},
    {"EmailDiProva", Origine::Email, Variante::Standard, "PxSrvEmail", "PxSrvDocEmail",
     {{"A/IndirizziEmail", A}, {"Da/IndirizziEmail", Da}, {"Oggetto", OggettoEmail},
      {"Descrizione", u"Email di prova di "_s, true}}},
    {"EmailFormato", Origine::Email, Variante::Formato, "PxSrvEmail", "PxSrvDocEmail",
     {{"A/IndirizziEmail", A}, {"Oggetto", OggettoEmail}, {"Descrizione", u"Email formato Lettera clienti"_s}}},
    {"EmailFirma", Origine::Email, Variante::Firma, "PxSrvEmail", "PxSrvDocEmail",
     {{"A/IndirizziEmail", A}, {"Oggetto", OggettoEmail}}, -1, "", false, "COMMERCIALE"},
    {"PubblicazioneDiProva", Origine::Pubblicazione, Variante::Standard, "PxSrvPbl", "PxSrvDocPbl",
     {{"Descrizione", u"Email di prova di "_s, true}}},
    {"PaginaTesto", Origine::PaginaDiProva, Variante::Standard, "PxSrvStampe", "PxSrvDocStampe",
     {}, 0, "Generica testo", true},
    {"PaginaPdf", Origine::PaginaDiProva, Variante::Standard, "PxSrvStampe", "PxSrvDocStampe",
     {}, 6, "Pdf archivio", true},
    {"PaginaAghi", Origine::PaginaDiProva, Variante::Standard, "PxSrvStampe", "PxSrvDocStampe",
     {}, 7, "Aghi bolle", true},
    {"PaginaPdfPubblicazione", Origine::PaginaDiProva, Variante::Standard, "PxSrvStampe", "PxSrvDocStampe",
     {}, 12, "Pdf pubblicazione", true},
    {"PaginaPcl", Origine::PaginaDiProva, Variante::Standard, "PxSrvStampe", "PxSrvDocStampe",
     {}, 4, "Laser produzione"},
    {"PaginaPostScript", Origine::PaginaDiProva, Variante::Standard, "PxSrvStampe", "PxSrvDocStampe",
     {}, 13, "PostScript grafica"},
    {"EtichettaDatamaxDpl", Origine::PaginaDiProva, Variante::Standard, "PxSrvStampe", "PxSrvDocStampe",
     {}, 1, "Etichette magazzino"},
    {"EtichettaZebraZpl", Origine::PaginaDiProva, Variante::Standard, "PxSrvStampe", "PxSrvDocStampe",
     {}, 2, "Zebra spedizioni"},
    {"EtichettaZebraEpl2", Origine::PaginaDiProva, Variante::Standard, "PxSrvStampe", "PxSrvDocStampe",
     {}, 8, "Zebra banco"},
    // A network printer's name, with the characters a file name cannot hold.
    {"EtichettaToshibaTec", Origine::PaginaDiProva, Variante::Standard, "PxSrvStampe", "PxSrvDocStampe",
     {}, 10, "\\\\srvstampa\\TEC:B-EX4"},
};

// The printer's number in the management system, one per model code.
int NumeroStampante(const Caso& c) { return 40 + c.Modello; }

// The key of the demo's printer of the case's model and name ("" when there is none).
QString ChiaveNellaDemo(const PxSrvServizio* stampe, const Caso& c)
{
    pugi::xml_document stato;
    if (!stampe || !stampe->LeggiStato(stato))
        return {};
    for (const pugi::xml_node s : stato.document_element().child("Stampanti").children("Stampante"))
        if (QString::fromUtf8(s.child_value("NomeStampanteWindows")) == QString::fromUtf8(c.Stampante)
            && s.child("Modello").child("Codice").text().as_int(-1) == c.Modello)
            return QString::fromUtf8(s.child_value("Chiave"));
    return {};
}

// The keyring of the test's own: the forms remember a password there.
QHash<QString, QString> Chiavi;
const modPortachiavi::Portachiavi Memoria{
    [](const QString& k, std::function<void(bool, const QString&)> fatto) { fatto(Chiavi.contains(k), Chiavi.value(k)); },
    [](const QString& k, const QString& v, std::function<void(bool)> fatto) {
        Chiavi.insert(k, v);
        fatto(true);
    }};

class ProveFinoAlServer : public SuiteConServer<0, false>, public ::testing::WithParamInterface<Caso>
{
protected:
    void SetUp() override
    {
        ASSERT_NE(sServer, nullptr);
        modPortachiavi::ImpostaPortachiavi(&Memoria);
    }
    void TearDown() override { modPortachiavi::ImpostaPortachiavi(nullptr); }

    static void Scrivi(frmInvioProva& f, const char* chiave, const QString& testo)
    {
        auto* campo = qobject_cast<QLineEdit*>(f.Widget(chiave));
        ASSERT_NE(campo, nullptr) << chiave;
        campo->setText(testo);
    }

    // The form of the case, preset as the console opens it, its fields filled.
    static std::unique_ptr<frmInvioProva> Modulo(const Caso& c)
    {
        PxContesto& contesto = *sServer->Contesto;
        std::unique_ptr<frmInvioProva> f;
        switch (c.Da) {
        case Origine::Fax:
        case Origine::PFax: {
            auto fax = std::make_unique<frmInvioProvaFax>(contesto, QString::fromLatin1(c.Servizio));
            if (c.Come == Variante::Formato)
                fax->Formato = FormatoFax;
            f = std::move(fax);
            break;
        }
        case Origine::EFax: {
            auto efax = std::make_unique<frmInvioProvaEFax>(contesto);
            if (c.Come == Variante::Formato)
                efax->Formato = FormatoFax;
            f = std::move(efax);
            Scrivi(*f, "Da", Da);
            break;
        }
        case Origine::Email:
        case Origine::Pubblicazione: {
            auto email = std::make_unique<frmInvioProvaEmail>(contesto, QString::fromLatin1(c.Servizio));
            if (c.Come == Variante::Formato)
                email->Formato = FormatoEmail;
            if (c.Come == Variante::Firma)
                email->Firma = QString::fromUtf8(c.Firma);
            f = std::move(email);
            Scrivi(*f, "Da", Da);
            Scrivi(*f, "A", A);
            Scrivi(*f, "Oggetto", OggettoEmail);
            break;
        }
        case Origine::PaginaDiProva: break;
        }
        if (c.Da == Origine::Fax || c.Da == Origine::PFax || c.Da == Origine::EFax) {
            Scrivi(*f, "PrefissoInternazionale", Internazionale);
            Scrivi(*f, "PrefissoLocale", Locale);
            Scrivi(*f, "NumeroFax", Numero);
            Scrivi(*f, "Oggetto", OggettoFax);
        }
        return f;
    }

    // The server looks at the service's input folder once a whole job is there (a server in
    // another process looks on its own).
    static void Prendi(const char* servizio)
    {
        if (!sServer->Ref)
            return;
        RefIngresso* ingresso = sServer->Ref->Ingresso(QLatin1StringView(servizio));
        ASSERT_NE(ingresso, nullptr);
        ASSERT_TRUE(Attendi([&] { return !QDir(ingresso->Cartella()).entryList({u"*.hpx"_s}, QDir::Files).isEmpty(); }));
        ingresso->Scansiona();
    }

    // Sends the case's job as the console does; the id of the document it became.
    static QString Invia(const Caso& c)
    {
        if (c.Da != Origine::PaginaDiProva) {
            std::unique_ptr<frmInvioProva> f = Modulo(c);
            QSignalSpy consegnati(f.get(), &frmInvioProva::Consegnato);
            QSignalSpy respinti(f.get(), &frmInvioProva::Respinto);
            f->open();
            f->accept();
            Prendi(c.Servizio);
            if (!Attendi([&] { return !consegnati.isEmpty() || !respinti.isEmpty(); })) {
                ADD_FAILURE() << "no word from the service";
                return {};
            }
            if (!respinti.isEmpty()) {
                ADD_FAILURE() << "set aside: " << qPrintable(respinti[0][1].toString());
                return {};
            }
            return consegnati[0][1].toString();
        }
        // The printer test page: a printer of the case's model joins the printing service (a
        // server in another process has the demo's printer of that model and name), and the
        // command's own steps write its page.
        const QString nome = QString::fromUtf8(c.Stampante);
        PxSrvServizio* stampe = sServer->Server->Servizio(u"PxSrvStampe"_s);
        const QString chiave = sServer->Ref ? u"prova-"_s + QString::fromLatin1(c.Nome) : ChiaveNellaDemo(stampe, c);
        if (chiave.isEmpty()) {
            ADD_FAILURE() << "the demo has no printer " << c.Stampante;
            return {};
        }
        if (sServer->Ref) {
            EXPECT_TRUE(sServer->Ref->AggiungiStampante(
                uR"(<Stampante><Chiave>%1</Chiave><NumeroTarquel>%2</NumeroTarquel><NomeStampanteWindows>%3</NomeStampanteWindows>
<Modello><Codice>%4</Codice></Modello><InfoStampante><DriverName>Driver di prova</DriverName><PortName>LPT1:</PortName>
</InfoStampante><Margini><Superiore>5</Superiore><Sinistro>4</Sinistro><Destro>4</Destro><Inferiore>6</Inferiore></Margini>
</Stampante>)"_s.arg(chiave).arg(NumeroStampante(c)).arg(nome.toHtmlEscaped()).arg(c.Modello)));
        }
        pugi::xml_document stato;
        if (!stampe || !Attendi([&] {
                return stampe->LeggiStato(stato) && modContenuto::StampanteDellaChiave(stato.document_element(), chiave);
            })) {
            ADD_FAILURE() << "the printer never reached the console";
            return {};
        }
        // The main window's command, by the printer's key.
        QSignalSpy presi(stampe, &PxSrvServizio::LavoroPreso);
        PxRisposta consegna{-1, {}, {}};
        QObject richiedente;
        modContenuto::InviaPaginaDiProva(sServer->Server.get(), chiave, sServer->Testi, &richiedente,
                                         [&](const PxRisposta& r) { consegna = r; });
        if (!Attendi([&] { return consegna.Esito != -1; }) || !consegna.Riuscita()) {
            ADD_FAILURE() << "not handed over: " << qPrintable(consegna.Testo);
            return {};
        }
        EXPECT_FALSE(consegna.Testo.contains(u'/')) << "a name in the input folder, not a path";
        Prendi(c.Servizio);
        if (!Attendi([&] { return !presi.isEmpty(); })) {
            ADD_FAILURE() << "the printing service did not take the page";
            return {};
        }
        EXPECT_EQ(presi[0][0].toString(), consegna.Testo);
        return presi[0][1].toString();
    }
};

// The queue a document is listed in, as the folder's listing says; -1 when it is not listed.
int CodaNellElenco(PxSrvCartellaDocumenti& cartella, const QString& id)
{
    PxXmlCallBack callback;
    QSignalSpy elenchi(&callback, &PxXmlCallBack::XmlCallBack);
    cartella.Elenca(&callback);
    if (!Attendi([&] { return !elenchi.isEmpty(); }))
        return -2;
    const QByteArray xml = elenchi[0][0].toByteArray();
    pugi::xml_document doc;
    doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size()));
    for (const pugi::xml_node coda : doc.document_element().children())
        for (const pugi::xml_node d : coda.children("D"))
            if (QString::fromUtf8(d.child("F").child_value()) == id)
                return QString::fromUtf8(coda.name()).mid(5).toInt();
    return -1;
}

TEST_P(ProveFinoAlServer, TheJobBecomesADocumentWithWhatTheConsoleSet)
{
    const Caso& c = GetParam();
    const QString id = Invia(c);
    ASSERT_FALSE(id.isEmpty());

    PxSrvCartellaDocumenti* cartella = sServer->Server->CartellaDocumenti(QString::fromLatin1(c.Cartella));
    ASSERT_NE(cartella, nullptr);
    EXPECT_EQ(CodaNellElenco(*cartella, id), 0) << "listed in the folder's first queue";

    QString descrizione;
    bool risposto = false;
    QObject richiedente;
    cartella->Documento(id, &richiedente, [&](const PxRisposta& r) {
        risposto = true;
        descrizione = r.Testo;
    });
    ASSERT_TRUE(Attendi([&] { return risposto; }));
    pugi::xml_document doc;
    const QByteArray xml = descrizione.toUtf8();
    ASSERT_TRUE(doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size()))) << qPrintable(descrizione);
    const pugi::xml_node proprieta = doc.document_element().child("Proprieta");
    EXPECT_STREQ(proprieta.child("Coda").child_value("Codice"), "0");
    std::vector<Atteso> attesi = c.Attesi;
    if (c.Da == Origine::PaginaDiProva) {
        const QString nome = QString::fromUtf8(c.Stampante);
        attesi.push_back({"Stampante", nome});
        if (sServer->Ref) // the demo's printers have numbers of their own
            attesi.push_back({"Numero", QString::number(NumeroStampante(c))});
        attesi.push_back({"Descrizione", u"Stampa pagina di prova di "_s + nome});
    }
    for (const Atteso& a : attesi) {
        const QString valore = QString::fromUtf8(proprieta.first_element_by_path(a.Percorso).child_value());
        if (a.Inizio)
            EXPECT_TRUE(valore.startsWith(a.Valore)) << a.Percorso << ": " << qPrintable(valore);
        else
            EXPECT_EQ(valore, a.Valore) << a.Percorso;
    }

    // The files came with it: the body always, the script with the text page only.
    QStringList file;
    QString intestazione;
    for (const pugi::xml_node f : doc.document_element().child("ElencoFile").children("File")) {
        file << QString::fromUtf8(f.child_value("Nome"));
        if (file.last() == id + u".hpx"_s)
            intestazione = QDir(QDir::fromNativeSeparators(QString::fromUtf8(f.child_value("Percorso")))).filePath(file.last());
    }
    EXPECT_TRUE(file.contains(id + u".bpx"_s)) << qPrintable(file.join(u' '));
    EXPECT_EQ(file.contains(id + u".spx"_s), c.Script) << qPrintable(file.join(u' '));
    ASSERT_FALSE(intestazione.isEmpty());
    if (c.Come == Variante::Firma) {
        // The signature travels to the service in the header the document keeps.
        QFile hpx(intestazione);
        ASSERT_TRUE(hpx.open(QIODevice::ReadOnly));
        PxIntestazioneHpx h;
        ASSERT_TRUE(h.Analizza(hpx.readAll()));
        EXPECT_EQ(h.Testo(u"EMAIL"_s, u"Firma"_s), QString::fromUtf8(c.Firma));
    }
    EXPECT_TRUE(QDir(RefIngresso::CartellaRespinti(sServer->Dir.path(), QString::fromLatin1(c.Servizio))).entryList(QDir::Files).isEmpty())
        << "nothing set aside";
}

INSTANTIATE_TEST_SUITE_P(OgniProva, ProveFinoAlServer, ::testing::ValuesIn(Casi),
                         [](const ::testing::TestParamInfo<Caso>& i) { return std::string(i.param.Nome); });

} // namespace
