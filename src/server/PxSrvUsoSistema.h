#pragma once

#include <QObject>

// The server machine's load, sampled at an interval.
class PxSrvUsoSistema : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

public slots:
    // Start sampling every `millisecondi` (the first sample follows one interval later).
    virtual void Avvia(qint32 millisecondi) = 0;
    virtual void Ferma() = 0;

signals:
    // Processor use %, physical memory used %, physical memory available (MB),
    // virtual memory used %; then the virtual memory available (MB).
    void Aggiornamento(qint32 usoCpu, qint32 memoriaFisicaUsata, qint32 memoriaFisicaDisponibileMb,
                       qint32 memoriaVirtualeUsata, qint32 memoriaVirtualeDisponibileMb);
};
