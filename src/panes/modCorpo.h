#pragma once

#include <QByteArray>
#include <QColor>
#include <QString>

#include <array>
#include <vector>

namespace pugi { class xml_node; }

// A print job's body as the body viewer shows it: the text the printer receives, its control
// sequences turned into visible markers ("[%$GR1]" for bold on) and the server's inline commands
// highlighted. The text is written as RTF first (Rtf, the viewer's own form), then read back into
// coloured runs for Qt (Leggi), so the one formatter is the RTF writer.
namespace modCorpo {

// The file a document's file element names (its Percorso and Nome; a relative path is taken from
// `cartellaServer`); "" when the element names none.
QString PercorsoFile(const pugi::xml_node& file, const QString& cartellaServer);

// How much of a body is shown.
inline constexpr qsizetype Massimo = 1048576;

// The ten control sequences of a printer catalogue, switching on and off, in the order bold,
// compressed, double height, double strike, twelfths, letter quality, underline, custom A, B, C.
struct Catalogo
{
    std::array<QByteArray, 10> On;
    std::array<QByteArray, 10> Off;
};

// The catalogue under `catalogo` (its StrAsc...On / StrAsc...Off elements, each a list of decimal
// byte codes ending in ";", "027;069;"). A code outside 0-255 or not a number drops the sequence.
Catalogo LeggiCatalogo(const pugi::xml_node& catalogo);

// The RTF of `corpo` (at most its first Massimo bytes are used).
QByteArray Rtf(QByteArray corpo, const Catalogo& catalogo);

// A stretch of the text in a colour of the table (1..); the rest is in the default colour.
struct Tratto
{
    qsizetype Inizio = 0;
    qsizetype Fine = 0;
    int Colore = 0;
};

struct Documento
{
    QString Testo;              // lines end with "\n"
    std::vector<Tratto> Tratti; // in order, not overlapping
    std::vector<QColor> Colori; // as the colour table lists them; an invalid one is the default
    QString Carattere;          // the font table's first font
    int Punti = 12;             // the size, in points

    // The colour of table entry `indice`; invalid for the default or an index the table lacks.
    QColor Colore(int indice) const
    {
        return indice > 0 && indice < static_cast<int>(Colori.size()) ? Colori[static_cast<size_t>(indice)] : QColor();
    }
};

// Reads the subset of RTF that Rtf writes (groups, \fonttbl, \colortbl, \cfN, \fsN, \par, escaped
// braces and backslashes, \'hh, 8-bit text as Windows-1252); unknown control words are skipped.
Documento Leggi(const QByteArray& rtf);

} // namespace modCorpo
