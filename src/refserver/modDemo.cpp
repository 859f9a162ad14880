#include "modDemo.h"

#include "RefServer.h"
#include "modCatalogo.h"

#include <pugixml.hpp>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace modDemo {

namespace {

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
};

// One printer of every model code, on every kind of port, some shared, one unusable,
// one stopped, and one whose Windows name holds ':' (as network printers' names can).
constexpr Stampante Stampanti[] = {
    {0, "Generica", "Generica testo", "Generic / Text Only", "LPT1:", 64, true, "", 4},
    {1, "Getto d'inchiostro", "Ufficio colori", "HP OfficeJet Pro 9020", "IP_192.168.10.21", 64, true, "192.168.10.21", 4},
    {2, "Etichette Datamax", "Etichette magazzino", "Datamax-O'Neil E-4205", "FILE:", 72, true, "", 4},
    {3, "Laser", "Laser amministrazione", "Kyocera ECOSYS P3145dn", "\\\\srvstampa\\laser-amm", 16, true, "", 4},
    {4, "Laser PCL", "Laser produzione", "HP LaserJet M507", "IP_192.168.10.34", 88, true, "192.168.10.34", 4},
    {5, "PostScript", "PostScript grafica", "Xerox VersaLink C7000", "IP_192.168.10.40", 64, true, "", 3},
    {6, "Pdf", "Pdf archivio", "Pelorix PDF", "PORTPROMPT:", 8, false, "", 4},
    {7, "Aghi", "Aghi bolle", "Epson LQ-690", "LPT2:", 64, true, "", 4},
    {8, "Etichette Zebra ZPL", "Zebra spedizioni", "ZDesigner ZT410-203dpi ZPL", "USB001", 64, true, "", 4},
    {9, "Pdf firmato", "Pdf firmati", "Pelorix PDF", "FILE:", 0, true, "", 4},
    {10, "Etichette Zebra EPL", "Zebra banco", "ZDesigner GK420d EPL", "\\\\srvstampa\\zebra-banco", 24, true, "", 4},
    {11, "Plotter", "Plotter ufficio tecnico", "HP DesignJet T650", "IP_192.168.10.60", 16, true, "", 2},
    {12, "Pdf pubblicazione", "Pdf pubblicazione", "Pelorix PDF", "FILE:", 8, true, "", 4},
    {8, "Etichette Toshiba TEC", "\\\\srvstampa\\TEC:B-EX4", "TOSHIBA B-EX4T1", "\\\\srvstampa\\tec", 16, true, "", 4},
};

void Testo(pugi::xml_node padre, const char* nome, const char* valore) { padre.append_child(nome).text().set(valore); }
void Numero(pugi::xml_node padre, const char* nome, long long valore) { padre.append_child(nome).text().set(valore); }

void Stato(pugi::xml_node padre, int codice)
{
    pugi::xml_node s = padre.append_child("Stato");
    Numero(s, "Codice", codice);
    Testo(s, "Descrizione", modCatalogo::DescrizioneStato(codice).toUtf8().constData());
}

void InfoStampante(pugi::xml_node padre, const char* nome, const char* driver, const char* porta, int attributi,
                   bool utilizzabile, const char* ipPing)
{
    pugi::xml_node info = padre.append_child("InfoStampante");
    Testo(info, "PrinterName", nome);
    Testo(info, "DriverName", driver);
    Testo(info, "PortName", porta);
    Numero(info, "Attributes", attributi);
    Testo(info, "Usable", utilizzabile ? "True" : "False");
    Testo(info, "UsableDesc", utilizzabile ? "Utilizzabile" : "Non utilizzabile");
    Testo(info, "StatusDesc", utilizzabile ? "Pronta" : "Non in linea");
    Testo(info, "PrinterIPToPing", ipPing);
    Testo(info, "Location", "Sede");
    Testo(info, "Comment", "");
    Numero(info, "Jobs", 0);
}

void Stampe(pugi::xml_node radice)
{
    Testo(radice, "AvvioStampantiMultiplo", "True");
    Numero(radice, "MaxJobsOpened", 8);
    pugi::xml_node elenco = radice.append_child("Stampanti");
    int numero = 1;
    for (const Stampante& s : Stampanti) {
        pugi::xml_node n = elenco.append_child("Stampante");
        Numero(n, "Chiave", numero);
        Numero(n, "NumeroTarquel", numero++);
        Testo(n, "NomeStampanteWindows", s.Nome);
        pugi::xml_node modello = n.append_child("Modello");
        Numero(modello, "Codice", s.Modello);
        Testo(modello, "Descrizione", s.ModelloDescrizione);
        Stato(n, s.Stato);
        InfoStampante(n, s.Nome, s.Driver, s.Porta, s.Attributi, s.Utilizzabile, s.IpPing);
    }
}

void LavoratorePdf(pugi::xml_node radice, const char* nome, const char* porta, int attributi)
{
    Testo(radice, "NomeStampanteWindows", nome);
    InfoStampante(radice, nome, "Pelorix PDF", porta, attributi, true, "");
}

