#pragma once

#include <QFile>
#include <QString>

#include <functional>

// Appends lines in the shared log form (modRigaLog) to one file. A line that cannot be
// written (the file cannot be opened, the disk is full) is not dropped in silence: the first
// failure after a success calls the handler set with AlGuasto, once.
class RefLog
{
public:
    explicit RefLog(QString percorso);

    const QString& Percorso() const { return mPercorso; }
    // Writes one line; a file that cannot be opened is retried on the next call. False when
    // the line did not reach the file.
    bool Scrivi(int livello, const QString& testo);
    // Called with the reason when writing starts failing; again only after a success.
    void AlGuasto(std::function<void(const QString& motivo)> gestore) { mAlGuasto = std::move(gestore); }
    // The next failure is reported again (the error it set was cleared).
    void Riarma() { mGuasto = false; }

    // Every line of every log of this process, also handed to `eco` (the file's base name,
    // the level, the text), from the writing thread: the server program copies them to its
    // standard error, for the service manager's journal. Set before any log writes.
    using Eco = std::function<void(const QString& log, int livello, const QString& testo)>;
    static void ImpostaEco(Eco eco);

private:
    bool Fallito(const QString& motivo);

    QString mPercorso;
    QFile mFile;
    std::function<void(const QString&)> mAlGuasto;
    bool mGuasto = false;
};
