// The two small companions of the root object: the background console worker and the load
// sampler. Both are bound once, at connection, and only forward.
#include "PxSrvBkgConsole.h"
#include "PxSrvUsoSistema.h"

PxSrvBkgConsole::PxSrvBkgConsole(QObject* parent) : PxSrvOggetto(QString::fromLatin1(modContratto::NomeBkgConsole), parent) {}

void PxSrvBkgConsole::AlCollegamento(QObject*)
{
    Inoltra("Inizio()", SIGNAL(Inizio()));
    Inoltra("Fine()", SIGNAL(Fine()));
    Inoltra("Errore(qint32,QString,QString)", SIGNAL(Errore(qint32,QString,QString)));
}

void PxSrvBkgConsole::Avvia(const QString& cartellaServer, const QString& identificativo, const QString& percorsoGui)
{
    Chiama("Avvia", this, {}, cartellaServer, identificativo, percorsoGui);
}

void PxSrvBkgConsole::Termina() { Chiama("Termina", this, {}); }

PxSrvUsoSistema::PxSrvUsoSistema(QObject* parent) : PxSrvOggetto(QString::fromLatin1(modContratto::NomeUsoSistema), parent) {}

void PxSrvUsoSistema::AlCollegamento(QObject*)
{
    Inoltra("Aggiornamento(qint32,qint32,qint32,qint32,qint32)", SIGNAL(Aggiornamento(qint32,qint32,qint32,qint32,qint32)));
}

void PxSrvUsoSistema::Avvia(qint32 millisecondi) { Chiama("Avvia", this, {}, millisecondi); }

void PxSrvUsoSistema::Ferma() { Chiama("Ferma", this, {}); }
