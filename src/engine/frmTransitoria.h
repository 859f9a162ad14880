#pragma once

#include <QWidget>

#include <array>

class QLabel;
class QProgressBar;

// What the opening and closing windows share: caption 8000, two labels in the console's
// colours, a progress bar, no way for the operator to close them, centred on the screen.
class frmTransitoria : public QWidget
{
    Q_OBJECT

public:
    // Label text and the bar's colours (RGB).
    static constexpr int ColoreTesto[3] = {59, 70, 96};
    static constexpr int ColoreSfondoBarra[3] = {255, 255, 255};
    static constexpr int ColoreBarra[3] = {255, 85, 0};

protected:
    frmTransitoria(int testo0, int testo1, QWidget* parent);

    // Disables the Close control and centres the window; call at the end of the load.
    void Completa();
    void closeEvent(QCloseEvent* evento) override;

    std::array<QLabel*, 2> mEtichette{};
    QLabel* mInformazione = nullptr;
    QProgressBar* mBarra = nullptr;
};
