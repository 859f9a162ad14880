#pragma once

#include "PxContratto.h"

// What an answer to LeggiFile carries besides the bytes: where they start in the file, the
// file's size when it was read, and a token of the file itself, which changes when another
// file takes its name (a log rotated).
struct PxLetturaFile
{
    qint64 Inizio = 0;
    qint64 Dimensione = 0;
    QString Identita;
    QByteArray Dati;

    // The answer `r` read; false when it failed or does not read as one.
    bool Da(const PxRisposta& r);
};
