#include "modPdf.h"

#include "modTestoCairo.h"

#include <cairo-pdf.h>
#include <cairo.h>

namespace modPdf {

namespace {

// A4 in points, and the frame the text stays in.
constexpr double LarghezzaPagina = 595.28, AltezzaPagina = 841.89, Margine = 56;
constexpr double CorpoTesto = 10, InterlineaTesto = 14, CorpoTitolo = 16, InterlineaTitolo = 20, StaccoTitolo = 8;
constexpr const char* Carattere = "DejaVu Sans";

cairo_status_t Accoda(void* destinazione, const unsigned char* dati, unsigned int quanti)
{
    static_cast<QByteArray*>(destinazione)->append(reinterpret_cast<const char*>(dati), static_cast<qsizetype>(quanti));
    return CAIRO_STATUS_SUCCESS;
}

} // namespace

QByteArray Documento(const QString& titolo, const QStringList& righe)
{
    QByteArray pdf;
    cairo_surface_t* superficie = cairo_pdf_surface_create_for_stream(Accoda, &pdf, LarghezzaPagina, AltezzaPagina);
    cairo_pdf_surface_restrict_to_version(superficie, CAIRO_PDF_VERSION_1_5);
    cairo_pdf_surface_set_metadata(superficie, CAIRO_PDF_METADATA_TITLE, titolo.toUtf8().constData());
    cairo_pdf_surface_set_metadata(superficie, CAIRO_PDF_METADATA_CREATOR, "PlxSrv");
    // Fixed, so the bytes depend on the text only.
    cairo_pdf_surface_set_metadata(superficie, CAIRO_PDF_METADATA_CREATE_DATE, "2026-01-01T00:00:00Z");
    cairo_t* cr = cairo_create(superficie);
    const double larghezza = LarghezzaPagina - 2 * Margine;
    double y = Margine;
    const auto scrivi = [&](const QString& testo, double interlinea) {
        if (y + interlinea > AltezzaPagina - Margine) {
            cairo_show_page(cr);
            y = Margine;
        }
        y += interlinea;
        cairo_move_to(cr, Margine, y);
        cairo_show_text(cr, testo.toUtf8().constData());
    };
    cairo_set_source_rgb(cr, 0, 0, 0);
    if (!titolo.isEmpty()) {
        cairo_select_font_face(cr, Carattere, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
        cairo_set_font_size(cr, CorpoTitolo);
        for (const QString& pezzo : modTestoCairo::Spezza(cr, {titolo}, larghezza))
            scrivi(pezzo, InterlineaTitolo);
        y += StaccoTitolo;
    }
    cairo_select_font_face(cr, Carattere, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cr, CorpoTesto);
    for (const QString& pezzo : modTestoCairo::Spezza(cr, righe, larghezza))
        scrivi(pezzo, InterlineaTesto);
    cairo_show_page(cr);
    const bool ok = cairo_status(cr) == CAIRO_STATUS_SUCCESS;
    cairo_destroy(cr);
    cairo_surface_finish(superficie);
    const bool finito = cairo_surface_status(superficie) == CAIRO_STATUS_SUCCESS;
    cairo_surface_destroy(superficie);
    return ok && finito ? pdf : QByteArray();
}

} // namespace modPdf
