#include "modTiff.h"

#include <gtest/gtest.h>

#include <QtEndian>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int ByteRiga = 1728 / 8;

quint32 Le(const QByteArray& b, qsizetype i, int byte)
{
    return byte == 2 ? qFromLittleEndian<quint16>(b.constData() + i) : qFromLittleEndian<quint32>(b.constData() + i);
}

// The directories of a file this writer made, in chain order.
QList<quint32> Directory(const QByteArray& tiff)
{
    QList<quint32> ifd;
    for (quint32 o = Le(tiff, 4, 4); o != 0 && ifd.size() < 100; o = Le(tiff, o + 2 + Le(tiff, o, 2) * 12, 4))
        ifd << o;
    return ifd;
}

// The 4-byte value field of tag `etichetta` (a SHORT sits in its low half); 0 when absent.
quint32 Campo(const QByteArray& tiff, quint32 ifd, quint16 etichetta)
{
    for (quint32 v = 0; v < Le(tiff, ifd, 2); ++v)
        if (Le(tiff, ifd + 2 + v * 12, 2) == etichetta)
            return Le(tiff, ifd + 2 + v * 12 + 8, 4);
    return 0;
}

QByteArray Decomprimi(const QByteArray& dati)
{
    QByteArray righe;
    for (qsizetype i = 0; i < dati.size();) {
        const int n = static_cast<signed char>(dati.at(i++));
        if (n >= 0) {
            righe.append(dati.mid(i, n + 1));
            i += n + 1;
        } else if (n != -128) {
            righe.append(QByteArray(1 - n, dati.at(i++)));
        }
    }
    return righe;
}

// The page bitmap of directory `ifd`, one row after the other.
QByteArray Bitmap(const QByteArray& tiff, quint32 ifd)
{
    return Decomprimi(tiff.mid(Campo(tiff, ifd, 273), Campo(tiff, ifd, 279)));
}

// Rows holding at least one black dot.
QList<int> RigheNere(const QByteArray& bitmap)
{
    QList<int> nere;
    for (int r = 0; r * ByteRiga < bitmap.size(); ++r)
        if (bitmap.mid(r * ByteRiga, ByteRiga).count('\0') != ByteRiga)
            nere << r;
    return nere;
}

} // namespace

TEST(modTiff, PagesAreFineResolutionFaxPagesInOneChain)
{
    const QByteArray tiff = modTiff::Fax({u"Prova"_s}, 3);
    ASSERT_TRUE(tiff.startsWith(QByteArrayView("II*\0", 4)));
    const QList<modTiff::Pagina> pagine = modTiff::LeggiPagine(tiff);
    ASSERT_EQ(pagine.size(), 3);
    for (const modTiff::Pagina& p : pagine) {
        EXPECT_EQ(p.Larghezza, 1728u);
        EXPECT_EQ(p.Altezza, 2200u);
    }
    const QList<quint32> ifd = Directory(tiff);
    ASSERT_EQ(ifd.size(), 3);
    for (int n = 0; n < 3; ++n) {
        EXPECT_EQ(ifd[n] % 2, 0u) << "directories start on a word boundary";
        EXPECT_EQ(Campo(tiff, ifd[n], 254), 2u);
        EXPECT_EQ(Campo(tiff, ifd[n], 258), 1u);
        EXPECT_EQ(Campo(tiff, ifd[n], 259), 32773u);
        EXPECT_EQ(Campo(tiff, ifd[n], 262), 0u);
        EXPECT_EQ(Campo(tiff, ifd[n], 278), 2200u);
        EXPECT_EQ(Campo(tiff, ifd[n], 296), 2u);
        EXPECT_EQ(Campo(tiff, ifd[n], 297), 3u << 16 | quint32(n)) << "PageNumber counts from 0";
        const quint32 x = Campo(tiff, ifd[n], 282), y = Campo(tiff, ifd[n], 283);
        EXPECT_EQ(QList<quint32>({Le(tiff, x, 4), Le(tiff, x + 4, 4), Le(tiff, y, 4), Le(tiff, y + 4, 4)}),
                  QList<quint32>({204, 1, 196, 1}));
    }
    EXPECT_EQ(modTiff::LeggiPagine(modTiff::Fax({}, 0)).size(), 1) << "at least one page";
    EXPECT_EQ(modTiff::LeggiPagine(modTiff::Fax({}, -3)).size(), 1);
    EXPECT_EQ(tiff, modTiff::Fax({u"Prova"_s}, 3)) << "same text, same bytes";
}

