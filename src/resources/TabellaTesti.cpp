#include "TabellaTesti.h"

#include <QFile>

#include <algorithm>

namespace {

QString Unescape(QStringView s)
{
    QString out;
    out.reserve(s.size());
    for (qsizetype i = 0; i < s.size(); ++i) {
        const QChar c = s[i];
        if (c != u'\\' || i + 1 == s.size()) {
            out += c;
            continue;
        }
        const QChar n = s[++i];
        if (n == u'n')
            out += u'\n';
        else if (n == u't')
            out += u'\t';
        else
            out += n; // "\\" and any other escaped character stand for themselves
    }
    return out;
}

} // namespace

const TabellaTesti& TabellaTesti::Italiano()
{
    static const TabellaTesti tabella = [] {
        QFile f(QStringLiteral(":/plx/testi/strings_it.tsv"));
        if (!f.open(QIODevice::ReadOnly))
            return TabellaTesti{};
        return DaTesto(QString::fromUtf8(f.readAll()));
    }();
    return tabella;
}

TabellaTesti TabellaTesti::DaTesto(const QString& testo)
{
    TabellaTesti t;
    const auto righe = QStringView(testo).split(u'\n');
    t.mTesti.reserve(righe.size());
    for (QStringView riga : righe) {
        if (riga.endsWith(u'\r'))
            riga.chop(1);
        if (riga.isEmpty() || riga.startsWith(u'#'))
            continue;
        const qsizetype tab = riga.indexOf(u'\t');
        bool ok = false;
        const qint32 id = tab > 0 ? riga.left(tab).trimmed().toInt(&ok) : 0;
        if (!ok) {
            ++t.mScartate;
            continue;
        }
        t.mTesti.insert(id, Unescape(riga.mid(tab + 1)));
    }
    return t;
}

QList<qint32> TabellaTesti::Id() const
{
    QList<qint32> id = mTesti.keys();
    std::sort(id.begin(), id.end());
    return id;
}
