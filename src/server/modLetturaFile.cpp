#include "modLetturaFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace modLetturaFile {

namespace {

PxRisposta Rifiuto(const QString& motivo) { return {modContratto::Rifiutato, motivo, {}}; }

} // namespace

PxRisposta Leggi(const QString& cartellaServer, const QString& percorso, qint64 inizio, qint32 quanti)
{
    const QString scritto = QDir::fromNativeSeparators(percorso.trimmed());
    if (scritto.isEmpty())
        return Rifiuto(QStringLiteral("nessun file indicato"));
    if (scritto.split(u'/').contains(QStringLiteral("..")))
        return Rifiuto(QStringLiteral("percorso non ammesso: %1").arg(percorso));
    if (quanti < 0)
        return Rifiuto(QStringLiteral("quantità non valida: %1").arg(quanti));
    const QString radice = QFileInfo(cartellaServer).canonicalFilePath();
    const QString assoluto = QDir::isRelativePath(scritto) ? QDir(cartellaServer).filePath(scritto) : scritto;
    const QString vero = QFileInfo(assoluto).canonicalFilePath();
    if (vero.isEmpty())
        return Rifiuto(QStringLiteral("file non trovato: %1").arg(percorso));
    if (radice.isEmpty() || !vero.startsWith(radice + u'/'))
        return Rifiuto(QStringLiteral("file fuori dalla cartella del server: %1").arg(percorso));
    return LeggiRegolare(vero, inizio, quanti);
}

PxRisposta LeggiRegolare(const QString& file, qint64 inizio, qint32 quanti)
{
    if (quanti < 0)
        return Rifiuto(QStringLiteral("quantità non valida: %1").arg(quanti));
    const QString& percorso = file;
    // Opened without following a link and without waiting on a pipe, then checked for what it
    // is: whatever took the name since the caller looked is judged by what was opened.
    const int fd = ::open(QFile::encodeName(file).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        const int e = errno;
        return {e == ENOENT ? modContratto::Rifiutato : modContratto::Fallito,
                QStringLiteral("%1: %2").arg(percorso, QString::fromLocal8Bit(std::strerror(e))), {}};
    }
    struct stat s{};
    if (::fstat(fd, &s) != 0 || !S_ISREG(s.st_mode)) {
        ::close(fd);
        return Rifiuto(QStringLiteral("non è un file regolare: %1").arg(percorso));
    }
    const qint64 dimensione = s.st_size;
    quanti = std::min(quanti, modContratto::MassimoLettura);
    qint64 da = inizio;
    if (inizio < 0) {
        da = std::max<qint64>(0, dimensione + inizio);
        quanti = static_cast<qint32>(std::min<qint64>(quanti, -inizio));
    }
    da = std::min(da, dimensione);
    QByteArray dati(static_cast<qsizetype>(std::min<qint64>(quanti, dimensione - da)), Qt::Uninitialized);
    qsizetype letti = 0;
    while (letti < dati.size()) {
        const ssize_t n = ::pread(fd, dati.data() + letti, static_cast<size_t>(dati.size() - letti), da + letti);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0) {
            const int e = errno;
            ::close(fd);
            return {modContratto::Fallito, QStringLiteral("%1: %2").arg(percorso, QString::fromLocal8Bit(std::strerror(e))), {}};
        }
        if (n == 0)
            break; // cut short meanwhile: what was there is answered
        letti += n;
    }
    ::close(fd);
    dati.truncate(letti);
    const QString identita = QStringLiteral("%1:%2").arg(static_cast<quint64>(s.st_dev)).arg(static_cast<quint64>(s.st_ino));
    return {modContratto::Ok, QStringLiteral("%1 %2 %3").arg(da).arg(dimensione).arg(identita), dati};
}

} // namespace modLetturaFile
