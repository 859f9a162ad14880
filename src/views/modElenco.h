#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <string_view>
#include <utility>
#include <vector>

class PxModelloContenuto;
namespace pugi { class xml_node; }

// The listing of a folder turned into rows of the content list, and one document node (a
// notice) read into cells. The server's element names are never examined: the queues are the
// root's children named "Coda_<n>", a document's fields are read by position.
namespace modElenco {

// Per queue number: whether a full listing shows it, and its rows' colour.
struct Code
{
    std::function<bool(int coda)> Mostra;
    std::function<quint32(int coda)> Colore;
};

struct Esito
{
    bool Letto = false;   // false: the text did not parse, the list is empty
    qsizetype Righe = 0;
    qsizetype Errati = 0; // document nodes skipped for too few fields
};

// The queue number of "Coda_<n>"; -1 for any other name.
int NumeroCoda(std::string_view nome);

// One document node: cell k = field k for the model's columns, and its linked documents
// (id, description) from the container after them. False when the node has too few fields.
struct Nodo
{
    std::vector<std::string_view> Celle;
    std::vector<std::pair<std::string_view, std::string_view>> Collegati;
};
bool LeggiNodo(const pugi::xml_node& documento, int colonne, Nodo& nodo);

// Replaces the model's rows with the listing's. The queues that `code` hides are cut before
// any row is made; a document with too few fields is reported to `errore` and skipped. The
// model is reset once.
Esito Carica(PxModelloContenuto& modello, QByteArray testo, const Code& code,
             const std::function<void()>& errore);

} // namespace modElenco
