#pragma once

#include <QHash>
#include <QTimer>
#include <QWidget>

#include <functional>

class PxContesto;
class QTreeWidget;
class QTreeWidgetItem;
class frmApertura;
namespace modAlberoServer { struct Nodo; }
namespace pugi { class xml_node; }

// The server tree pane: one node per service, document folder, printer, connected client
// and FTP client, each with its caption and live state icon. Selecting a node navigates,
// once per burst of clicks (a 25 ms selection timer).
//
// The pane follows nothing by itself: the main window hands it each service's state change
// (AggiornaServizio) and the server's notices of clients, printers and FTP clients
// (Aggiungi*/Rimuovi*). Both paths may report the same change: an add of a listed key and
// a removal of an unknown one do nothing.
class frmPosizione : public QWidget
{
    Q_OBJECT

public:
    using Navigazione = std::function<void(const QString& caption, const QString& chiave)>;

    explicit frmPosizione(PxContesto& contesto, QWidget* parent = nullptr);

    // Builds every node, telling each to `apertura` (may be null) just before adding it, so
    // that the steps told are the nodes built; selects the root.
    void Inizializza(frmApertura* apertura);

public slots:
    // Adds the node of one printer record of the "Stampanti" list under "SrvStampe".
    void AggiungiStampante(const QString& nodoXml);
    // Adds the node of one client record of the "Utenti" list under "SrvAnteprime".
    void AggiungiUtente(const QString& nodoXml);
    void RimuoviUtente(const QString& keyUtente);
    void RimuoviStampante(const QString& chiave);
    // Adds the node of one record of the "FtpClients" list under "SrvFtp".
    void AggiungiFtpCliente(const QString& nodoXml);
    void RimuoviFtpCliente(const QString& chiave);
    // Finds the node of `chiave`: sets its image when it differs and, when `caption` is not
    // empty, its text when it differs. A key with no node is ignored.
    void AggiornaIcona(const QString& chiave, qint32 icona, const QString& caption);
    // Re-reads the state XML of the service `chiaveOggetto` ("PxSrvFax"): its nodes' icons,
    // the captions taken from the state, and the list it owns, whose new entries are added,
    // missing ones removed and the others updated.
    void AggiornaServizio(const QString& chiaveOggetto);
    // Greys every node and gives it `motivo` as its tip while the server cannot be reached;
    // "" gives the nodes back their look.
    void SegnaIrraggiungibile(const QString& motivo);

public:
    // Called with the selected node's caption and key when the selection timer fires and
    // the node differs from the one on display.
    void ImpostaNavigazione(Navigazione navigazione) { mNavigazione = std::move(navigazione); }
    // Whether a selection still waits for the timer (a burst of them navigates once, after).
    bool NavigazioneInAttesa() const { return mobjTimerPosizione.isActive(); }
    void ImpostaChiaveVisualizzata(const QString& chiave) { mChiaveVisualizzata = chiave; }
    QString ChiaveVisualizzata() const { return mChiaveVisualizzata; }

    QTreeWidget* Albero() const { return mxtwPosizione; }
    qint32 IconaNodo(const QString& chiave) const;
    // The node of `chiave`, nullptr when there is none.
    QTreeWidgetItem* Nodo(const QString& chiave) const { return mNodi.value(chiave); }
    int ConteggioNodi() const { return static_cast<int>(mNodi.size()); }

    // The key a node carries ("SrvFax", "SrvStampante|3").
    static QString ChiaveNodo(const QTreeWidgetItem* nodo);
    // The key of a list entry's node ("SrvStampante|3").
    static QString ChiaveVoce(const char* chiaveNodo, const QString& chiaveVoce);

private slots:
    void mobjTimerPosizione_TimerEvent();

private:
    QTreeWidgetItem* AggiungiNodo(QTreeWidgetItem* padre, const QString& chiave, const QString& caption, qint32 icona);
    void AggiungiDaXml(const char* chiaveNodo, const QString& nodoXml);
    void AggiungiVoce(const modAlberoServer::Nodo& riga, const pugi::xml_node& voce, frmApertura* apertura);
    void RimuoviVoce(const char* chiaveNodo, const QString& chiaveVoce);
    void RiconciliaElenco(const modAlberoServer::Nodo& riga, const pugi::xml_node& radice);
    QString CaptionServizio(const modAlberoServer::Nodo& riga, const pugi::xml_node& radice) const;
    QString CaptionVoce(const modAlberoServer::Nodo& riga, const pugi::xml_node& voce) const;

    PxContesto& mContesto;
    QTreeWidget* mxtwPosizione;
    QTimer mobjTimerPosizione;
    QHash<QString, QTreeWidgetItem*> mNodi;
    QString mChiaveVisualizzata;
    Navigazione mNavigazione;
};
