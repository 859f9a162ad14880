#include "PxErrore.h"

namespace modErrori {

QString TestoErrore(qint32 numero)
{
    // The runtime's messages in the console's language; they are the platform's texts,
    // not the program's, so they stay out of the string table.
    switch (numero) {
    case ErrGenerico: return QStringLiteral("Chiamata di routine o argomento non validi");
    case ErrOverflow: return QStringLiteral("Overflow");
    case ErrTipoNonCorrispondente: return QStringLiteral("Tipo non corrispondente");
    case ErrPercorsoNonTrovato: return QStringLiteral("Impossibile trovare il percorso");
    case ErrOggettoMancante: return QStringLiteral("Variabile oggetto o variabile del blocco With non impostata");
    case ErrCaricamentoOggetto: return QStringLiteral("Impossibile caricare o scaricare questo oggetto");
    case ErrAzioneNonSupportata: return QStringLiteral("Azione non supportata dall'oggetto");
    default: return {};
    }
}

} // namespace modErrori