void Anteprime(pugi::xml_node radice)
{
    Testo(radice, "IndirizzoInAscolto", "0.0.0.0");
    Numero(radice, "PortaInAscolto", 7701);
    pugi::xml_node utenti = radice.append_child("Utenti");
    struct Cliente { const char* Key; const char* Utente; int Pid; int StatoTcp; int Stato; };
    constexpr Cliente clienti[] = {
        {"U-0001", "mrossi (PC-AMM-01)", 4312, 2, 4},
        {"U-0002", "lbianchi (PC-MAG-07)", 1876, 2, 4},
        {"U-0003", "gverdi (PC-PROD-03)", 9021, 1, 3},
    };
    for (const Cliente& c : clienti) {
        pugi::xml_node n = utenti.append_child("Utente");
        Testo(n, "KeyUtente", c.Key);
        Testo(n, "Utente", c.Utente);
        Numero(n, "ProcessId", c.Pid);
        Stato(n, c.Stato);
        pugi::xml_node tcp = n.append_child("TcpConnessione");
        Stato(tcp, c.StatoTcp);
        pugi::xml_node info = n.append_child("ClientInfo");
        Testo(info, "Autenticato", c.StatoTcp == 2 ? "True" : "False");
    }
}

void Ftp(pugi::xml_node radice)
{
    pugi::xml_node clienti = radice.append_child("FtpClients");
    const char* ip[] = {"192.168.10.71", "192.168.10.88"};
    int k = 1;
    for (const char* i : ip) {
        pugi::xml_node n = clienti.append_child("FtpClient");
        Testo(n, "Ip", i);
        Numero(n, "Key", k++);
        Stato(n, 4);
    }
}

QString Scrivi(const QString& file, const QByteArray& dati)
{
    QFile f(file);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(dati) != dati.size())
        return QStringLiteral("Impossibile scrivere %1: %2").arg(file, f.errorString());
    return {};
}

} // namespace

bool EServer(const QString& cartella)
{
    return QFileInfo::exists(QDir(cartella).filePath(QStringLiteral("PlxConfigurazione.ini")))
        && QFileInfo(RefServer::CartellaServizi(cartella)).isDir();
}

QString CreaServerDemo(const QString& cartella, int documenti, quint64 seme)
{
    const QDir radice(cartella);
    if (!QDir().mkpath(RefServer::CartellaServizi(cartella)) || !QDir().mkpath(RefServer::CartellaLog(cartella)))
        return QStringLiteral("Impossibile creare la cartella %1").arg(cartella);

    const QByteArray ini =
        "; Configurazione dell'installazione\r\n"
        "[Console]\r\n"
        "EstenzioneFileZip=.pxz\r\n"
        "MostraStrumentiProcessi=0\r\n"
        "GraficoUsoCpu=1\r\n"
        "GraficoMemoriaFisica=1\r\n"
        "GraficoMemoriaPaginata=1\r\n"
        "VelocitaAggiorNamentoGrafico=1000\r\n"
        "\r\n"
        "[Server anteprime]\r\n"
        "IndirizzoPredefinito=127.0.0.1\r\n"
        "\r\n"
        "[Server di riferimento]\r\n"
        "IntervalloLavoro=2000\r\n"
        "PercentualeRespinti=5\r\n"
        "DocumentiPerPasso=3\r\n"
        "IntervalloIngresso=1000\r\n";
    if (QString errore = Scrivi(radice.filePath(QStringLiteral("PlxConfigurazione.ini")), ini); !errore.isEmpty())
        return errore;

    for (const modCatalogo::VoceServizio& voce : modCatalogo::Voci()) {
        pugi::xml_document doc;
        pugi::xml_node r = doc.append_child(voce.Chiave);
        const QLatin1StringView chiave(voce.Chiave);
        // Two services start suspended so that a fresh console shows both kinds of icon.
        Stato(r, chiave == QLatin1StringView("PxSrvRprtFax") || chiave == QLatin1StringView("PxSrvWebUpdate") ? 3 : 4);
        if (chiave == QLatin1StringView("PxSrvStampe"))
            Stampe(r);
        else if (chiave == QLatin1StringView("PxSrvAnteprime"))
            Anteprime(r);
        else if (chiave == QLatin1StringView("PxSrvFtp"))
            Ftp(r);
        else if (chiave == QLatin1StringView("PxSrvFtpSrv"))
            Testo(r, "IndirizzoLocale", "0.0.0.0:21");
        else if (chiave == QLatin1StringView("PxSrvEmlPdfVm"))
            LavoratorePdf(r, "Pelorix PDF Email", "FILE:", 8);
        else if (chiave == QLatin1StringView("PxSrvPblPdfVm"))
            LavoratorePdf(r, "Pelorix PDF Pubblicazione", "Ne01:", 0);
        else if (chiave == QLatin1StringView("PxSrvEFaxPdfVm"))
            LavoratorePdf(r, "Pelorix PDF Fax", "\\\\srvpdf\\efax", 16);
        else if (chiave == QLatin1StringView("PxSrvPFaxVm"))
            LavoratorePdf(r, "Pelorix Printer Fax", "FILE:", 0);
        const QString file = QDir(RefServer::CartellaServizi(cartella)).filePath(QString(chiave) + QStringLiteral(".xml"));
        if (!doc.save_file(file.toUtf8().constData(), "  ", pugi::format_indent, pugi::encoding_utf8))
            return QStringLiteral("Impossibile scrivere %1").arg(file);
    }
    return documenti > 0 ? CreaDocumentiDemo(cartella, documenti, seme) : QString();
}

} // namespace modDemo
