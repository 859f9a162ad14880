#pragma once

#include <QString>
#include <QtGlobal>

#include <span>

// The seven document folders of a service.
enum class GenereCartella { Stampa, Email, Fax, PFax, EFax, Pbl, Anteprima };

// What console and server both know of each document folder, one row per folder: the keys,
// the listing's positional fields (which are the list's columns), the queues with their
// filter toggles and colours, the move entries and the folder's commands. The server writes
// its listings from the fields; the console's folder views are made from the whole row.
namespace modTabellaCartelle {

// A listing field; the position in Colonne is the field's position in a document node.
enum class Campo { Id, Descrizione, Stato, Utente, Sigla, Numero, Stampante, A, Cc, Ccn, Priorita,
                   PrefissoInternazionale, PrefissoLocale, NumeroFax, KeyUtente, Pagine, Ip, Inserito, Elaborato };

struct Colonna
{
    qint32 Testo; // caption id; 0: a field the list keeps hidden
    modTabellaCartelle::Campo Campo;
};

struct Coda
{
    qint32 Filtro;      // the toggle that shows or hides the queue; 0: none (never shown)
    qint32 Testo;       // the toggle's caption id
    qint32 Descrizione; // the toggle's description id
    quint32 Colore;     // rows' text colour, 0x00BBGGRR
};

struct Spostamento
{
    qint32 Id;
    qint32 Testo;
    qint32 Descrizione;
    qint32 Coda; // the target queue; -1: the entry does nothing
};

struct Comando
{
    qint32 Id; // 0: the folder has none
    qint32 Testo;
    qint32 Descrizione;
};

inline constexpr quint32 Nero = 0, Verde = 49152, Rosso = 255, Arancio = 33023;

struct Cartella
{
    GenereCartella Genere;
    const char* Nodo;           // "SrvDocFax": tree node and layout key
    const char* Chiave;         // "PxSrvDocFax": the folder object
    const char* Servizio;       // "PxSrvFax": owns the folder and raises its notices
    const char* Versione;       // layout version
    const char* Icona;          // document icon key
    const char* IconaCollegato; // linked-document icon key; "" when none
    std::span<const Colonna> Colonne;
    std::span<const Coda> Code; // by queue number
    qint32 CodaRespinti;
    qint32 CodaScartati;
    qint32 CodaOpzionale;       // shown only when the server runs it; -1 none
    std::span<const Spostamento> Spostamenti;
    Comando Prova;              // the folder's test command
    bool CopiaStampa;           // "Copia stampa" (printing only)
    Comando Uscita;             // the output viewer ("Visualizza pdf" / "Visualizza tiff")
};

std::span<const Cartella> Cartelle();
// By folder object key ("PxSrvDocFax") or node key ("SrvDocFax"); nullptr when none.
const Cartella* Trova(QStringView chiave);
const Cartella& Di(GenereCartella genere);

// The queue of toggle `filtro` in `cartella`; -1 when none.
qint32 CodaDelFiltro(const Cartella& cartella, qint32 filtro);

} // namespace modTabellaCartelle
