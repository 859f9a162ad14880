#pragma once

#include "frmTransitoria.h"

class PxSrvServer;

// The opening window: shown while the main window loads, one bar step per loading step.
class frmApertura : public frmTransitoria
{
    Q_OBJECT

public:
    // Counts the steps against `server` (null: no services) and shows the window's texts.
    explicit frmApertura(const PxSrvServer* server, QWidget* parent = nullptr);

    // One step further (the bar stops at its maximum) and `testo` in the information label.
    void Avanzamento(const QString& testo);

    int Massimo() const;
    int Valore() const;
    QString Informazione() const;

    // The loading steps the main window will report for `server`: 1, plus the weight of
    // every service whose description parses (see the table in the source). Raises
    // PxErrore 6 when the count overflows.
    static qint32 ContaPassi(const PxSrvServer* server);
};
