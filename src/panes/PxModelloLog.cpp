#include "PxModelloLog.h"

#include "PxImmagini.h"
#include "PxIconResource.h"

#include <QTime>

PxModelloLog::PxModelloLog(QString del, QString descrizione, QObject* parent)
    : QAbstractTableModel(parent), mTitoli{std::move(del), std::move(descrizione)}
{
}

void PxModelloLog::Sostituisci(std::vector<modLog::Riga> righe)
{
    beginResetModel();
    mRighe = std::move(righe);
    endResetModel();
}

void PxModelloLog::Aggiungi(std::vector<modLog::Riga> righe)
{
    if (righe.empty())
        return;
    const int primo = static_cast<int>(mRighe.size());
    beginInsertRows({}, primo, primo + static_cast<int>(righe.size()) - 1);
    mRighe.insert(mRighe.end(), std::make_move_iterator(righe.begin()), std::make_move_iterator(righe.end()));
    endInsertRows();
}

int PxModelloLog::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : static_cast<int>(mRighe.size()); }

int PxModelloLog::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : 2; }

QVariant PxModelloLog::headerData(int sezione, Qt::Orientation orientamento, int ruolo) const
{
    if (orientamento == Qt::Horizontal && ruolo == Qt::DisplayRole && sezione >= 0 && sezione < 2)
        return mTitoli[sezione];
    return {};
}

QVariant PxModelloLog::data(const QModelIndex& indice, int ruolo) const
{
    if (!indice.isValid() || static_cast<size_t>(indice.row()) >= mRighe.size())
        return {};
    const modLog::Riga& r = mRighe[static_cast<size_t>(indice.row())];
    if (indice.column() == 0) {
        switch (ruolo) {
        case Qt::DisplayRole:
            return r.Secondi < 0 ? QString() : QTime::fromMSecsSinceStartOfDay(r.Secondi * 1000).toString(QStringLiteral("HH:mm"));
        case Qt::ToolTipRole:
            return r.Secondi < 0 ? QString() : QTime::fromMSecsSinceStartOfDay(r.Secondi * 1000).toString(QStringLiteral("HH:mm:ss"));
        case Qt::DecorationRole: return PxImmagini::Istanza().Icona(modIcone::LivelloLog + r.Livello);
        default: return {};
        }
    }
    if (ruolo == Qt::DisplayRole || ruolo == Qt::ToolTipRole)
        return r.Testo;
    return {};
}
