#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QHash>
#include <QSet>
#include <QTimer>

class RefCartellaDocumenti;
class RefLog;
class RefServizio;

// The input folder of one service: a print job (script, body, then the header last, all
// with one base name) whose header arrives becomes a document in queue 0 of the service's
// folder, its files moved into the document's folder. A job whose header cannot be read
// is set aside, whole, in the rejected-jobs area; nothing is ever lost.
//
//   Ingresso/<Servizio>/<base>.spx .bpx .hpx     where clients drop jobs
//   LavoriRespinti/<Servizio>/<base>.*           jobs set aside, with a line in the service log
class RefIngresso : public QObject
{
    Q_OBJECT

public:
    RefIngresso(const QString& cartellaServer, RefCartellaDocumenti& cartella, RefServizio& servizio, RefLog& logServer,
                QObject* parent = nullptr);

    QString Cartella() const { return mCartella; }
    QString CartellaRespinti() const { return mRespinti; }
    static QString CartellaIngresso(const QString& cartellaServer, const QString& servizio);
    static QString CartellaRespinti(const QString& cartellaServer, const QString& servizio);

    // Watches the folder (and looks again every `millisecondi` in case a change went unseen).
    void Avvia(int millisecondi);
    // Stops watching: jobs dropped from now on wait in the folder for the next start.
    void Ferma();

public slots:
    // Takes every complete job in the folder now; returns how many became documents.
    int Scansiona();

private:
    bool Prendi(const QString& base);
    void Respingi(const QString& base, const QString& motivo);

    QString mCartella;
    QString mRespinti;
    RefCartellaDocumenti& mDocumenti;
    RefServizio& mServizio;
    RefLog& mLogServer;
    QFileSystemWatcher mOsservatore;
    QTimer mTimer;
    QTimer mRitardo;
    QSet<QString> mOrfani; // bodies waiting without a header, already reported
    QHash<QString, QString> mIdInAttesa; // job base name -> the id its failed creation had
};
