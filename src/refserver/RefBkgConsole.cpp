#include "RefBkgConsole.h"

#include <QFileInfo>

RefBkgConsole::RefBkgConsole(QObject* parent) : PxSrvBkgConsole(parent)
{
    mTimer.setInterval(5000);
    connect(&mTimer, &QTimer::timeout, this, &RefBkgConsole::Controlla);
}

void RefBkgConsole::Avvia(const QString& cartellaServer, const QString& identificativo, const QString& percorsoGui)
{
    mCartella = cartellaServer;
    mIdentificativo = identificativo;
    mPercorsoGui = percorsoGui;
    mSegnalato = false;
    mTimer.start();
}

void RefBkgConsole::Termina()
{
    mTimer.stop();
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
