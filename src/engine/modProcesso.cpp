#include "modProcesso.h"

#include <QByteArray>
#include <QFile>
#include <QList>

#include <unistd.h>

namespace modProcesso {

qint64 MillisecondiDallAvvio()
{
    QFile stat(QStringLiteral("/proc/self/stat"));
    QFile uptime(QStringLiteral("/proc/uptime"));
    if (!stat.open(QIODevice::ReadOnly) || !uptime.open(QIODevice::ReadOnly))
        return -1;
    // The command name, in brackets, may hold spaces: count the fields after its end.
    const QByteArray testo = stat.readAll();
    const qsizetype fine = testo.lastIndexOf(')');
    const QList<QByteArray> campi = testo.mid(fine + 2).split(' ');
    const long tic = ::sysconf(_SC_CLK_TCK);
    if (fine < 0 || campi.size() < 20 || tic <= 0)
        return -1;
    const double avvio = campi[19].toDouble() / static_cast<double>(tic); // field 22: starttime
    const double ora = uptime.readAll().split(' ').value(0).toDouble();
    return ora >= avvio ? static_cast<qint64>((ora - avvio) * 1000.0) : -1;
}

} // namespace modProcesso
