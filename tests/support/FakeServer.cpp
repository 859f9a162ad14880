#include "FakeServer.h"

PxSrvServizio* FakeServer::Servizio(const QString& chiave) const
{
    Richieste << chiave;
    return mServizi.value(chiave);
}

FakeServizio* FakeServer::Aggiungi(const QString& chiave, const QString& xml)
{
    auto* s = new FakeServizio(chiave, xml, this);
    mServizi.insert(chiave, s);
    return s;
}

QString FakeServer::Xml(const QString& chiave, int codice, const QString& extra)
{
    return QStringLiteral("<%1><Stato><Codice>%2</Codice></Stato>%3</%1>").arg(chiave).arg(codice).arg(extra);
}
