#pragma once

#include <QString>

// The demo's page formats and e-mail signatures: fixed content, one XML file per object.
namespace modDemo {

// Writes the front pages, back pages and fax cover sheets into `<cartellaServer>/Formati/` and
// the e-mail signatures into `<cartellaServer>/Firme/`, each as `<Key>.xml`. Returns "" or what
// went wrong.
QString CreaFormatiDemo(const QString& cartellaServer);

} // namespace modDemo
