#include "PxSrvServizio.h"
#include "RefServer.h"
#include "RefServizio.h"
#include "modCatalogo.h"
#include "modDemo.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <pugixml.hpp>

#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

// One property sheet: the node it belongs to and every element path it reads below the root
// of the node's state XML (besides Stato, Attivita, Errore and FileLog). For a node that is an
// entry of a list, `Elenco` is the list's path and the paths are read below each entry.
struct Layout
{
    int Numero;
    const char* Nodo;
    const char* Chiave;
    const char* Elenco;
    std::vector<const char*> Percorsi;
};

void PrintTo(const Layout& l, std::ostream* os) { *os << "layout " << l.Numero << ' ' << l.Nodo; }

const std::vector<const char*> LavoratorePdf = {
    "NomeStampanteWindows", "InfoStampante", "InfoStampante/UsableDesc", "InfoStampante/Usable",
    "InfoStampante/StatusDesc", "InfoStampante/LastDateUsable", "InfoStampante/Jobs", "InfoStampante/DriverName",
    "InfoStampante/PrinterName", "InfoStampante/PortName", "IntervalloPresenzaPdf", "TimeOutPdf", "EmulaFronteRetro",
    "Verifica", "ApiError", "ProcessId"};

// Layout 1 (the server itself) reads nothing besides the state.
const Layout Layouts[] = {
    {2, "SrvFormati", "PxSrvFormati", "", {"SrvFormati", "SrvFormati/PubblicazioneDatabase"}},
    {3, "SrvFirme", "PxSrvFirme", "", {"PubblicazioneDatabase"}},
    {4, "SrvAnteprime", "PxSrvAnteprime", "",
     {"SrvTcpTrasmissione", "SrvTcpTrasmissione/IndirizzoInAscolto", "SrvTcpTrasmissione/PortaInAscolto",
      "SrvTcpTrasmissione/ConnessioniAttive", "TerminalServer", "PxNetPreviewLocal/NomeServer",
      "PxNetPreviewLocal/Enabled", "PxNetPreviewLocal/ServerUrl", "PxNetPreviewLocal/VirtualUpload",
      "PxNetPreviewLocal/SrvSignalR/Connected", "PxNetPreviewLocal/SrvSignalR/ConnessioniAttive",
      "PxNetPreviewLocal/SrvSignalR/Errore/Descrizione", "PxNetPreviewLocal/SrvSignalR/FileLog",
      "PxNetPreviewGlobal/Enabled", "PxNetPreviewGlobal/ServerUrl", "PxNetPreviewGlobal/VirtualUpload",
      "PxNetPreviewGlobal/SrvSignalR/Connected", "PxNetPreviewGlobal/SrvSignalR/ConnessioniAttive",
      "PxNetPreviewGlobal/SrvSignalR/Errore/Descrizione", "PxNetPreviewGlobal/SrvSignalR/FileLog"}},
    {5, "SrvStampe", "PxSrvStampe", "",
     {"AvvioStampantiMultiplo", "MaxJobsOpened", "Stampanti", "StampantiInFunzione", "PercorsoTxtOutput",
      "PercorsoPdfOutput", "PercorsoPdf", "TimeOutPdf"}},
    {6, "SrvEmail", "PxSrvEmail", "", {"StampantePredefinita", "PercorsoPdf"}},
    {7, "SrvFax", "PxSrvFax", "",
     {"InfoFaxModems", "InfoFaxModems/InfoFaxModem/Porta", "InfoFaxModems/InfoFaxModem/DescrizioneClasse", "Output",
      "PercorsoPubblicazioneRiepilogo", "PercorsoPubblicazioneFax"}},
    {8, "SrvPbl", "PxSrvPbl", "", {"PercorsoPdf", "PercorsoPubblicazione"}},
    {9, "SrvPFax", "PxSrvPFax", "", {}},
    {10, "SrvEFax", "PxSrvEFax", "", {}},
    {11, "SrvFtp", "PxSrvFtp", "", {}},
    {12, "SrvImporta", "PxSrvImporta", "", {"PercorsiHpx"}},
    {13, "SrvWebUpdate", "PxSrvWebUpdate", "",
     {"VersioneInstallataEstesa", "PercorsoPubblicazioneAggiornamenti", "VersioneAggiornamentoQorvMsi",
      "VersioneAggiornamentoQorvMsp"}},
    {14, "SrvDocAnteprime", "PxSrvDocAnteprime", "",
     {"Anteprime", "Anteprime/Count", "Anteprime/DaGenerare", "Anteprime/InGenerazione", "Anteprime/Generati",
      "Anteprime/Respinti", "Anteprime/Scartati", "Anteprime/TimeOut", "Anteprime/TimeOut/Generati",
      "Anteprime/TimeOut/Respinti", "Anteprime/TimeOut/Scartati"}},
    {15, "SrvDocStampe", "PxSrvDocStampe", "",
     {"Stampe", "Stampe/Count", "Stampe/DaStampare", "Stampe/InStampa", "Stampe/Stampati", "Stampe/Respinti",
      "Stampe/Scartati", "Stampe/TimeOut", "Stampe/TimeOut/Stampati", "Stampe/TimeOut/Respinti",
      "Stampe/TimeOut/Scartati"}},
    {16, "SrvDocEmail", "PxSrvDocEmail", "",
     {"Email", "Email/Count", "Email/DaConvertire", "Email/InConversione", "Email/DaTrasmettere",
      "Email/InTrasmissione", "Email/DaStampare", "Email/InStampa", "Email/Trasmessi", "Email/Respinti",
      "Email/Scartati", "Email/TimeOut", "Email/TimeOut/Trasmessi", "Email/TimeOut/Respinti",
      "Email/TimeOut/Scartati"}},
    {17, "SrvDocFax", "PxSrvDocFax", "",
     {"Fax", "Fax/Count", "Fax/Output", "Fax/DaConvertire", "Fax/InConversione", "Fax/DaTrasmettere",
      "Fax/InTrasmissione", "Fax/DaConfermare", "Fax/DaStampare", "Fax/InStampa", "Fax/DaNotificare",
      "Fax/InNotifica", "Fax/Trasmessi", "Fax/Respinti", "Fax/Scartati", "Fax/TimeOut", "Fax/TimeOut/Trasmessi",
      "Fax/TimeOut/Respinti", "Fax/TimeOut/Scartati"}},
    {18, "SrvDocPbl", "PxSrvDocPbl", "",
     {"Pbl", "Pbl/Count", "Pbl/DaConvertire", "Pbl/InConversione", "Pbl/DaPubblicare", "Pbl/InPubblicazione",
      "Pbl/Pubblicati", "Pbl/Respinti", "Pbl/Scartati", "Pbl/TimeOut", "Pbl/TimeOut/Pubblicati",
      "Pbl/TimeOut/Respinti", "Pbl/TimeOut/Scartati"}},
    {19, "SrvDocPFax", "PxSrvDocPFax", "",
     {"Fax", "Fax/Count", "Fax/DaStampare", "Fax/InStampa", "Fax/Stampati", "Fax/Respinti", "Fax/Scartati",
      "Fax/TimeOut", "Fax/TimeOut/Stampati", "Fax/TimeOut/Respinti", "Fax/TimeOut/Scartati"}},
    {20, "SrvDocEFax", "PxSrvDocEFax", "",
     {"EFax", "EFax/Count", "EFax/DaConvertire", "EFax/InConversione", "EFax/DaPubblicare", "EFax/InPubblicazione",
      "EFax/Pubblicati", "EFax/Respinti", "EFax/Scartati", "EFax/TimeOut", "EFax/TimeOut/Pubblicati",
      "EFax/TimeOut/Respinti", "EFax/TimeOut/Scartati"}},
    {21, "SrvUtente", "PxSrvAnteprime", "Utenti/Utente",
     {"TcpConnessione", "Utente", "ClientInfo", "ClientInfo/Autenticato", "TcpConnessione/IndirizzoRemoto",
      "TcpConnessione/Stato/Descrizione", "TcpConnessione/Attivita/Descrizione", "TcpConnessione/Errore/Descrizione",
      "TcpConnessione/StatoConnessione", "TcpConnessione/VersioneClient", "TcpConnessione/PortaRemota",
      "TcpConnessione/Socket", "TcpConnessione/VersioneProtocollo", "ClientInfo/InviaDocumento",
      "ClientInfo/EmulaFronteRetro", "ClientInfo/UsaCompressione", "ProcessId"}},
    {22, "SrvStampante", "PxSrvStampe", "Stampanti/Stampante",
     {"InfoStampante", "NomeStampanteWindows", "Modello", "Modello/Descrizione", "InfoStampante/UsableDesc",
      "InfoStampante/Usable", "InfoStampante/StatusDesc", "InfoStampante/LastDateUsable", "InfoStampante/Jobs",
      "InfoStampante/DriverName", "InfoStampante/PrinterName", "InfoStampante/Location", "InfoStampante/PortName",
      "InfoStampante/PrinterIP", "InfoStampante/PrinterIPToPing", "InfoStampante/Comment", "NumeroTarquel",
      "FronteRetro", "Colore", "Pinzatura", "EmulaFronteRetro", "TipoCopie", "Verifica", "ApiError", "ProcessId",
      "PercorsoFileOutput", "PercorsoPdf", "TimeOutPdf"}},
    {23, "SrvEmlPdfVm", "PxSrvEmlPdfVm", "", LavoratorePdf},
    {24, "SrvSmtp", "PxSrvSmtp", "",
     {"Notifica", "SocketError", "DefaultMailServer", "DefaultMailPort", "SSL", "DefaultMailDomain", "Encoding",
      "OAuth2/TokenDataScadenza", "OAuth2/TokenDataInizio", "OAuth2/TokenDataFine", "OAuth2/TokenException",
      "OAuth2/TokenDebug", "Notifica/Descrizione", "Notifica/DescrizioneNotificaEsitoUtente",
      "Notifica/NomeVisualizzatoAmministratore", "Notifica/IndirizzoEmailAmministratore",
      "Notifica/DescrizioneNotificaEsitoAmministratore", "IntervalloTrasmissione", "PausaSocketError",
      "NumeroTentativiInvio", "IntervalloTentativiInvio", "SrvBkgSmtpErroreCodice", "SrvBkgSmtpErroreDescrizione",
      "SocketError/WindowsSocketsErrorCodice", "SocketError/WindowsSocketsErrorDescrizione"}},
    {25, "SrvReportEmail", "PxSrvRprtEml", "", {"StampantePredefinita", "PercorsoCedolini"}},
    {26, "SrvTifVm", "PxSrvTifVm", "", {"EmulaFronteRetro"}},
    {27, "SrvFaxVm", "PxSrvFaxVm", "",
     {"Porta", "Porta/Colore", "Trasmissione", "InfoFaxModem", "InfoFaxModem/Porta", "InfoFaxModem/DescrizioneClasse",
      "InfoFaxModem/Modello", "InfoFaxModem/Costruttore", "IdLocale", "AccessoLineaInterurbana", "AccessoLineaUrbana",
      "PrefissoInternazionale", "PrefissoLocale", "ComposizioneConPause", "Porta/Dispositivo",
      "Porta/Errore/Descrizione", "Porta/TRMStatus", "Porta/ECM", "Porta/BFT", "Porta/PaginaMin/DescrizioneWidth",
      "Porta/PaginaMax/DescrizioneWidth", "Porta/PaginaMin/DescrizioneLength", "Porta/PaginaMax/DescrizioneLength",
      "Porta/CompressioneMin", "Porta/CompressioneMax", "Porta/RisoluzioneMin", "Porta/RisoluzioneMax",
      "Porta/Colore/DescrizioneGestione", "Porta/Colore/DescrizioneTipo", "Trasmissione/IntervalloTrasmissione",
      "Trasmissione/NumeroTentativiInvio", "Trasmissione/IntervalloTentativiInvio",
      "Trasmissione/NumeroTentativiDisattivazioneECM", "Trasmissione/Dispositivo", "Trasmissione/Errore/Descrizione",
      "Trasmissione/TRMStatus", "Trasmissione/ECM", "Trasmissione/BFT", "Trasmissione/Pagina/DescrizioneWidth",
      "Trasmissione/Pagina/DescrizioneLength", "Trasmissione/Compressione", "Trasmissione/Risoluzione",
      "Trasmissione/Colore/DescrizioneGestione", "Trasmissione/Colore/DescrizioneTipo", "Intestazione",
      "Intestazione/Attivata", "Intestazione/Altezza", "Intestazione/NomeCarattere",
      "Intestazione/DimensioneCarattere", "Intestazione/Sinistra", "Intestazione/Centrale", "Intestazione/Destra",
      "Speaker", "Speaker/DescrizioneSpeakerModo", "Speaker/DescrizioneSpeakerVolume"}},
    {28, "SrvReportFax", "PxSrvRprtFax", "", {"StampantePredefinita", "PercorsoCedolini"}},
    {29, "SrvNotificaFax", "PxSrvNtfcFax", "",
     {"Notifica", "PercorsoNotifiche", "Notifica/Descrizione", "Notifica/DescrizioneNotificaEsitoUtente",
      "Notifica/NomeVisualizzatoAmministratore", "Notifica/IndirizzoEmailAmministratore",
      "Notifica/DescrizioneNotificaEsitoAmministratore"}},
    {30, "SrvNeFax", "PxSrvNeFax", "", {"PercorsoNef", "TimeOutNef"}},
    {31, "SrvPblPdfVm", "PxSrvPblPdfVm", "", LavoratorePdf},
    {32, "SrvPblVm", "PxSrvPblVm", "", {"Output", "PercorsoPubblicazione"}},
    {33, "SrvPFaxVm", "PxSrvPFaxVm", "",
     {"NomeStampanteWindows", "InfoStampante", "InfoStampante/UsableDesc", "InfoStampante/Usable",
      "InfoStampante/StatusDesc", "InfoStampante/LastDateUsable", "InfoStampante/Jobs", "InfoStampante/DriverName",
      "InfoStampante/PrinterName", "InfoStampante/PortName", "EmulaFronteRetro", "Verifica", "ApiError",
      "ProcessId"}},
    {34, "SrvEFaxPdfVm", "PxSrvEFaxPdfVm", "", LavoratorePdf},
    {35, "SrvEFaxVm", "PxSrvEFaxVm", "", {"PercorsoPubblicazione"}},
    {36, "SrvFtpSrv", "PxSrvFtpSrv", "", {"IndirizzoLocale", "PortaLocale", "Utente", "Password", "PercorsoFtpRoot"}},
    {37, "SrvFtpCln", "PxSrvFtp", "FtpClients/FtpClient",
     {"Proxy", "Ip", "ConnessioneStato", "Passive", "Proxy/Host", "Proxy/Porta", "Proxy/Utente", "Proxy/TipoCodice",
      "Proxy/TipoDescrizione"}},
    {38, "SrvWebSrv", "PxSrvWebSrv", "", {"IndirizzoLocale", "PortaLocale", "MaxIdleTime", "PercorsoWebRoot"}},
};

