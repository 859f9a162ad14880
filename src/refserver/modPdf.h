#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// The PDF the reference server writes for e-mail, publication and fax-via-e-mail documents:
// text on A4 pages drawn with cairo in DejaVu Sans, the font embedded as a subset, the
// streams compressed, every character the font has kept (Italian, Latin-extended, the euro
// sign). Cairo was chosen over QPdfWriter because it needs no GUI session: the server stays
// Qt Core only, as it must to run as a daemon later. The creation date is fixed, so the same
// text always gives the same bytes.
namespace modPdf {

// `titolo` in bold at the top of the first page and `righe` below it, at 10 pt, wrapped at
// the margin and flowing onto as many pages as needed. Empty when cairo fails.
QByteArray Documento(const QString& titolo, const QStringList& righe);

} // namespace modPdf
