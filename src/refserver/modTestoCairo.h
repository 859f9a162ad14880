#pragma once

#include <QStringList>

typedef struct _cairo cairo_t;

// Text laid out with cairo, shared by the PDF and fax writers.
namespace modTestoCairo {

// The advance of `testo` in the font `cr` has selected.
double Larghezza(cairo_t* cr, const QString& testo);
// `righe` wrapped at `larghezza`: cut at spaces, or anywhere in a word wider than that.
QStringList Spezza(cairo_t* cr, const QStringList& righe, double larghezza);

} // namespace modTestoCairo
