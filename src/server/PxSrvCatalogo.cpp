#include "PxSrvCatalogo.h"

#include "PxXmlCallBack.h"

PxSrvCatalogo::PxSrvCatalogo(const QString& chiave, QObject* parent)
    : PxSrvOggetto(modContratto::NomeCatalogo(chiave), parent), mChiave(chiave)
{
}

void PxSrvCatalogo::Elenca(PxXmlCallBack* callback)
{
    if (callback)
        Chiama("RichiediElenco", callback, ConsegnaXml(callback));
}

void PxSrvCatalogo::Oggetto(const QString& chiave, QObject* richiedente, Esito fatto)
{
    Chiama("Oggetto", richiedente, std::move(fatto), chiave);
}
