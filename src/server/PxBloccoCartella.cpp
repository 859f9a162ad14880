#include "PxBloccoCartella.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

struct flock TuttoIlFile(short tipo)
{
    struct flock blocco {};
    blocco.l_type = tipo;
    blocco.l_whence = SEEK_SET;
    blocco.l_start = 0;
    blocco.l_len = 0; // to the end, however long
    return blocco;
}

QString Percorso(const QString& cartella)
{
    return QDir(cartella).filePath(QString::fromLatin1(PxBloccoCartella::NomeFile));
}

QString TestoErrno() { return QString::fromLocal8Bit(std::strerror(errno)); }

// "pid=" and "listen=" lines; anything else is ignored, so that a newer server may say more.
void Interpreta(const QByteArray& testo, PxBloccoCartella::Detentore& d)
{
    for (const QByteArray& riga : testo.split('\n')) {
        const qsizetype uguale = riga.indexOf('=');
        if (uguale <= 0)
            continue;
        const QByteArray chiave = riga.left(uguale).trimmed();
        const QByteArray valore = riga.mid(uguale + 1).trimmed();
        if (chiave == "pid")
            d.Pid = valore.toLongLong();
        else if (chiave == "listen" && !valore.isEmpty())
            d.Indirizzi << QString::fromUtf8(valore);
    }
}

QByteArray LeggiTutto(int fd)
{
    QByteArray testo;
    char blocco[1024];
    for (off_t da = 0; testo.size() < 16 * 1024;) {
        const ssize_t letti = ::pread(fd, blocco, sizeof blocco, da);
        if (letti < 0 && errno == EINTR)
            continue;
        if (letti <= 0)
            break;
        testo.append(blocco, letti);
        da += letti;
    }
    return testo;
}

} // namespace

PxBloccoCartella::~PxBloccoCartella() { Rilascia(); }

bool PxBloccoCartella::Prendi(const QString& cartella)
{
    Rilascia();
    mOccupato = false;
    mErrore.clear();
    mAltro = {};
    const QByteArray nome = QFile::encodeName(Percorso(cartella));
    // No O_TRUNC: the file may be another server's, and its lines are what we report then.
    const int fd = ::open(nome.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0644);
    if (fd < 0) {
        mErrore = QStringLiteral("cannot open %1: %2").arg(QString::fromLocal8Bit(nome), TestoErrno());
        return false;
    }
    struct flock blocco = TuttoIlFile(F_WRLCK);
    if (::fcntl(fd, F_OFD_SETLK, &blocco) != 0) {
        const bool occupato = errno == EAGAIN || errno == EACCES;
        mErrore = occupato ? QString() : QStringLiteral("cannot lock %1: %2").arg(QString::fromLocal8Bit(nome), TestoErrno());
        ::close(fd);
        if (occupato) {
            mOccupato = true;
            mAltro = Leggi(cartella);
            mAltro.Vivo = true;
            mErrore = QStringLiteral("the server folder %1 is served by another server (process %2%3)")
                          .arg(QDir(cartella).absolutePath(), mAltro.Pid ? QString::number(mAltro.Pid) : QStringLiteral("?"),
                               mAltro.Indirizzi.isEmpty() ? QString()
                                                          : QStringLiteral(", listening on %1").arg(mAltro.Indirizzi.join(u", ")));
        }
        return false;
    }
    mFd = fd;
    mPid = ::getpid();
    if (!Scrivi("pid=" + QByteArray::number(mPid) + '\n')) {
        Rilascia();
        return false;
    }
    return true;
}

bool PxBloccoCartella::ScriviIndirizzi(const QStringList& indirizzi)
{
    QByteArray testo = "pid=" + QByteArray::number(mPid) + '\n';
    for (const QString& i : indirizzi)
        testo += "listen=" + i.toUtf8() + '\n';
    return Scrivi(testo);
}

bool PxBloccoCartella::Scrivi(const QByteArray& contenuto)
{
    if (mFd < 0)
        return false;
    // Rewritten in place: a reader that catches it half-written sees no address yet and asks
    // again, which is what it does while a server starts anyway.
    if (::ftruncate(mFd, 0) != 0 || ::pwrite(mFd, contenuto.constData(), static_cast<size_t>(contenuto.size()), 0)
            != contenuto.size()
        || ::fsync(mFd) != 0) {
        mErrore = QStringLiteral("cannot write the lock file: %1").arg(TestoErrno());
        return false;
    }
    return true;
}

void PxBloccoCartella::Rilascia()
{
    if (mFd >= 0) {
        // The pid goes with the lock, so that the file left behind never names a live process.
        static_cast<void>(::ftruncate(mFd, 0));
        ::close(mFd); // closing the description releases the lock
        mFd = -1;
    }
}

PxBloccoCartella::Detentore PxBloccoCartella::Leggi(const QString& cartella)
{
    Detentore d;
    const int fd = ::open(QFile::encodeName(Percorso(cartella)).constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (fd < 0)
        return d;
    struct flock blocco = TuttoIlFile(F_WRLCK);
    if (::fcntl(fd, F_OFD_GETLK, &blocco) == 0 && blocco.l_type != F_UNLCK) {
        d.Vivo = true;
        Interpreta(LeggiTutto(fd), d);
    }
    ::close(fd);
    return d;
}

QString PxBloccoCartella::IndirizzoPredefinito(const QString& cartella)
{
    QString canonica = QFileInfo(cartella).canonicalFilePath();
    if (canonica.isEmpty())
        canonica = QFileInfo(cartella).absoluteFilePath();
    const QByteArray impronta = QCryptographicHash::hash(QFile::encodeName(canonica), QCryptographicHash::Sha256).toHex().left(12);
    QString runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (runtime.isEmpty())
        runtime = QDir::tempPath();
    return QStringLiteral("local:%1/plxsrvd-%2.sock").arg(runtime, QString::fromLatin1(impronta));
}
