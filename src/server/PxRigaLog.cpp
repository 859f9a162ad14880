#include "PxRigaLog.h"

namespace modRigaLog {

QByteArray Formatta(int livello, const QTime& ora, QStringView testo)
{
    QString riga = QString::number(livello).rightJustified(2, u' ', true);
    riga += u' ';
    riga += ora.toString(QStringLiteral("HH:mm:ss"));
    riga += u' ';
    riga.reserve(riga.size() + testo.size() + 2);
    for (const QChar c : testo)
        riga += (c == u'\r' || c == u'\n') ? QChar(u' ') : c;
    riga += QStringLiteral("\r\n");
    return riga.toUtf8();
}

std::optional<RigaLog> Analizza(QStringView riga)
{
    if (riga.size() < 11)
        return std::nullopt;
    bool ok = false;
    RigaLog r;
    r.Livello = riga.left(2).trimmed().toInt(&ok);
    if (!ok)
        return std::nullopt;
    const QString ora = riga.mid(2, 9).trimmed().toString();
    r.Ora = QTime::fromString(ora, QStringLiteral("H:mm:ss"));
    if (!r.Ora.isValid())
        r.Ora = QTime::fromString(ora, QStringLiteral("H:mm"));
    if (riga.size() > 12)
        r.Testo = riga.mid(12).toString();
    return r;
}

} // namespace modRigaLog
