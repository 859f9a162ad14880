#include "PxImmagini.h"

#include "PxIconResource.h"

#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include <cstdlib>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

const QString Cartella = u":/modulo/ICON/"_s;

QString FileNumero(qint32 assoluto) { return Cartella + QString::number(assoluto) + u".svg"_s; }

// The base file and the overlays that draw an image number; empty when there is none.
std::vector<QString> Strati(qint32 assoluto)
{
    if (QFileInfo::exists(FileNumero(assoluto)))
        return {FileNumero(assoluto)};
    if (assoluto == modIcone::CartellaDocumenti)
        return {Cartella + u"folder.svg"_s};
    if (assoluto < 1000 || assoluto >= 1700)
        return {};
    const qint32 famiglia = assoluto / 100 * 100;
    const qint32 resto = assoluto % 100;
    const qint32 porta = resto % 10;
    if (porta > 3 || resto >= 40 || !QFileInfo::exists(FileNumero(famiglia)))
        return {};
    std::vector<QString> strati{FileNumero(famiglia)};
    static const char* const porte[] = {nullptr, "overlay-local", "overlay-network", "overlay-file"};
    if (porta)
        strati.push_back(Cartella + QString::fromLatin1(porte[porta]) + u".svg"_s);
    if ((resto / 10) % 2)
        strati.push_back(Cartella + u"overlay-shared.svg"_s);
    if (resto >= 20)
        strati.push_back(Cartella + u"overlay-unusable.svg"_s);
    return strati;
}

void Disegna(QPainter& p, const QString& file, int lato)
{
    QSvgRenderer svg(file);
    svg.render(&p, QRectF(0, 0, lato, lato));
}

// Grey, lighter copy: the component is not running.
void Spegni(QImage& immagine)
{
    for (int y = 0; y < immagine.height(); ++y) {
        auto* riga = reinterpret_cast<QRgb*>(immagine.scanLine(y));
        for (int x = 0; x < immagine.width(); ++x) {
            const QRgb c = riga[x];
            const int grigio = (qGray(c) + 2 * 200) / 3;
            const int a = qAlpha(c);
            // premultiplied: scale the grey by the pixel's own alpha
            const int g = grigio * a / 255;
            riga[x] = qRgba(g, g, g, a);
        }
    }
}

QIcon Componi(const std::vector<QString>& strati, bool fermo)
{
    QIcon icona;
    for (const int lato : PxImmagini::Lati) {
        QImage immagine(lato, lato, QImage::Format_ARGB32_Premultiplied);
        immagine.fill(Qt::transparent);
        {
            QPainter p(&immagine);
            p.setRenderHint(QPainter::Antialiasing);
            for (const QString& file : strati)
                Disegna(p, file, lato);
        }
        if (fermo) {
            Spegni(immagine);
            QPainter p(&immagine);
            p.setRenderHint(QPainter::Antialiasing);
            Disegna(p, Cartella + u"overlay-stopped.svg"_s, lato);
        }
        icona.addPixmap(QPixmap::fromImage(immagine));
    }
    return icona;
}

QString FileChiave(const QString& chiave)
{
    static const QHash<QString, QString> file{
        {u"DocStampa"_s, u"doc-stampa"_s},          {u"DocEmail"_s, u"doc-email"_s},
        {u"DocFax"_s, u"doc-fax"_s},                {u"DocFaxCollegato"_s, u"doc-fax-collegato"_s},
        {u"DocPFax"_s, u"doc-pfax"_s},              {u"DocEFax"_s, u"doc-efax"_s},
        {u"DocPbl"_s, u"doc-pbl"_s},                {u"DocPblCollegato"_s, u"doc-pbl-collegato"_s},
        {u"DocAnteprima"_s, u"doc-anteprima"_s},
    };
    const auto it = file.constFind(chiave);
    return it == file.cend() ? QString() : Cartella + *it + u".svg"_s;
}

} // namespace

PxImmagini& PxImmagini::Istanza()
{
    static PxImmagini istanza;
    return istanza;
}

bool PxImmagini::Esiste(qint32 numero)
{
    return !Strati(std::abs(numero)).empty();
}

bool PxImmagini::EsisteChiave(const QString& chiave)
{
    const QString file = FileChiave(chiave);
    return !file.isEmpty() && QFileInfo::exists(file);
}

QIcon PxImmagini::Icona(qint32 numero)
{
    if (const auto it = mCache.constFind(numero); it != mCache.cend())
        return *it;
    const std::vector<QString> strati = Strati(std::abs(numero));
    QIcon icona = strati.empty() ? QIcon() : Componi(strati, numero < 0);
    mCache.insert(numero, icona);
    return icona;
}

QIcon PxImmagini::IconaChiave(const QString& chiave)
{
    if (const auto it = mCacheChiavi.constFind(chiave); it != mCacheChiavi.cend())
        return *it;
    QIcon icona = EsisteChiave(chiave) ? Componi({FileChiave(chiave)}, false) : QIcon();
    mCacheChiavi.insert(chiave, icona);
    return icona;
}
