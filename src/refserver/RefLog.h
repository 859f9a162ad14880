#pragma once

#include <QFile>
#include <QString>

// Appends lines in the shared log form (modRigaLog) to one file.
class RefLog
{
public:
    explicit RefLog(QString percorso);

    const QString& Percorso() const { return mPercorso; }
    // Writes one line; a file that cannot be opened is retried on the next call.
    void Scrivi(int livello, const QString& testo);

private:
    QString mPercorso;
    QFile mFile;
};
