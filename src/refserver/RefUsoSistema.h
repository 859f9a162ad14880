#pragma once

#include <QObject>
#include <QTimer>

#include <optional>

// Samples the machine's load from /proc: processor use between two samples, physical
// memory (MemTotal, MemAvailable) and virtual memory (physical plus swap, CommitLimit basis).
class RefUsoSistema : public QObject
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

    // Start sampling every `millisecondi` (at least 100); the first sample follows one interval later.
    void AvviaCampionamento(qint32 millisecondi);
    void FermaCampionamento();

public slots:
    void Avvia(quint64 richiesta, qint32 millisecondi);
    void Ferma(quint64 richiesta);

signals:
    // Processor use %, physical memory used %, physical memory available (MB),
    // virtual memory used %, virtual memory available (MB).
    void Aggiornamento(qint32 usoCpu, qint32 memoriaFisicaUsata, qint32 memoriaFisicaDisponibileMb,
                       qint32 memoriaVirtualeUsata, qint32 memoriaVirtualeDisponibileMb);
    void Risposta(quint64 richiesta, qint32 esito, const QString& testo, const QByteArray& dati);

private:
    void Campiona();

    QTimer mTimer;
    std::optional<std::pair<quint64, quint64>> mPrecedente; // busy, total jiffies
};
