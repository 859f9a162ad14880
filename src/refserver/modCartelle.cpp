#include "modCartelle.h"

namespace modCartelle {

namespace {

using G = GenereCartella;
constexpr Uscita No = Uscita::Nessuna, Pdf = Uscita::Pdf, Tif = Uscita::Tiff;

constexpr const char* ContaStampa[] = {"DaStampare", "InStampa", "Stampati", "Respinti", "Scartati"};
constexpr const char* ContaAnteprima[] = {"DaGenerare", "InGenerazione", "Generati", "Respinti", "Scartati"};
constexpr const char* ContaEmail[] = {"DaConvertire", "InConversione", "DaTrasmettere", "InTrasmissione", "DaStampare",
                                      "InStampa", "Trasmessi", "Respinti", "Scartati"};
constexpr const char* ContaFax[] = {"DaConvertire", "InConversione", "DaTrasmettere", "InTrasmissione", "DaStampare",
                                    "InStampa", "DaNotificare", "InNotifica", "Trasmessi", "Respinti", "Scartati",
                                    nullptr, "DaConfermare"};
constexpr const char* ContaPubblica[] = {"DaConvertire", "InConversione", "DaPubblicare", "InPubblicazione", "Pubblicati",
                                         "Respinti", "Scartati"};

constexpr Passo PassiStampa[] = {
    {0, 1, "PxSrvStampe", "Stampa dei documenti", No, false},
    {1, 2, "PxSrvStampe", "Stampa dei documenti", No, true},
};
constexpr Passo PassiAnteprima[] = {
    {0, 1, "PxSrvAnteprime", "Generazione delle anteprime", No, false},
    {1, 2, "PxSrvAnteprime", "Generazione delle anteprime", Pdf, true},
};
constexpr Passo PassiEmail[] = {
    {0, 1, "PxSrvEmlPdfVm", "Conversione in pdf", No, false},
    {1, 2, "PxSrvEmlPdfVm", "Conversione in pdf", Pdf, true},
    {2, 3, "PxSrvSmtp", "Trasmissione smtp", No, false},
    {3, 6, "PxSrvSmtp", "Trasmissione smtp", No, true},
    {4, 5, "PxSrvRprtEml", "Stampa dei cedolini", No, false},
    {5, 6, "PxSrvRprtEml", "Stampa dei cedolini", No, true},
};
// The fax stages: conversion, transmission, confirmation, report print, notification. A sent
// fax waits for its confirmation in queue 12, the queue the console shows in orange under the
// toggle the authors captioned "Da pubblicare"; queue 11, which no console shows, stays unused.
constexpr Passo PassiFax[] = {
    {0, 1, "PxSrvTifVm", "Conversione in tiff", No, false},
    {1, 2, "PxSrvTifVm", "Conversione in tiff", Tif, true},
    {2, 3, "PxSrvFaxVm", "Trasmissione fax", No, false},
    {3, 12, "PxSrvFaxVm", "Trasmissione fax", No, true},
    {12, 4, "PxSrvNeFax", "Attesa delle conferme", No, false},
    {4, 5, "PxSrvRprtFax", "Stampa dei rapporti", No, false},
    {5, 6, "PxSrvRprtFax", "Stampa dei rapporti", No, false},
    {6, 7, "PxSrvNtfcFax", "Invio delle notifiche", No, false},
    {7, 8, "PxSrvNtfcFax", "Invio delle notifiche", No, false},
};
constexpr Passo PassiPFax[] = {
    {0, 1, "PxSrvPFaxVm", "Stampa su printer fax", No, false},
    {1, 2, "PxSrvPFaxVm", "Stampa su printer fax", No, true},
};
constexpr Passo PassiEFax[] = {
    {0, 1, "PxSrvEFaxPdfVm", "Conversione in pdf", No, false},
    {1, 2, "PxSrvEFaxPdfVm", "Conversione in pdf", Pdf, true},
    {2, 3, "PxSrvEFaxVm", "Pubblicazione via email", No, false},
    {3, 4, "PxSrvEFaxVm", "Pubblicazione via email", No, true},
};
constexpr Passo PassiPbl[] = {
    {0, 1, "PxSrvPblPdfVm", "Conversione in pdf", No, false},
    {1, 2, "PxSrvPblPdfVm", "Conversione in pdf", Pdf, true},
    {2, 3, "PxSrvPblVm", "Pubblicazione", No, false},
    {3, 4, "PxSrvPblVm", "Pubblicazione", No, true},
};

Definizione Da(GenereCartella genere, const char* prefisso, const char* contatori,
               std::span<const char* const> nomi, std::span<const Passo> passi)
{
    const modTabellaCartelle::Cartella& c = modTabellaCartelle::Di(genere);
    return {genere, c.Chiave, c.Servizio, prefisso, contatori, nomi, static_cast<qint32>(c.Code.size()),
            c.CodaRespinti, c.CodaScartati, c.Colonne, passi};
}

const Definizione Tabella[] = {
    Da(G::Anteprima, "ANT", "Anteprime", ContaAnteprima, PassiAnteprima),
    Da(G::Stampa, "STP", "Stampe", ContaStampa, PassiStampa),
    Da(G::Email, "EML", "Email", ContaEmail, PassiEmail),
    Da(G::Fax, "FAX", "Fax", ContaFax, PassiFax),
    Da(G::PFax, "PFX", "Fax", ContaStampa, PassiPFax),
    Da(G::EFax, "EFX", "EFax", ContaPubblica, PassiEFax),
    Da(G::Pbl, "PBL", "Pbl", ContaPubblica, PassiPbl),
};

} // namespace

std::span<const Definizione> Cartelle() { return Tabella; }

const Definizione* Trova(QStringView chiave)
{
    for (const Definizione& d : Tabella)
        if (chiave == QLatin1StringView(d.Chiave))
            return &d;
    return nullptr;
}

const Definizione& Di(GenereCartella genere)
{
    for (const Definizione& d : Tabella)
        if (d.Genere == genere)
            return d;
    return Tabella[0];
}

} // namespace modCartelle
