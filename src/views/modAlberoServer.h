#pragma once

#include <span>

class PxIconResource;
namespace pugi { class xml_node; }

// The nodes of the server tree, in the order they are created.
namespace modAlberoServer {

enum class Genere {
    Server,     // the root: the server object itself
    Servizio,   // a service or worker with its state XML
    Cartella,   // a document folder
    Elenco,     // one node per entry of a list in the owning service's XML
};

using FunzioneIcona = int (PxIconResource::*)(const pugi::xml_node&) const;

struct Nodo
{
    const char* Chiave;        // node key, "Srv..."
    const char* Oggetto;       // server object key, "PxSrv..."; "" for the server
    const char* Padre;         // parent node key; "" for the root
    int Testo;                 // caption id; 0 when the caption comes from the state XML
    Genere Tipo;
    FunzioneIcona Icona;       // null for the root and the folders
    const char* Elenco;        // list nodes: the list element in the owner's XML
    const char* ElementoChiave;// list nodes: the entry's key element
};

std::span<const Nodo> Nodi();

} // namespace modAlberoServer
