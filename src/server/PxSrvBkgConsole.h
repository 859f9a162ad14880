#pragma once

#include "PxSrvOggetto.h"

#include <QStringList>

// The server-side companion of a console, reached by name: background work done on the
// console's behalf. While it works it brackets the work with Inizio and Fine; a fault it
// cannot recover from arrives as Errore, and the console then closes.
class PxSrvBkgConsole : public PxSrvOggetto
{
    Q_OBJECT

public:
    explicit PxSrvBkgConsole(QObject* parent = nullptr);

    // Starts the worker for the console of `percorsoGui`, on the server at `cartellaServer`
    // identified by `identificativo`.
    void Avvia(const QString& cartellaServer, const QString& identificativo, const QString& percorsoGui);
    // Ends the worker; no event follows.
    void Termina();

signals:
    void Inizio();
    void Fine();
    void Errore(qint32 numero, const QString& sorgente, const QString& descrizione);

protected:
    // Bound again to a server found after a loss, it starts the worker there as it was.
    void AlCollegamento(QObject* sorgente) override;

private:
    QStringList mAvvio; // the arguments of Avvia while the worker runs
};
