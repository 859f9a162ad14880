#pragma once

#include <QByteArray>

#include <pugixml.hpp>

// What every XML document the console and the server write shares.
namespace modXml {

// Opens an empty document with <?xml version="1.0" encoding="UTF-8"?>.
void Dichiara(pugi::xml_document& doc);
// The document as UTF-8 text, without indentation.
QByteArray Testo(const pugi::xml_document& doc);

} // namespace modXml
