// The fax TIFFs, read back by libtiff and by Debian's tiffinfo: never by a reader of ours.
#include "modTiff.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <tiffio.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace {

struct Pagina
{
    uint32_t Larghezza = 0, Altezza = 0;
    uint16_t Compressione = 0, Fotometria = 0, Numero = 0, Di = 0;
    float RisoluzioneX = 0, RisoluzioneY = 0;
    qint64 Nere = 0; // dots of ink
};

// Every page of `tiff`, decoded by libtiff.
std::vector<Pagina> Pagine(const QByteArray& tiff)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(u"fax.tif"_s);
    QFile f(file);
    if (!f.open(QIODevice::WriteOnly) || f.write(tiff) != tiff.size())
        return {};
    f.close();
    std::vector<Pagina> pagine;
    TIFF* t = TIFFOpen(QFile::encodeName(file).constData(), "r");
    if (!t)
        return pagine;
    do {
        Pagina p;
        TIFFGetField(t, TIFFTAG_IMAGEWIDTH, &p.Larghezza);
        TIFFGetField(t, TIFFTAG_IMAGELENGTH, &p.Altezza);
        TIFFGetField(t, TIFFTAG_COMPRESSION, &p.Compressione);
        TIFFGetField(t, TIFFTAG_PHOTOMETRIC, &p.Fotometria);
        TIFFGetField(t, TIFFTAG_XRESOLUTION, &p.RisoluzioneX);
        TIFFGetField(t, TIFFTAG_YRESOLUTION, &p.RisoluzioneY);
        TIFFGetField(t, TIFFTAG_PAGENUMBER, &p.Numero, &p.Di);
        std::vector<unsigned char> riga(static_cast<size_t>(TIFFScanlineSize(t)));
        for (uint32_t y = 0; y < p.Altezza; ++y) {
            if (TIFFReadScanline(t, riga.data(), y, 0) != 1)
                break;
            for (const unsigned char c : riga)
                p.Nere += __builtin_popcount(c); // MINISWHITE: 1 is black
        }
        pagine.push_back(p);
    } while (TIFFReadDirectory(t));
    TIFFClose(t);
    return pagine;
}

qint64 Inchiostro(const QString& riga) { return Pagine(modTiff::Fax({riga}, 1)).at(0).Nere; }

} // namespace

TEST(modTiff, PagesAreGroup4FaxPagesAtFineResolution)
{
    QStringList righe;
    for (int i = 1; i <= 120; ++i)
        righe << u"Riga %1 del fax"_s.arg(i);
    const QByteArray tiff = modTiff::Fax(righe, 3);
    const std::vector<Pagina> pagine = Pagine(tiff);
    ASSERT_EQ(pagine.size(), 3u);
    for (size_t i = 0; i < pagine.size(); ++i) {
        const Pagina& p = pagine[i];
        EXPECT_EQ(p.Larghezza, 1728u);
        EXPECT_EQ(p.Altezza, 2200u);
        EXPECT_EQ(p.Compressione, COMPRESSION_CCITTFAX4);
        EXPECT_EQ(p.Fotometria, PHOTOMETRIC_MINISWHITE);
        EXPECT_FLOAT_EQ(p.RisoluzioneX, 204);
        EXPECT_FLOAT_EQ(p.RisoluzioneY, 196);
        EXPECT_EQ(p.Numero, i);
        EXPECT_EQ(p.Di, 3);
        // Text, on a page that stays mostly white.
        EXPECT_GT(p.Nere, 1000) << "page " << i;
        EXPECT_LT(p.Nere, 1728LL * 2200 / 10) << "page " << i;
    }
    // Group 4 keeps a page of text small.
    EXPECT_LT(tiff.size(), 3 * 30000);
}

TEST(modTiff, AccentsAndEveryLatinLetterShow)
{
    // Accented letters draw more ink than their bare letters: they are not dropped or
    // replaced by their base letter.
    EXPECT_GT(Inchiostro(u"àèéìòù ÀÈÉÌÒÙ"_s), Inchiostro(u"aeeiou AEEIOU"_s));
    EXPECT_GT(Inchiostro(u"ŁŐČŠŽ łőčšž"_s), Inchiostro(u"LOCSZ locsz"_s));
    EXPECT_GT(Inchiostro(u"€ 1.234,56"_s), Inchiostro(u"  1.234,56"_s));
}

TEST(modTiff, ToolsReadItAndTheSameCallGivesTheSameBytes)
{
    const QByteArray tiff = modTiff::Fax({u"Fax di prova"_s}, 2);
    EXPECT_EQ(tiff, modTiff::Fax({u"Fax di prova"_s}, 2));
    EXPECT_EQ(Pagine(modTiff::Fax({}, 0)).size(), 1u) << "at least one page";
    QTemporaryDir dir;
    QFile f(dir.filePath(u"fax.tif"_s));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(tiff);
    f.close();
    QProcess tiffinfo;
    tiffinfo.start(u"tiffinfo"_s, {f.fileName()});
    ASSERT_TRUE(tiffinfo.waitForFinished(10000));
    EXPECT_EQ(tiffinfo.exitCode(), 0);
    const QString uscita = QString::fromUtf8(tiffinfo.readAllStandardOutput());
    EXPECT_EQ(uscita.count(u"CCITT Group 4"_s), 2) << qPrintable(uscita);
    EXPECT_TRUE(uscita.contains(u"204, 196 pixels/inch"_s)) << qPrintable(uscita);
}
