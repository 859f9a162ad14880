#pragma once

#include <QString>

#include <span>
#include <string>
#include <vector>

// The property sheets: what the console's property pane shows of a service node (layouts 1-38),
// a document (39-45), a page format or an e-mail signature (46-49), and where each value lives in
// the XML the server writes. The pane builds and fills its tree from these tables; the reference
// server's tests read them to prove that every path a sheet reads is one the server writes.
namespace modSchede {

enum class Tipo : unsigned char {
    Testo = 0,    // a plain item: the text at its path
    Gruppo = 10,  // holds further items; its path (if any) prefixes theirs
    Elenco = 11,  // a group repeated from a list: one entry per child element of its path
    Inserto = 12, // no item of its own: its children are spliced in at its level
    Data12 = 13,  // a twelve-digit time stamp "yyyyMMddhhmm", shown as "dd/MM/yyyy hh.mm"
};

// What an item's button opens: the value (1, 4) or the second text (2, 5); 3 is the open-path
// item of the import service. 0: no button.
enum Azione : unsigned char { Nessuna = 0, Percorso = 1, PercorsoFile = 2, ApriPercorso = 3, FileLog = 4, FileLog2 = 5 };

// One entry of a layout table. `Livello` is 0 for a category, 1 for what sits right under it, and so
// on; inside a fragment it counts from the entry that uses the fragment. `Figli` is a fragment: the
// entries that follow at the next level (for an Inserto, at its own level). `Secondo` is, for an item
// with a second text, the path of the folder its value sits in; for a group, the path of a value
// shown on the group's own line.
struct Voce
{
    unsigned char Livello;
    unsigned short Testo; // caption id; 0 on a category: the selected node's caption
    Tipo Genere;
    const char* Percorso; // relative to the enclosing group's path; nullptr or "": none
    unsigned char Azione = Nessuna;
    std::span<const Voce> Figli = {};
    const char* Secondo = nullptr;
};

struct Layout
{
    int Numero;
    const char* Codice;     // service node code ("SrvStampe") or loader name ("CaricaProprietaDocStampa")
    const char* Oggetto;    // documents: the Tipo attribute ("Stampa"); formats: the Genere ("Fronte"); services: nullptr
    const char* Base;       // the element the paths start from: "Proprieta" or "" (the root)
    std::span<const Voce> Voci;
};

// An entry with fragments expanded and paths made whole (relative to the layout's base).
struct VoceEspansa
{
    int Livello = 0;
    int Testo = 0;
    Tipo Genere = Tipo::Testo;
    int Azione = Nessuna;
    std::string Percorso;      // a leaf's value; an Elenco's list element; a group's value ("" when none)
    std::string Secondo;       // the folder of a second text ("" when none)
    std::vector<VoceEspansa> Modello; // an Elenco's entry template, paths relative to the entry
};

std::span<const Layout> Layouts();
// The layout numbered `numero`; nullptr when there is none.
const Layout* Trova(int numero);
// The layout of a service node code ("SrvFax") or of a document kind / format genre ("Fax",
// "Fronte"); nullptr when none.
const Layout* DelCodice(QStringView codice);
const Layout* DellOggetto(QStringView tipo);

// The layout's entries in creation order, fragments expanded (computed once, then shared).
const std::vector<VoceEspansa>& Espansa(int numero);

// Every path the layout reads (values, second texts, lists), relative to its base.
std::vector<std::string> Percorsi(int numero);

} // namespace modSchede
