#include "PxSrvCartellaDocumenti.h"

#include "PxXmlCallBack.h"

#include <memory>

void PxSrvCartellaDocumenti::Elenca(PxXmlCallBack* callback)
{
    const quint64 richiesta = mProssimaRichiesta++;
    QPointer<PxXmlCallBack> destinatario(callback);
    auto connessione = std::make_shared<QMetaObject::Connection>();
    *connessione = connect(this, &PxSrvCartellaDocumenti::Elenco, this,
                           [=](quint64 numero, const QString& xml) {
                               if (numero != richiesta)
                                   return;
                               disconnect(*connessione);
                               if (destinatario)
                                   emit destinatario->XmlCallBack(xml);
                           });
    RichiediElenco(richiesta);
}
