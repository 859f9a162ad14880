#pragma once

#include "DatiDocumento.h"

#include <QString>
#include <QStringView>

#include <pugixml.hpp>

#include <optional>

// A document's description (<id>.xml): root "Documento" with attributes Id and Tipo, and under
// "Proprieta" every element that the console's property sheet of the kind shows, in sheet order.
// docs/documents.md lists the element paths of each kind.
namespace modProprieta {

// Fills the empty element `documento` from `d`; file paths point into `cartellaDocumento`.
// The same record and folder always give the same XML.
void Scrivi(pugi::xml_node documento, const DatiDocumento& d, const QString& cartellaDocumento);

// Reads back into `d` every field that Scrivi wrote. False (with `d` unspecified) when the root is
// not "Documento", its Id is empty or its Tipo is not a kind's name; missing elements read as defaults.
bool Leggi(const pugi::xml_node& documento, DatiDocumento& d);

// The code of the language the description gives `d` (Specifiche/Lingua/Codice): "IT", "EN", "DE", "FR".
QString CodiceLingua(const DatiDocumento& d);

// The kind's name as written in the attribute Tipo: "Stampa", "Email", "Fax", "PFax", "EFax", "Pbl", "Anteprima".
const char* NomeGenere(GenereCartella g);
// The kind named `nome` (exact case), if any.
std::optional<GenereCartella> GenereDaNome(QStringView nome);

// The caption of queue `coda` of the kind's folder; "Coda n" for a number the kind does not have.
QString DescrizioneCoda(GenereCartella g, qint32 coda);
// How many queues the kind's folder has.
qint32 NumeroCode(GenereCartella g);

} // namespace modProprieta
