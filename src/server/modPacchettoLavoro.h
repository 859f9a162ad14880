#pragma once

#include "modLavoro.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

// A print job's files as one byte string, for handing a job to a service by request
// (ConsegnaLavoro) instead of through its input folder. Version 1, all numbers big-endian:
//
//   "PXLAVORO"  8 bytes
//   version     1 byte, 1
//   count       1 byte, 2 or 3
//   count times: extension, 4 ASCII bytes (".spx", ".bpx" or ".hpx"), then its length as a
//                4-byte unsigned number, then that many bytes
//
// Nothing may follow the last file. A job has a header and a body, a page script at most,
// each once, and at most modContratto::MassimoLavoro bytes in all.
namespace modPacchettoLavoro {

inline constexpr char Firma[] = "PXLAVORO";
inline constexpr quint8 Versione = 1;

// The files in the form above; empty when they cannot form a job (see Leggi).
QByteArray Componi(const std::vector<modLavoro::File>& file);

// The files of `dati` in the order they are published (script, body, header); nullopt, with
// the reason in `errore`, for anything that is not a whole, well-formed job of this version.
std::optional<std::vector<modLavoro::File>> Leggi(const QByteArray& dati, QString* errore = nullptr);

} // namespace modPacchettoLavoro
