#include "modDisco.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace modDisco {

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
    if (::renameat2(AT_FDCWD, QFile::encodeName(da).constData(), AT_FDCWD, QFile::encodeName(a).constData(),
                    RENAME_NOREPLACE) == 0)
        return true;
    if (errore)
        *errore = QString::fromLocal8Bit(std::strerror(errno));
    return false;
}

bool NomeSemplice(const QString& nome)
{
    return !nome.isEmpty() && nome != u"." && nome != u".." && !nome.contains(u'/') && !nome.contains(u'\\')
        && !nome.contains(QChar(0));
}

} // namespace modDisco
