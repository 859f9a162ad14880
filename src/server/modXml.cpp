#include "modXml.h"

namespace modXml {

void Dichiara(pugi::xml_document& doc)
{
    pugi::xml_node dichiarazione = doc.append_child(pugi::node_declaration);
    dichiarazione.append_attribute("version") = "1.0";
    dichiarazione.append_attribute("encoding") = "UTF-8";
}

QByteArray Testo(const pugi::xml_document& doc)
{
    struct Scrittore : pugi::xml_writer
    {
        QByteArray Testo;
        void write(const void* dati, size_t n) override { Testo.append(static_cast<const char*>(dati), static_cast<qsizetype>(n)); }
    } scrittore;
    doc.save(scrittore, "", pugi::format_raw, pugi::encoding_utf8);
    return scrittore.Testo;
}

} // namespace modXml
