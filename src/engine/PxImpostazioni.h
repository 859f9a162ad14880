#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

class QSettings;

// The operator's display options, kept per user (the registry's user key on the platform
// the console comes from; QSettings in native format, user scope, here). Read once at
// start; the options dialog writes them back. Booleans are stored as -1 (true) and 0.
struct PxImpostazioni
{
    // main key
    bool RealTimeUpdateContenents = true;
    int VisualTheme = 4;
    int IconSize = 24;
    bool ShowTextBelowIcons = false;
    // "ControlOption": the content list
    bool AutoColumnSizing = false;
    bool CollapseGroupRow = true;
    bool ColumnBestFit = true;
    int ColumnBestFitMode = 1; // read only: never written back, so a value set by hand stays
    bool ColumnBestFitContinuous = false;
    bool FullColumnScrolling = true;
    bool GroupRowExpandCollapseColumnBestFit = true;
    bool ShowProgressBar = true;
    bool AlternateRow = true;

    // Missing values keep their defaults.
    void Carica(QSettings& registro);
    // Writes every value but ColumnBestFitMode.
    void Salva(QSettings& registro) const;

    // Where a window was left: its geometry (QWidget::saveGeometry) and the state of its
    // panes and bars (QMainWindow::saveState); empty when it never was.
    struct Disposizione
    {
        QByteArray Geometria;
        QByteArray Pannelli;
        QString Nodo; // the key of the node on display, shown again at the next start
    };
    // Kept under the window's name in the user's store.
    static Disposizione CaricaDisposizione(const QString& finestra);
    static void SalvaDisposizione(const QString& finestra, const Disposizione& disposizione);

    // The user's store: vendor and product (text 1) as organisation and application.
    static std::unique_ptr<QSettings> ApriRegistro();
    static constexpr const char* Produttore = "PlxSoftware";
};
