#include "frmChiusura.h"

#include <QLabel>
#include <QProgressBar>

frmChiusura::frmChiusura(QWidget* parent) : frmTransitoria(8005, 8004, parent)
{
    setObjectName(QStringLiteral("frmChiusura"));
    mEtichette[0]->setObjectName(QStringLiteral("lblChisura_0"));
    mEtichette[1]->setObjectName(QStringLiteral("lblChisura_1"));
    mBarra->setObjectName(QStringLiteral("prgwAttesa"));
    mInformazione->hide();
    mBarra->setRange(0, 0); // busy indicator: no known end
    Completa();
}
