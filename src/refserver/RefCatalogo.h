#pragma once

#include <QObject>

#include <QHash>
#include <QStringList>

class RefLog;

// The formats or signatures of the reference server: one XML file per object in
// Formati/ or Firme/ of the server folder, read once at start.
class RefCatalogo : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Chiave READ Chiave CONSTANT)

public:
    // `cartella` holds the object files; a file that does not parse is skipped with a log line.
    RefCatalogo(const QString& chiave, const QString& cartella, RefLog& log, QObject* parent = nullptr);

    QString Chiave() const { return mChiave; }
    qsizetype Conteggio() const { return mOggetti.size(); }
    // The listing: <Elenco><Oggetto><F>key</F><F>kind</F><F>description</F></Oggetto>...</Elenco>.
    const QByteArray& TestoElenco() const { return mElenco; }
    // The object's description; "" when unknown.
    QString Descrizione(const QString& chiave) const { return mOggetti.value(chiave); }

public slots:
    void RichiediElenco(quint64 richiesta);
    void Oggetto(quint64 richiesta, const QString& chiave);

signals:
    void Risposta(quint64 richiesta, qint32 esito, const QString& testo, const QByteArray& dati);

private:
    QString mChiave;
    QStringList mOrdine;             // keys in listing order
    QHash<QString, QString> mOggetti; // key -> description
    QByteArray mElenco;
};
