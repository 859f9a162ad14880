#include "modDisco.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace modDisco {

namespace {

Operazioni gReali;
std::atomic<Operazioni*> gAttuali{&gReali};

QString Errno() { return QString::fromLocal8Bit(std::strerror(errno)); }

void Imposta(QString* errore, const QString& testo)
{
    if (errore)
        *errore = testo;
}

// Writes every byte to `fd`, syncs (unless told not to) and closes it; the descriptor is
// closed in any case.
bool ScriviTutto(int fd, const QByteArray& dati, const QString& percorso, QString* errore, bool sincronizza = true,
                 bool accorcia = false)
{
    Operazioni& op = Attuali();
    qsizetype scritti = 0;
    while (scritti < dati.size()) {
        const ssize_t n = op.Scrivi(fd, dati.constData() + scritti, static_cast<size_t>(dati.size() - scritti));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            Imposta(errore, QStringLiteral("scrittura di %1: %2").arg(percorso, n < 0 ? Errno() : QStringLiteral("nessun byte scritto")));
            op.Chiudi(fd);
            return false;
        }
        scritti += n;
    }
    // Over an older content: what was longer is cut (never to zero, and rarely past a block,
    // so the file keeps its blocks).
    if (accorcia && ::ftruncate(fd, static_cast<off_t>(dati.size())) != 0) {
        Imposta(errore, QStringLiteral("scrittura di %1: %2").arg(percorso, Errno()));
        op.Chiudi(fd);
        return false;
    }
    // A full disk or a failing device often shows only here, at sync or close.
    if (sincronizza && op.Sincronizza(fd) != 0) {
        Imposta(errore, QStringLiteral("sincronizzazione di %1: %2").arg(percorso, Errno()));
        op.Chiudi(fd);
        return false;
    }
    if (op.Chiudi(fd) != 0) {
        Imposta(errore, QStringLiteral("chiusura di %1: %2").arg(percorso, Errno()));
        return false;
    }
    return true;
}

} // namespace

int Operazioni::Apri(const char* percorso, int flag, mode_t modo) { return ::open(percorso, flag, modo); }
ssize_t Operazioni::Scrivi(int fd, const char* dati, size_t quanti) { return ::write(fd, dati, quanti); }
int Operazioni::Sincronizza(int fd) { return ::fsync(fd); }
int Operazioni::SincronizzaTutto(int fd) { return ::syncfs(fd); }
int Operazioni::Chiudi(int fd) { return ::close(fd); }
int Operazioni::CreaCartella(const char* percorso, mode_t modo) { return ::mkdir(percorso, modo); }

int Operazioni::Scambia(const char* a, const char* b) { return ::renameat2(AT_FDCWD, a, AT_FDCWD, b, RENAME_EXCHANGE); }

int Operazioni::Rinomina(const char* da, const char* a, bool sostituisci)
{
    return ::renameat2(AT_FDCWD, da, AT_FDCWD, a, sostituisci ? 0u : RENAME_NOREPLACE);
}

void ImpostaOperazioni(Operazioni* operazioni) { gAttuali = operazioni ? operazioni : &gReali; }

Operazioni& Attuali() { return *gAttuali.load(); }

bool FileRegolare(const QString& percorso)
{
    struct stat s {};
    return ::lstat(QFile::encodeName(percorso).constData(), &s) == 0 && S_ISREG(s.st_mode);
}

bool Occupato(const QString& percorso)
{
    struct stat s {};
    return ::lstat(QFile::encodeName(percorso).constData(), &s) == 0;
}

bool Rinomina(const QString& da, const QString& a, QString* errore)
{
    if (Attuali().Rinomina(QFile::encodeName(da).constData(), QFile::encodeName(a).constData(), false) == 0)
        return true;
    Imposta(errore, QStringLiteral("%1 in %2: %3").arg(da, a, Errno()));
    return false;
}

bool NomeSemplice(const QString& nome)
{
    return !nome.isEmpty() && nome != u"." && nome != u".." && !nome.contains(u'/') && !nome.contains(u'\\')
        && !nome.contains(QChar(0));
}


