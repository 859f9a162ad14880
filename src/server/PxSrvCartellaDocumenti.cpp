#include "PxSrvCartellaDocumenti.h"

#include "PxSrvCatalogo.h"
#include "PxXmlCallBack.h"

#include <memory>

namespace {

// Connects the next answer numbered `richiesta` of `sorgente` to `callback`, once.
template <typename Sorgente>
void Inoltra(Sorgente* sorgente, quint64 richiesta, PxXmlCallBack* callback)
{
    QPointer<PxXmlCallBack> destinatario(callback);
    auto connessione = std::make_shared<QMetaObject::Connection>();
    *connessione = QObject::connect(sorgente, &Sorgente::Elenco, sorgente, [=](quint64 numero, const QString& xml) {
        if (numero != richiesta)
            return;
        QObject::disconnect(*connessione);
        if (destinatario)
            emit destinatario->XmlCallBack(xml);
    });
}

} // namespace

void PxSrvCartellaDocumenti::Elenca(PxXmlCallBack* callback)
{
    const quint64 richiesta = mProssimaRichiesta++;
    Inoltra(this, richiesta, callback);
    RichiediElenco(richiesta);
}

void PxSrvCatalogo::Elenca(PxXmlCallBack* callback)
{
    const quint64 richiesta = mProssimaRichiesta++;
    Inoltra(this, richiesta, callback);
    RichiediElenco(richiesta);
}
