#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// The PDF the reference server writes for e-mail, publication and fax-via-e-mail documents:
// plain text on A4 pages in Helvetica, no compression, no dates, so it is built in microseconds
// and the same text always gives the same bytes.
namespace modPdf {

// A PDF 1.4 with `titolo` in bold at the top of the first page and `righe` below it, at 10 pt,
// wrapped at the margin and flowing onto as many pages as needed; characters Windows-1252
// cannot show become '?'.
QByteArray Documento(const QString& titolo, const QStringList& righe);

} // namespace modPdf
