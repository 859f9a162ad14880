#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

// Windows-1252, the single-byte code of the files written "with Unicode off" on the platform
// the product comes from (installation ini files, print-job bodies).
namespace modCp1252 {

QString Decodifica(QByteArrayView dati);
// Characters the code lacks become "?".
QByteArray Codifica(const QString& testo);

} // namespace modCp1252
