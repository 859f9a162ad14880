#include "modCloseBtn.h"

#include "modTraccia.h"

#include <QWidget>

namespace modCloseBtn {

void EnableCloseButton(QWidget* finestra, bool abilita)
{
    if (!finestra) {
        modTraccia::Scrivi(0, QStringLiteral("modCloseBtn::EnableCloseButton: finestra mancante"));
        return;
    }
    const bool visibile = finestra->isVisible();
    Qt::WindowFlags flag = finestra->windowFlags() | Qt::CustomizeWindowHint | Qt::WindowTitleHint;
    flag.setFlag(Qt::WindowCloseButtonHint, abilita);
    flag.setFlag(Qt::WindowSystemMenuHint, abilita);
    finestra->setWindowFlags(flag);
    if (visibile) // changing the flags hides a window; keep it where it was
        finestra->show();
}

} // namespace modCloseBtn
