#pragma once

#include <pugixml.hpp>

#include <QtGlobal>

class IPxStatoServer;

// Turns a component's state into its icon number: the absolute value names the image,
// the sign tells whether the component runs (Stato/Codice = 4) or not. Every member is
// a pure function of its argument: a state node (the root element of a component's state
// XML, or its document) or, for the server, the server object. A missing element or a
// non-numeric code raises PxErrore (91 missing, 13 not a number).
//
// The members stand in the order of the class's published interface.
class PxIconResource
{
public:
    qint32 IconaSrvServer(const IPxStatoServer& server) const;
    qint32 IconaSrvFormatiXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvFirmeXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvEmlPdfVmXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvPblXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvPblPdfVmXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvPblVmXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvEFaxPdfVmXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvTifVmXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvFaxVmXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvPFaxVmXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvSmtpXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvReportEmailXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvReportFaxXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvNotificaFaxXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvStampanteXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvUtenteXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvFtpXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvFtpSrvXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvFtpClnXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvStampeXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvEmailXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvFaxXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvPFaxXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvAnteprimeXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvNeFaxXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvImportaXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvWebSrvXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvWebUpdateXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvServer(const IPxStatoServer& server) const;
    qint32 StatoSrvFormati(const pugi::xml_node& nodo) const;
    qint32 StatoSrvFirme(const pugi::xml_node& nodo) const;
    qint32 StatoSrvEmlPdfVmXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvPblXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvPblPdfVmXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvPblVmXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvEFaxXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvEFaxPdfVmXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvEFaxVmXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvTifVmXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvFaxVmXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvPFaxVmXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvSmtpXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvReportEmailXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvReportFaxXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvNotificaFaxXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvStampanteXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvUtenteXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvFtpXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvFtpSrvXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvFtpClnXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvStampeXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvEmailXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvFaxXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvPFaxXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvEFaxXml(const pugi::xml_node& nodo) const;
    qint32 IconaSrvEFaxVmXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvAnteprimeXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvNeFaxXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvImportaXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvWebSrvXml(const pugi::xml_node& nodo) const;
    qint32 StatoSrvWebUpdateXml(const pugi::xml_node& nodo) const;

    // The state code of a state node: Stato/Codice as an integer.
    static qint32 CodiceStato(const pugi::xml_node& nodo);
};

// Image numbers of the fixed icons, and the bits of a printer's Windows attributes.
namespace modIcone {
inline constexpr qint32 Server = 200, Formati = 201, Firme = 202, Anteprime = 210, Stampe = 220,
                        Email = 230, Smtp = 232, ReportEmail = 233, Fax = 240, TifVm = 242, FaxVm = 243,
                        ReportFax = 244, NotificaFax = 245, NeFax = 246, PFax = 250, PFaxVm = 252, Pbl = 260,
                        PblVm = 262, Ftp = 270, FtpSrv = 271, FtpCln = 272, Importa = 280, WebSrv = 281,
                        WebUpdate = 282, EFax = 290, EFaxVm = 293;
inline constexpr qint32 CartellaDocumenti = 299; // document-folder nodes of the server tree
inline constexpr qint32 ClienteConnesso = 900, ClienteNonConnesso = 901;
inline constexpr qint32 LivelloLog = 100;        // + level 0..3
inline constexpr qint32 StampantePdf = 1500;     // PDF workers' virtual printers
inline constexpr qint32 StatoInFunzione = 4;
inline constexpr qint64 AttributoCondivisa = 8, AttributoRete = 16, AttributoLocale = 64;
} // namespace modIcone
