#pragma once

#include <QObject>
#include <QTimer>

#include <functional>
#include <random>

class RefCartellaDocumenti;
class RefServizio;

// The workers of the reference server: on each tick every stage of every folder takes a few
// documents from its queue and moves them on, when both the folder's service and the stage's
// worker are running. A configurable share of the documents is rejected with an error text;
// a document rejected for the second time is discarded.
class RefLavoratori : public QObject
{
    Q_OBJECT

public:
    using Servizio = std::function<RefServizio*(const QString& chiave)>;

    RefLavoratori(QList<RefCartellaDocumenti*> cartelle, Servizio servizio, QObject* parent = nullptr);

    // Milliseconds between ticks; 0 stops the timer (a test then calls Lavora itself).
    void ImpostaIntervallo(int millisecondi);
    int Intervallo() const { return mIntervallo; }
    // Percent of the documents that a stage able to reject does reject (0-100).
    void ImpostaPercentualeRespinti(int percento) { mRespinti = std::clamp(percento, 0, 100); }
    // Documents each stage takes per tick.
    void ImpostaPerPasso(int documenti) { mPerPasso = std::max(1, documenti); }
    void ImpostaSeme(quint32 seme) { mCaso.seed(seme); }

public slots:
    // One tick of every stage; returns the number of documents moved.
    int Lavora();

private:
    QList<RefCartellaDocumenti*> mCartelle;
    Servizio mServizio;
    QTimer mTimer;
    int mIntervallo = 0;
    int mRespinti = 5;
    int mPerPasso = 3;
    std::mt19937 mCaso{20261122u};
};
