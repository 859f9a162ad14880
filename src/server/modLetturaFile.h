#pragma once

#include "PxContratto.h"

#include <QString>

// The server's answer to LeggiFile: a piece of a file of the server folder, for a console
// that does not share the server's files. Only regular files under the server folder are
// read, whatever links lead there; nothing else is opened.
namespace modLetturaFile {

// The piece of the regular file `file` that Leggi below answers with, wherever the file lies
// (the console's own log is read so); refused for anything but a regular file.
PxRisposta LeggiRegolare(const QString& file, qint64 inizio, qint32 quanti);

// Reads at most `quanti` bytes (capped at modContratto::MassimoLettura) of `percorso` (as the
// server names it: absolute, or relative to `cartellaServer`) from `inizio`; a negative
// `inizio` asks for the last -inizio bytes. Done: `Dati` the bytes, `Testo` "<start> <size>
// <identity>": where the bytes start, the file's size when read, and a token that changes
// when another file takes the name. Refused for a path with a ".." step, one outside the
// folder once links are resolved, a missing file or anything but a regular file.
PxRisposta Leggi(const QString& cartellaServer, const QString& percorso, qint64 inizio, qint32 quanti);

} // namespace modLetturaFile
