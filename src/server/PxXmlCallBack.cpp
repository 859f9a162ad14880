#include "PxXmlCallBack.h"

std::function<void(const PxRisposta&)> ConsegnaXml(PxXmlCallBack* callback)
{
    return [callback](const PxRisposta& r) {
        // Only called while the callback lives: it is the request's requester.
        if (r.Riuscita())
            emit callback->XmlCallBack(r.Dati);
        else
            emit callback->Errore(r.Esito, r.Testo);
    };
}
