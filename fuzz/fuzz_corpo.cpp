// A print body from outside (any bytes) with any catalogue: to RTF, read back, prepared for the
// view. The RTF stays within a fixed multiple of the body, the coloured stretches stay in order and
// inside the text; a body with no marker, command or sequence comes back as itself (NUL as ø, line
// ends as "\n").
#include "PxVistaTesto.h"
#include "modCorpo.h"
#include "modCp1252.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void Controlla(bool vero)
{
    if (!vero)
        std::abort();
}

void ControllaTratti(const std::vector<modCorpo::Tratto>& tratti, qsizetype lunghezza)
{
    qsizetype fine = 0;
    for (const modCorpo::Tratto& t : tratti) {
        Controlla(t.Inizio >= fine && t.Inizio < t.Fine && t.Fine <= lunghezza);
        fine = t.Fine;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* dati, size_t quanti)
{
    const QByteArray tutto(reinterpret_cast<const char*>(dati), static_cast<qsizetype>(quanti));
    // Up to twenty sequences before the first 0xFE, split by 0xFF; the body after it.
    const qsizetype separatore = tutto.indexOf('\xFE');
    modCorpo::Catalogo c;
    QByteArray corpo = tutto;
    if (separatore >= 0) {
        const QList<QByteArray> sequenze = tutto.left(separatore).split('\xFF');
        for (qsizetype i = 0; i < sequenze.size() && i < 20; ++i)
            (i < 10 ? c.On[size_t(i)] : c.Off[size_t(i - 10)]) = sequenze[i].left(8);
        corpo = tutto.mid(separatore + 1);
    }
    // Whatever the catalogue holds, the RTF grows with the body: at most one marker
    // ("\cf1 \cf1 [%$GR1]\cf0 ", 22 bytes) a byte.
    const QByteArray rtf = modCorpo::Rtf(corpo, c);
    Controlla(rtf.size() <= modCorpo::Rtf({}, {}).size() + 22 * std::min(corpo.size(), modCorpo::Massimo));
    const modCorpo::Documento d = modCorpo::Leggi(rtf);
    ControllaTratti(d.Tratti, d.Testo.size());
    const PxVistaTesto::Contenuto v = PxVistaTesto::Prepara(d);
    ControllaTratti(v.Tratti, v.Testo.size());
    Controlla(static_cast<qsizetype>(v.Righe.size()) == d.Testo.count(u'\n') + 1);

    // Nothing to mark: the round trip through RTF gives the body back.
    if (separatore < 0 && !corpo.contains('%') && !corpo.contains('[')) {
        QByteArray atteso = corpo.left(modCorpo::Massimo);
        atteso.replace('\0', '\xF8');
        atteso.replace("\r\n", "\n");
        atteso.replace('\r', '\n');
        Controlla(d.Testo == modCp1252::Decodifica(atteso));
        Controlla(d.Tratti.empty());
    }
    return 0;
}
