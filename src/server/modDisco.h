#pragma once

#include <QByteArray>
#include <QString>

#include <sys/types.h>

// The server's file operations that must not be fooled by what lies on disk, nor lose
// anything to a full disk or a crash: links are never followed, a rename never overwrites
// unless asked to, names read from files never leave their folder, and a file is published
// only once it is written, synced and closed without error (write, fsync, rename, fsync the
// folder).
//
// Every call that changes the disk goes through one small set of operations (Operazioni),
// which a test replaces to make the Nth one fail.
namespace modDisco {

class Operazioni
{
public:
    virtual ~Operazioni() = default;
    // Each returns 0 (or a descriptor, or a byte count) on success, -1 and errno on failure.
    virtual int Apri(const char* percorso, int flag, mode_t modo);
    virtual ssize_t Scrivi(int fd, const char* dati, size_t quanti);
    virtual int Sincronizza(int fd);
    // syncfs: everything written on the file system of `fd`.
    virtual int SincronizzaTutto(int fd);
    virtual int Chiudi(int fd);
    // renameat2: `sostituisci` false never replaces what `a` names.
    virtual int Rinomina(const char* da, const char* a, bool sostituisci);
    // renameat2 with RENAME_EXCHANGE: the two names swap their files at once.
    virtual int Scambia(const char* a, const char* b);
    virtual int CreaCartella(const char* percorso, mode_t modo);
};

// The operations in use (the real ones unless a test set others); null restores the real.
void ImpostaOperazioni(Operazioni* operazioni);
Operazioni& Attuali();

// Whether `percorso` itself is a regular file (a link to one is not).
bool FileRegolare(const QString& percorso);
// Whether anything (a link included, even a dangling one) has the name `percorso`.
bool Occupato(const QString& percorso);
// Renames `da` to `a` without following a link and without replacing what `a` names;
// false (and the reason in `errore`) when it cannot.
bool Rinomina(const QString& da, const QString& a, QString* errore = nullptr);
// Whether `nome` is a plain file name: not empty, no separator, not "." or "..".
bool NomeSemplice(const QString& nome);

// Creates `percorso` (which must not exist) with `dati`, synced and checked at close.
// For files inside a folder that is itself published later by a rename.
bool ScriviNuovo(const QString& percorso, const QByteArray& dati, QString* errore = nullptr);
// Writes `dati` under a temporary name beside `percorso`, syncs it, then renames it over
// `percorso` (replacing it) and syncs the folder: a reader sees the old or the new file,
// whole, and a crash leaves at most a temporary file that the next start removes.
// `cartellaTemporanea` (same file system) holds the temporary file; "" means beside it.
bool Sostituisci(const QString& percorso, const QByteArray& dati, QString* errore = nullptr,
                 const QString& cartellaTemporanea = {});
// The two halves of Sostituisci for changes that share their syncs (a group commit), without a
// new file each time: the new content is written, not synced, into the spare file beside
// `percorso` (NomeRiserva: created the first time, overwritten after); then, once
// SincronizzaTutto has run, Scambia exchanges the two names (renameat2 RENAME_EXCHANGE), so
// that `percorso` holds the new content and the spare the old, for the next change; a
// SincronizzaTutto after the exchanges makes them last. A burst of changes thus neither makes
// nor frees an inode: freeing thousands a second makes ext4's allocator step past each one
// freed recently, every time it makes one. Where the file system cannot exchange (or
// `percorso` is missing) the spare is renamed over `percorso`.
QString NomeRiserva(const QString& percorso);
bool ScriviRiserva(const QString& percorso, const QByteArray& dati, QString* errore = nullptr);
bool Scambia(const QString& percorso, QString* errore = nullptr);
// Syncs the whole file system `cartella` lies on (syncfs): one call for many files and folders.
bool SincronizzaTutto(const QString& cartella, QString* errore = nullptr);
// Syncs a folder, so that the names renamed into it are on disk.
bool SincronizzaCartella(const QString& cartella, QString* errore = nullptr);
// Creates the folder `percorso` (its parent must exist).
bool CreaCartella(const QString& percorso, QString* errore = nullptr);
// The temporary names Sostituisci uses start with this.
inline constexpr const char* PrefissoTemporaneo = ".tmp-";

} // namespace modDisco
