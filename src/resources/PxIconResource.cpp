#include "PxIconResource.h"

#include "IPxStatoServer.h"
#include "PxErrore.h"

#include <QString>

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <strings.h>

namespace {

using namespace modIcone;

pugi::xml_node Radice(const pugi::xml_node& nodo)
{
    if (nodo.type() != pugi::node_document)
        return nodo;
    return nodo.find_child([](const pugi::xml_node& n) { return n.type() == pugi::node_element; });
}

[[noreturn]] void Manca(const char* percorso)
{
    throw PxErrore(modErrori::ErrOggettoMancante, QStringLiteral("PxIconResource"),
                   modErrori::TestoErrore(modErrori::ErrOggettoMancante) + QStringLiteral(" (")
                       + QString::fromUtf8(percorso) + u')');
}

pugi::xml_node Figlio(const pugi::xml_node& nodo, const char* percorso)
{
    const pugi::xml_node trovato = Radice(nodo).select_node(percorso).node();
    if (!trovato)
        Manca(percorso);
    return trovato;
}

std::string_view Testo(const pugi::xml_node& nodo)
{
    std::string_view t = nodo.child_value();
    while (!t.empty() && std::isspace(static_cast<unsigned char>(t.front())))
        t.remove_prefix(1);
    while (!t.empty() && std::isspace(static_cast<unsigned char>(t.back())))
        t.remove_suffix(1);
    return t;
}

// A number as the runtime reads it: optional sign, digits, an optional fraction (rounded).
qint64 Numero(const pugi::xml_node& nodo)
{
    const std::string testo(Testo(nodo));
    if (!testo.empty()) {
        char* fine = nullptr;
        const double valore = std::strtod(testo.c_str(), &fine);
        if (fine && *fine == '\0' && std::isfinite(valore) && std::fabs(valore) < 9.2e18)
            return std::llround(valore);
    }
    throw PxErrore(modErrori::ErrTipoNonCorrispondente, QStringLiteral("PxIconResource"),
                   modErrori::TestoErrore(modErrori::ErrTipoNonCorrispondente) + QStringLiteral(" (")
                       + QString::fromUtf8(nodo.name()) + QStringLiteral(" = \"")
                       + QString::fromUtf8(testo.c_str()) + QStringLiteral("\")"));
}

// True, Vero, or a non-zero number.
bool Booleano(const pugi::xml_node& nodo)
{
    const std::string_view t = Testo(nodo);
    const auto uguale = [t](const char* parola) {
        return t.size() == std::strlen(parola) && strncasecmp(t.data(), parola, t.size()) == 0;
    };
    if (uguale("true") || uguale("vero"))
        return true;
    if (uguale("false") || uguale("falso"))
        return false;
    return Numero(nodo) != 0;
}

qint32 ConSegno(const pugi::xml_node& nodo, qint32 immagine)
{
    return PxIconResource::CodiceStato(nodo) == StatoInFunzione ? immagine : -immagine;
}

bool PortaFile(std::string_view porta)
{
    const auto uguale = [porta](const char* nome) {
        return porta.size() == std::strlen(nome) && strncasecmp(porta.data(), nome, porta.size()) == 0;
    };
    return uguale("FILE:") || uguale("PORTPROMPT:");
}

} // namespace

qint32 PxIconResource::CodiceStato(const pugi::xml_node& nodo)
{
    const qint64 codice = Numero(Figlio(nodo, "Stato/Codice"));
    return static_cast<qint32>(codice);
}

qint32 PxIconResource::IconaSrvServer(const IPxStatoServer& server) const
{
    return server.Stato() == StatoInFunzione ? Server : -Server;
}

qint32 PxIconResource::IconaSrvStampanteXml(const pugi::xml_node& nodo) const
{
    qint32 immagine = 1000;
    switch (Numero(Figlio(nodo, "Modello/Codice"))) {
    case 1: immagine = 1300; break;
    case 2: case 8: case 10: immagine = 1400; break;
    case 3: case 4: immagine = 1100; break;
    case 6: case 9: case 12: immagine = 1500; break;
    case 7: immagine = 1200; break;
    case 11: immagine = 1600; break;
    default: break;
    }
    const pugi::xml_node info = Figlio(nodo, "InfoStampante");
    const qint64 attributi = Numero(Figlio(info, "Attributes"));
    if (PortaFile(Testo(Figlio(info, "PortName"))))
        immagine += 3;
    else if (attributi & AttributoRete)
        immagine += 2;
    else if ((attributi & AttributoLocale) && !Testo(info.child("PrinterIPToPing")).empty())
        immagine += 1;
    if (attributi & AttributoCondivisa)
        immagine += 10;
    if (!Booleano(Figlio(info, "Usable")))
        immagine += 20;
    return ConSegno(nodo, immagine);
}

namespace {

qint32 IconaStampantePdf(const pugi::xml_node& nodo)
{
    qint32 immagine = StampantePdf;
    const pugi::xml_node info = Figlio(nodo, "InfoStampante");
    const std::string_view porta = Testo(Figlio(info, "PortName"));
    const qint64 attributi = Numero(Figlio(info, "Attributes"));
    if (PortaFile(porta))
        immagine = StampantePdf + 3;
    else if (porta.substr(0, 2) == "\\\\")
        immagine = StampantePdf + 2;
    else if (attributi & AttributoRete)
        immagine = StampantePdf + 1;
    if (attributi & AttributoCondivisa)
        immagine += 10;
    if (!Booleano(Figlio(info, "Usable")))
        immagine += 20;
    return ConSegno(nodo, immagine);
}

} // namespace

