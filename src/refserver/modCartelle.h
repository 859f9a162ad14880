#pragma once

#include "DatiDocumento.h"
#include "modTabellaCartelle.h"

#include <QStringView>

#include <span>

// The document folders of the reference server, one table row each: what differs between
// them is data (queues, stages, listing fields, counters), the mechanism is one.
namespace modCartelle {

using Campo = modTabellaCartelle::Campo;

enum class Uscita { Nessuna, Pdf, Tiff };

// One stage of the work: documents in `Da` are taken by the worker `Lavoratore` (its run
// state gates the stage) and move to `A`; a rejection sends them to the folder's
// rejected queue (a second rejection discards them). `Produce` is written on the way.
struct Passo
{
    qint32 Da;
    qint32 A;
    const char* Lavoratore;
    const char* Attivita; // what the worker says it is doing
    Uscita Produce;
    bool PuoRespingere;
};

// A folder as the server runs it: what console and server share comes from the common
// folder table (keys, queues, listing fields); the stages and counters are the server's own.
struct Definizione
{
    GenereCartella Genere;
    const char* Chiave;          // "PxSrvDocFax"
    const char* Servizio;        // "PxSrvFax": owns the folder, raises its notices, has the input folder
    const char* Prefisso;        // document ids: "FAX-000001"
    const char* Contatori;       // element of the folder's state XML that holds the counters
    std::span<const char* const> NomiContatori; // per queue; nullptr: no counter
    qint32 NumeroCode;
    qint32 CodaRespinti;
    qint32 CodaScartati;
    std::span<const modTabellaCartelle::Colonna> Campi; // the listing's fields, the id first
    std::span<const Passo> Passi;
};

std::span<const Definizione> Cartelle();
const Definizione* Trova(QStringView chiave);
const Definizione& Di(GenereCartella genere);

} // namespace modCartelle
