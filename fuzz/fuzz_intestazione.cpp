// The print-job header reader, on any bytes a client could drop into an input folder.
#include "PxIntestazioneHpx.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* dati, size_t quanti)
{
    PxIntestazioneHpx h;
    QString errore;
    if (h.Analizza(QByteArray(reinterpret_cast<const char*>(dati), static_cast<qsizetype>(quanti)), &errore)) {
        // What the server reads of a header that parsed.
        (void)h.Testo(QStringLiteral("PROPRIETA"), QStringLiteral("Descrizione"));
        (void)h.Intero(QStringLiteral("STAMPA"), QStringLiteral("Numero"));
        (void)h.Data(QStringLiteral("PROPRIETA"), QStringLiteral("Data"));
        (void)h.Serializza();
    }
    return 0;
}
