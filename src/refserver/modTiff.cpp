#include "modTiff.h"

#include "modTestoCairo.h"

#include <cairo.h>
#include <tiffio.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

namespace modTiff {

namespace {

constexpr double Margine = 100, Corpo = 30, Interlinea = 40;
constexpr const char* Carattere = "DejaVu Sans Mono";

// libtiff writing into memory: a growing buffer with a position.
struct Memoria
{
    QByteArray Dati;
    qint64 Posizione = 0;
};

tsize_t Leggi(thandle_t h, tdata_t dati, tsize_t quanti)
{
    auto* m = static_cast<Memoria*>(h);
    const qint64 n = std::clamp<qint64>(m->Dati.size() - m->Posizione, 0, quanti);
    std::memcpy(dati, m->Dati.constData() + m->Posizione, static_cast<size_t>(n));
    m->Posizione += n;
    return static_cast<tsize_t>(n);
}

tsize_t Scrivi(thandle_t h, tdata_t dati, tsize_t quanti)
{
    auto* m = static_cast<Memoria*>(h);
    const qint64 fine = m->Posizione + quanti;
    if (fine > m->Dati.size())
        m->Dati.resize(static_cast<qsizetype>(fine));
    std::memcpy(m->Dati.data() + m->Posizione, dati, static_cast<size_t>(quanti));
    m->Posizione = fine;
    return quanti;
}

toff_t Sposta(thandle_t h, toff_t posizione, int da)
{
    auto* m = static_cast<Memoria*>(h);
    const qint64 base = da == SEEK_SET ? 0 : da == SEEK_CUR ? m->Posizione : m->Dati.size();
    m->Posizione = std::max<qint64>(0, base + static_cast<qint64>(posizione));
    return static_cast<toff_t>(m->Posizione);
}

int Chiudi(thandle_t) { return 0; }
toff_t Misura(thandle_t h) { return static_cast<toff_t>(static_cast<Memoria*>(h)->Dati.size()); }
int Mappa(thandle_t, tdata_t*, toff_t*) { return 0; }
void Smappa(thandle_t, tdata_t, toff_t) {}

// Bits in reverse order: cairo's A1 puts the first dot in a byte's lowest bit on this
// platform, a TIFF in its highest.
const std::array<unsigned char, 256>& Rovescio()
{
    static const std::array<unsigned char, 256> tabella = [] {
        std::array<unsigned char, 256> t{};
        for (int i = 0; i < 256; ++i) {
            unsigned char r = 0;
            for (int b = 0; b < 8; ++b)
                if (i & (1 << b))
                    r |= static_cast<unsigned char>(0x80 >> b);
            t[static_cast<size_t>(i)] = r;
        }
        return t;
    }();
    return tabella;
}

void Testo(cairo_t* cr, double x, double y, const QString& testo)
{
    cairo_move_to(cr, x, y);
    cairo_show_text(cr, testo.toUtf8().constData());
}

} // namespace

QByteArray Fax(const QStringList& righe, int pagine)
{
    pagine = std::clamp(pagine, 1, 1000);
    cairo_surface_t* superficie = cairo_image_surface_create(CAIRO_FORMAT_A1, LarghezzaFax, AltezzaFax);
    cairo_t* cr = cairo_create(superficie);
    cairo_font_options_t* opzioni = cairo_font_options_create();
    cairo_font_options_set_antialias(opzioni, CAIRO_ANTIALIAS_NONE); // one bit a dot
    cairo_font_options_set_hint_style(opzioni, CAIRO_HINT_STYLE_FULL);
    cairo_set_font_options(cr, opzioni);
    cairo_font_options_destroy(opzioni);
    cairo_set_antialias(cr, CAIRO_ANTIALIAS_NONE);
    cairo_select_font_face(cr, Carattere, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cr, Corpo);
    const QStringList pezzi = modTestoCairo::Spezza(cr, righe, LarghezzaFax - 2 * Margine);
    const int perPagina = static_cast<int>((AltezzaFax - 2 * Margine - 2 * Interlinea) / Interlinea);

    Memoria memoria;
    TIFF* tiff = TIFFClientOpen("fax", "w", &memoria, Leggi, Scrivi, Sposta, Chiudi, Misura, Mappa, Smappa);
    bool ok = tiff && cairo_status(cr) == CAIRO_STATUS_SUCCESS;
    const std::array<unsigned char, 256>& rovescio = Rovescio();
    std::vector<unsigned char> riga(static_cast<size_t>(LarghezzaFax / 8));
    for (int pagina = 0; ok && pagina < pagine; ++pagina) {
        // A blank page (alpha 0), then the text in ink (alpha 1).
        cairo_set_operator(cr, CAIRO_OPERATOR_CLEAR);
        cairo_paint(cr);
        cairo_set_operator(cr, CAIRO_OPERATOR_OVER);
        cairo_set_source_rgba(cr, 0, 0, 0, 1);
        for (int i = 0; i < perPagina; ++i) {
            const qsizetype indice = static_cast<qsizetype>(pagina) * perPagina + i;
            if (indice >= pezzi.size())
                break;
            Testo(cr, Margine, Margine + Interlinea * (i + 1), pezzi[indice]);
        }
        Testo(cr, Margine, AltezzaFax - Margine, QStringLiteral("Pagina %1 di %2").arg(pagina + 1).arg(pagine));
        cairo_surface_flush(superficie);

        TIFFSetField(tiff, TIFFTAG_SUBFILETYPE, FILETYPE_PAGE);
        TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<uint32_t>(LarghezzaFax));
        TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<uint32_t>(AltezzaFax));
        TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 1);
        TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
        TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_CCITTFAX4);
        TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
        TIFFSetField(tiff, TIFFTAG_FILLORDER, FILLORDER_MSB2LSB);
        TIFFSetField(tiff, TIFFTAG_XRESOLUTION, static_cast<float>(RisoluzioneX));
        TIFFSetField(tiff, TIFFTAG_YRESOLUTION, static_cast<float>(RisoluzioneY));
        TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, static_cast<uint32_t>(AltezzaFax));
        TIFFSetField(tiff, TIFFTAG_PAGENUMBER, static_cast<uint16_t>(pagina), static_cast<uint16_t>(pagine));
        const unsigned char* dati = cairo_image_surface_get_data(superficie);
        const int passo = cairo_image_surface_get_stride(superficie);
        for (int y = 0; ok && y < AltezzaFax; ++y) {
            const unsigned char* sorgente = dati + static_cast<ptrdiff_t>(y) * passo;
            for (size_t x = 0; x < riga.size(); ++x)
                riga[x] = rovescio[sorgente[x]];
            ok = TIFFWriteScanline(tiff, riga.data(), static_cast<uint32_t>(y), 0) == 1;
        }
        ok = ok && TIFFWriteDirectory(tiff) == 1;
    }
    if (tiff)
        TIFFClose(tiff);
    cairo_destroy(cr);
    cairo_surface_destroy(superficie);
    return ok ? memoria.Dati : QByteArray();
}

} // namespace modTiff
