#include "RefBkgConsole.h"

#include "PxContratto.h"

#include <QFileInfo>

RefBkgConsole::RefBkgConsole(QObject* parent) : QObject(parent), mTimer(this)
{
    mTimer.setInterval(5000);
    connect(&mTimer, &QTimer::timeout, this, &RefBkgConsole::Controlla);
}

void RefBkgConsole::Avvia(quint64 richiesta, const QString& cartellaServer, const QString& identificativo,
                          const QString& percorsoGui)
{
    AvviaControllo(cartellaServer, identificativo, percorsoGui);
    emit Risposta(richiesta, modContratto::Ok, {}, {});
}

void RefBkgConsole::Termina(quint64 richiesta)
{
    mTimer.stop();
    emit Risposta(richiesta, modContratto::Ok, {}, {});
}

void RefBkgConsole::AvviaControllo(const QString& cartellaServer, const QString& identificativo, const QString& percorsoGui)
{
    mCartella = cartellaServer;
    mIdentificativo = identificativo;
    mPercorsoGui = percorsoGui;
    mSegnalato = false;
    mTimer.start();
}

void RefBkgConsole::Controlla()
{
    if (mSegnalato)
        return;
    emit Inizio();
    const QFileInfo cartella(mCartella);
    const bool integra = cartella.isDir() && cartella.isWritable();
    emit Fine();
    if (!integra) {
        // One report is enough: the console closes on it.
        mSegnalato = true;
        mTimer.stop();
        emit Errore(76, QStringLiteral("PxSrvBkgConsole"),
                    QStringLiteral("Cartella del server %1 non raggiungibile").arg(mCartella));
    }
}