// One demo server (no documents) shared by the tests of a suite.
class ConServerDemo
{
protected:
    static void CreaServer()
    {
        sCartella = std::make_unique<QTemporaryDir>();
        ASSERT_EQ(modDemo::CreaServerDemo(sCartella->path(), 0), QString());
        sServer = std::make_unique<RefServer>(sCartella->path(), RefServer::Opzioni{false});
    }
    static void ChiudiServer()
    {
        sServer.reset();
        sCartella.reset();
    }
    // The parsed state XML of `chiave`; an empty document when the server has no such object.
    static pugi::xml_document StatoXml(const char* chiave)
    {
        pugi::xml_document d;
        const RefServizio* s = sServer ? sServer->ServizioRef(QString::fromLatin1(chiave)) : nullptr;
        if (s) {
            EXPECT_TRUE(d.load_string(s->StatoXml().toUtf8().constData())) << chiave;
        }
        return d;
    }

    static inline std::unique_ptr<QTemporaryDir> sCartella;
    static inline std::unique_ptr<RefServer> sServer;
};

class DemoServiziLayout : public ::testing::TestWithParam<Layout>, protected ConServerDemo
{
protected:
    static void SetUpTestSuite() { CreaServer(); }
    static void TearDownTestSuite() { ChiudiServer(); }
};

