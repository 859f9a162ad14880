#pragma once

#include "IFrmConsole.h"

#include <QMainWindow>

class PxContesto;
class QDockWidget;
class QLabel;
class QTreeView;
class frmPosizione;

// The main window: it only assembles the panes. The server tree sits on the left, the
// content list in the centre, property, log and system-information panes around it.
// Closing it hides it; the engine notices and closes the console.
class frmConsole : public QMainWindow, public IFrmConsole
{
    Q_OBJECT

public:
    explicit frmConsole(PxContesto& contesto, QWidget* parent = nullptr);

    // Once shown, saves pictures of this window, the opening window and the closing window
    // into `cartella` (for the docs), then closes, which ends the console.
    void FotografaEChiudi(const QString& cartella);

    void Inizializza(frmApertura* apertura) override;
    void Mostra() override;
    void Nascondi() override;
    bool Visibile() const override { return isVisible(); }
    void Termina() override;
    void ConfiguraPulsanti() override;
    void ConfiguraPulsantiServer() override;
    void AggiornaBarraComandi() override;

    // Makes the node of `chiave` the one on display.
    void VisualizzaServer(const QString& caption, const QString& chiave);
    QString ChiaveVisualizzata() const { return mChiaveVisualizzata; }
    frmPosizione* Posizione() const { return mPosizione; }

protected:
    void closeEvent(QCloseEvent* evento) override;
    void showEvent(QShowEvent* evento) override;

private:
    QDockWidget* AggiungiPannello(int titolo, const char* nome, QWidget* contenuto, Qt::DockWidgetArea area);

    void Fotografa();

    PxContesto& mContesto;
    QString mCartellaFotografie;
    frmPosizione* mPosizione;
    QTreeView* mxrpContenuto;
    QLabel* mStato;
    QString mChiaveVisualizzata;
};
