#include "IPxStatoServer.h"
#include "PxErrore.h"
#include "PxIconResource.h"
#include "PxImmagini.h"

#include <gtest/gtest.h>

#include <QString>

#include <pugixml.hpp>
#include <string>

namespace {

struct Documento
{
    explicit Documento(const std::string& xml) { EXPECT_TRUE(doc.load_string(xml.c_str())) << xml; }
    pugi::xml_node Radice() const { return doc.document_element(); }
    pugi::xml_document doc;
};

std::string Stato(int codice) { return "<Stato><Codice>" + std::to_string(codice) + "</Codice></Stato>"; }

std::string Stampante(int modello, const std::string& porta, long long attributi, const std::string& usable,
                      int stato = 4, const std::string& ipPing = "")
{
    return "<Stampante><Modello><Codice>" + std::to_string(modello) + "</Codice></Modello>" + Stato(stato)
        + "<InfoStampante><PortName>" + porta + "</PortName><Attributes>" + std::to_string(attributi)
        + "</Attributes><Usable>" + usable + "</Usable><PrinterIPToPing>" + ipPing
        + "</PrinterIPToPing></InfoStampante></Stampante>";
}

qint32 IconaStampante(int modello, const std::string& porta, long long attributi, const std::string& usable,
                      int stato = 4, const std::string& ipPing = "")
{
    const Documento d(Stampante(modello, porta, attributi, usable, stato, ipPing));
    return PxIconResource().IconaSrvStampanteXml(d.Radice());
}

qint32 ErroreDi(const std::function<void()>& f)
{
    try {
        f();
    } catch (const PxErrore& e) {
        return e.Numero();
    }
    return 0;
}

struct ServerFinto : IPxStatoServer
{
    qint32 Codice = 4;
    qint32 Stato() const override { return Codice; }
};

} // namespace

TEST(PxIconResource, FixedIconsFollowOnlyTheStateCode)
{
    const PxIconResource r;
    using M = qint32 (PxIconResource::*)(const pugi::xml_node&) const;
    const std::pair<M, qint32> fisse[] = {
        {&PxIconResource::IconaSrvFormatiXml, 201}, {&PxIconResource::IconaSrvFirmeXml, 202},
        {&PxIconResource::IconaSrvAnteprimeXml, 210}, {&PxIconResource::IconaSrvStampeXml, 220},
        {&PxIconResource::IconaSrvEmailXml, 230}, {&PxIconResource::IconaSrvSmtpXml, 232},
        {&PxIconResource::IconaSrvReportEmailXml, 233}, {&PxIconResource::IconaSrvFaxXml, 240},
        {&PxIconResource::IconaSrvTifVmXml, 242}, {&PxIconResource::IconaSrvFaxVmXml, 243},
        {&PxIconResource::IconaSrvReportFaxXml, 244}, {&PxIconResource::IconaSrvNotificaFaxXml, 245},
        {&PxIconResource::IconaSrvNeFaxXml, 246}, {&PxIconResource::IconaSrvPFaxXml, 250},
        {&PxIconResource::IconaSrvPFaxVmXml, 252}, {&PxIconResource::IconaSrvPblXml, 260},
        {&PxIconResource::IconaSrvPblVmXml, 262}, {&PxIconResource::IconaSrvFtpXml, 270},
        {&PxIconResource::IconaSrvFtpSrvXml, 271}, {&PxIconResource::IconaSrvFtpClnXml, 272},
        {&PxIconResource::IconaSrvImportaXml, 280}, {&PxIconResource::IconaSrvWebSrvXml, 281},
        {&PxIconResource::IconaSrvWebUpdateXml, 282}, {&PxIconResource::IconaSrvEFaxXml, 290},
        {&PxIconResource::IconaSrvEFaxVmXml, 293},
    };
    const Documento attivo("<PxSrvFax>" + Stato(4) + "</PxSrvFax>");
    const Documento fermo("<PxSrvFax>" + Stato(3) + "</PxSrvFax>");
    const Documento errore("<PxSrvFax>" + Stato(2) + "</PxSrvFax>");
    for (const auto& [membro, immagine] : fisse) {
        EXPECT_EQ((r.*membro)(attivo.Radice()), immagine);
        EXPECT_EQ((r.*membro)(fermo.Radice()), -immagine);
        EXPECT_EQ((r.*membro)(errore.Radice()), -immagine);
        EXPECT_EQ((r.*membro)(attivo.doc), immagine) << "a document reads as its root element";
        EXPECT_TRUE(PxImmagini::Esiste(immagine)) << immagine;
    }
}

TEST(PxIconResource, ServerStateComesFromTheServerObject)
{
    const PxIconResource r;
    ServerFinto s;
    EXPECT_EQ(r.IconaSrvServer(s), 200);
    EXPECT_EQ(r.StatoSrvServer(s), 4);
    s.Codice = 1;
    EXPECT_EQ(r.IconaSrvServer(s), -200);
    EXPECT_EQ(r.StatoSrvServer(s), 1);
}

