#include "modPdf.h"

#include <QList>

#include <algorithm>
#include <array>
#include <numeric>

namespace modPdf {

namespace {

// A4 in points, and the frame the text stays in.
constexpr int LarghezzaPagina = 595, AltezzaPagina = 842, Margine = 56;
constexpr int CorpoTesto = 10, InterlineaTesto = 14, CorpoTitolo = 16, InterlineaTitolo = 20, StaccoTitolo = 8;
// Objects with a fixed number; the pages and their contents follow from PrimaPagina, two by two.
constexpr int OggCatalogo = 1, OggPagine = 2, OggFont = 3, OggFontGrassetto = 4, OggInfo = 5, PrimaPagina = 6;

// Helvetica advance widths (thousandths of an em) of the printable ASCII characters.
constexpr std::array<quint16, 95> LarghezzeAscii = {
    278, 278, 355, 556, 556, 889, 667, 191, 333, 333, 389, 584, 278, 333, 278, 278, // space to /
    556, 556, 556, 556, 556, 556, 556, 556, 556, 556, 278, 278, 584, 584, 584, 556, // 0 to ?
    1015, 667, 667, 722, 722, 667, 611, 778, 722, 278, 500, 667, 556, 833, 722, 778, // @ to O
    667, 778, 722, 667, 611, 722, 667, 944, 667, 667, 611, 278, 278, 278, 469, 556, // P to _
    333, 556, 556, 500, 556, 556, 278, 556, 556, 222, 222, 500, 222, 833, 556, 556, // ` to o
    556, 556, 333, 500, 278, 556, 500, 722, 500, 500, 500, 334, 260, 334, 584};     // p to ~

// Unicode of the Windows-1252 codes 0x80-0x9F (0 where the code is unassigned).
constexpr std::array<char16_t, 32> Codici80 = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

// Width of a WinAnsi byte: exact for ASCII, a fair guess above (accented capitals are wider).
int Larghezza(char c, bool grassetto)
{
    const auto u = static_cast<uchar>(c);
    int l = 556;
    if (u >= 0x20 && u < 0x7F)
        l = LarghezzeAscii[u - 0x20];
    else if (u >= 0xC0 && u <= 0xDE)
        l = 722;
    return grassetto ? l * 11 / 10 : l; // Helvetica-Bold runs about a tenth wider
}

// The text in Windows-1252 bytes; a line break stays '\n', anything unprintable becomes '?'.
QByteArray WinAnsi(const QString& testo)
{
    QByteArray b(testo.size(), Qt::Uninitialized);
    char* d = b.data();
    qsizetype n = 0;
    for (qsizetype i = 0; i < testo.size(); ++i) {
        const char16_t u = testo.at(i).unicode();
        if ((u >= 0x20 && u < 0x7F) || (u >= 0xA0 && u <= 0xFF) || u == u'\n') {
            d[n++] = static_cast<char>(u);
        } else if (u == u'\t') {
            d[n++] = ' ';
        } else if (u != u'\r') {
            const auto c = std::find(Codici80.begin(), Codici80.end(), u);
            d[n++] = u != 0 && c != Codici80.end() ? static_cast<char>(0x80 + (c - Codici80.begin())) : '?';
            if (QChar::isHighSurrogate(u) && i + 1 < testo.size() && testo.at(i + 1).isLowSurrogate())
                ++i; // one '?' for the whole character
        }
    }
    b.truncate(n);
    return b;
}

// Cuts a line into pieces no wider than the text frame, at a space when there is one.
QList<QByteArray> Spezza(const QByteArray& riga, int corpo, bool grassetto)
{
    const int massimo = (LarghezzaPagina - 2 * Margine) * 1000 / corpo;
    QList<QByteArray> pezzi;
    qsizetype inizio = 0;
    for (;;) {
        int somma = 0;
        qsizetype spazio = -1, i = inizio;
        for (; i < riga.size(); ++i) {
            if (riga.at(i) == ' ')
                spazio = i;
            somma += Larghezza(riga.at(i), grassetto);
            if (somma > massimo)
                break;
        }
        if (i >= riga.size()) {
            pezzi << riga.mid(inizio);
            return pezzi;
        }
        const qsizetype fine = spazio > inizio ? spazio : std::max(i, inizio + 1);
        pezzi << riga.mid(inizio, fine - inizio);
        inizio = spazio > inizio ? spazio + 1 : fine;
    }
}

void AggiungiStringa(QByteArray& pdf, const QByteArray& testo)
{
    pdf.append('(');
    qsizetype copiato = 0;
    for (qsizetype i = 0; i < testo.size(); ++i) {
        const char c = testo.at(i);
        if (c == '(' || c == ')' || c == '\\') {
            pdf.append(testo.constData() + copiato, i - copiato).append('\\');
            copiato = i;
        }
    }
    pdf.append(testo.constData() + copiato, testo.size() - copiato).append(')');
}

// A string for the information dictionary: literal when ASCII, otherwise UTF-16 with a byte order mark.
QByteArray StringaTesto(const QString& testo)
{
    const bool ascii = std::all_of(testo.cbegin(), testo.cend(), [](QChar c) { return c.unicode() >= 0x20 && c.unicode() < 0x7F; });
    QByteArray b;
    if (ascii) {
        AggiungiStringa(b, testo.toLatin1());
        return b;
    }
    QByteArray utf16("\xFE\xFF", 2);
    for (const QChar c : testo)
        utf16.append(static_cast<char>(c.unicode() >> 8)).append(static_cast<char>(c.unicode() & 0xFF));
    return '<' + utf16.toHex().toUpper() + '>';
}

// Lays lines out top to bottom, opening a new page's content stream when the frame is full.
class Impaginatore
{
public:
    void Riga(const QByteArray& testo, int font, int corpo, int interlinea)
    {
        if (mCorrente.isEmpty() || mY - interlinea < Margine) {
            Chiudi();
            mCorrente.reserve(4096);
            mCorrente.append("BT\n");
            mY = AltezzaPagina - Margine;
            mFont = 0;
        }
        if (mFont != font) {
            mCorrente.append("/F").append(QByteArray::number(font)).append(' ').append(QByteArray::number(corpo))
                .append(" Tf ").append(QByteArray::number(interlinea)).append(" TL 1 0 0 1 ")
                .append(QByteArray::number(Margine)).append(' ').append(QByteArray::number(mY)).append(" Tm\n");
            mFont = font;
        }
        mCorrente.append("T*");
        if (!testo.isEmpty()) {
            AggiungiStringa(mCorrente, testo);
            mCorrente.append("Tj");
        }
        mCorrente.append('\n');
        mY -= interlinea;
    }
    void Stacco(int punti) { mY -= punti; mFont = 0; }
    QList<QByteArray> Pagine()
    {
        Chiudi();
        if (mPagine.isEmpty())
            mPagine << QByteArray();
        return mPagine;
    }

private:
    void Chiudi()
    {
        if (!mCorrente.isEmpty())
            mPagine << mCorrente.append("ET\n");
        mCorrente.clear();
    }
    QList<QByteArray> mPagine;
    QByteArray mCorrente;
    int mY = 0, mFont = 0;
};

} // namespace

QByteArray Documento(const QString& titolo, const QStringList& righe)
{
    Impaginatore impaginatore;
    if (!titolo.isEmpty()) {
        for (const QByteArray& riga : WinAnsi(titolo).split('\n'))
            for (const QByteArray& pezzo : Spezza(riga, CorpoTitolo, true))
                impaginatore.Riga(pezzo, 2, CorpoTitolo, InterlineaTitolo);
        impaginatore.Stacco(StaccoTitolo);
    }
    for (const QString& riga : righe)
        for (const QByteArray& parte : WinAnsi(riga).split('\n'))
            for (const QByteArray& pezzo : Spezza(parte, CorpoTesto, false))
                impaginatore.Riga(pezzo, 1, CorpoTesto, InterlineaTesto);
    const QList<QByteArray> contenuti = impaginatore.Pagine();

    const int oggetti = PrimaPagina + 2 * static_cast<int>(contenuti.size()) - 1;
    QList<qsizetype> posizioni(oggetti + 1, 0);
    QByteArray pdf;
    pdf.reserve(1024 + 256 * contenuti.size() + std::accumulate(contenuti.cbegin(), contenuti.cend(), qsizetype(0),
                                                                 [](qsizetype n, const QByteArray& c) { return n + c.size(); }));
    const auto inizia = [&](int numero) {
        posizioni[numero] = pdf.size();
        pdf.append(QByteArray::number(numero)).append(" 0 obj\n");
    };
    const auto riferimento = [](int numero) { return QByteArray::number(numero) + " 0 R"; };

    pdf.append("%PDF-1.4\n%\xE2\xE3\xCF\xD3\n");
    inizia(OggCatalogo);
    pdf.append("<< /Type /Catalog /Pages ").append(riferimento(OggPagine)).append(" >>\nendobj\n");
    inizia(OggPagine);
    pdf.append("<< /Type /Pages /Count ").append(QByteArray::number(contenuti.size())).append(" /Kids [");
    for (int p = 0; p < contenuti.size(); ++p)
        pdf.append(' ').append(riferimento(PrimaPagina + 2 * p));
    pdf.append(" ] >>\nendobj\n");
    inizia(OggFont);
    pdf.append("<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >>\nendobj\n");
    inizia(OggFontGrassetto);
    pdf.append("<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica-Bold /Encoding /WinAnsiEncoding >>\nendobj\n");
    inizia(OggInfo);
    pdf.append("<< /Title ").append(StringaTesto(titolo)).append(" /Producer (PlxSrv) >>\nendobj\n");
    for (int p = 0; p < contenuti.size(); ++p) {
        const int pagina = PrimaPagina + 2 * p;
        inizia(pagina);
        pdf.append("<< /Type /Page /Parent ").append(riferimento(OggPagine))
            .append(" /MediaBox [0 0 ").append(QByteArray::number(LarghezzaPagina)).append(' ')
            .append(QByteArray::number(AltezzaPagina)).append("] /Resources << /Font << /F1 ").append(riferimento(OggFont))
            .append(" /F2 ").append(riferimento(OggFontGrassetto)).append(" >> >> /Contents ")
            .append(riferimento(pagina + 1)).append(" >>\nendobj\n");
        inizia(pagina + 1);
        pdf.append("<< /Length ").append(QByteArray::number(contenuti[p].size())).append(" >>\nstream\n")
            .append(contenuti[p]).append("\nendstream\nendobj\n");
    }

    const qsizetype xref = pdf.size();
    pdf.append("xref\n0 ").append(QByteArray::number(oggetti + 1)).append("\n0000000000 65535 f \n");
    for (int n = 1; n <= oggetti; ++n)
        pdf.append(QByteArray::number(posizioni[n]).rightJustified(10, '0')).append(" 00000 n \n");
    pdf.append("trailer\n<< /Size ").append(QByteArray::number(oggetti + 1)).append(" /Root ")
        .append(riferimento(OggCatalogo)).append(" /Info ").append(riferimento(OggInfo))
        .append(" >>\nstartxref\n").append(QByteArray::number(xref)).append("\n%%EOF\n");
    return pdf;
}

} // namespace modPdf
