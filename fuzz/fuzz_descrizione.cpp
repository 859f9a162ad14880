// A document's description, as the server reads it from disk at every start.
#include "DatiDocumento.h"
#include "modProprieta.h"

#include <pugixml.hpp>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* dati, size_t quanti)
{
    pugi::xml_document doc;
    if (!doc.load_buffer(dati, quanti))
        return 0;
    DatiDocumento d;
    if (modProprieta::Leggi(doc.document_element(), d))
        (void)modProprieta::DescrizioneCoda(d.Genere, d.Coda);
    return 0;
}
