#pragma once

#include "clsSrvVista.h"

#include <QHash>

namespace modAlberoServer { struct Nodo; }

// The server, service-group and worker views: one row per service or worker (and per entry
// of a list the node owns: printers, connected clients, FTP clients), keyed by the service
// key, showing its state, activity, progress and last error. The rows come from the tree's
// node table: the view's own node, then its services and lists; the server's view shows
// every service. A list entry's node ("SrvStampante|3") shows that entry only, and its
// commands act on it with no selection needed.
class clsSrvServizi : public clsSrvVista
{
    Q_OBJECT

public:
    // `chiaveNodo`: the tree node ("SrvFax", "SrvStampante|3").
    clsSrvServizi(PxAmbienteVista& ambiente, const QString& chiaveNodo, QObject* parent = nullptr);

    void AggiornaContenuto() override;
    // Rewrites the rows of service `chiaveOggetto` ("PxSrvTifVm").
    void AggiornaSrv(const QString& chiaveOggetto) override;
    void Avanzamento(const QString& chiaveOggetto, const QString& attivita, qint32 fatti, qint32 totale) override;

    // The server objects whose notices this view shows.
    QStringList Oggetti() const;

    void AbilitaPulsanti(bool abilita) override;
    void Esegui(int id) override;

    static constexpr int IdPaginaDiProva = 5316;

signals:
    // The operator asked for the test page of these printers (their keys in the "Stampanti" list).
    void PaginaDiProva(const QStringList& chiaviStampanti);

protected:
    QList<PxModelloContenuto::Colonna> CreaColonne() override;
    void CreaPulsanti() override;

private:
    struct Riga
    {
        const modAlberoServer::Nodo* Nodo;
    };
    // Every row of service `nodo`: its own, or one per entry of its list.
    void Righe(const modAlberoServer::Nodo& nodo, bool aggiorna);
    // The printers a test page goes to: the node's own, or the selected rows'.
    QStringList StampantiScelte() const;

    QString mNodo;
    QString mVoce; // the list entry the node stands for ("3" of "SrvStampante|3"); "" for a service
    QList<const modAlberoServer::Nodo*> mNodi;
    QHash<QString, QString> mAvanzamento; // per object: "done/total"
    QHash<QString, QString> mAttivita;    // per object: what the progress is of
};
