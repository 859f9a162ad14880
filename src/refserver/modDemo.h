#pragma once

#include <QString>

// Creates a demo server folder: the installation settings, every service's configuration
// (printers of every model, PDF workers, connected clients, FTP clients) and the log folder.
// The content is fixed, so the same call always gives the same folder.
namespace modDemo {

// An installation's server folder without documents: the settings with their defaults, every
// service's configuration and the log folder. Returns "" or what went wrong.
QString CreaCartellaServer(const QString& cartella);

// Writes the demo into `cartella` (created when missing) with `documenti` documents spread
// over every folder and queue. Returns "" or what went wrong.
QString CreaServerDemo(const QString& cartella, int documenti = 2000, quint64 seme = 1);
// Only the documents (the folder's configuration must exist already).
QString CreaDocumentiDemo(const QString& cartella, int numero, quint64 seme);

// Whether `cartella` already holds a server folder.
bool EServer(const QString& cartella);

} // namespace modDemo
