#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

class PxSrvServizio;

// Waits for what became of a job handed to a service's input folder: the service's notice that
// it became a document (Preso), or that it was set aside and why (Respinto); when neither comes
// in time, Scaduto: the job was handed over but not yet taken. It listens from construction,
// because the service may take the job before the hand-over has finished syncing the folder:
// a notice that comes before Attendi is kept and answers it.
class PxAttesaLavoro : public QObject
{
    Q_OBJECT

public:
    explicit PxAttesaLavoro(PxSrvServizio* servizio, QObject* parent = nullptr);

    // Waits for the job `base` (its path or file name without extension; the file name is
    // what counts) for at most `millisecondi`. One job per waiter; the answer always comes
    // from the event loop, never inside this call.
    void Attendi(const QString& base, int millisecondi);

signals:
    // `base` as given to Attendi.
    void Preso(const QString& base, const QString& id);
    void Respinto(const QString& base, const QString& motivo);
    void Scaduto(const QString& base);

private:
    struct Sorte
    {
        bool Preso = false;
        QString Testo; // the id, or the reason
    };
    void AlNotizia(const QString& nome, const Sorte& sorte);
    void Concludi(const Sorte& sorte);

    QPointer<PxSrvServizio> mServizio;
    QString mBase;  // as given to Attendi; "" before
    QString mNome;  // its file name
    bool mConcluso = false;
    QHash<QString, Sorte> mArrivate; // notices heard before Attendi, by file name
    QTimer mScadenza;
};