qint32 PxIconResource::IconaSrvUtenteXml(const pugi::xml_node& nodo) const
{
    const pugi::xml_node radice = Radice(nodo);
    qint32 immagine = ClienteNonConnesso;
    if (const pugi::xml_node tcp = radice.child("TcpConnessione")) {
        if (CodiceStato(tcp) == 2)
            immagine = ClienteConnesso;
    } else if (const pugi::xml_node info = radice.child("ClientInfo")) {
        if (Booleano(Figlio(info, "Autenticato")))
            immagine = ClienteConnesso;
    }
    return ConSegno(nodo, immagine);
}

qint32 PxIconResource::StatoSrvServer(const IPxStatoServer& server) const { return server.Stato(); }

// The fixed icons: a constant image, signed by the state.
#define PX_ICONA_FISSA(membro, immagine) \
    qint32 PxIconResource::membro(const pugi::xml_node& nodo) const { return ConSegno(nodo, immagine); }
PX_ICONA_FISSA(IconaSrvFormatiXml, Formati)
PX_ICONA_FISSA(IconaSrvFirmeXml, Firme)
PX_ICONA_FISSA(IconaSrvPblXml, Pbl)
PX_ICONA_FISSA(IconaSrvPblVmXml, PblVm)
PX_ICONA_FISSA(IconaSrvTifVmXml, TifVm)
PX_ICONA_FISSA(IconaSrvFaxVmXml, FaxVm)
PX_ICONA_FISSA(IconaSrvPFaxVmXml, PFaxVm)
PX_ICONA_FISSA(IconaSrvSmtpXml, Smtp)
PX_ICONA_FISSA(IconaSrvReportEmailXml, ReportEmail)
PX_ICONA_FISSA(IconaSrvReportFaxXml, ReportFax)
PX_ICONA_FISSA(IconaSrvNotificaFaxXml, NotificaFax)
PX_ICONA_FISSA(IconaSrvFtpXml, Ftp)
PX_ICONA_FISSA(IconaSrvFtpSrvXml, FtpSrv)
PX_ICONA_FISSA(IconaSrvFtpClnXml, FtpCln)
PX_ICONA_FISSA(IconaSrvStampeXml, Stampe)
PX_ICONA_FISSA(IconaSrvEmailXml, Email)
PX_ICONA_FISSA(IconaSrvFaxXml, Fax)
PX_ICONA_FISSA(IconaSrvPFaxXml, PFax)
PX_ICONA_FISSA(IconaSrvAnteprimeXml, Anteprime)
PX_ICONA_FISSA(IconaSrvNeFaxXml, NeFax)
PX_ICONA_FISSA(IconaSrvImportaXml, Importa)
PX_ICONA_FISSA(IconaSrvWebSrvXml, WebSrv)
PX_ICONA_FISSA(IconaSrvWebUpdateXml, WebUpdate)
PX_ICONA_FISSA(IconaSrvEFaxXml, EFax)
PX_ICONA_FISSA(IconaSrvEFaxVmXml, EFaxVm)
#undef PX_ICONA_FISSA

qint32 PxIconResource::IconaSrvEmlPdfVmXml(const pugi::xml_node& nodo) const { return IconaStampantePdf(nodo); }
qint32 PxIconResource::IconaSrvPblPdfVmXml(const pugi::xml_node& nodo) const { return IconaStampantePdf(nodo); }
qint32 PxIconResource::IconaSrvEFaxPdfVmXml(const pugi::xml_node& nodo) const { return IconaStampantePdf(nodo); }

// Every state member returns the code as it stands.
#define PX_STATO(membro) \
    qint32 PxIconResource::membro(const pugi::xml_node& nodo) const { return CodiceStato(nodo); }
PX_STATO(StatoSrvFormati)
PX_STATO(StatoSrvFirme)
PX_STATO(StatoSrvEmlPdfVmXml)
PX_STATO(StatoSrvPblXml)
PX_STATO(StatoSrvPblPdfVmXml)
PX_STATO(StatoSrvPblVmXml)
PX_STATO(StatoSrvEFaxXml)
PX_STATO(StatoSrvEFaxPdfVmXml)
PX_STATO(StatoSrvEFaxVmXml)
PX_STATO(StatoSrvTifVmXml)
PX_STATO(StatoSrvFaxVmXml)
PX_STATO(StatoSrvPFaxVmXml)
PX_STATO(StatoSrvSmtpXml)
PX_STATO(StatoSrvReportEmailXml)
PX_STATO(StatoSrvReportFaxXml)
PX_STATO(StatoSrvNotificaFaxXml)
PX_STATO(StatoSrvStampanteXml)
PX_STATO(StatoSrvUtenteXml)
PX_STATO(StatoSrvFtpXml)
PX_STATO(StatoSrvFtpSrvXml)
PX_STATO(StatoSrvFtpClnXml)
PX_STATO(StatoSrvStampeXml)
PX_STATO(StatoSrvEmailXml)
PX_STATO(StatoSrvFaxXml)
PX_STATO(StatoSrvPFaxXml)
PX_STATO(StatoSrvAnteprimeXml)
PX_STATO(StatoSrvNeFaxXml)
PX_STATO(StatoSrvImportaXml)
PX_STATO(StatoSrvWebSrvXml)
PX_STATO(StatoSrvWebUpdateXml)
#undef PX_STATO
