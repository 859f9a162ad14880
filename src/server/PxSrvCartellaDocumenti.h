#pragma once

#include "PxSrvOggetto.h"

class PxXmlCallBack;

// A document folder of a service ("PxSrvDocFax", ...): listing and document commands, each a
// request answered later. Commands take a selection document: <Root><ID>id</ID>...</Root>.
// A refused command answers Rifiutato with the reason; nothing of it was done.
class PxSrvCartellaDocumenti : public PxSrvOggetto
{
    Q_OBJECT
    Q_PROPERTY(QString Chiave READ Chiave CONSTANT)
    Q_PROPERTY(QString ChiaveServizio READ ChiaveServizio CONSTANT)

public:
    // `fileLocali`: whether the server's paths can be read here (else files come as bytes).
    // `codeOpzionali`: the queues the server runs that a console shows only when the server has them.
    PxSrvCartellaDocumenti(const QString& chiave, const QString& chiaveServizio, bool fileLocali,
                           QList<qint32> codeOpzionali = {}, QObject* parent = nullptr);

    // The folder key ("PxSrvDocFax") and the key of the service that owns it ("PxSrvFax").
    QString Chiave() const { return mChiave; }
    QString ChiaveServizio() const { return mChiaveServizio; }
    // Whether the server runs optional queue `coda` of this folder (the fax folder's queue 12).
    bool CodaOpzionale(qint32 coda) const { return mCodeOpzionali.contains(coda); }

    // A full listing, delivered to `callback` (the requester: destroying it cancels).
    void Elenca(PxXmlCallBack* callback);
    // Moves the selected documents to queue `coda`, all or none.
    void SpostaDocumenti(const QString& selezioneXml, qint32 coda, QObject* richiedente, Esito fatto);
    // Previews of the selected documents for the client at `indirizzo`.
    void GeneraAnteprime(const QString& selezioneXml, const QString& indirizzo, QObject* richiedente, Esito fatto);
    // The selected documents compressed, attached to a new e-mail.
    void InviaCompresso(const QString& selezioneXml, QObject* richiedente, Esito fatto);
    // Testo: the working folder of document `id`.
    void CartellaDocumento(const QString& id, QObject* richiedente, Esito fatto);
    // Testo: the output file (PDF, TIFF) of `id`; Dati: its bytes when the files are not
    // local. Rifiutato when the document has none.
    void FileOutput(const QString& id, QObject* richiedente, Esito fatto);
    // Testo: the document object, <Documento Tipo="..." Id="..."><Proprieta>...</Proprieta>
    // <ElencoFile><File><Percorso/><Nome/></File>...</ElencoFile></Documento>.
    void Documento(const QString& id, QObject* richiedente, Esito fatto);

private:
    QString mChiave;
    QString mChiaveServizio;
    bool mFileLocali;
    QList<qint32> mCodeOpzionali;
};
