#pragma once

#include "PxSrvBkgConsole.h"

#include <QTimer>

// The reference server's console companion: every few seconds it checks, on the console's
// behalf, that the server folder is still there and writable. The check is bracketed by
// Inizio and Fine; a folder that has gone raises Errore, which closes the console.
class RefBkgConsole : public PxSrvBkgConsole
{
    Q_OBJECT

public:
    explicit RefBkgConsole(QObject* parent = nullptr);

    void ImpostaIntervallo(int millisecondi) { mTimer.setInterval(millisecondi); }

public slots:
    void Avvia(const QString& cartellaServer, const QString& identificativo, const QString& percorsoGui) override;
    void Termina() override;
    // One check now (also what the timer runs).
    void Controlla();

private:
    QTimer mTimer;
    QString mCartella;
    QString mIdentificativo;
    QString mPercorsoGui;
    bool mSegnalato = false;
};
