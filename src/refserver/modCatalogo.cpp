#include "modCatalogo.h"

namespace modCatalogo {

namespace {
using enum Genere;
constexpr VoceServizio Catalogo[] = {
    // The server itself: its state and settings, for the root of the console's tree.
    {"PxSrvServer", "", Servizio, "Server"},
    {"PxSrvFormati", "", Servizio, "Formati immagini"},
    {"PxSrvFirme", "", Servizio, "Firme"},
    {"PxSrvAnteprime", "", Servizio, "Anteprime"},
    {"PxSrvDocAnteprime", "PxSrvAnteprime", Cartella, "Documenti anteprima"},
    {"PxSrvStampe", "", Servizio, "Stampe"},
    {"PxSrvDocStampe", "PxSrvStampe", Cartella, "Documenti stampa"},
    {"PxSrvEmail", "", Servizio, "Email"},
    {"PxSrvDocEmail", "PxSrvEmail", Cartella, "Documenti email"},
    {"PxSrvEmlPdfVm", "PxSrvEmail", Lavoratore, "Conversione pdf email"},
    {"PxSrvSmtp", "PxSrvEmail", Lavoratore, "Trasmissione smtp"},
    {"PxSrvRprtEml", "PxSrvEmail", Lavoratore, "Cedolini email"},
    {"PxSrvFax", "", Servizio, "Fax"},
    {"PxSrvDocFax", "PxSrvFax", Cartella, "Documenti fax"},
    {"PxSrvTifVm", "PxSrvFax", Lavoratore, "Conversione tiff"},
    {"PxSrvFaxVm", "PxSrvFax", Lavoratore, "Trasmissione fax"},
    {"PxSrvNeFax", "PxSrvFax", Lavoratore, "Conferme fax"},
    {"PxSrvRprtFax", "PxSrvFax", Lavoratore, "Cedolini fax"},
    {"PxSrvNtfcFax", "PxSrvFax", Lavoratore, "Notifiche fax"},
    {"PxSrvPFax", "", Servizio, "Printer fax"},
    {"PxSrvDocPFax", "PxSrvPFax", Cartella, "Documenti printer fax"},
    {"PxSrvPFaxVm", "PxSrvPFax", Lavoratore, "Stampa printer fax"},
    {"PxSrvEFax", "", Servizio, "Pubblicazione fax"},
    {"PxSrvDocEFax", "PxSrvEFax", Cartella, "Documenti pubblicazione fax"},
    {"PxSrvEFaxPdfVm", "PxSrvEFax", Lavoratore, "Conversione pdf pubblicazione fax"},
    {"PxSrvEFaxVm", "PxSrvEFax", Lavoratore, "Pubblicazione fax via email"},
    {"PxSrvPbl", "", Servizio, "Pubblicazioni"},
    {"PxSrvDocPbl", "PxSrvPbl", Cartella, "Documenti pubblicazione"},
    {"PxSrvPblPdfVm", "PxSrvPbl", Lavoratore, "Conversione pdf pubblicazioni"},
    {"PxSrvPblVm", "PxSrvPbl", Lavoratore, "Pubblicazione"},
    {"PxSrvFtp", "", Servizio, "Ftp"},
    {"PxSrvFtpSrv", "PxSrvFtp", Lavoratore, "Ftp server"},
    {"PxSrvImporta", "", Servizio, "Importazione file"},
    {"PxSrvWebSrv", "", Servizio, "Web server"},
    {"PxSrvWebUpdate", "", Servizio, "Web update"},
};
} // namespace

std::span<const VoceServizio> Voci() { return Catalogo; }

const VoceServizio* Trova(QStringView chiave)
{
    for (const VoceServizio& v : Catalogo)
        if (chiave == QLatin1StringView(v.Chiave))
            return &v;
    return nullptr;
}

QString DescrizioneStato(qint32 codice)
{
    switch (codice) {
    case 0: return QStringLiteral("Non configurato");
    case StatoArrestato: return QStringLiteral("Arrestato");
    case StatoErrore: return QStringLiteral("In errore");
    case StatoSospeso: return QStringLiteral("Sospeso");
    case StatoInFunzione: return QStringLiteral("In funzione");
    case 8: return QStringLiteral("Disabilitato");
    default: return QStringLiteral("Stato %1").arg(codice);
    }
}

} // namespace modCatalogo
