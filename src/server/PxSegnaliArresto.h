#pragma once

#include <QObject>

class QSocketNotifier;

// SIGTERM, SIGINT and SIGHUP, turned into a Qt signal on the thread that made this object:
// the handler only writes the signal's number to a pipe, which the event loop reads. One
// instance per process; destroying it gives the three signals back their default action.
class PxSegnaliArresto : public QObject
{
    Q_OBJECT

public:
    explicit PxSegnaliArresto(QObject* parent = nullptr);
    ~PxSegnaliArresto() override;

    // False when the handlers could not be installed (the signals then act as by default).
    bool Attivo() const { return mNotifica != nullptr; }

signals:
    void Arresto(int segnale);

private:
    void Leggi();

    QSocketNotifier* mNotifica = nullptr;
    int mLettura = -1;
};
