#pragma once

#include <QStyledItemDelegate>

// Draws a progress cell of the content list as a bar (with its text) instead of plain text.
class PxDelegatoAvanzamento : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* pittore, const QStyleOptionViewItem& opzioni, const QModelIndex& indice) const override;
};
