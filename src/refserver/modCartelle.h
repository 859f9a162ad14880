#pragma once

#include "DatiDocumento.h"

#include <QStringView>

#include <span>

// The document folders of the reference server, one table row each: what differs between
// them is data (queues, stages, listing fields, counters), the mechanism is one.
namespace modCartelle {

// The listing's positional fields after the id, per kind.
enum class Campo { Descrizione, Stato, Utente, Sigla, Numero, Stampante, A, Cc, Ccn, Priorita,
                   PrefissoInternazionale, PrefissoLocale, NumeroFax, KeyUtente, Pagine, Ip, Inserito, Elaborato };

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
    std::span<const Campo> Campi;
    std::span<const Passo> Passi;
};

std::span<const Definizione> Cartelle();
const Definizione* Trova(QStringView chiave);
const Definizione& Di(GenereCartella genere);

} // namespace modCartelle
