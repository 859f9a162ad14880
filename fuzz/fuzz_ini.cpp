// The installation ini reader, on any bytes (UTF-8 or not, any line ends).
#include "PxLettoreIni.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* dati, size_t quanti)
{
    const PxLettoreIni ini = PxLettoreIni::DaDati(QByteArray(reinterpret_cast<const char*>(dati), static_cast<qsizetype>(quanti)));
    (void)ini.Stringa(QStringLiteral("Console"), QStringLiteral("EstenzioneFileZip"), QStringLiteral(".pxz"), 1024);
    (void)ini.Booleano(QStringLiteral("Console"), QStringLiteral("MostraStrumentiProcessi"), false);
    (void)ini.Intero(QStringLiteral("Server di riferimento"), QStringLiteral("IntervalloLavoro"), 2000);
    return 0;
}
