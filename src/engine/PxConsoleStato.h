#pragma once

#include <QString>

// The engine's state: Codice 0-6; Descrizione is the text 400 + Codice.
class PxConsoleStato
{
public:
    enum : qint32 {
        NonInizializzato = 0,
        Inizializzato = 1,
        AvvioInCorso = 2,
        Avviato = 3,
        ArrestoInCorso = 4,
        Arrestato = 5,
        Terminato = 6,
    };

    qint32 Codice = NonInizializzato;
    QString Descrizione() const;
};
