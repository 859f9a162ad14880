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
    void AbilitaPulsanti(bool abilita) override;
    void Esegui(int id) override;
    PxOggettoVista OggettoCorrente() const override;

signals:
    // The test form of `id` (5310 e-mail, 5311 fax) for the object `chiave` of catalogue `catalogo`.
    void ProvaOggetto(qint32 id, const QString& catalogo, const QString& chiave);

protected:
    QList<PxModelloContenuto::Colonna> CreaColonne() override;
    void CreaPulsanti() override;

private:
    QString mOggetto;
    PxXmlCallBack* mobjBkgXmlEventi;
};
