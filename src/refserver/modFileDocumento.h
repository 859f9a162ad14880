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

// A compressed archive of named files, for the compressed send: "PXZ1", then a QDataStream
// (Qt 6.0 format) of the file count and, per file, its name and its qCompress'ed bytes.
struct FileArchivio
{
    QString Nome;
    QByteArray Dati;
};
QByteArray Archivio(const std::vector<FileArchivio>& file);
std::vector<FileArchivio> LeggiArchivio(const QByteArray& archivio);

} // namespace modFileDocumento
