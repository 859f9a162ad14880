#include "clsSrvCatalogo.h"

#include "PxBarraComandi.h"
#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxImmagini.h"
#include "PxSrvCatalogo.h"
#include "PxSrvServer.h"
#include "PxXmlCallBack.h"
#include "modElenco.h"
#include "modTraccia.h"

#include <QPointer>

#include <pugixml.hpp>

clsSrvCatalogo::clsSrvCatalogo(PxAmbienteVista& ambiente, const QString& chiave, const QString& oggetto, QObject* parent)
    : clsSrvVista(ambiente, chiave, QStringLiteral("01.00.04"), parent), mOggetto(oggetto), mobjBkgXmlEventi(new PxXmlCallBack(this))
{
    connect(mobjBkgXmlEventi, &PxXmlCallBack::XmlCallBack, this, &clsSrvCatalogo::mobjBkgXmlEventi_XmlCallBack);
    connect(mobjBkgXmlEventi, &PxXmlCallBack::Errore, this, [this](qint32, const QString& motivo) {
        emit Messaggio(mContesto.Testi().LoadDllString(8022) + QStringLiteral(": ") + motivo);
    });
}

QList<PxModelloContenuto::Colonna> clsSrvCatalogo::CreaColonne()
{
    const PxConsoleResDll& t = mContesto.Testi();
    const qint32 icona = mOggetto == u"PxSrvFirme" ? 202 : 201;
    mAmbiente.Modello.ImpostaIcone(PxImmagini::Istanza().Icona(icona), {});
    return {{t.LoadDllString(2023)}, {t.LoadDllString(2027)}, {t.LoadDllString(2001)}};
}

void clsSrvCatalogo::CreaPulsanti()
{
    // A format is tested by fax or by e-mail, a signature by e-mail.
    if (mOggetto == u"PxSrvFormati")
        mAmbiente.Barra.Pulsante(5311, 1231, 1331);
    mAmbiente.Barra.Pulsante(5310, 1230, 1330);
    AbilitaPulsanti(false);
}

void clsSrvCatalogo::AbilitaPulsanti(bool abilita)
{
    const bool uno = abilita && NumeroSelezionati() == 1;
    mAmbiente.Barra.Abilita(5310, uno);
    mAmbiente.Barra.Abilita(5311, uno);
}

void clsSrvCatalogo::Esegui(int id)
{
    if ((id == 5310 || id == 5311) && NumeroSelezionati() == 1)
        emit ProvaOggetto(id, mOggetto, ChiaviSelezionate().first());
}

PxOggettoVista clsSrvCatalogo::OggettoCorrente() const
{
    PxSrvCatalogo* catalogo = mContesto.Server() ? mContesto.Server()->Catalogo(mOggetto) : nullptr;
    const QString chiave = ChiaveCorrente();
    if (!catalogo || chiave.isEmpty())
        return {};
    return {chiave, false, [catalogo = QPointer<PxSrvCatalogo>(catalogo), chiave](QObject* richiedente, PxSrvOggetto::Esito fatto) {
                if (catalogo)
                    catalogo->Oggetto(chiave, richiedente, std::move(fatto));
            }};
}

void clsSrvCatalogo::AggiornaContenuto()
{
    modTraccia::Proteggi("AggiornaContenuto", [&] {
        emit ContenutoInAggiornamento();
        if (PxSrvCatalogo* catalogo = mContesto.Server() ? mContesto.Server()->Catalogo(mOggetto) : nullptr)
            catalogo->Elenca(mobjBkgXmlEventi);
    });
}

void clsSrvCatalogo::AggiornaSrv(const QString& chiaveOggetto)
{
    if (chiaveOggetto == mOggetto)
        AggiornaContenuto();
}

void clsSrvCatalogo::mobjBkgXmlEventi_XmlCallBack(const QByteArray& xml)
{
    Applica(
        [this, xml] {
            modTraccia::Proteggi("mobjBkgXmlEventi_XmlCallBack", [&] {
                RicaricaMantenendo([&] {
                    PxModelloContenuto& modello = mAmbiente.Modello;
                    modello.IniziaCaricamento();
                    pugi::xml_document doc;
                    if (doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size()))) {
                        modElenco::Nodo nodo;
                        for (const pugi::xml_node oggetto : doc.document_element().children())
                            if (modElenco::LeggiNodo(oggetto, 3, nodo))
                                modello.Aggiungi(nodo.Celle, 0);
                    }
                    modello.FineCaricamento();
                });
            });
            emit ContenutoCambiato();
        },
        true);
}
