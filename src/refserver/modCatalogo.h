#pragma once

#include <QString>

#include <span>

// The services, workers and document folders of the reference server.
namespace modCatalogo {

enum class Genere { Servizio, Lavoratore, Cartella };

struct VoceServizio
{
    const char* Chiave;  // object key, also the root element of its state XML
    const char* Gruppo;  // the owning service's key; "" for a service
    Genere Tipo;
    const char* Nome;    // what the service's own log and descriptions call it
};

std::span<const VoceServizio> Voci();
const VoceServizio* Trova(QStringView chiave);

// Descriptions of the state codes the server publishes (Stato/Descrizione).
QString DescrizioneStato(qint32 codice);

inline constexpr qint32 StatoArrestato = 1, StatoErrore = 2, StatoSospeso = 3, StatoInFunzione = 4;

} // namespace modCatalogo
