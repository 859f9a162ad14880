#pragma once

#include "PxContratto.h"
#include "modLog.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <functional>

class PxContesto;
class PxModelloLog;
class QAction;
class QLineEdit;
class QToolBar;
class QTreeView;

// The log pane: the log of the service or document on display (or the console's own), one
// row per line whose level is checked on the bar "bndLog" (ids 100-103 for levels 0-3). It
// follows the file as it grows, reading only what was added, and starts again when the file
// is truncated or replaced by a rotation; the view stays where the operator scrolled unless
// it was at the bottom. A server's log is read through the server (LeggiFile), the console's
// own from this machine, both in the same pieces; lines are split off the interface thread.
class frmLog : public QWidget
{
    Q_OBJECT

public:
    explicit frmLog(PxContesto& contesto, QWidget* parent = nullptr);
    ~frmLog() override;

    // Loads and shows `file` ("" clears the list).
    void CaricaLog(const QString& file);
    // Appends one record.
    void AggiungiRigoLog(qint32 icona, qint32 secondi, const QString& testo);

    QString File() const { return mFile; }
    // What the pane shows, for its dock's title: "Log - " and the name of the log (the
    // console's, the service's that writes it, or the file's name).
    QString Titolo() const { return mTitolo; }
    // How a log file is named after whoever writes it ("" when nobody known does).
    void ImpostaNomi(std::function<QString(const QString& file)> nomi) { mNomi = std::move(nomi); }
    PxModelloLog* Modello() const { return mModello; }
    QTreeView* Lista() const { return mxrpLog; }
    QAction* Livello(int livello) const;
    modLog::Livelli Livelli() const;
    // Finds the next (or previous) row holding `testo` after the current one; false if none.
    bool Cerca(const QString& testo, bool avanti = true);

signals:
    // A read has been applied to the list (whole or appended).
    void Letto();
    void TitoloCambiato(const QString& titolo);

private:
    void Leggi(bool daCapo);
    void Applica(bool daCapo, modLog::Lettura letta);
    void Controlla();
    void AggiornaTitolo();
    bool Locale() const;
    // A piece of the file on display, as LeggiFile answers it.
    void Chiedi(qint64 inizio, qint32 quanti, std::function<void(const PxRisposta&)> fatto);

    PxContesto& mContesto;
    QToolBar* mbndLog;
    QTreeView* mxrpLog;
    PxModelloLog* mModello;
    QLineEdit* mCerca;
    QTimer mControllo;
    QString mFile;
    QString mTitolo;
    std::function<QString(const QString&)> mNomi;
    qint64 mFine = 0;
    QString mIdentita; // the file's identity: another one means the file was rotated
    quint64 mGenerazione = 0;
    bool mInLettura = false;
    bool mDaRileggere = false;
};
