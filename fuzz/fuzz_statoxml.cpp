// A service's state XML through the icon functions, as the tree computes its icons.
#include "PxErrore.h"
#include "PxIconResource.h"

#include <pugixml.hpp>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* dati, size_t quanti)
{
    pugi::xml_document doc;
    if (!doc.load_buffer(dati, quanti))
        return 0;
    const PxIconResource icone;
    const pugi::xml_node radice = doc.document_element();
    // A missing or malformed element raises a numbered error; anything else is a fault.
    const auto prova = [](auto&& f) {
        try {
            (void)f();
        } catch (const PxErrore&) {
        }
    };
    prova([&] { return PxIconResource::CodiceStato(radice); });
    prova([&] { return icone.IconaSrvFaxXml(radice); });
    prova([&] { return icone.IconaSrvEmlPdfVmXml(radice); });
    prova([&] { return icone.IconaSrvFtpSrvXml(radice); });
    for (const pugi::xml_node figlio : radice.children()) {
        for (const pugi::xml_node voce : figlio.children()) {
            prova([&] { return icone.IconaSrvStampanteXml(voce); });
            prova([&] { return icone.IconaSrvUtenteXml(voce); });
            prova([&] { return icone.IconaSrvFtpClnXml(voce); });
        }
    }
    return 0;
}
