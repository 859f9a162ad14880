// The form a job travels in to ConsegnaLavoro, on any bytes a console could send: a job that
// reads is one a writer would make again, and reads again the same.
#include "modPacchettoLavoro.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* dati, size_t quanti)
{
    const auto file = modPacchettoLavoro::Leggi(QByteArray(reinterpret_cast<const char*>(dati), static_cast<qsizetype>(quanti)));
    if (!file)
        return 0;
    const auto ancora = modPacchettoLavoro::Leggi(modPacchettoLavoro::Componi(*file));
    if (!ancora || ancora->size() != file->size())
        std::abort();
    for (size_t i = 0; i < file->size(); ++i)
        if (std::strcmp((*ancora)[i].Estensione, (*file)[i].Estensione) != 0 || (*ancora)[i].Dati != (*file)[i].Dati)
            std::abort();
    return 0;
}
