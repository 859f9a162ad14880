#include "PxDelegatoAvanzamento.h"

#include "PxModelloContenuto.h"

#include <QApplication>
#include <QPainter>

void PxDelegatoAvanzamento::paint(QPainter* pittore, const QStyleOptionViewItem& opzioni, const QModelIndex& indice) const
{
    const QVariant valore = indice.data(PxModelloContenuto::RuoloAvanzamento);
    if (!valore.isValid()) {
        QStyledItemDelegate::paint(pittore, opzioni, indice);
        return;
    }
    QStyleOptionProgressBar barra;
    barra.rect = opzioni.rect.adjusted(1, 2, -1, -2);
    barra.minimum = 0;
    barra.maximum = 100;
    barra.progress = valore.toInt();
    barra.text = indice.data().toString();
    barra.textVisible = true;
    barra.state = opzioni.state | QStyle::State_Horizontal;
    const QWidget* widget = opzioni.widget;
    (widget ? widget->style() : QApplication::style())->drawControl(QStyle::CE_ProgressBar, &barra, pittore, widget);
}
