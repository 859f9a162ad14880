#include "modTiff.h"

#include <QSet>
#include <QString>

#include <algorithm>
#include <cstring>

using namespace Qt::StringLiterals;

namespace modTiff {

namespace {

constexpr int ByteRiga = LarghezzaFax / 8;
// Every font dot is a Scala × Scala square; a character takes 6 dots across, a line 10 dots down.
constexpr int Scala = 3, PassoCarattere = 6 * Scala, AltezzaCarattere = 8 * Scala, Interlinea = 10 * Scala;
constexpr int MargineSinistro = 120, MargineAlto = 150, RigaPiede = AltezzaFax - 120 - AltezzaCarattere;
constexpr int RighePerPagina = (RigaPiede - 90 - MargineAlto) / Interlinea + 1;
constexpr int CaratteriPerRiga = (LarghezzaFax - 2 * MargineSinistro) / PassoCarattere;
constexpr int MassimoPagine = 1000;
// A white row in PackBits: 128 zero bytes, then the other 88.
constexpr char RigaBianca[] = {static_cast<char>(-127), 0, static_cast<char>(-87), 0};
static_assert(ByteRiga == 128 + 88);

constexpr quint16 TipoShort = 3, TipoLong = 4, TipoRational = 5, TipoAscii = 2;

void Aggiungi16(QByteArray& b, quint16 v) { b.append(static_cast<char>(v & 0xFF)).append(static_cast<char>(v >> 8)); }
void Aggiungi32(QByteArray& b, quint32 v)
{
    Aggiungi16(b, static_cast<quint16>(v & 0xFFFF));
    Aggiungi16(b, static_cast<quint16>(v >> 16));
}

// PackBits of one row: runs of three or more equal bytes are replicated (two when they open a
// stretch), the rest copied literally.
void Comprimi(QByteArray& b, const uchar* riga)
{
    std::array<char, 2 * ByteRiga> uscita; // the worst case is ByteRiga + 2
    qsizetype n = 0;
    int i = 0;
    while (i < ByteRiga) {
        int j = i + 1;
        while (j < ByteRiga && j - i < 128 && riga[j] == riga[i])
            ++j;
        if (j - i >= 2) {
            uscita[n++] = static_cast<char>(1 - (j - i));
            uscita[n++] = static_cast<char>(riga[i]);
            i = j;
            continue;
        }
        const int inizio = i;
        while (i < ByteRiga && i - inizio < 128 && !(i + 2 < ByteRiga && riga[i] == riga[i + 1] && riga[i] == riga[i + 2]))
            ++i;
        uscita[n++] = static_cast<char>(i - inizio - 1);
        std::memcpy(uscita.data() + n, riga + inizio, i - inizio);
        n += i - inizio;
    }
    b.append(uscita.data(), n);
}

// A glyph row widened to Scala dots a dot: bit 5 * Scala - 1 is the leftmost.
constexpr std::array<quint32, 32> Allargate = [] {
    std::array<quint32, 32> a{};
    for (quint32 bit = 0; bit < 32; ++bit)
        for (int b = 0; b < 5; ++b)
            if (bit & (0x10u >> b))
                a[bit] |= ((1u << Scala) - 1) << ((4 - b) * Scala);
    return a;
}();
static_assert(5 * Scala + 7 <= 24, "a glyph row must fit three bytes wherever it starts");

// One line of text blackened into a band AltezzaCarattere rows high, starting at column x.
void Disegna(uchar* banda, const QString& testo, int x)
{
    for (const QChar c : testo) {
        if (x + PassoCarattere > static_cast<int>(LarghezzaFax))
            break;
        const std::array<quint8, 8>& glifo = Glifo(c.unicode());
        const quint32 spostamento = 24 - 5 * Scala - static_cast<quint32>(x % 8);
        for (int r = 0; r < 8; ++r) {
            const quint32 punti = Allargate[glifo[r] & 0x1F] << spostamento;
            uchar* byte = banda + r * Scala * ByteRiga + x / 8;
            byte[0] |= static_cast<uchar>(punti >> 16);
            byte[1] |= static_cast<uchar>(punti >> 8);
            byte[2] |= static_cast<uchar>(punti);
        }
        x += PassoCarattere;
    }
    // Each dot is Scala rows tall too.
    for (int r = 0; r < 8; ++r)
        for (int dy = 1; dy < Scala; ++dy)
            std::memcpy(banda + (r * Scala + dy) * ByteRiga, banda + r * Scala * ByteRiga, ByteRiga);
}

struct Testo
{
    int Riga, Colonna;
    QString Contenuto;
};

// The compressed strip of one page with `testi` (top to bottom) drawn on it.
QByteArray Striscia(const QList<Testo>& testi)
{
    static const QByteArray Bianche = QByteArray(RigaBianca, sizeof RigaBianca).repeated(AltezzaFax);
    QByteArray b;
    b.reserve(Bianche.size() + testi.size() * AltezzaCarattere * 40);
    std::array<uchar, AltezzaCarattere * ByteRiga> banda;
    int y = 0;
    for (const Testo& t : testi) {
        b.append(Bianche.constData(), (t.Riga - y) * qsizetype(sizeof RigaBianca));
        banda.fill(0);
        Disegna(banda.data(), t.Contenuto, t.Colonna);
        for (int r = 0; r < AltezzaCarattere; ++r) {
            const uchar* riga = banda.data() + r * ByteRiga;
            if (std::all_of(riga, riga + ByteRiga, [](uchar v) { return v == 0; }))
                b.append(RigaBianca, sizeof RigaBianca);
            else
                Comprimi(b, riga);
        }
        y = t.Riga + AltezzaCarattere;
    }
    b.append(Bianche.constData(), (static_cast<int>(AltezzaFax) - y) * qsizetype(sizeof RigaBianca));
    return b;
}

// The lines as they will be drawn: no control characters, one '?' per character outside the
// basic plane, cut at a space (or hard) to fit the width.
QStringList Impagina(const QStringList& righe)
{
    QStringList risultato;
    for (const QString& riga : righe) {
        QString pulita;
        pulita.reserve(riga.size());
        for (qsizetype i = 0; i < riga.size(); ++i) {
            const QChar c = riga.at(i);
            if (c.isHighSurrogate() && i + 1 < riga.size() && riga.at(i + 1).isLowSurrogate())
                ++i;
            pulita.append(c == u'\t' ? u' ' : c.isSurrogate() || (c.unicode() < 0x20 && c != u'\n') ? u'?' : c);
        }
        for (QStringView parte : QStringView(pulita).split(u'\n')) {
            do {
                qsizetype taglio = parte.size();
                if (taglio > CaratteriPerRiga) {
                    taglio = parte.left(CaratteriPerRiga + 1).lastIndexOf(u' ');
                    if (taglio <= 0)
                        taglio = CaratteriPerRiga;
                }
                risultato << parte.left(taglio).toString();
                parte = parte.mid(taglio);
                if (!parte.isEmpty() && parte.front() == u' ')
                    parte = parte.mid(1);
            } while (!parte.isEmpty());
        }
    }
    return risultato;
}

quint32 Leggi(const QByteArray& b, qsizetype posizione, int byte, bool intel)
{
    quint32 v = 0;
    for (int i = 0; i < byte; ++i) {
        const quint32 c = static_cast<uchar>(b.at(posizione + (intel ? byte - 1 - i : i)));
        v = v << 8 | c;
    }
    return v;
}

} // namespace

QByteArray Fax(const QStringList& righe, int pagine)
{
    pagine = std::clamp(pagine, 1, MassimoPagine);
    const QStringList testo = Impagina(righe);
    QByteArray tiff("II*\0", 4);
    Aggiungi32(tiff, 8);
    for (int p = 0; p < pagine; ++p) {
        QList<Testo> testi;
        for (qsizetype r = qsizetype(p) * RighePerPagina; r < testo.size() && r < qsizetype(p + 1) * RighePerPagina; ++r)
            testi.append({MargineAlto + static_cast<int>(r % RighePerPagina) * Interlinea, MargineSinistro, testo.at(r)});
        const QString piede = u"Pagina %1 di %2"_s.arg(p + 1).arg(pagine);
        testi.append({RigaPiede, (static_cast<int>(LarghezzaFax) - static_cast<int>(piede.size()) * PassoCarattere) / 2, piede});
        const QByteArray striscia = Striscia(testi);

        // The directory, its out-of-line values, then the strip; the next page starts on a word boundary.
        constexpr quint16 Voci = 15;
        const auto ifd = static_cast<quint32>(tiff.size());
        const quint32 valori = ifd + 2 + Voci * 12 + 4, dati = valori + 24;
        const quint32 fine = dati + static_cast<quint32>(striscia.size()), prossima = p + 1 < pagine ? fine + fine % 2 : 0;
        Aggiungi16(tiff, Voci);
        const auto voce = [&tiff](quint16 etichetta, quint16 tipo, quint32 quanti, quint32 valore) {
            Aggiungi16(tiff, etichetta);
            Aggiungi16(tiff, tipo);
            Aggiungi32(tiff, quanti);
            Aggiungi32(tiff, valore);
        };
        voce(254, TipoLong, 1, 2);                 // NewSubfileType: a page of a multi-page document
        voce(256, TipoShort, 1, LarghezzaFax);     // ImageWidth
        voce(257, TipoShort, 1, AltezzaFax);       // ImageLength
        voce(258, TipoShort, 1, 1);                // BitsPerSample
        voce(259, TipoShort, 1, 32773);            // Compression: PackBits
        voce(262, TipoShort, 1, 0);                // PhotometricInterpretation: WhiteIsZero
        voce(273, TipoLong, 1, dati);              // StripOffsets
        voce(277, TipoShort, 1, 1);                // SamplesPerPixel
        voce(278, TipoLong, 1, AltezzaFax);        // RowsPerStrip
        voce(279, TipoLong, 1, fine - dati);       // StripByteCounts
        voce(282, TipoRational, 1, valori);        // XResolution
        voce(283, TipoRational, 1, valori + 8);    // YResolution
        voce(296, TipoShort, 1, 2);                // ResolutionUnit: inch
        voce(297, TipoShort, 2, static_cast<quint32>(pagine) << 16 | static_cast<quint32>(p)); // PageNumber
        voce(305, TipoAscii, 7, valori + 16);      // Software
        Aggiungi32(tiff, prossima);
        for (const quint32 v : {204u, 1u, 196u, 1u})
            Aggiungi32(tiff, v);
        tiff.append("PlxSrv\0", 8);
        tiff.append(striscia);
        if (fine % 2)
            tiff.append('\0');
    }
    return tiff;
}

QList<Pagina> LeggiPagine(const QByteArray& tiff)
{
    if (tiff.size() < 8 || (!tiff.startsWith(QByteArrayView("II*\0", 4)) && !tiff.startsWith(QByteArrayView("MM\0*", 4))))
        return {};
    const bool intel = tiff.at(0) == 'I';
    QList<Pagina> pagine;
    QSet<quint32> visitate;
    quint32 ifd = Leggi(tiff, 4, 4, intel);
    while (ifd != 0) {
        if (visitate.contains(ifd) || qsizetype(ifd) + 2 > tiff.size())
            return {}; // a loop, or a directory past the end
        visitate.insert(ifd);
        const qsizetype voci = Leggi(tiff, ifd, 2, intel), fine = qsizetype(ifd) + 2 + voci * 12;
        if (fine + 4 > tiff.size())
            return {};
        Pagina pagina{0, 0};
        quint32 striscia = 0, byteStriscia = 0;
        for (qsizetype voce = qsizetype(ifd) + 2; voce < fine; voce += 12) {
            const quint32 tipo = Leggi(tiff, voce + 2, 2, intel);
            if (Leggi(tiff, voce + 4, 4, intel) != 1 || (tipo != TipoShort && tipo != TipoLong))
                continue; // only single numbers matter here
            const quint32 valore = Leggi(tiff, voce + 8, tipo == TipoShort ? 2 : 4, intel);
            switch (Leggi(tiff, voce, 2, intel)) {
            case 256: pagina.Larghezza = valore; break;
            case 257: pagina.Altezza = valore; break;
            case 273: striscia = valore; break;
            case 279: byteStriscia = valore; break;
            default: break;
            }
        }
        // A page needs a size, and its only strip (when it has just one) must be in the file.
        if (pagina.Larghezza == 0 || pagina.Altezza == 0 || qsizetype(striscia) + byteStriscia > tiff.size())
            return {};
        pagine.append(pagina);
        ifd = Leggi(tiff, fine, 4, intel);
    }
    return pagine;
}

} // namespace modTiff
