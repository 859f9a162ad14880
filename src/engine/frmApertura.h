#pragma once

#include "frmTransitoria.h"

class PxSrvServer;

// The opening window: shown while the server loads and the main window is built. While the
// server loads, the bar follows its loading; once it has described itself, the bar counts
// the main window's loading steps, one per step.
class frmApertura : public frmTransitoria
{
    Q_OBJECT

public:
    // Counts the steps against `server` (null: no services) when it has loaded, and
    // otherwise follows its loading until it has; shows the window's texts.
    explicit frmApertura(const PxSrvServer* server, QWidget* parent = nullptr);

    // One step further (the bar stops at its maximum) and `testo` in the information label.
    void Avanzamento(const QString& testo);

    int Massimo() const;
    int Valore() const;
    // The steps told so far, including any beyond the bar's maximum.
    int Passi() const { return mPassi; }
    QString Informazione() const;

    // The loading steps the main window will report for `server`, one per node of the server
    // tree: 1 for the root, plus, for every service whose description parses, its node, its
    // document folder, its present workers and its listed entries (see the table in the
    // source). Raises PxErrore 6 when the count overflows.
    static qint32 ContaPassi(const PxSrvServer* server);

protected:
    void showEvent(QShowEvent* evento) override;

private:
    void CaricamentoServer(qint32 fatti, qint32 totale, const QString& testo);
    void ServerPronto();

    const PxSrvServer* mServer;
    bool mPassiContati = false;
    int mPassi = 0;
};
