#pragma once

#include "clsSrvVista.h"

#include <memory>

// Chooses a tree node's view by its key ("SrvDocFax" makes clsSrvDocFax; an entry's key
// "SrvStampante|3" makes clsSrvStampante).
namespace modViste {

std::unique_ptr<clsSrvVista> Crea(PxAmbienteVista& ambiente, const QString& chiave);

} // namespace modViste
