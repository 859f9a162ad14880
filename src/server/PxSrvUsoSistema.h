#pragma once

#include "PxSrvOggetto.h"

// The server machine's load, sampled at an interval.
class PxSrvUsoSistema : public PxSrvOggetto
{
    Q_OBJECT

public:
    explicit PxSrvUsoSistema(QObject* parent = nullptr);

    // Start sampling every `millisecondi` (the first sample follows one interval later).
    void Avvia(qint32 millisecondi);
    void Ferma();

signals:
    // Processor use %, physical memory used %, physical memory available (MB),
    // virtual memory used %; then the virtual memory available (MB).
    void Aggiornamento(qint32 usoCpu, qint32 memoriaFisicaUsata, qint32 memoriaFisicaDisponibileMb,
                       qint32 memoriaVirtualeUsata, qint32 memoriaVirtualeDisponibileMb);

protected:
    // Bound again to a server found after a loss, it samples again as it did.
    void AlCollegamento(QObject* sorgente) override;

private:
    qint32 mIntervallo = 0; // while sampling
};
