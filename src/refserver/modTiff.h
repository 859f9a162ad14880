#pragma once

#include <QByteArray>
#include <QStringList>

// The TIFF the reference server writes for fax documents: bilevel pages at fine fax
// resolution (1728 × 2200 dots at 204 × 196 dpi, about 215 × 285 mm), CCITT Group 4 as fax
// machines exchange them, written with libtiff; the text is drawn by cairo in DejaVu Sans
// Mono, so accents and every Latin letter show. The same call gives the same bytes.
namespace modTiff {

inline constexpr int LarghezzaFax = 1728, AltezzaFax = 2200;
inline constexpr int RisoluzioneX = 204, RisoluzioneY = 196;

// A multi-page TIFF of `pagine` pages (clamped to 1..1000): `righe` flow from the first page
// on, wrapped at the margin, what does not fit is left out; each page ends with "Pagina n di
// m". Empty when libtiff or cairo fails.
QByteArray Fax(const QStringList& righe, int pagine);

} // namespace modTiff