class DemoServizi : public ::testing::Test, protected ConServerDemo
{
protected:
    static void SetUpTestSuite() { CreaServer(); }
    static void TearDownTestSuite() { ChiudiServer(); }
};

} // namespace

TEST_P(DemoServiziLayout, PublishesEveryElementTheSheetReads)
{
    const Layout& l = GetParam();
    const pugi::xml_document d = StatoXml(l.Chiave);
    const pugi::xml_node radice = d.document_element();
    ASSERT_STREQ(radice.name(), l.Chiave);
    std::vector<pugi::xml_node> nodi;
    if (*l.Elenco == '\0') {
        nodi.push_back(radice);
    } else {
        const std::string_view elenco(l.Elenco);
        const std::string lista(elenco.substr(0, elenco.rfind('/')));
        const std::string voce(elenco.substr(elenco.rfind('/') + 1));
        for (const pugi::xml_node n : radice.first_element_by_path(lista.c_str()).children(voce.c_str()))
            nodi.push_back(n);
        ASSERT_FALSE(nodi.empty()) << l.Elenco;
    }
    for (std::size_t i = 0; i < nodi.size(); ++i)
        for (const char* p : l.Percorsi)
            EXPECT_TRUE(nodi[i].first_element_by_path(p)) << l.Nodo << " (entry " << i << ") lacks " << p;
}

