#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>
#include <QTime>

#include <optional>

// The line form of every log the server and the console write, and the log pane reads:
// two characters of level (0-3, right-aligned), nine characters of time (" HH:MM:SS"),
// one space, the text; lines end with CR LF; UTF-8.
//
//     " 3 14:03:22 Server inizializzato\r\n"
namespace modRigaLog {

inline constexpr int LivelloErrore = 0;
inline constexpr int LivelloAvviso = 1;
inline constexpr int LivelloInformazione = 2;
inline constexpr int LivelloDettaglio = 3;

struct RigaLog
{
    int Livello = -1; // as written; the reader does not judge it
    QTime Ora;        // invalid when the time field does not read as a time
    QString Testo;
};

// One line, CR LF included. Line breaks inside `testo` become spaces, so one call is one line.
QByteArray Formatta(int livello, const QTime& ora, QStringView testo);

// Reads one line without its CR LF; nullopt when it is too short or its level is not a number.
std::optional<RigaLog> Analizza(QStringView riga);

} // namespace modRigaLog
