#pragma once

#include <QString>
#include <QStringList>

namespace modTabellaCartelle { struct Cartella; }

// What the start and suspend commands of a tree node act on, and what suspending would leave
// half done.
namespace modComandiServizio {

// The service a node's start and suspend act on ("PxSrvFax" for "SrvFax", "PxSrvTifVm" for
// "SrvTifVm", the owning service for a document folder, "PxSrvServer" for the root); "" for
// a list entry (printer, client, FTP client) and an unknown key.
QString ServizioDelNodo(const QString& chiaveNodo);

// The document folders ("PxSrvDocFax") whose documents service `oggetto` works on: its own,
// or, for a worker, its group's; the server's are all of them.
QStringList CartelleDelServizio(const QString& oggetto);

// How many documents a folder holds in the queues before its done queue (the first green
// one), read from the counters of its state XML: the work a suspension would stop.
qsizetype DocumentiInLavorazione(const modTabellaCartelle::Cartella& cartella, const QString& statoXml);

// The state code (Stato/Codice) of a state XML; -1 when it has none.
int CodiceStato(const QString& statoXml);

// Whether a service in state `codice` can be started / suspended (4 runs, 8 is disabled).
inline bool Avviabile(int codice) { return codice >= 0 && codice != 4 && codice != 8; }
inline bool Sospendibile(int codice) { return codice == 4; }

} // namespace modComandiServizio
