#pragma once

#include "PxLetturaFile.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <vector>

// A log file as the log pane reads it: its tail (the last MiB at most), split at CR LF into
// the lines whose level the pane shows. The piece after the last CR LF is not a line yet: it
// is left for the next read, which starts where this one ended.
namespace modLog {

inline constexpr qint64 MassimoCoda = 1024 * 1024;

struct Riga
{
    qint8 Livello;
    qint32 Secondi; // time of day; -1 when the time field does not read as one
    QString Testo;
};

using Livelli = std::array<bool, 4>;

struct Lettura
{
    std::vector<Riga> Righe;
    qint64 Fine = 0;       // where the next read starts: just after the last CR LF read
    qint64 Dimensione = 0; // the file's size when read
    bool Letta = false;    // false: the file could not be read (the pane keeps what it had)
};

// The lines of a piece of a log as LeggiFile answers it. `coda`: the piece was asked as the
// file's tail (its last MassimoCoda bytes); unless it starts the file, its first line is cut
// and dropped.
Lettura DaPezzo(const PxLetturaFile& pezzo, bool coda, const Livelli& livelli);
// Reads `file` of this machine from `da` (0: the tail rule above), as the pane reads a log.
Lettura Leggi(const QString& file, qint64 da, const Livelli& livelli);
// The lines of `dati` (whole lines only, the piece after the last CR LF left out); `parziale`:
// the first line is the end of one cut by the tail rule.
std::vector<Riga> Righe(const QByteArray& dati, bool parziale, const Livelli& livelli, qint64* consumati = nullptr);

} // namespace modLog
