#pragma once

#include "PxSrvCatalogo.h"

#include <QHash>
#include <QStringList>

class RefLog;

// The formats or signatures of the reference server: one XML file per object in
// Formati/ or Firme/ of the server folder, read once at start.
class RefCatalogo : public PxSrvCatalogo
{
    Q_OBJECT

public:
    // `cartella` holds the object files; a file that does not parse is skipped with a log line.
    RefCatalogo(const QString& chiave, const QString& cartella, RefLog& log, QObject* parent = nullptr);

    QString Chiave() const override { return mChiave; }
    qsizetype Conteggio() const { return mOggetti.size(); }

public slots:
    void RichiediElenco(quint64 richiesta) override;
    QString Oggetto(const QString& chiave) override;

private:
    QString mChiave;
    QStringList mOrdine;             // keys in listing order
    QHash<QString, QString> mOggetti; // key -> description
    QByteArray mElenco;
};
