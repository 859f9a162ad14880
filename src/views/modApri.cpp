#include "modApri.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace modApri {

Motivo Verifica(const QString& percorso, const QString& cartellaServer, bool cartella, const QStringList& estensioni)
{
    const QString vero = QFileInfo(QDir::fromNativeSeparators(percorso)).canonicalFilePath();
    const QString base = QFileInfo(cartellaServer).canonicalFilePath();
    if (vero.isEmpty())
        return NonEsiste;
    if (base.isEmpty() || !(vero == base || vero.startsWith(base + u'/')))
        return FuoriCartella;
    const QFileInfo reale(vero);
    if (cartella)
        return reale.isDir() ? Consentito : NonCartella;
    if (!reale.isFile())
        return NonFile;
    return estensioni.contains(reale.suffix().toLower()) ? Consentito : TipoImprevisto;
}

Motivo Apri(const QString& percorso, const QString& cartellaServer, bool cartella, const QStringList& estensioni)
{
    const Motivo motivo = Verifica(percorso, cartellaServer, cartella, estensioni);
    if (motivo != Consentito)
        return motivo;
    return QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(QDir::fromNativeSeparators(percorso)).canonicalFilePath()))
        ? Consentito
        : NessunProgramma;
}

} // namespace modApri
