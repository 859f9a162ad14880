#pragma once

#include <QHash>
#include <QString>

// The program's string table: id -> text, read once from the compiled-in data file
// "id<TAB>text" (escapes \n, \t, \\; '#' starts a comment line).
class TabellaTesti
{
public:
    // The shared table of the console's language (Italian, code 1040).
    static const TabellaTesti& Italiano();

    // Parses table text; malformed lines are skipped and counted.
    static TabellaTesti DaTesto(const QString& testo);

    // Text of `id`, or a null QString when the table lacks it.
    QString Testo(qint32 id) const { return mTesti.value(id); }
    bool Contiene(qint32 id) const { return mTesti.contains(id); }
    qsizetype Conteggio() const { return mTesti.size(); }
    qsizetype RigheScartate() const { return mScartate; }
    QList<qint32> Id() const;

    static constexpr qint32 CodiceLingua = 1040;

private:
    QHash<qint32, QString> mTesti;
    qsizetype mScartate = 0;
};
