#pragma once

#include <QHash>
#include <QTimer>
#include <QWidget>

#include <functional>

class PxContesto;
class QTreeWidget;
class QTreeWidgetItem;
class frmApertura;

// The server tree pane: one node per service, document folder, printer, connected client
// and FTP client, each with its caption and live state icon. Selecting a node navigates,
// once per burst of clicks (a 25 ms selection timer).
class frmPosizione : public QWidget
{
    Q_OBJECT

public:
    using Navigazione = std::function<void(const QString& caption, const QString& chiave)>;

    explicit frmPosizione(PxContesto& contesto, QWidget* parent = nullptr);

    // Builds every node, reporting each to `apertura` (may be null); selects the root.
    void Inizializza(frmApertura* apertura);
    // Finds the node of `chiave`: sets its image when it differs and, when `caption` is not
    // empty, its text when it differs. A key with no node is ignored.
    void AggiornaIcona(const QString& chiave, qint32 icona, const QString& caption);
    // Called with the selected node's caption and key when the selection timer fires and
    // the node differs from the one on display.
    void ImpostaNavigazione(Navigazione navigazione) { mNavigazione = std::move(navigazione); }
    void ImpostaChiaveVisualizzata(const QString& chiave) { mChiaveVisualizzata = chiave; }
    QString ChiaveVisualizzata() const { return mChiaveVisualizzata; }

    QTreeWidget* Albero() const { return mxtwPosizione; }
    qint32 IconaNodo(const QString& chiave) const;
    int ConteggioNodi() const { return static_cast<int>(mNodi.size()); }

    // The key of a list entry's node ("SrvStampante|3").
    static QString ChiaveVoce(const char* chiaveNodo, const QString& chiaveVoce);

private slots:
    void mobjTimerPosizione_TimerEvent();

private:
    QTreeWidgetItem* AggiungiNodo(QTreeWidgetItem* padre, const QString& chiave, const QString& caption, qint32 icona);
    void AggiornaServizio(const QString& chiaveOggetto);

    PxContesto& mContesto;
    QTreeWidget* mxtwPosizione;
    QTimer mobjTimerPosizione;
    QHash<QString, QTreeWidgetItem*> mNodi;
    QString mChiaveVisualizzata;
    Navigazione mNavigazione;
};
