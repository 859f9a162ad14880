#pragma once

#include <QString>

#include <memory>

namespace spdlog { class logger; }

// The console's own log: one file in the log folder, "<application>.log", written line by
// line in the same form as the server's logs (modRigaLog), so the log pane can show it.
// It cannot fill the disk: past DimensioneMassima bytes the file becomes "<application>.1.log"
// (the older ones shift up to NumeroFile, the oldest goes) and a new one starts.
class PxLogConsole
{
public:
    PxLogConsole();
    ~PxLogConsole();

    QString NomeApplicazione;
    QString Cartella;
    bool Abilitato = true;
    qint64 DimensioneMassima = 10 * 1024 * 1024;
    int NumeroFile = 5; // kept beside the current one
    // Whether the "Name> Entra" / "Name> Esce" lines of the procedures are written.
    bool TracciaProcedure = true;

    // Opens (appends to) the file; returns false when it cannot, and the log then writes nothing.
    bool Apri();
    void Chiudi();
    bool Aperto() const { return static_cast<bool>(mLogger); }
    QString File() const;

    // One line at `livello` (0 error .. 3 detail); flushed at once so a crash loses nothing.
    void Scrivi(int livello, const QString& testo);

private:
    std::shared_ptr<spdlog::logger> mLogger;
};
