#pragma once

#include <QString>
#include <QStringList>

// One server per server folder. The server holds an exclusive lock on the folder's
// "plxsrvd.lock" for its whole life (an open-file-description lock: the kernel releases it
// when the process ends, however it ends) and writes there its process id and the addresses
// it listens on, so that a console or a client given only the folder finds its server.
//
//   pid=4711
//   listen=local:/run/user/1000/plxsrvd-3f2a9c1e.sock
//   listen=tcps://0.0.0.0:7420
class PxBloccoCartella
{
public:
    static constexpr const char* NomeFile = "plxsrvd.lock";

    // What the lock file of a folder says.
    struct Detentore
    {
        bool Vivo = false;     // a process holds the lock now
        qint64 Pid = 0;        // as the holder wrote it (0: not written yet)
        QStringList Indirizzi; // as the holder wrote them, once it listens
    };

    PxBloccoCartella() = default;
    ~PxBloccoCartella();
    PxBloccoCartella(const PxBloccoCartella&) = delete;
    PxBloccoCartella& operator=(const PxBloccoCartella&) = delete;

    // Takes the lock of `cartella` and writes this process's id. False, with the reason in
    // Errore(), when the file cannot be opened or another process holds it (Occupato() then
    // says so and Detentore() who).
    bool Prendi(const QString& cartella);
    // Writes the addresses this server listens on, after the process id.
    bool ScriviIndirizzi(const QStringList& indirizzi);
    // Releases the lock (also done on destruction). The file stays: a stale file without a
    // lock reads as no server.
    void Rilascia();

    bool Preso() const { return mFd >= 0; }
    bool Occupato() const { return mOccupato; }
    const QString& Errore() const { return mErrore; }
    const Detentore& Altro() const { return mAltro; }

    // Reads the lock file of `cartella` without taking anything: who holds it, if anyone.
    static Detentore Leggi(const QString& cartella);
    // The local address a server of `cartella` listens on unless told otherwise: a socket in
    // the user's runtime folder, named after the folder's canonical path.
    static QString IndirizzoPredefinito(const QString& cartella);

private:
    bool Scrivi(const QByteArray& contenuto);

    int mFd = -1;
    qint64 mPid = 0;
    bool mOccupato = false;
    QString mErrore;
    Detentore mAltro;
};
