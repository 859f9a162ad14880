// The demo's service configurations. Most settings are rows of (path, text) per service; the
// lists whose entries are nodes of the server tree (printers, connected clients, FTP clients)
// and the PDF workers are built from their own tables.

#include "modDemoServizi.h"

#include "modCatalogo.h"

#include <span>
#include <string>
#include <string_view>

namespace modDemo {

namespace {

// A setting: `Percorso` is "a/b/c" under the root; a step written "+name" starts a new entry
// of a list, the other steps reuse the last element of that name.
struct Valore
{
    const char* Percorso;
    const char* Testo;
};

struct Configurazione
{
    const char* Chiave;
    std::span<const Valore> Valori;
};

// Document folders: minutes a document stays in a final queue before it is deleted.
constexpr Valore DocAnteprime[] = {
    {"Anteprime/TimeOut/Generati", "60"}, {"Anteprime/TimeOut/Respinti", "1440"}, {"Anteprime/TimeOut/Scartati", "1440"}};
constexpr Valore DocStampe[] = {
    {"Stampe/TimeOut/Stampati", "4320"}, {"Stampe/TimeOut/Respinti", "10080"}, {"Stampe/TimeOut/Scartati", "10080"}};
constexpr Valore DocEmail[] = {
    {"Email/TimeOut/Trasmessi", "10080"}, {"Email/TimeOut/Respinti", "10080"}, {"Email/TimeOut/Scartati", "20160"}};
constexpr Valore DocFax[] = {{"Fax/Output", "Modem"},
                             {"Fax/TimeOut/Trasmessi", "10080"},
                             {"Fax/TimeOut/Respinti", "10080"},
                             {"Fax/TimeOut/Scartati", "20160"}};
constexpr Valore DocPFax[] = {
    {"Fax/TimeOut/Stampati", "4320"}, {"Fax/TimeOut/Respinti", "10080"}, {"Fax/TimeOut/Scartati", "10080"}};
constexpr Valore DocEFax[] = {
    {"EFax/TimeOut/Pubblicati", "10080"}, {"EFax/TimeOut/Respinti", "10080"}, {"EFax/TimeOut/Scartati", "20160"}};
constexpr Valore DocPbl[] = {
    {"Pbl/TimeOut/Pubblicati", "43200"}, {"Pbl/TimeOut/Respinti", "10080"}, {"Pbl/TimeOut/Scartati", "20160"}};

constexpr Valore Server[] = {{"LinguaPredefinita", "Italiano"},
                             {"ArchiviaEliminati", "True"},
                             {"StampantiInutilizzabili/RimuoviAutomaticamente", "False"},
                             {"StampantiInutilizzabili/RimuoviDopoGiorni", "30"}};

constexpr Valore Formati[] = {{"SrvFormati/PubblicazioneDatabase", "202611201730"}};
constexpr Valore Firme[] = {{"PubblicazioneDatabase", "202611181245"}};

constexpr Valore Anteprime[] = {
    {"SrvTcpTrasmissione/IndirizzoInAscolto", "0.0.0.0"},
    {"SrvTcpTrasmissione/PortaInAscolto", "7701"},
    {"SrvTcpTrasmissione/ConnessioniAttive", "3"},
    {"TerminalServer", "False"},
    {"PxNetPreviewLocal/NomeServer", "SRVPELORIX"},
    {"PxNetPreviewLocal/Enabled", "True"},
    {"PxNetPreviewLocal/ServerUrl", "http://srvpelorix:5080/PxNetPreview"},
    {"PxNetPreviewLocal/VirtualUpload", "/PxNetPreview/Upload"},
    {"PxNetPreviewLocal/SrvSignalR/Connected", "True"},
    {"PxNetPreviewLocal/SrvSignalR/ConnessioniAttive", "2"},
    {"PxNetPreviewLocal/SrvSignalR/Errore/Codice", "0"},
    {"PxNetPreviewLocal/SrvSignalR/Errore/Descrizione", ""},
    {"PxNetPreviewLocal/SrvSignalR/FileLog", "D:\\Pelorix\\Log\\PxNetPreviewLocal.log"},
    {"PxNetPreviewGlobal/Enabled", "False"},
    {"PxNetPreviewGlobal/ServerUrl", "https://anteprime.example.it/PxNetPreview"},
    {"PxNetPreviewGlobal/VirtualUpload", "/PxNetPreview/Upload"},
    {"PxNetPreviewGlobal/SrvSignalR/Connected", "False"},
    {"PxNetPreviewGlobal/SrvSignalR/ConnessioniAttive", "0"},
    {"PxNetPreviewGlobal/SrvSignalR/Errore/Codice", "0"},
    {"PxNetPreviewGlobal/SrvSignalR/Errore/Descrizione", ""},
    {"PxNetPreviewGlobal/SrvSignalR/FileLog", "D:\\Pelorix\\Log\\PxNetPreviewGlobal.log"},
};

constexpr Valore Stampe[] = {
    {"AvvioStampantiMultiplo", "True"},
    {"MaxJobsOpened", "8"},
    {"JobsAperti", "0"},
    {"PercorsoTxtOutput", "D:\\Pelorix\\Pubblicazione\\Txt"},
    {"PercorsoPdfOutput", "D:\\Pelorix\\Pubblicazione\\Pdf"},
    {"PercorsoPdf", "D:\\Pelorix\\PortaPdf\\Stampe"},
    {"TimeOutPdf", "120"},
};

constexpr Valore Email[] = {{"StampantePredefinita", "Laser amministrazione"},
                            {"PercorsoPdf", "D:\\Pelorix\\PortaPdf\\Email"}};

constexpr Valore Smtp[] = {
    {"DefaultMailServer", "smtp.office365.com"},
    {"DefaultMailPort", "587"},
    {"SSL", "STARTTLS"},
    {"DefaultMailDomain", "azienda.it"},
    {"Encoding", "utf-8"},
    {"OAuth2/TokenDataScadenza", "22/11/2026 09:12:40"},
    {"OAuth2/TokenDataInizio", "22/11/2026 08:12:38"},
    {"OAuth2/TokenDataFine", "22/11/2026 08:12:40"},
    {"OAuth2/TokenException", ""},
    {"OAuth2/TokenDebug", "False"},
    {"Notifica/Codice", "1"},
    {"Notifica/Descrizione", "Al mittente del messaggio"},
    {"Notifica/DescrizioneNotificaEsitoUtente", "Trasmessi e respinti"},
    {"Notifica/NomeVisualizzatoAmministratore", "Amministratore Pelorix"},
    {"Notifica/IndirizzoEmailAmministratore", "pelorix.admin@azienda.it"},
    {"Notifica/DescrizioneNotificaEsitoAmministratore", "Solo respinti"},
    {"Plugin/ConfermaLettura", "Attivo"},
    {"IntervalloTrasmissione", "2"},
    {"PausaSocketError", "30"},
    {"NumeroTentativiInvio", "3"},
    {"IntervalloTentativiInvio", "5"},
    {"SrvBkgSmtpErroreCodice", "0"},
    {"SrvBkgSmtpErroreDescrizione", ""},
    {"SocketError/WindowsSocketsErrorCodice", "10060"},
    {"SocketError/WindowsSocketsErrorDescrizione", "Timeout della connessione (WSAETIMEDOUT)"},
};

constexpr Valore ReportEmail[] = {{"StampantePredefinita", "Laser amministrazione"},
                                  {"PercorsoCedolini", "D:\\Pelorix\\Cedolini\\Email"}};

constexpr Valore Fax[] = {
    {"InfoFaxModems/+InfoFaxModem/Porta", "COM3"},
    {"InfoFaxModems/InfoFaxModem/DescrizioneClasse", "1, 2, 2.0"},
    {"InfoFaxModems/InfoFaxModem/Modello", "USR5637"},
    {"InfoFaxModems/InfoFaxModem/Costruttore", "U.S. Robotics"},
    {"InfoFaxModems/+InfoFaxModem/Porta", "COM4"},
    {"InfoFaxModems/InfoFaxModem/DescrizioneClasse", "1, 2"},
    {"InfoFaxModems/InfoFaxModem/Modello", "MT5634ZBA"},
    {"InfoFaxModems/InfoFaxModem/Costruttore", "Multi-Tech Systems"},
    {"Output", "Modem"},
    {"PercorsoPubblicazioneRiepilogo", "D:\\Pelorix\\Fax\\Riepiloghi"},
    {"PercorsoPubblicazioneFax", "D:\\Pelorix\\Fax\\Pubblicati"},
    // The clients' languages of the cover pages, by the code the jobs carry.
    {"Lingue/+Lingua/Codice", "0"}, {"Lingue/Lingua/Descrizione", "Italiano"},
    {"Lingue/+Lingua/Codice", "1"}, {"Lingue/Lingua/Descrizione", "Inglese"},
    {"Lingue/+Lingua/Codice", "2"}, {"Lingue/Lingua/Descrizione", "Francese"},
    {"Lingue/+Lingua/Codice", "3"}, {"Lingue/Lingua/Descrizione", "Tedesco"},
    {"Lingue/+Lingua/Codice", "5"}, {"Lingue/Lingua/Descrizione", "Spagnolo"},
};

constexpr Valore TifVm[] = {{"EmulaFronteRetro", "False"}};

// The modem a fax worker drives: what the port can do ("Porta") and what the last call used.
constexpr Valore FaxVm[] = {
    {"InfoFaxModem/Porta", "COM3"},
    {"InfoFaxModem/DescrizioneClasse", "1, 2, 2.0"},
    {"InfoFaxModem/Modello", "USR5637"},
    {"InfoFaxModem/Costruttore", "U.S. Robotics"},
    {"IdLocale", "+39 0422 555100"},
    {"AccessoLineaInterurbana", "0"},
    {"AccessoLineaUrbana", "0"},
    {"PrefissoInternazionale", "39"},
    {"PrefissoLocale", "0422"},
    {"ComposizioneConPause", "True"},
    {"Porta/Dispositivo", "COM3"},
    {"Porta/Errore/Codice", "0"},
    {"Porta/Errore/Descrizione", ""},
    {"Porta/TRMStatus", "Pronto"},
    {"Porta/ECM", "True"},
    {"Porta/BFT", "False"},
    {"Porta/PaginaMin/DescrizioneWidth", "A4 (215 mm)"},
    {"Porta/PaginaMin/DescrizioneLength", "A4 (297 mm)"},
    {"Porta/PaginaMax/DescrizioneWidth", "B4 (255 mm)"},
    {"Porta/PaginaMax/DescrizioneLength", "Illimitata"},
    {"Porta/CompressioneMin", "MH (1D)"},
    {"Porta/CompressioneMax", "MMR (T.6)"},
    {"Porta/RisoluzioneMin", "Normale (204x98 dpi)"},
    {"Porta/RisoluzioneMax", "Fine (204x196 dpi)"},
    {"Porta/Colore/DescrizioneGestione", "Non supportato"},
    {"Porta/Colore/DescrizioneTipo", "Bianco e nero"},
    {"Trasmissione/IntervalloTrasmissione", "5"},
    {"Trasmissione/NumeroTentativiInvio", "3"},
    {"Trasmissione/IntervalloTentativiInvio", "10"},
    {"Trasmissione/NumeroTentativiDisattivazioneECM", "2"},
    {"Trasmissione/Dispositivo", "COM3"},
    {"Trasmissione/Errore/Codice", "0"},
    {"Trasmissione/Errore/Descrizione", ""},
    {"Trasmissione/TRMStatus", "Inattivo"},
    {"Trasmissione/ECM", "True"},
    {"Trasmissione/BFT", "False"},
    {"Trasmissione/Pagina/DescrizioneWidth", "A4 (215 mm)"},
    {"Trasmissione/Pagina/DescrizioneLength", "A4 (297 mm)"},
    {"Trasmissione/Compressione", "MR (2D)"},
    {"Trasmissione/Risoluzione", "Fine (204x196 dpi)"},
    {"Trasmissione/Colore/DescrizioneGestione", "Non supportato"},
    {"Trasmissione/Colore/DescrizioneTipo", "Bianco e nero"},
    {"Intestazione/Attivata", "True"},
    {"Intestazione/Altezza", "12"},
    {"Intestazione/NomeCarattere", "Courier New"},
    {"Intestazione/DimensioneCarattere", "9"},
    {"Intestazione/Sinistra", "%DATA% %ORA%"},
    {"Intestazione/Centrale", "Ufficio spedizioni"},
    {"Intestazione/Destra", "Pag. %PAGINA%/%PAGINE%"},
    {"Speaker/DescrizioneSpeakerModo", "Acceso fino alla connessione"},
    {"Speaker/DescrizioneSpeakerVolume", "Basso"},
};

constexpr Valore NeFax[] = {{"PercorsoNef", "D:\\Pelorix\\Fax\\Conferme"}, {"TimeOutNef", "30"}};
constexpr Valore ReportFax[] = {{"StampantePredefinita", "Laser amministrazione"},
                                {"PercorsoCedolini", "D:\\Pelorix\\Cedolini\\Fax"}};
constexpr Valore NotificaFax[] = {
    {"PercorsoNotifiche", "D:\\Pelorix\\Fax\\Notifiche"},
    {"Notifica/Codice", "1"},
    {"Notifica/Descrizione", "All'utente che ha inviato il fax"},
    {"Notifica/DescrizioneNotificaEsitoUtente", "Trasmessi e respinti"},
    {"Notifica/NomeVisualizzatoAmministratore", "Amministratore Pelorix"},
    {"Notifica/IndirizzoEmailAmministratore", "pelorix.admin@azienda.it"},
    {"Notifica/DescrizioneNotificaEsitoAmministratore", "Solo respinti"},
};

constexpr Valore EFaxVm[] = {{"PercorsoPubblicazione", "D:\\Pelorix\\Fax\\Email"}};
constexpr Valore Pbl[] = {{"PercorsoPdf", "D:\\Pelorix\\PortaPdf\\Pubblicazioni"},
                          {"PercorsoPubblicazione", "\\\\srvfile\\Documenti\\Pubblicati"}};
constexpr Valore PblVm[] = {{"Output", "Cartella"}, {"PercorsoPubblicazione", "\\\\srvfile\\Documenti\\Pubblicati"}};
constexpr Valore FtpSrv[] = {{"IndirizzoLocale", "0.0.0.0:21"},
                             {"PortaLocale", "21"},
                             {"Utente", "pelorix"},
                             {"Password", "********"},
                             {"PercorsoFtpRoot", "D:\\Pelorix\\Ftp"}};
constexpr Valore Importa[] = {{"PercorsiHpx", "D:\\Pelorix\\Importazione\\Hpx"}};
constexpr Valore WebSrv[] = {{"IndirizzoLocale", "0.0.0.0"},
                             {"PortaLocale", "8080"},
                             {"MaxIdleTime", "20"},
                             {"PercorsoWebRoot", "D:\\Pelorix\\Web"}};
constexpr Valore WebUpdate[] = {{"VersioneInstallataEstesa", "5.8.2.1140"},
                                {"PercorsoPubblicazioneAggiornamenti", "\\\\srvfile\\Pelorix\\Aggiornamenti"},
                                {"VersioneAggiornamentoQorvMsi", "5.8.2.1140"},
                                {"VersioneAggiornamentoQorvMsp", "5.8.3.1152"}};

constexpr Configurazione Configurazioni[] = {
    {"PxSrvServer", Server},
    {"PxSrvFormati", Formati},         {"PxSrvFirme", Firme},          {"PxSrvAnteprime", Anteprime},
    {"PxSrvDocAnteprime", DocAnteprime}, {"PxSrvStampe", Stampe},      {"PxSrvDocStampe", DocStampe},
    {"PxSrvEmail", Email},             {"PxSrvDocEmail", DocEmail},    {"PxSrvSmtp", Smtp},
    {"PxSrvRprtEml", ReportEmail},     {"PxSrvFax", Fax},              {"PxSrvDocFax", DocFax},
    {"PxSrvTifVm", TifVm},             {"PxSrvFaxVm", FaxVm},          {"PxSrvNeFax", NeFax},
    {"PxSrvRprtFax", ReportFax},       {"PxSrvNtfcFax", NotificaFax},  {"PxSrvDocPFax", DocPFax},
    {"PxSrvDocEFax", DocEFax},         {"PxSrvEFaxVm", EFaxVm},        {"PxSrvPbl", Pbl},
    {"PxSrvDocPbl", DocPbl},           {"PxSrvPblVm", PblVm},          {"PxSrvFtpSrv", FtpSrv},
    {"PxSrvImporta", Importa},         {"PxSrvWebSrv", WebSrv},        {"PxSrvWebUpdate", WebUpdate},
};

struct Margini
{
    int Superiore, Sinistro, Destro, Inferiore; // millimetres
};

struct Stampante
{
    int Modello;
    const char* ModelloDescrizione;
    const char* Nome;
    const char* Driver;
    const char* Porta;
    int Attributi;
    bool Utilizzabile;
    const char* IpPing;
    int Stato;
    bool FronteRetro, Colore, Pinzatura;
    Margini Bordi;
};

// One printer of every model code, on every kind of port, some shared, one unusable,
// one stopped, and one whose Windows name holds ':' (as network printers' names can). The
// label printers carry the codes of their languages (1 Datamax DPL, 2 Zebra ZPL II, 8 Zebra
// EPL2, 10 Toshiba TEC), so that each one's test page is in its own language.
constexpr Stampante Stampanti[] = {
    {0, "Generica", "Generica testo", "Generic / Text Only", "LPT1:", 64, true, "", 4, false, false, false, {0, 0, 0, 0}},
    {5, "Getto d'inchiostro", "Ufficio colori", "HP OfficeJet Pro 9020", "IP_192.168.10.21", 64, true, "192.168.10.21", 4,
     true, true, false, {3, 3, 3, 3}},
    {1, "Etichette Datamax", "Etichette magazzino", "Datamax-O'Neil E-4205", "FILE:", 72, true, "", 4, false, false, false,
     {1, 1, 1, 1}},
    {3, "Laser", "Laser amministrazione", "Kyocera ECOSYS P3145dn", "\\\\srvstampa\\laser-amm", 16, true, "", 4, true,
     false, false, {4, 4, 4, 4}},
    {4, "Laser PCL", "Laser produzione", "HP LaserJet M507", "IP_192.168.10.34", 88, true, "192.168.10.34", 4, true, false,
     false, {4, 4, 4, 4}},
    {13, "PostScript", "PostScript grafica", "Xerox VersaLink C7000", "IP_192.168.10.40", 64, true, "", 3, true, true, true,
     {4, 4, 4, 4}},
    {6, "Pdf", "Pdf archivio", "Pelorix PDF", "PORTPROMPT:", 8, false, "", 4, false, true, false, {0, 0, 0, 0}},
    {7, "Aghi", "Aghi bolle", "Epson LQ-690", "LPT2:", 64, true, "", 4, false, false, false, {2, 3, 3, 2}},
    {2, "Etichette Zebra ZPL", "Zebra spedizioni", "ZDesigner ZT410-203dpi ZPL", "USB001", 64, true, "", 4, false, false,
     false, {1, 1, 1, 1}},
    {9, "Pdf firmato", "Pdf firmati", "Pelorix PDF", "FILE:", 0, true, "", 4, false, true, false, {0, 0, 0, 0}},
    {8, "Etichette Zebra EPL", "Zebra banco", "ZDesigner GK420d EPL", "\\\\srvstampa\\zebra-banco", 24, true, "", 4, false,
     false, false, {1, 1, 1, 1}},
    {11, "Plotter", "Plotter ufficio tecnico", "HP DesignJet T650", "IP_192.168.10.60", 16, true, "", 2, false, true, false,
     {5, 5, 5, 17}},
    {12, "Pdf pubblicazione", "Pdf pubblicazione", "Pelorix PDF", "FILE:", 8, true, "", 4, false, true, false, {0, 0, 0, 0}},
    {10, "Etichette Toshiba TEC", "\\\\srvstampa\\TEC:B-EX4", "TOSHIBA B-EX4T1", "\\\\srvstampa\\tec", 16, true, "", 4, false,
     false, false, {1, 1, 1, 1}},
};

// The PDF and printer-fax workers: each drives one Windows printer.
struct Lavoratore
{
    const char* Chiave;
    const char* Nome;
    const char* Porta;
    int Attributi;
    int ProcessId;
    bool Pdf; // waits for the PDF the printer writes
};

constexpr Lavoratore Lavoratori[] = {
    {"PxSrvEmlPdfVm", "Pelorix PDF Email", "FILE:", 8, 3384, true},
    {"PxSrvPblPdfVm", "Pelorix PDF Pubblicazione", "Ne01:", 0, 3412, true},
    {"PxSrvEFaxPdfVm", "Pelorix PDF Fax", "\\\\srvpdf\\efax", 16, 3440, true},
    {"PxSrvPFaxVm", "Pelorix Printer Fax", "FILE:", 0, 3468, false},
};

// The element at `percorso` under `radice`, created when missing (see Valore).
pugi::xml_node Nodo(pugi::xml_node radice, std::string_view percorso)
{
    pugi::xml_node n = radice;
    while (!percorso.empty()) {
        const size_t fine = percorso.find('/');
        std::string nome(percorso.substr(0, fine));
        percorso = fine == std::string_view::npos ? std::string_view() : percorso.substr(fine + 1);
        const bool nuovo = nome.front() == '+';
        if (nuovo)
            nome.erase(0, 1);
        pugi::xml_node figlio = nuovo ? pugi::xml_node() : n.last_child();
        if (figlio && nome != figlio.name())
            figlio = figlio.previous_sibling(nome.c_str());
        n = figlio ? figlio : n.append_child(nome.c_str());
    }
    return n;
}

void Testo(pugi::xml_node padre, const char* nome, const char* valore) { padre.append_child(nome).text().set(valore); }
void Numero(pugi::xml_node padre, const char* nome, long long valore) { padre.append_child(nome).text().set(valore); }
void Booleano(pugi::xml_node padre, const char* nome, bool valore) { Testo(padre, nome, valore ? "True" : "False"); }

void Stato(pugi::xml_node padre, int codice, const char* descrizione = nullptr)
{
    pugi::xml_node s = padre.append_child("Stato");
    Numero(s, "Codice", codice);
    if (descrizione)
        Testo(s, "Descrizione", descrizione);
    else
        Testo(s, "Descrizione", modCatalogo::DescrizioneStato(codice).toUtf8().constData());
}

// What a list entry (printer, client, FTP client) is doing, and its last error (none).
void AttivitaErrore(pugi::xml_node padre, const char* attivita)
{
    Testo(padre.append_child("Attivita"), "Descrizione", attivita);
    pugi::xml_node errore = padre.append_child("Errore");
    Numero(errore, "Codice", 0);
    Testo(errore, "Descrizione", "");
}

void InfoStampante(pugi::xml_node padre, const char* nome, const char* driver, const char* porta, int attributi,
                   bool utilizzabile, const char* ipPing)
{
    constexpr std::string_view prefissoIp = "IP_";
    const std::string_view p(porta);
    pugi::xml_node info = padre.append_child("InfoStampante");
    Testo(info, "PrinterName", nome);
    Testo(info, "DriverName", driver);
    Testo(info, "PortName", porta);
    Numero(info, "Attributes", attributi);
    Booleano(info, "Usable", utilizzabile);
    Testo(info, "UsableDesc", utilizzabile ? "Utilizzabile" : "Non utilizzabile");
    Testo(info, "StatusDesc", utilizzabile ? "Pronta" : "Non in linea");
    Testo(info, "LastDateUsable", utilizzabile ? "22/11/2026 07:58:12" : "14/11/2026 18:02:40");
    Testo(info, "PrinterIP", p.starts_with(prefissoIp) ? std::string(p.substr(prefissoIp.size())).c_str() : "");
    Testo(info, "PrinterIPToPing", ipPing);
    Testo(info, "Location", "Sede");
    Testo(info, "Comment", "");
    Numero(info, "Jobs", 0);
}

void ElencoStampanti(pugi::xml_node radice)
{
    pugi::xml_node elenco = radice.append_child("Stampanti");
    int numero = 1;
    int inFunzione = 0;
    for (const Stampante& s : Stampanti) {
        pugi::xml_node n = elenco.append_child("Stampante");
        Numero(n, "Chiave", numero);
        Numero(n, "NumeroTarquel", numero);
        Testo(n, "NomeStampanteWindows", s.Nome);
        pugi::xml_node modello = n.append_child("Modello");
        Numero(modello, "Codice", s.Modello);
        Testo(modello, "Descrizione", s.ModelloDescrizione);
        Stato(n, s.Stato);
        AttivitaErrore(n, s.Stato == modCatalogo::StatoInFunzione ? "In attesa di documenti" : "");
        InfoStampante(n, s.Nome, s.Driver, s.Porta, s.Attributi, s.Utilizzabile, s.IpPing);
        Booleano(n, "FronteRetro", s.FronteRetro);
        Booleano(n, "Colore", s.Colore);
        Booleano(n, "Pinzatura", s.Pinzatura);
        Booleano(n, "EmulaFronteRetro", false);
        Testo(n, "TipoCopie", "Driver");
        Booleano(n, "Verifica", true);
        Numero(n, "ApiError", 0);
        Numero(n, "ProcessId", 5120 + 4 * numero);
        Testo(n, "PercorsoFileOutput", "D:\\Pelorix\\Stampe\\File");
        Testo(n, "PercorsoPdfOutput", "D:\\Pelorix\\Pubblicazione\\Pdf");
        Testo(n, "PercorsoPdf", "D:\\Pelorix\\PortaPdf\\Stampe");
        Numero(n, "TimeOutPdf", 120);
        pugi::xml_node margini = n.append_child("Margini");
        Numero(margini, "Superiore", s.Bordi.Superiore);
        Numero(margini, "Sinistro", s.Bordi.Sinistro);
        Numero(margini, "Destro", s.Bordi.Destro);
        Numero(margini, "Inferiore", s.Bordi.Inferiore);
        inFunzione += s.Stato == modCatalogo::StatoInFunzione ? 1 : 0;
        ++numero;
    }
    Numero(radice, "StampantiInFunzione", inFunzione);
}

void ElencoUtenti(pugi::xml_node radice)
{
    struct Cliente
    {
        const char* Key;
        const char* Utente;
        int Pid;
        int StatoTcp; // 2: connected and authenticated
        int Stato;
        const char* Ip;
        int Porta, Socket;
        const char* Versione;
        bool Invia, Emula, Compressione;
    };
    constexpr Cliente clienti[] = {
        {"U-0001", "mrossi (PC-AMM-01)", 4312, 2, 4, "192.168.10.101", 50212, 1248, "5.8.2.1140", true, false, true},
        {"U-0002", "lbianchi (PC-MAG-07)", 1876, 2, 4, "192.168.10.117", 50388, 1312, "5.8.2.1140", true, true, true},
        {"U-0003", "gverdi (PC-PROD-03)", 9021, 1, 3, "192.168.10.133", 49871, 1376, "5.7.9.1098", false, false, false},
    };
    pugi::xml_node utenti = radice.append_child("Utenti");
    for (const Cliente& c : clienti) {
        const bool connesso = c.StatoTcp == 2;
        pugi::xml_node n = utenti.append_child("Utente");
        Testo(n, "KeyUtente", c.Key);
        Testo(n, "Utente", c.Utente);
        Numero(n, "ProcessId", c.Pid);
        Stato(n, c.Stato);
        AttivitaErrore(n, connesso ? "Collegato" : "In attesa di autenticazione");
        pugi::xml_node tcp = n.append_child("TcpConnessione");
        Stato(tcp, c.StatoTcp, connesso ? "Connesso" : "In attesa di autenticazione");
        Testo(tcp.append_child("Attivita"), "Descrizione", connesso ? "In attesa di richieste" : "Autenticazione");
        pugi::xml_node errore = tcp.append_child("Errore");
        Numero(errore, "Codice", 0);
        Testo(errore, "Descrizione", "");
        Testo(tcp, "StatoConnessione", connesso ? "Connessa" : "Aperta");
        Testo(tcp, "IndirizzoRemoto", c.Ip);
        Numero(tcp, "PortaRemota", c.Porta);
        Numero(tcp, "Socket", c.Socket);
        Testo(tcp, "VersioneClient", c.Versione);
        Testo(tcp, "VersioneProtocollo", "3");
        pugi::xml_node info = n.append_child("ClientInfo");
        Booleano(info, "Autenticato", connesso);
        Booleano(info, "InviaDocumento", c.Invia);
        Booleano(info, "EmulaFronteRetro", c.Emula);
        Booleano(info, "UsaCompressione", c.Compressione);
    }
}

void ElencoClientiFtp(pugi::xml_node radice)
{
    struct ClienteFtp
    {
        const char* Ip;
        const char* Connessione;
        bool Passivo;
        const char* ProxyHost;
        const char* ProxyPorta;
        const char* ProxyUtente;
        int ProxyTipo;
        const char* ProxyTipoDescrizione;
    };
    constexpr ClienteFtp clienti[] = {
        {"192.168.10.71", "Connesso", true, "", "", "", 0, "Nessun proxy"},
        {"192.168.10.88", "Trasferimento in corso", false, "proxy.sede.lan", "8021", "ftpgw", 2, "USER utente@host"},
    };
    pugi::xml_node elenco = radice.append_child("FtpClients");
    int k = 1;
    for (const ClienteFtp& c : clienti) {
        pugi::xml_node n = elenco.append_child("FtpClient");
        Testo(n, "Ip", c.Ip);
        Numero(n, "Key", k++);
        Stato(n, modCatalogo::StatoInFunzione);
        AttivitaErrore(n, c.Connessione);
        Testo(n, "ConnessioneStato", c.Connessione);
        Booleano(n, "Passive", c.Passivo);
        pugi::xml_node proxy = n.append_child("Proxy");
        Testo(proxy, "Host", c.ProxyHost);
        Testo(proxy, "Porta", c.ProxyPorta);
        Testo(proxy, "Utente", c.ProxyUtente);
        Numero(proxy, "TipoCodice", c.ProxyTipo);
        Testo(proxy, "TipoDescrizione", c.ProxyTipoDescrizione);
    }
}

void LavoratoreStampante(pugi::xml_node radice, const Lavoratore& l)
{
    Testo(radice, "NomeStampanteWindows", l.Nome);
    InfoStampante(radice, l.Nome, "Pelorix PDF", l.Porta, l.Attributi, true, "");
    if (l.Pdf) {
        Numero(radice, "IntervalloPresenzaPdf", 500);
        Numero(radice, "TimeOutPdf", 120);
    }
    Booleano(radice, "EmulaFronteRetro", false);
    Booleano(radice, "Verifica", true);
    Numero(radice, "ApiError", 0);
    Numero(radice, "ProcessId", l.ProcessId);
}

} // namespace

void ConfigurazioneServizio(pugi::xml_node radice, const char* chiave)
{
    const std::string_view k(chiave);
    // A service and a worker start suspended so that a fresh console shows both kinds of icon;
    // neither moves documents, so every queue of the demo drains while it runs.
    Stato(radice, k == "PxSrvFtpSrv" || k == "PxSrvWebUpdate" ? modCatalogo::StatoSospeso : modCatalogo::StatoInFunzione);
    for (const Configurazione& c : Configurazioni)
        if (k == c.Chiave)
            for (const Valore& v : c.Valori)
                Nodo(radice, v.Percorso).text().set(v.Testo);
    for (const Lavoratore& l : Lavoratori)
        if (k == l.Chiave)
            LavoratoreStampante(radice, l);
    if (k == "PxSrvStampe")
        ElencoStampanti(radice);
    else if (k == "PxSrvAnteprime")
        ElencoUtenti(radice);
    else if (k == "PxSrvFtp")
        ElencoClientiFtp(radice);
}

} // namespace modDemo
