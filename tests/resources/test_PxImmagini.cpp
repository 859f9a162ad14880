#include "PxImmagini.h"

#include <gtest/gtest.h>

#include <QImage>

namespace {

QImage Immagine(qint32 numero, int lato = 32)
{
    return PxImmagini::Istanza().Icona(numero).pixmap(lato, lato).toImage().convertToFormat(QImage::Format_ARGB32);
}

bool Colorata(const QImage& im)
{
    for (int y = 0; y < im.height(); ++y)
        for (int x = 0; x < im.width(); ++x) {
            const QRgb c = im.pixel(x, y);
            if (qAlpha(c) > 200 && (std::abs(qRed(c) - qGreen(c)) > 40 || std::abs(qGreen(c) - qBlue(c)) > 40))
                return true;
        }
    return false;
}

} // namespace

TEST(PxImmagini, RendersNumbersAtEverySizeAndCachesThem)
{
    for (const int lato : PxImmagini::Lati) {
        const QImage im = Immagine(240, lato);
        EXPECT_EQ(im.width(), lato);
        EXPECT_FALSE(im.isNull());
    }
    EXPECT_TRUE(PxImmagini::Istanza().Icona(777).isNull());
    EXPECT_EQ(PxImmagini::Istanza().Icona(240).cacheKey(), PxImmagini::Istanza().Icona(240).cacheKey());
}

TEST(PxImmagini, OverlaysChangeThePictureAndStoppedDiffersFromRunning)
{
    const QImage base = Immagine(1400);
    const QImage file = Immagine(1403);
    const QImage tutto = Immagine(1433);
    EXPECT_NE(base, file);
    EXPECT_NE(file, tutto);
    // Stopped: the same image greyed, with a coloured stop mark on it.
    const QImage acceso = Immagine(240);
    const QImage spento = Immagine(-240);
    EXPECT_NE(acceso, spento);
    EXPECT_TRUE(Colorata(acceso));
    // Outside the stop mark (top-left quarter) nothing keeps its colour.
    QImage resto = spento.copy(16, 16, 16, 16);
    EXPECT_FALSE(Colorata(resto));
}