TEST(PxIconResource, StateMembersReturnTheCodeUnchanged)
{
    const PxIconResource r;
    const Documento d("<PxSrvWebSrv>" + Stato(7) + "</PxSrvWebSrv>");
    EXPECT_EQ(r.StatoSrvWebSrvXml(d.Radice()), 7);
    EXPECT_EQ(r.StatoSrvFormati(d.Radice()), 7);
    EXPECT_EQ(r.StatoSrvStampanteXml(d.Radice()), 7);
    const Documento spazi("<X><Stato><Codice> 4 </Codice></Stato></X>");
    EXPECT_EQ(r.StatoSrvFaxXml(spazi.Radice()), 4);
    EXPECT_EQ(r.IconaSrvFaxXml(spazi.Radice()), 240);
}

TEST(PxIconResource, MissingOrNonNumericCodeRaises)
{
    const PxIconResource r;
    const Documento senza("<PxSrvFax><Attivita/></PxSrvFax>");
    const Documento testo("<PxSrvFax><Stato><Codice>quattro</Codice></Stato></PxSrvFax>");
    const Documento vuoto("<PxSrvFax><Stato><Codice></Codice></Stato></PxSrvFax>");
    EXPECT_EQ(ErroreDi([&] { r.IconaSrvFaxXml(senza.Radice()); }), 91);
    EXPECT_EQ(ErroreDi([&] { r.IconaSrvFaxXml(testo.Radice()); }), 13);
    EXPECT_EQ(ErroreDi([&] { r.StatoSrvFaxXml(vuoto.Radice()); }), 13);
    EXPECT_EQ(ErroreDi([&] { r.IconaSrvFaxXml(pugi::xml_node()); }), 91);
    const Documento senzaInfo("<Stampante><Modello><Codice>1</Codice></Modello>" + Stato(4) + "</Stampante>");
    EXPECT_EQ(ErroreDi([&] { r.IconaSrvStampanteXml(senzaInfo.Radice()); }), 91);
}

TEST(PxIconResource, PrinterFamiliesByModelCode)
{
    const std::pair<int, qint32> famiglie[] = {
        {0, 1000}, {1, 1300}, {2, 1400}, {3, 1100}, {4, 1100}, {5, 1000}, {6, 1500}, {7, 1200},
        {8, 1400}, {9, 1500}, {10, 1400}, {11, 1600}, {12, 1500}, {13, 1000}, {99, 1000}, {-1, 1000},
    };
    for (const auto& [modello, base] : famiglie)
        EXPECT_EQ(IconaStampante(modello, "LPT1:", 0, "True"), base) << "model " << modello;
}

TEST(PxIconResource, PrinterPortSharingAndUsability)
{
    // Port: a file port wins over the network bit, the network bit over a local pinged printer.
    EXPECT_EQ(IconaStampante(0, "FILE:", 16 | 64, "True", 4, "10.0.0.1"), 1003);
    EXPECT_EQ(IconaStampante(0, "file:", 0, "True"), 1003) << "port names are case-insensitive";
    EXPECT_EQ(IconaStampante(0, "PORTPROMPT:", 0, "True"), 1003);
    EXPECT_EQ(IconaStampante(0, "IP_10.0.0.1", 16 | 64, "True", 4, "10.0.0.1"), 1002);
    EXPECT_EQ(IconaStampante(0, "IP_10.0.0.1", 64, "True", 4, "10.0.0.1"), 1001);
    EXPECT_EQ(IconaStampante(0, "IP_10.0.0.1", 64, "True", 4, ""), 1000) << "local without an address to ping";
    EXPECT_EQ(IconaStampante(0, "IP_10.0.0.1", 0, "True", 4, "10.0.0.1"), 1000) << "address without the local bit";
    // Shared +10, unusable +20, both together, and the sign.
    EXPECT_EQ(IconaStampante(1, "LPT1:", 8, "True"), 1310);
    EXPECT_EQ(IconaStampante(1, "LPT1:", 0, "False"), 1320);
    EXPECT_EQ(IconaStampante(0, "FILE:", 8, "False"), 1033);
    EXPECT_EQ(IconaStampante(0, "FILE:", 8, "False", 3), -1033);
    EXPECT_EQ(IconaStampante(2, "FILE:", 0, "True"), 1403);
    EXPECT_EQ(IconaStampante(6, "LPT1:", 8, "0"), 1530);
    EXPECT_EQ(IconaStampante(6, "LPT1:", 8, "-1"), 1510) << "a non-zero number is true";
    EXPECT_EQ(IconaStampante(0, "LPT1:", 0, "Vero"), 1000);
}

