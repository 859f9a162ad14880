#include "RefAccesso.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

namespace RefAccesso {

namespace {

thread_local Chiamante gCorrente;

} // namespace

const Chiamante& Corrente() { return gCorrente; }

void ImpostaCorrente(const Chiamante& chiamante) { gCorrente = chiamante; }

Ruolo RuoloDi(const QString& cartellaServer, const QString& nome)
{
    QFile file(QDir(cartellaServer).filePath(QStringLiteral("Ruoli.txt")));
    if (nome.isEmpty() || !file.open(QIODevice::ReadOnly | QIODevice::Text))
        return Ruolo::Osservatore;
    while (!file.atEnd()) {
        const QString riga = QString::fromUtf8(file.readLine(4096)).section(u'#', 0, 0).trimmed();
        const qsizetype spazio = riga.indexOf(QRegularExpression(QStringLiteral("\\s")));
        if (spazio <= 0 || riga.mid(spazio).trimmed() != nome)
            continue;
        if (riga.left(spazio).compare(u"operatore", Qt::CaseInsensitive) == 0)
            return Ruolo::Operatore;
        return Ruolo::Osservatore;
    }
    return Ruolo::Osservatore;
}

QString NomeRuolo(Ruolo ruolo) { return ruolo == Ruolo::Operatore ? QStringLiteral("operatore") : QStringLiteral("osservatore"); }

bool PuoAgire(const QString& operazione, QString* motivo)
{
    if (gCorrente.Permessi == Ruolo::Operatore)
        return true;
    if (motivo)
        *motivo = QStringLiteral("%1 non consentito: %2 ha il ruolo osservatore, che può solo leggere")
                      .arg(operazione, gCorrente.Nome);
    return false;
}

QString Chi() { return QStringLiteral("da %1 (%2)").arg(gCorrente.Nome, NomeRuolo(gCorrente.Permessi)); }

} // namespace RefAccesso
