#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>

#include <array>

// The TIFF the reference server writes for fax documents: bilevel pages at fine fax resolution
// (1728 × 2200 dots at 204 × 196 dpi, about 215 × 285 mm), PackBits compressed, the text drawn
// with a built-in bitmap font. Nothing depends on time or place, so the same call gives the same bytes.
namespace modTiff {

inline constexpr quint32 LarghezzaFax = 1728, AltezzaFax = 2200;

// A little-endian multi-page TIFF of `pagine` pages (clamped to 1..1000): `righe` flow from the
// first page on, wrapped at the margin, what does not fit is left out; each page ends with "Pagina n di m".
QByteArray Fax(const QStringList& righe, int pagine);

struct Pagina
{
    quint32 Larghezza, Altezza;
};

// Width and height of every page of `tiff`, in order; empty when it is not a TIFF or is malformed
// (a directory or a page's single strip past the end, a page without a size, a loop in the chain).
QList<Pagina> LeggiPagine(const QByteArray& tiff);

// The 5 × 8 bitmap the fax pages draw `c` with: rows top down, the last one below the baseline,
// bit 4 the leftmost dot.
// Accented letters without a glyph of their own fall back to their base letter, the rest to '?'.
const std::array<quint8, 8>& Glifo(char16_t c);

} // namespace modTiff
