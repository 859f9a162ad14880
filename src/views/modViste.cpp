#include "modViste.h"

#include "clsSrvViste.h"

namespace modViste {

namespace {

template <typename Vista>
std::unique_ptr<clsSrvVista> Fai(PxAmbienteVista& ambiente, const QString& chiave)
{
    return std::make_unique<Vista>(ambiente, chiave);
}

struct Voce
{
    const char* Chiave;
    std::unique_ptr<clsSrvVista> (*Crea)(PxAmbienteVista&, const QString&);
};

// Node key (before any "|entry") to its view; a node not named here has clsSrvNessuno.
constexpr Voce Tabella[] = {
    {"SrvDocStampe", &Fai<clsSrvDocStampe>},
    {"SrvDocEmail", &Fai<clsSrvDocEmail>},
    {"SrvDocFax", &Fai<clsSrvDocFax>},
    {"SrvDocPFax", &Fai<clsSrvDocPFax>},
    {"SrvDocEFax", &Fai<clsSrvDocEFax>},
    {"SrvDocPbl", &Fai<clsSrvDocPbl>},
    {"SrvDocAnteprime", &Fai<clsSrvDocAnteprime>},
    {"SrvServer", &Fai<clsSrvServer>},
    {"SrvFax", &Fai<clsSrvFax>},
    {"SrvEmail", &Fai<clsSrvEmail>},
    {"SrvEFax", &Fai<clsSrvEFax>},
    {"SrvPFax", &Fai<clsSrvPFax>},
    {"SrvPbl", &Fai<clsSrvPbl>},
    {"SrvStampe", &Fai<clsSrvStampe>},
    {"SrvAnteprime", &Fai<clsSrvAnteprime>},
    {"SrvFtp", &Fai<clsSrvFtp>},
    {"SrvWebUpdate", &Fai<clsSrvWebUpdate>},
    {"SrvStampante", &Fai<clsSrvStampante>},
    {"SrvUtente", &Fai<clsSrvUtente>},
    {"SrvFaxVm", &Fai<clsSrvFaxVm>},
    {"SrvTifVm", &Fai<clsSrvTifVm>},
    {"SrvSmtp", &Fai<clsSrvSmtp>},
    {"SrvReportFax", &Fai<clsSrvReportFax>},
    {"SrvNotificaFax", &Fai<clsSrvNotificaFax>},
    {"SrvEmlPdfVm", &Fai<clsSrvEmlPdfVm>},
    {"SrvEFaxPdfVm", &Fai<clsSrvEFaxPdfVm>},
    {"SrvEFaxVm", &Fai<clsSrvEFaxVm>},
    {"SrvPFaxVm", &Fai<clsSrvPFaxVm>},
    {"SrvPblVm", &Fai<clsSrvPblVm>},
    {"SrvPblPdfVm", &Fai<clsSrvPblPdfVm>},
    {"SrvReportEmail", &Fai<clsSrvReportEmail>},
    {"SrvNeFax", &Fai<clsSrvNeFax>},
    {"SrvFormati", &Fai<clsSrvFormati>},
    {"SrvFirme", &Fai<clsSrvFirme>},
};

} // namespace

std::unique_ptr<clsSrvVista> Crea(PxAmbienteVista& ambiente, const QString& chiave)
{
    const QString base = chiave.section(u'|', 0, 0);
    for (const Voce& v : Tabella)
        if (base == QLatin1StringView(v.Chiave))
            return v.Crea(ambiente, chiave);
    return Fai<clsSrvNessuno>(ambiente, chiave);
}

} // namespace modViste
