// The two small companions of the root object: the background console worker and the load
// sampler. Both only forward, and pick up where they were when bound again after a loss.
#include "PxSrvBkgConsole.h"
#include "PxSrvUsoSistema.h"

PxSrvBkgConsole::PxSrvBkgConsole(QObject* parent) : PxSrvOggetto(QString::fromLatin1(modContratto::NomeBkgConsole), parent) {}

void PxSrvBkgConsole::AlCollegamento(QObject*)
{
    Inoltra("Inizio()", SIGNAL(Inizio()));
    Inoltra("Fine()", SIGNAL(Fine()));
    Inoltra("Errore(qint32,QString,QString)", SIGNAL(Errore(qint32,QString,QString)));
    if (mAvvio.size() == 3)
        Chiama("Avvia", this, {}, mAvvio[0], mAvvio[1], mAvvio[2]);
}

void PxSrvBkgConsole::Avvia(const QString& cartellaServer, const QString& identificativo, const QString& percorsoGui)
{
    mAvvio = {cartellaServer, identificativo, percorsoGui};
    Chiama("Avvia", this, {}, cartellaServer, identificativo, percorsoGui);
}

void PxSrvBkgConsole::Termina()
{
    mAvvio.clear();
    Chiama("Termina", this, {});
}

PxSrvUsoSistema::PxSrvUsoSistema(QObject* parent) : PxSrvOggetto(QString::fromLatin1(modContratto::NomeUsoSistema), parent) {}

void PxSrvUsoSistema::AlCollegamento(QObject*)
{
    Inoltra("Aggiornamento(qint32,qint32,qint32,qint32,qint32)", SIGNAL(Aggiornamento(qint32,qint32,qint32,qint32,qint32)));
    if (mIntervallo > 0)
        Chiama("Avvia", this, {}, mIntervallo);
}

void PxSrvUsoSistema::Avvia(qint32 millisecondi)
{
    mIntervallo = millisecondi;
    Chiama("Avvia", this, {}, millisecondi);
}

void PxSrvUsoSistema::Ferma()
{
    mIntervallo = 0;
    Chiama("Ferma", this, {});
}
