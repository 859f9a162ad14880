#pragma once

#include "DatiDocumento.h"
#include "PxIntestazioneHpx.h"

#include <QByteArray>

#include <vector>

// The files of a document: the body (.bpx, text with the printer's control sequences of its
// catalogue), the page script (.spx), the header (.hpx), and the outputs (PDF, TIFF).
namespace modFileDocumento {

QByteArray Corpo(const DatiDocumento& d);
QByteArray Script(const DatiDocumento& d);
PxIntestazioneHpx Intestazione(const DatiDocumento& d);
QByteArray Pdf(const DatiDocumento& d);
QByteArray Tiff(const DatiDocumento& d);

// Reads a job's header into a new document of `genere`; "" or what is wrong with it.
QString DaIntestazione(const PxIntestazioneHpx& hpx, GenereCartella genere, DatiDocumento& d);

// A ZIP archive of named files (deflated), for the compressed send: what any recipient's
// tools open. Empty, with the reason in `errore`, when it cannot be made.
struct FileArchivio
{
    QString Nome;
    QByteArray Dati;
};
QByteArray Archivio(const std::vector<FileArchivio>& file, QString* errore = nullptr);

} // namespace modFileDocumento
