#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <atomic>

class PxXmlCallBack;

// The objects of the formats service (page formats: front, back, cover sheet) or of the
// signatures service (e-mail signatures): a listing, and each object's XML description.
//
// The listing is asked for by a slot and answered by a signal carrying the request's number,
// as for the document folders; Elenca() wraps that exchange for a callback object.
class PxSrvCatalogo : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Chiave READ Chiave CONSTANT)

public:
    using QObject::QObject;
    ~PxSrvCatalogo() override = default;

    // The key of the service the catalogue belongs to ("PxSrvFormati", "PxSrvFirme").
    virtual QString Chiave() const = 0;

    // Asks for the listing and delivers it to `callback` from the event loop, after this call.
    void Elenca(PxXmlCallBack* callback);

public slots:
    // Answer with Elenco(richiesta, xml) later, from the event loop: <Elenco><Oggetto>
    // <F>key</F><F>kind</F><F>description</F>...</Oggetto>...</Elenco>.
    virtual void RichiediElenco(quint64 richiesta) = 0;
    // The object's description (root "Formato" or "Firma", element "Proprieta"); "" when unknown.
    virtual QString Oggetto(const QString& chiave) = 0;

signals:
    void Elenco(quint64 richiesta, const QString& xml);

private:
    std::atomic<quint64> mProssimaRichiesta{1};
};
