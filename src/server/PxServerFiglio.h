#pragma once

#include <QObject>
#include <QProcess>
#include <QString>

// The address of a server folder's server: the one serving it now, or else a server program
// started for it as a child of this process, which stops when this object goes (and with this
// process, should it die first).
class PxServerFiglio : public QObject
{
    Q_OBJECT

public:
    explicit PxServerFiglio(QObject* parent = nullptr);
    // Stops the child, if one was started: SIGTERM, then waits for it to sync and end.
    ~PxServerFiglio() override;

    // The address to reach the server of `cartella` by, or "" with Errore() saying why. Waits
    // (running the event loop) at most `millisecondi` for a server that is starting to listen.
    // With `avviaSeManca`, starts `programma` for the folder when no server serves it.
    QString Trova(const QString& cartella, bool avviaSeManca, int millisecondi = 15000);

    QString Errore() const { return mErrore; }
    // Whether the server was started here (and is stopped here).
    bool Avviato() const { return mProcesso.state() != QProcess::NotRunning; }
    qint64 Pid() const { return mProcesso.processId(); }

    // The server program: beside this program's own, else on the PATH (and in /usr/sbin).
    static QString Programma();
    // The installed system server's address, when its socket is there and this user may open
    // it (a member of its group); else "" with `perche` saying why.
    static QString IndirizzoDiSistema(QString* perche = nullptr);
    static QString SocketDiSistema();
    // Of the addresses a server listens on, the one a client on this machine takes first.
    static QString Preferito(const QStringList& indirizzi);

private:
    // A child that dies is started again for the consoles waiting on its address; one that
    // stopped cleanly, or found the folder taken, is not.
    void AllaFine(int stato, QProcess::ExitStatus come);

    QProcess mProcesso;
    QStringList mArgomenti;
    bool mChiusura = false;
    bool mInServizio = false; // the child has listened once
    QString mErrore;
};
