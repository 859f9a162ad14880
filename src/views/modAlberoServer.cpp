#include "modAlberoServer.h"

#include "PxIconResource.h"

namespace modAlberoServer {

namespace {
using enum Genere;
using R = PxIconResource;
constexpr Nodo Tabella[] = {
    {"SrvServer", "", "", 200, Server, nullptr, nullptr, nullptr},
    {"SrvFormati", "PxSrvFormati", "SrvServer", 201, Servizio, &R::IconaSrvFormatiXml, nullptr, nullptr},
    {"SrvFirme", "PxSrvFirme", "SrvServer", 229, Servizio, &R::IconaSrvFirmeXml, nullptr, nullptr},
    {"SrvAnteprime", "PxSrvAnteprime", "SrvServer", 203, Servizio, &R::IconaSrvAnteprimeXml, nullptr, nullptr},
    {"SrvDocAnteprime", "PxSrvDocAnteprime", "SrvAnteprime", 207, Cartella, nullptr, nullptr, nullptr},
    {"SrvUtente", "PxSrvAnteprime", "SrvAnteprime", 0, Elenco, &R::IconaSrvUtenteXml, "Utenti", "KeyUtente"},
    {"SrvStampe", "PxSrvStampe", "SrvServer", 202, Servizio, &R::IconaSrvStampeXml, nullptr, nullptr},
    {"SrvDocStampe", "PxSrvDocStampe", "SrvStampe", 206, Cartella, nullptr, nullptr, nullptr},
    {"SrvStampante", "PxSrvStampe", "SrvStampe", 0, Elenco, &R::IconaSrvStampanteXml, "Stampanti", "Chiave"},
    {"SrvEmail", "PxSrvEmail", "SrvServer", 214, Servizio, &R::IconaSrvEmailXml, nullptr, nullptr},
    {"SrvDocEmail", "PxSrvDocEmail", "SrvEmail", 215, Cartella, nullptr, nullptr, nullptr},
    {"SrvEmlPdfVm", "PxSrvEmlPdfVm", "SrvEmail", 0, Servizio, &R::IconaSrvEmlPdfVmXml, nullptr, nullptr},
    {"SrvSmtp", "PxSrvSmtp", "SrvEmail", 216, Servizio, &R::IconaSrvSmtpXml, nullptr, nullptr},
    {"SrvReportEmail", "PxSrvRprtEml", "SrvEmail", 217, Servizio, &R::IconaSrvReportEmailXml, nullptr, nullptr},
    {"SrvFax", "PxSrvFax", "SrvServer", 211, Servizio, &R::IconaSrvFaxXml, nullptr, nullptr},
    {"SrvDocFax", "PxSrvDocFax", "SrvFax", 212, Cartella, nullptr, nullptr, nullptr},
    {"SrvTifVm", "PxSrvTifVm", "SrvFax", 218, Servizio, &R::IconaSrvTifVmXml, nullptr, nullptr},
    {"SrvFaxVm", "PxSrvFaxVm", "SrvFax", 219, Servizio, &R::IconaSrvFaxVmXml, nullptr, nullptr},
    {"SrvNeFax", "PxSrvNeFax", "SrvFax", 225, Servizio, &R::IconaSrvNeFaxXml, nullptr, nullptr},
    {"SrvReportFax", "PxSrvRprtFax", "SrvFax", 220, Servizio, &R::IconaSrvReportFaxXml, nullptr, nullptr},
    {"SrvNotificaFax", "PxSrvNtfcFax", "SrvFax", 221, Servizio, &R::IconaSrvNotificaFaxXml, nullptr, nullptr},
    {"SrvPFax", "PxSrvPFax", "SrvServer", 223, Servizio, &R::IconaSrvPFaxXml, nullptr, nullptr},
    {"SrvDocPFax", "PxSrvDocPFax", "SrvPFax", 224, Cartella, nullptr, nullptr, nullptr},
    {"SrvPFaxVm", "PxSrvPFaxVm", "SrvPFax", 0, Servizio, &R::IconaSrvPFaxVmXml, nullptr, nullptr},
    {"SrvEFax", "PxSrvEFax", "SrvServer", 231, Servizio, &R::IconaSrvEFaxXml, nullptr, nullptr},
    {"SrvDocEFax", "PxSrvDocEFax", "SrvEFax", 232, Cartella, nullptr, nullptr, nullptr},
    {"SrvEFaxPdfVm", "PxSrvEFaxPdfVm", "SrvEFax", 0, Servizio, &R::IconaSrvEFaxPdfVmXml, nullptr, nullptr},
    {"SrvEFaxVm", "PxSrvEFaxVm", "SrvEFax", 234, Servizio, &R::IconaSrvEFaxVmXml, nullptr, nullptr},
    {"SrvPbl", "PxSrvPbl", "SrvServer", 226, Servizio, &R::IconaSrvPblXml, nullptr, nullptr},
    {"SrvDocPbl", "PxSrvDocPbl", "SrvPbl", 227, Cartella, nullptr, nullptr, nullptr},
    {"SrvPblPdfVm", "PxSrvPblPdfVm", "SrvPbl", 0, Servizio, &R::IconaSrvPblPdfVmXml, nullptr, nullptr},
    {"SrvPblVm", "PxSrvPblVm", "SrvPbl", 228, Servizio, &R::IconaSrvPblVmXml, nullptr, nullptr},
    {"SrvFtp", "PxSrvFtp", "SrvServer", 205, Servizio, &R::IconaSrvFtpXml, nullptr, nullptr},
    {"SrvFtpSrv", "PxSrvFtpSrv", "SrvFtp", 209, Servizio, &R::IconaSrvFtpSrvXml, nullptr, nullptr},
    {"SrvFtpCln", "PxSrvFtp", "SrvFtp", 210, Elenco, &R::IconaSrvFtpClnXml, "FtpClients", "Key"},
    {"SrvImporta", "PxSrvImporta", "SrvServer", 204, Servizio, &R::IconaSrvImportaXml, nullptr, nullptr},
    {"SrvWebSrv", "PxSrvWebSrv", "SrvServer", 230, Servizio, &R::IconaSrvWebSrvXml, nullptr, nullptr},
    {"SrvWebUpdate", "PxSrvWebUpdate", "SrvServer", 213, Servizio, &R::IconaSrvWebUpdateXml, nullptr, nullptr},
};
} // namespace

std::span<const Nodo> Nodi() { return Tabella; }

} // namespace modAlberoServer
