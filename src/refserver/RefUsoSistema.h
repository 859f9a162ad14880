#pragma once

#include "PxSrvUsoSistema.h"

#include <QTimer>

#include <optional>

// Samples the machine's load from /proc: processor use between two samples, physical
// memory (MemTotal, MemAvailable) and virtual memory (physical plus swap, CommitLimit basis).
class RefUsoSistema : public PxSrvUsoSistema
{
    Q_OBJECT

public:
    explicit RefUsoSistema(QObject* parent = nullptr);

    struct Campione
    {
        qint32 Cpu = 0, FisicaUsata = 0, FisicaDisponibileMb = 0, VirtualeUsata = 0, VirtualeDisponibileMb = 0;
    };
    // Reads one sample from the texts of /proc/stat and /proc/meminfo; `precedente` holds the
    // processor counters of the last sample and is updated (processor use 0 on the first).
    static Campione Leggi(const QByteArray& stat, const QByteArray& meminfo,
                          std::optional<std::pair<quint64, quint64>>& precedente);

public slots:
    void Avvia(qint32 millisecondi) override;
    void Ferma() override;

private:
    void Campiona();

    QTimer mTimer;
    std::optional<std::pair<quint64, quint64>> mPrecedente; // busy, total jiffies
};