namespace {

QString NomeTemporaneo(const QString& percorso, const QString& cartellaTemporanea)
{
    static std::atomic<quint64> progressivo{0};
    const QFileInfo finale(percorso);
    return (cartellaTemporanea.isEmpty() ? finale.absolutePath() : cartellaTemporanea) + u'/'
        + QString::fromLatin1(PrefissoTemporaneo) + QString::number(::getpid()) + u'-' + QString::number(progressivo++) + u'-'
        + finale.fileName();
}

bool Crea(const QString& percorso, const QByteArray& dati, QString* errore, bool sincronizza)
{
    const int fd = Attuali().Apri(QFile::encodeName(percorso).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0644);
    if (fd < 0) {
        Imposta(errore, QStringLiteral("creazione di %1: %2").arg(percorso, Errno()));
        return false;
    }
    if (ScriviTutto(fd, dati, percorso, errore, sincronizza))
        return true;
    ::unlink(QFile::encodeName(percorso).constData());
    return false;
}

} // namespace

bool ScriviNuovo(const QString& percorso, const QByteArray& dati, QString* errore) { return Crea(percorso, dati, errore, true); }

bool Sostituisci(const QString& percorso, const QByteArray& dati, QString* errore, const QString& cartellaTemporanea)
{
    const QString temporaneo = NomeTemporaneo(percorso, cartellaTemporanea);
    if (!ScriviNuovo(temporaneo, dati, errore))
        return false;
    if (Attuali().Rinomina(QFile::encodeName(temporaneo).constData(), QFile::encodeName(percorso).constData(), true) != 0) {
        Imposta(errore, QStringLiteral("pubblicazione di %1: %2").arg(percorso, Errno()));
        ::unlink(QFile::encodeName(temporaneo).constData());
        return false;
    }
    return SincronizzaCartella(QFileInfo(percorso).absolutePath(), errore);
}

QString NomeRiserva(const QString& percorso)
{
    const QFileInfo finale(percorso);
    return finale.absolutePath() + QStringLiteral("/.") + finale.fileName() + QStringLiteral(".riserva");
}

bool ScriviRiserva(const QString& percorso, const QByteArray& dati, QString* errore)
{
    const QString riserva = NomeRiserva(percorso);
    // Written over from the start, not truncated first: emptying a file frees its blocks (a
    // discard on some disks) and has ext4 write it out at close.
    const int fd = Attuali().Apri(QFile::encodeName(riserva).constData(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0644);
    if (fd < 0) {
        Imposta(errore, QStringLiteral("scrittura di %1: %2").arg(riserva, Errno()));
        return false;
    }
    return ScriviTutto(fd, dati, riserva, errore, false, true);
}

bool Scambia(const QString& percorso, QString* errore)
{
    const QByteArray riserva = QFile::encodeName(NomeRiserva(percorso));
    const QByteArray finale = QFile::encodeName(percorso);
    Operazioni& op = Attuali();
    if (op.Scambia(riserva.constData(), finale.constData()) == 0)
        return true;
    if ((errno == EINVAL || errno == ENOENT || errno == ENOSYS) && op.Rinomina(riserva.constData(), finale.constData(), true) == 0)
        return true;
    Imposta(errore, QStringLiteral("pubblicazione di %1: %2").arg(percorso, Errno()));
    return false;
}

namespace {

// Opens `cartella` and runs `sincronizza` (fsync of the folder, or syncfs of its file system) on it.
bool SincronizzaDa(const QString& cartella, int (Operazioni::*sincronizza)(int), const char* cosa, QString* errore)
{
    Operazioni& op = Attuali();
    const int fd = op.Apri(QFile::encodeName(cartella).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
    if (fd < 0) {
        Imposta(errore, QStringLiteral("apertura della cartella %1: %2").arg(cartella, Errno()));
        return false;
    }
    const bool ok = (op.*sincronizza)(fd) == 0;
    if (!ok)
        Imposta(errore, QStringLiteral("sincronizzazione %1 %2: %3").arg(QLatin1StringView(cosa), cartella, Errno()));
    op.Chiudi(fd);
    return ok;
}

} // namespace

bool SincronizzaTutto(const QString& cartella, QString* errore)
{
    return SincronizzaDa(cartella, &Operazioni::SincronizzaTutto, "del disco di", errore);
}

bool SincronizzaCartella(const QString& cartella, QString* errore)
{
    return SincronizzaDa(cartella, &Operazioni::Sincronizza, "della cartella", errore);
}

bool CreaCartella(const QString& percorso, QString* errore)
{
    if (Attuali().CreaCartella(QFile::encodeName(percorso).constData(), 0755) == 0)
        return true;
    Imposta(errore, QStringLiteral("creazione della cartella %1: %2").arg(percorso, Errno()));
    return false;
}

} // namespace modDisco
