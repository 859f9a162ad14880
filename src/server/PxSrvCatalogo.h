#pragma once

#include "PxSrvOggetto.h"

class PxXmlCallBack;

// The objects of the formats service (page formats: front, back, cover sheet) or of the
// signatures service (e-mail signatures): a listing, and each object's XML description.
class PxSrvCatalogo : public PxSrvOggetto
{
    Q_OBJECT
    Q_PROPERTY(QString Chiave READ Chiave CONSTANT)

public:
    explicit PxSrvCatalogo(const QString& chiave, QObject* parent = nullptr);

    // The key of the service the catalogue belongs to ("PxSrvFormati", "PxSrvFirme").
    QString Chiave() const { return mChiave; }

    // The listing, to `callback`: <Elenco><Oggetto><F>key</F><F>kind</F><F>description</F>
    // </Oggetto>...</Elenco>.
    void Elenca(PxXmlCallBack* callback);
    // Testo: the object's description (root "Formato" or "Firma", element "Proprieta");
    // Rifiutato when unknown.
    void Oggetto(const QString& chiave, QObject* richiedente, Esito fatto);

private:
    QString mChiave;
};
