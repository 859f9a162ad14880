#pragma once

class QWidget;

// Enables or disables a window's Close control. Here that is the window manager's close
// button (the window flag) together with the window's own refusal of close requests
// (Alt+F4, the window menu), which the transient windows implement in their closeEvent.
namespace modCloseBtn {
void EnableCloseButton(QWidget* finestra, bool abilita);
}
