#pragma once

#include <QObject>
#include <QString>

// The server-side companion of a console: background work done on the console's behalf.
// While it works it brackets the work with Inizio and Fine; a fault it cannot recover
// from arrives as Errore, and the console then closes.
class PxSrvBkgConsole : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

public slots:
    // Starts the worker for the console of `percorsoGui`, on the server at `cartellaServer`
    // identified by `identificativo`.
    virtual void Avvia(const QString& cartellaServer, const QString& identificativo, const QString& percorsoGui) = 0;
    // Ends the worker; no event follows.
    virtual void Termina() = 0;

signals:
    void Inizio();
    void Fine();
    void Errore(qint32 numero, const QString& sorgente, const QString& descrizione);
};
