#pragma once

#include "frmTransitoria.h"

// The closing window: shown while the main window closes; its bar only shows activity.
class frmChiusura : public frmTransitoria
{
    Q_OBJECT

public:
    explicit frmChiusura(QWidget* parent = nullptr);
};
