#include "modApri.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace modApri {

namespace {

// What a file's content says it is, whatever its name: a program, a library, a script or a
// launcher would be run by some handler rather than shown.
bool ProgrammaPerContenuto(const QString& file)
{
    static const QStringList Eseguibili = {
        u"application/x-executable"_s,    u"application/x-pie-executable"_s, u"application/x-sharedlib"_s,
        u"application/x-desktop"_s,       u"application/x-shellscript"_s,    u"application/x-executable-script"_s,
        u"application/x-ms-dos-executable"_s, u"application/x-msdownload"_s, u"application/x-msi"_s,
        u"application/x-perl"_s,          u"text/x-python"_s,                u"text/x-python3"_s,
        u"application/x-ruby"_s,          u"application/javascript"_s,       u"application/x-java-archive"_s,
    };
    const QMimeType tipo = QMimeDatabase().mimeTypeForFile(file, QMimeDatabase::MatchContent);
    for (const QString& e : Eseguibili)
        if (tipo.inherits(e))
            return true;
    return false;
}

} // namespace

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

const QStringList& TipiDocumento()
{
    static const QStringList Tipi = {u"pdf"_s, u"tif"_s, u"tiff"_s, u"hpx"_s, u"bpx"_s, u"spx"_s, u"xml"_s,
                                     u"log"_s, u"txt"_s, u"eml"_s, u"zip"_s, u"pxz"_s};
    return Tipi;
}

Motivo VerificaPercorso(const QString& percorso)
{
    const QString scritto = QDir::fromNativeSeparators(percorso.trimmed());
    // A relative path would depend on the console's working folder.
    if (scritto.isEmpty() || QDir::isRelativePath(scritto))
        return NonEsiste;
    const QString vero = QFileInfo(scritto).canonicalFilePath(); // "" for a missing target
    if (vero.isEmpty())
        return NonEsiste;
    const QFileInfo reale(vero);
    // Opening a folder shows its content; it runs nothing.
    if (reale.isDir())
        return Consentito;
    if (!reale.isFile())
        return NonFile;
    constexpr QFile::Permissions Esecuzione = QFile::ExeOwner | QFile::ExeUser | QFile::ExeGroup | QFile::ExeOther;
    if (reale.permissions() & Esecuzione)
        return Eseguibile;
    if (!TipiDocumento().contains(reale.suffix().toLower()))
        return TipoImprevisto;
    if (ProgrammaPerContenuto(vero))
        return Eseguibile;
    return Consentito;
}

Motivo ApriPercorso(const QString& percorso)
{
    const Motivo motivo = VerificaPercorso(percorso);
    if (motivo != Consentito)
        return motivo;
    const QString vero = QFileInfo(QDir::fromNativeSeparators(percorso.trimmed())).canonicalFilePath();
    return QDesktopServices::openUrl(QUrl::fromLocalFile(vero)) ? Consentito : NessunProgramma;
}

} // namespace modApri
