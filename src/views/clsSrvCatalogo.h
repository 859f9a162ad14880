#pragma once

#include "clsSrvVista.h"

class PxSrvCatalogo;
class PxXmlCallBack;

// The formats or signatures of the server: one row per object (key, kind, description),
// from the catalogue's listing.
class clsSrvCatalogo : public clsSrvVista
{
    Q_OBJECT

public:
    // `chiave`: the node ("SrvFormati"); `oggetto`: its catalogue ("PxSrvFormati").
    clsSrvCatalogo(PxAmbienteVista& ambiente, const QString& chiave, const QString& oggetto, QObject* parent = nullptr);

    void AggiornaContenuto() override;
    void AggiornaSrv(const QString& chiaveOggetto) override;
    void mobjBkgXmlEventi_XmlCallBack(const QByteArray& xml);

protected:
    QList<PxModelloContenuto::Colonna> CreaColonne() override;

private:
    QString mOggetto;
    PxXmlCallBack* mobjBkgXmlEventi;
};
