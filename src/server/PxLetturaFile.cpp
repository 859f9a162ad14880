#include "PxLetturaFile.h"

#include <QStringList>

bool PxLetturaFile::Da(const PxRisposta& r)
{
    if (!r.Riuscita())
        return false;
    const QStringList campi = r.Testo.split(u' ');
    bool ok1 = false, ok2 = false;
    if (campi.size() != 3)
        return false;
    Inizio = campi[0].toLongLong(&ok1);
    Dimensione = campi[1].toLongLong(&ok2);
    Identita = campi[2];
    Dati = r.Dati;
    return ok1 && ok2 && Inizio >= 0 && Dimensione >= 0;
}
