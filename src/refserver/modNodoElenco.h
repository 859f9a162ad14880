#pragma once

#include "DatiDocumento.h"
#include "modCartelle.h"

#include <QByteArray>

// A folder's listing as its consoles read it: per queue, a <D> node for each document, its
// fields as <F> in the folder's column order, then its linked documents under <C>.
namespace modNodoElenco {

// Appends the listing node of `d`, a document of a folder defined by `def`.
void Appendi(QByteArray& out, const DatiDocumento& d, const modCartelle::Definizione& def);

} // namespace modNodoElenco
