#include "modTestoCairo.h"

#include <cairo.h>

namespace modTestoCairo {

double Larghezza(cairo_t* cr, const QString& testo)
{
    cairo_text_extents_t misura;
    cairo_text_extents(cr, testo.toUtf8().constData(), &misura);
    return misura.x_advance;
}

QStringList Spezza(cairo_t* cr, const QStringList& righe, double larghezza)
{
    QStringList pezzi;
    for (const QString& riga : righe) {
        QString corrente;
        for (const QString& parola : riga.split(u' ')) {
            const QString prova = corrente.isEmpty() ? parola : corrente + u' ' + parola;
            if (Larghezza(cr, prova) <= larghezza) {
                corrente = prova;
                continue;
            }
            if (!corrente.isEmpty())
                pezzi << corrente;
            corrente = parola;
            while (corrente.size() > 1 && Larghezza(cr, corrente) > larghezza) {
                qsizetype taglio = corrente.size() - 1;
                while (taglio > 1 && Larghezza(cr, corrente.left(taglio)) > larghezza)
                    --taglio;
                pezzi << corrente.left(taglio);
                corrente = corrente.mid(taglio);
            }
        }
        pezzi << corrente;
    }
    return pezzi;
}

} // namespace modTestoCairo
