#pragma once

#include <pugixml.hpp>

// The demo's service configurations: what each service, worker and document folder publishes
// besides its live elements, so that every property sheet finds every item it shows.
namespace modDemo {

// Fills `radice`, the root element of "Servizi/<chiave>.xml": the initial Stato, the service's
// settings, and its lists (printers, connected clients, FTP clients, fax modems).
void ConfigurazioneServizio(pugi::xml_node radice, const char* chiave);

} // namespace modDemo
