#include "PxMonitorCiclo.h"

#include "PxLogConsole.h"
#include "PxRigaLog.h"

PxMonitorCiclo::PxMonitorCiclo(PxLogConsole& log, QObject* parent) : QObject(parent), mLog(log), mTimer(this)
{
    mTimer.setTimerType(Qt::PreciseTimer);
    mTimer.setInterval(Intervallo);
    connect(&mTimer, &QTimer::timeout, this, &PxMonitorCiclo::Sonda);
    mUltima.start();
    mPeriodo.start();
    mTimer.start();
}

void PxMonitorCiclo::Sonda()
{
    const qint64 pausa = std::max<qint64>(0, mUltima.restart() - Intervallo);
    mMassima = std::max(mMassima, pausa);
    mMassimaTotale = std::max(mMassimaTotale, pausa);
    if (pausa >= Segnalazione)
        mLog.Scrivi(modRigaLog::LivelloDettaglio, QStringLiteral("Ciclo eventi: pausa di %1 ms").arg(pausa));
    if (mPeriodo.elapsed() < Resoconto)
        return;
    mPeriodo.restart();
    mLog.Scrivi(modRigaLog::LivelloDettaglio, QStringLiteral("Ciclo eventi: pausa massima %1 ms negli ultimi %2 s")
                                                  .arg(mMassima)
                                                  .arg(Resoconto / 1000));
    mMassima = 0;
}

void PxMonitorCiclo::Chiudi()
{
    if (!mTimer.isActive())
        return;
    mTimer.stop();
    mLog.Scrivi(modRigaLog::LivelloDettaglio, QStringLiteral("Ciclo eventi: pausa massima %1 ms in tutto").arg(mMassimaTotale));
}
