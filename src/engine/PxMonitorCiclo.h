#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class PxLogConsole;

// Watches the interface thread's event loop: a short timer measures how late each of its
// ticks comes, which is how long the loop was held by something else. Every ten seconds
// the longest hold of that span goes to the console log at detail level, and so does each
// hold of Segnalazione ms or more when it happens; Chiudi writes the longest of all. Switched on by "MonitorCicloEventi" in the ini's "Console" section.
class PxMonitorCiclo : public QObject
{
    Q_OBJECT

public:
    explicit PxMonitorCiclo(PxLogConsole& log, QObject* parent = nullptr);

    // The longest hold so far, in milliseconds.
    qint64 PausaMassima() const { return mMassimaTotale; }
    // Writes the longest hold of all to the log; the monitor stops.
    void Chiudi();

    static constexpr int Intervallo = 10;    // ms between probes
    static constexpr int Resoconto = 10000;  // ms between log lines
    static constexpr int Segnalazione = 20;  // ms: a hold worth its own line

private:
    void Sonda();

    PxLogConsole& mLog;
    QTimer mTimer;
    QElapsedTimer mUltima;
    QElapsedTimer mPeriodo;
    qint64 mMassima = 0;
    qint64 mMassimaTotale = 0;
};
