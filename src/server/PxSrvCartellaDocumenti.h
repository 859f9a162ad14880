#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <atomic>

class PxXmlCallBack;

// A document folder of a service ("PxSrvDocFax", ...): listing and document commands.
//
// A listing is asked for by a slot and answered by a signal carrying the request's number,
// so that it maps onto a remote object unchanged; Elenca() wraps that exchange for a
// callback object. Commands take a selection document: <Root><ID>id</ID>...</Root>.
class PxSrvCartellaDocumenti : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Chiave READ Chiave CONSTANT)
    Q_PROPERTY(QString ChiaveServizio READ ChiaveServizio CONSTANT)

public:
    using QObject::QObject;
    ~PxSrvCartellaDocumenti() override = default;

    // The folder key ("PxSrvDocFax") and the key of the service that owns it ("PxSrvFax").
    virtual QString Chiave() const = 0;
    virtual QString ChiaveServizio() const = 0;

    // Asks for a full listing and delivers it to `callback` once this call has returned,
    // from the event loop. A callback destroyed meanwhile gets nothing.
    void Elenca(PxXmlCallBack* callback);

public slots:
    // Answer with Elenco(richiesta, xml) later, from the event loop, never inside this call.
    virtual void RichiediElenco(quint64 richiesta) = 0;
    // Moves the selected documents to queue `coda`. All or nothing: an unknown id or an
    // invalid queue refuses the whole selection. Returns an empty text or the reason.
    virtual QString SpostaDocumenti(const QString& selezioneXml, qint32 coda) = 0;
    // Asks for previews of the selected documents for the client at `indirizzo`.
    virtual QString GeneraAnteprime(const QString& selezioneXml, const QString& indirizzo) = 0;
    // Sends the selected documents compressed, as an e-mail attachment.
    virtual QString InviaCompresso(const QString& selezioneXml) = 0;
    // The working folder of document `id`, "" when unknown.
    virtual QString CartellaDocumento(const QString& id) = 0;
    // The output file (PDF, TIFF) of document `id`, "" when it has none.
    virtual QString FileOutput(const QString& id) = 0;
    // The document object: <Documento Tipo="..." Id="..."><Proprieta>...</Proprieta>
    // <ElencoFile><File><Percorso/><Nome/></File>...</ElencoFile></Documento>; "" when unknown.
    virtual QString Documento(const QString& id) = 0;

signals:
    void Elenco(quint64 richiesta, const QString& xml);

private:
    std::atomic<quint64> mProssimaRichiesta{1};
};
