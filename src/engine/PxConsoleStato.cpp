#include "PxConsoleStato.h"

#include "TabellaTesti.h"

QString PxConsoleStato::Descrizione() const
{
    return TabellaTesti::Italiano().Testo(400 + Codice);
}
