#include "modCp1252.h"

namespace modCp1252 {

namespace {
// Windows-1252 differs from Latin-1 only in 0x80-0x9F.
constexpr char16_t Alto[32] = {
    0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD, 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178,
};
} // namespace

QString Decodifica(QByteArrayView dati)
{
    // Latin-1 first (fast), then the 32 characters where the two codes differ.
    QString risultato = QString::fromLatin1(dati);
    for (QChar& c : risultato)
        if (const char16_t u = c.unicode(); u >= 0x80 && u < 0xA0)
            c = QChar(Alto[u - 0x80]);
    return risultato;
}

QByteArray Codifica(const QString& testo)
{
    QByteArray risultato;
    risultato.reserve(testo.size());
    for (const QChar c : testo) {
        const char16_t u = c.unicode();
        if (u < 0x80 || (u >= 0xA0 && u <= 0xFF)) {
            risultato += static_cast<char>(u);
            continue;
        }
        char b = '?';
        for (int i = 0; i < 32; ++i)
            if (Alto[i] == u && u != 0xFFFD)
                b = static_cast<char>(0x80 + i);
        risultato += b;
    }
    return risultato;
}

} // namespace modCp1252