TEST(modTiff, StripsDecodeToBlackTextOnWhite)
{
    QStringList righe{u"Città: Forlì, è già così"_s, QString(), u"WWWWWWWWWW"_s};
    const QByteArray tiff = modTiff::Fax(righe, 2);
    const QList<quint32> ifd = Directory(tiff);
    ASSERT_EQ(ifd.size(), 2);

    const QByteArray prima = Bitmap(tiff, ifd[0]);
    ASSERT_EQ(prima.size(), ByteRiga * 2200);
    const QList<int> nere = RigheNere(prima);
    ASSERT_FALSE(nere.isEmpty());
    EXPECT_GE(nere.first(), 100) << "a top margin";
    EXPECT_LT(nere.first(), 300);
    // Two text lines with an empty one between, then nothing until the footer at the bottom.
    const auto tra = [&nere](int da, int a) { return std::count_if(nere.begin(), nere.end(), [=](int r) { return r >= da && r < a; }); };
    EXPECT_GT(tra(nere.first(), nere.first() + 30), 15);
    EXPECT_EQ(tra(nere.first() + 30, nere.first() + 60), 0);
    EXPECT_GT(tra(nere.first() + 60, nere.first() + 90), 15);
    EXPECT_EQ(tra(nere.first() + 90, 1900), 0);
    EXPECT_GT(tra(1900, 2200), 15) << "the footer";
    // Black starts after the left margin; the row of W's is black across ten characters.
    const QByteArray rigaW = prima.mid((nere.first() + 62) * ByteRiga, ByteRiga);
    EXPECT_EQ(rigaW.left(8).count('\0'), 8);
    EXPECT_GT(rigaW.count('\0'), ByteRiga / 2);
    EXPECT_GE(ByteRiga - rigaW.count('\0'), 15);

    // The second page has only its footer, and a mostly white page stays small.
    const QByteArray seconda = Bitmap(tiff, ifd[1]);
    ASSERT_EQ(seconda.size(), ByteRiga * 2200);
    const QList<int> nereSeconda = RigheNere(seconda);
    ASSERT_FALSE(nereSeconda.isEmpty());
    EXPECT_GE(nereSeconda.first(), 1900);
    EXPECT_LT(Campo(tiff, ifd[1], 279), 12000u);
    EXPECT_NE(prima.mid(2000 * ByteRiga), seconda.mid(2000 * ByteRiga)) << "\"Pagina 1 di 2\" against \"Pagina 2 di 2\"";
}

TEST(modTiff, MalformedFilesGiveNoPages)
{
    EXPECT_TRUE(modTiff::LeggiPagine({}).isEmpty());
    EXPECT_TRUE(modTiff::LeggiPagine("%PDF-1.4 not a tiff").isEmpty());
    EXPECT_TRUE(modTiff::LeggiPagine(QByteArray("II*\0\xF0\xFF\xFF\xFF", 8)).isEmpty()) << "directory past the end";
    EXPECT_TRUE(modTiff::LeggiPagine(QByteArray("II*\0\x08\0\0\0\xFF\xFF", 10)).isEmpty()) << "entries past the end";

    const QByteArray tiff = modTiff::Fax({u"Prova"_s}, 2);
    for (const qsizetype lunghezza : {qsizetype(4), qsizetype(8), qsizetype(100), tiff.size() / 2, tiff.size() - 1})
        EXPECT_TRUE(modTiff::LeggiPagine(tiff.left(lunghezza)).isEmpty()) << "cut at " << lunghezza;

    // The last directory pointing back at the first, or the first at itself.
    const QList<quint32> ifd = Directory(tiff);
    ASSERT_EQ(ifd.size(), 2);
    for (const quint32 da : {ifd[1], ifd[0]}) {
        QByteArray ciclico = tiff;
        qToLittleEndian<quint32>(ifd[0], ciclico.data() + da + 2 + Le(tiff, da, 2) * 12);
        EXPECT_TRUE(modTiff::LeggiPagine(ciclico).isEmpty());
    }

    // Big-endian files from elsewhere are read too: one page, width LONG, height SHORT.
    const QByteArray motorola("MM\0*\0\0\0\x08"
                              "\0\x02"
                              "\x01\x00\0\x04\0\0\0\x01\0\0\x06\xC0"
                              "\x01\x01\0\x03\0\0\0\x01\0\x64\0\0"
                              "\0\0\0\0",
                              8 + 2 + 24 + 4);
    const QList<modTiff::Pagina> pagine = modTiff::LeggiPagine(motorola);
    ASSERT_EQ(pagine.size(), 1);
    EXPECT_EQ(pagine[0].Larghezza, 1728u);
    EXPECT_EQ(pagine[0].Altezza, 100u);
}

TEST(modTiff, GlyphsForItalianText)
{
    EXPECT_NE(modTiff::Glifo(u'\u00E8'), modTiff::Glifo(u'e')) << "è keeps its accent";
    EXPECT_EQ(modTiff::Glifo(u'\u00C8'), modTiff::Glifo(u'E')) << "È falls back to E";
    EXPECT_EQ(modTiff::Glifo(u'\u65E5'), modTiff::Glifo(u'?'));
    EXPECT_EQ(modTiff::Glifo(u' '), (std::array<quint8, 8>{}));
}
