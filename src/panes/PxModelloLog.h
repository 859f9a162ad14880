#pragma once

#include "modLog.h"

#include <QAbstractTableModel>

// The log pane's rows: the time ("Del", shown "HH:mm") and the message ("Descrizione"), with
// the icon of the line's level. Rows are only ever replaced whole or appended at the end.
class PxModelloLog : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit PxModelloLog(QString del, QString descrizione, QObject* parent = nullptr);

    void Sostituisci(std::vector<modLog::Riga> righe);
    void Aggiungi(std::vector<modLog::Riga> righe);
    void Svuota() { Sostituisci({}); }
    const std::vector<modLog::Riga>& Righe() const { return mRighe; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& indice, int ruolo = Qt::DisplayRole) const override;
    QVariant headerData(int sezione, Qt::Orientation orientamento, int ruolo = Qt::DisplayRole) const override;

private:
    QString mTitoli[2];
    std::vector<modLog::Riga> mRighe;
};