TEST(PxIconResource, PdfWorkersShowTheirVirtualPrinter)
{
    const PxIconResource r;
    const auto icona = [&](const std::string& porta, long long attributi, const std::string& usable, int stato = 4) {
        const Documento d("<PxSrvEmlPdfVm>" + Stato(stato) + "<InfoStampante><PortName>" + porta
                          + "</PortName><Attributes>" + std::to_string(attributi) + "</Attributes><Usable>" + usable
                          + "</Usable></InfoStampante></PxSrvEmlPdfVm>");
        const qint32 a = r.IconaSrvEmlPdfVmXml(d.Radice());
        EXPECT_EQ(r.IconaSrvPblPdfVmXml(d.Radice()), a);
        EXPECT_EQ(r.IconaSrvEFaxPdfVmXml(d.Radice()), a);
        return a;
    };
    EXPECT_EQ(icona("Ne01:", 0, "True"), 1500);
    EXPECT_EQ(icona("FILE:", 16, "True"), 1503);
    EXPECT_EQ(icona("PORTPROMPT:", 0, "True"), 1503);
    EXPECT_EQ(icona("\\\\srv\\pdf", 16, "True"), 1502) << "a network path wins over the network bit";
    EXPECT_EQ(icona("\\srv", 0, "True"), 1500) << "one backslash is not a network path";
    EXPECT_EQ(icona("Ne01:", 16, "True"), 1501);
    EXPECT_EQ(icona("Ne01:", 8, "True"), 1510);
    EXPECT_EQ(icona("FILE:", 8, "False"), 1533);
    EXPECT_EQ(icona("FILE:", 8, "False", 1), -1533);
    EXPECT_EQ(icona("Ne01:", 64, "True"), 1500) << "the local bit does not count for PDF workers";
}

TEST(PxIconResource, ConnectedClients)
{
    const PxIconResource r;
    const auto icona = [&](const std::string& corpo, int stato = 4) {
        const Documento d("<Utente>" + Stato(stato) + corpo + "</Utente>");
        return r.IconaSrvUtenteXml(d.Radice());
    };
    EXPECT_EQ(icona("<TcpConnessione>" + Stato(2) + "</TcpConnessione>"), 900);
    EXPECT_EQ(icona("<TcpConnessione>" + Stato(4) + "</TcpConnessione>"), 901);
    EXPECT_EQ(icona("<TcpConnessione>" + Stato(2) + "</TcpConnessione>", 3), -900);
    // The connection decides even when the client info says otherwise.
    EXPECT_EQ(icona("<TcpConnessione>" + Stato(1) + "</TcpConnessione><ClientInfo><Autenticato>True</Autenticato></ClientInfo>"), 901);
    EXPECT_EQ(icona("<ClientInfo><Autenticato>True</Autenticato></ClientInfo>"), 900);
    EXPECT_EQ(icona("<ClientInfo><Autenticato>1</Autenticato></ClientInfo>"), 900);
    EXPECT_EQ(icona("<ClientInfo><Autenticato>0</Autenticato></ClientInfo>"), 901);
    EXPECT_EQ(icona(""), 901);
    EXPECT_EQ(icona("", 0), -901);
}

TEST(PxImmagini, EveryNumberTheRulesProduceHasAnImage)
{
    const char* porte[] = {"LPT1:", "FILE:", "\\\\srv\\x", "IP_1"};
    const long long attributi[] = {0, 8, 16, 64, 8 | 16, 8 | 64};
    for (int modello = 0; modello <= 13; ++modello)
        for (const char* porta : porte)
            for (const long long a : attributi)
                for (const char* usable : {"True", "False"})
                    for (const int stato : {3, 4}) {
                        const qint32 n = IconaStampante(modello, porta, a, usable, stato, "1.2.3.4");
                        EXPECT_TRUE(PxImmagini::Esiste(n)) << n;
                    }
    for (const qint32 n : {900, 901, -900, 100, 101, 102, 103, 200, -200, modIcone::CartellaDocumenti})
        EXPECT_TRUE(PxImmagini::Esiste(n)) << n;
    for (const char* chiave : {"DocStampa", "DocEmail", "DocFax", "DocFaxCollegato", "DocPFax", "DocEFax", "DocPbl",
                               "DocPblCollegato", "DocAnteprima"})
        EXPECT_TRUE(PxImmagini::EsisteChiave(QString::fromLatin1(chiave))) << chiave;
    EXPECT_FALSE(PxImmagini::Esiste(1004)) << "port digit 4 does not exist";
    EXPECT_FALSE(PxImmagini::Esiste(1040));
    EXPECT_FALSE(PxImmagini::Esiste(777));
    EXPECT_FALSE(PxImmagini::EsisteChiave(QStringLiteral("DocSconosciuto")));
}
