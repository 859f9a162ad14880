#include "frmTransitoria.h"

#include "PxConsoleResDll.h"
#include "PxImmagini.h"
#include "modCloseBtn.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QScreen>
#include <QVBoxLayout>

namespace {

QString Rgb(const int (&c)[3]) { return QStringLiteral("rgb(%1, %2, %3)").arg(c[0]).arg(c[1]).arg(c[2]); }

} // namespace

frmTransitoria::frmTransitoria(int testo0, int testo1, QWidget* parent) : QWidget(parent, Qt::Dialog)
{
    const PxConsoleResDll testi;
    setWindowTitle(testi.LoadDllString(8000));
    setWindowModality(Qt::ApplicationModal);
    setAttribute(Qt::WA_DeleteOnClose, false);
    setFixedSize(460, 170);

    auto* logo = new QLabel(this);
    logo->setPixmap(PxImmagini::Istanza().Icona(200).pixmap(48, 48));
    logo->setAlignment(Qt::AlignTop);

    auto* testo = new QVBoxLayout;
    for (int i = 0; i < 2; ++i) {
        mEtichette[i] = new QLabel(testi.LoadDllString(i == 0 ? testo0 : testo1), this);
        mEtichette[i]->setStyleSheet(QStringLiteral("color: %1;%2").arg(Rgb(ColoreTesto), i == 0 ? QStringLiteral(" font-size: 13pt;") : QStringLiteral(" font-weight: bold;")));
        testo->addWidget(mEtichette[i]);
    }
    mInformazione = new QLabel(this);
    mInformazione->setStyleSheet(QStringLiteral("color: %1;").arg(Rgb(ColoreTesto)));
    mInformazione->setTextFormat(Qt::PlainText);
    testo->addWidget(mInformazione);
    mBarra = new QProgressBar(this);
    mBarra->setTextVisible(false);
    mBarra->setFixedHeight(14);
    mBarra->setStyleSheet(QStringLiteral("QProgressBar { background: %1; border: 1px solid %2; border-radius: 2px; }"
                                         "QProgressBar::chunk { background: %3; }")
                              .arg(Rgb(ColoreSfondoBarra), Rgb(ColoreTesto), Rgb(ColoreBarra)));
    testo->addStretch();
    testo->addWidget(mBarra);

    auto* riga = new QHBoxLayout(this);
    riga->setContentsMargins(18, 16, 18, 16);
    riga->setSpacing(16);
    riga->addWidget(logo);
    riga->addLayout(testo, 1);
}

void frmTransitoria::Completa()
{
    modCloseBtn::EnableCloseButton(this, false);
    if (const QScreen* schermo = QGuiApplication::primaryScreen()) {
        const QRect area = schermo->availableGeometry();
        move(area.center() - QPoint(width() / 2, height() / 2));
    }
}

void frmTransitoria::closeEvent(QCloseEvent* evento)
{
    // Start and stop cannot be interrupted: the engine hides these windows itself.
    evento->ignore();
}