INSTANTIATE_TEST_SUITE_P(Layout, DemoServiziLayout, ::testing::ValuesIn(Layouts),
                         [](const ::testing::TestParamInfo<Layout>& i) {
                             return std::to_string(i.param.Numero) + "_" + i.param.Nodo;
                         });

TEST_F(DemoServizi, EveryServiceWorkerAndFolderHasASheet)
{
    for (const modCatalogo::VoceServizio& v : modCatalogo::Voci()) {
        bool trovato = false;
        for (const Layout& l : Layouts)
            trovato |= std::string_view(l.Chiave) == v.Chiave && *l.Elenco == '\0';
        EXPECT_TRUE(trovato) << v.Chiave;
    }
}

TEST_F(DemoServizi, PrintersCarryWhatTheirTestPageReads)
{
    const pugi::xml_document d = StatoXml("PxSrvStampe");
    int stampanti = 0;
    for (const pugi::xml_node s : d.document_element().child("Stampanti").children("Stampante")) {
        ++stampanti;
        for (const char* p : {"Modello/Codice", "NomeStampanteWindows", "InfoStampante/DriverName",
                              "InfoStampante/PortName", "Margini/Superiore", "Margini/Sinistro", "Margini/Destro",
                              "Margini/Inferiore", "NumeroTarquel"})
            EXPECT_TRUE(s.first_element_by_path(p)) << s.child_value("NomeStampanteWindows") << " lacks " << p;
    }
    EXPECT_GT(stampanti, 0);
}

TEST_F(DemoServizi, ListsOfAServiceKeepTheirEntriesApart)
{
    const pugi::xml_document d = StatoXml("PxSrvFax");
    int modem = 0;
    for (const pugi::xml_node m : d.document_element().child("InfoFaxModems").children("InfoFaxModem")) {
        ++modem;
        EXPECT_STRNE(m.child_value("Porta"), "");
        EXPECT_STRNE(m.child_value("Costruttore"), "");
    }
    EXPECT_EQ(modem, 2);
}
