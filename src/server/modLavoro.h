#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

// Hands a print job to a service's input folder so that the service never sees part of it:
// each file is written and synced under a temporary name in that folder (the same file
// system), then published under its final name without ever replacing a file, in the order
// given (script, body, header: the header last, since its arrival is what the service
// waits for), and the folder synced. A failure takes back what was published and removes
// the temporary files; no file with part of its content ever bears a final name.
namespace modLavoro {

struct File
{
    const char* Estensione; // ".spx", ".bpx", ".hpx"
    QByteArray Dati;
};

struct Esito
{
    bool Riuscito = false;
    QString Base;   // the job's final path without extension
    QString Errore; // why not
};

// `base`: the wished name without extension; a number is added when a job of that name still
// waits in the folder (" (2)", " (3)", ...).
Esito Consegna(const QString& cartella, const QString& base, const std::vector<File>& file);

// A printer or destination name made fit for a file name on any platform: "\", "/", ":",
// "*", "?", '"', "<", ">", "|" and control characters become "-", a name that is a device
// name of the other platform ("CON", "PRN", "AUX", "NUL", alone or before "." or a blank)
// gets a "_" before it, leading dots are dropped, and the result is cut to 120 characters.
QString Sanifica(const QString& nome);

} // namespace modLavoro
