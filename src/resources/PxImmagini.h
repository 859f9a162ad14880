#pragma once

#include <QHash>
#include <QIcon>
#include <QString>

// The console's image register: icon numbers (and the document icon keys) to images.
//
// A number's absolute value names the image. Printer and PDF-printer numbers
// (1000-1699) are a family's base image with marks laid over it: the last digit is the
// port (1 local checked by ping, 2 network, 3 file), +10 shared, +20 unusable. A negative
// number shows the same image greyed with a stop mark, so what is not running shows at a
// glance. Images are SVG files of the program's resource module, rendered once and cached.
class PxImmagini
{
public:
    static PxImmagini& Istanza();

    // The icon of `numero`; a null icon for a number that has no image.
    QIcon Icona(qint32 numero);
    // The icon of a document key ("DocFax", "DocFaxCollegato", ...); null when unknown.
    QIcon IconaChiave(const QString& chiave);

    // Whether `numero` has an image (the sign does not matter).
    static bool Esiste(qint32 numero);
    static bool EsisteChiave(const QString& chiave);

    static constexpr int Lati[] = {16, 24, 32, 48};

private:
    QHash<qint32, QIcon> mCache;
    QHash<QString, QIcon> mCacheChiavi;
};
