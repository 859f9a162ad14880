#include "modComandiServizio.h"

#include "modAlberoServer.h"
#include "modTabellaCartelle.h"

#include <pugixml.hpp>

#include <algorithm>

namespace modComandiServizio {

namespace {

using modAlberoServer::Genere;

const modAlberoServer::Nodo* Nodo(const QString& chiave)
{
    for (const modAlberoServer::Nodo& n : modAlberoServer::Nodi())
        if (chiave == QLatin1StringView(n.Chiave))
            return &n;
    return nullptr;
}

const modAlberoServer::Nodo* NodoDellOggetto(const QString& oggetto)
{
    for (const modAlberoServer::Nodo& n : modAlberoServer::Nodi())
        if (n.Tipo == Genere::Servizio && oggetto == QLatin1StringView(n.Oggetto))
            return &n;
    return nullptr;
}

} // namespace

QString ServizioDelNodo(const QString& chiaveNodo)
{
    const modAlberoServer::Nodo* n = Nodo(chiaveNodo.section(u'|', 0, 0));
    if (!n)
        return {};
    if (n->Tipo == Genere::Servizio)
        return QString::fromLatin1(n->Oggetto);
    if (n->Tipo == Genere::Server)
        return QStringLiteral("PxSrvServer"); // the server as a service: it starts and suspends them all
    if (n->Tipo == Genere::Cartella)
        if (const modTabellaCartelle::Cartella* c = modTabellaCartelle::Trova(QString::fromLatin1(n->Chiave)))
            return QString::fromLatin1(c->Servizio);
    return {};
}

QStringList CartelleDelServizio(const QString& oggetto)
{
    const auto proprie = [](const QString& servizio) {
        QStringList cartelle;
        for (const modTabellaCartelle::Cartella& c : modTabellaCartelle::Cartelle())
            if (servizio == QLatin1StringView(c.Servizio))
                cartelle << QString::fromLatin1(c.Chiave);
        return cartelle;
    };
    if (oggetto == u"PxSrvServer") {
        QStringList tutte;
        for (const modTabellaCartelle::Cartella& c : modTabellaCartelle::Cartelle())
            tutte << QString::fromLatin1(c.Chiave);
        return tutte;
    }
    if (QStringList cartelle = proprie(oggetto); !cartelle.isEmpty())
        return cartelle;
    // A worker works on its group's documents.
    const modAlberoServer::Nodo* n = NodoDellOggetto(oggetto);
    const modAlberoServer::Nodo* gruppo = n ? Nodo(QString::fromLatin1(n->Padre)) : nullptr;
    return gruppo && gruppo->Tipo == Genere::Servizio ? proprie(QString::fromLatin1(gruppo->Oggetto)) : QStringList();
}

qsizetype DocumentiInLavorazione(const modTabellaCartelle::Cartella& cartella, const QString& statoXml)
{
    qint32 fatti = -1;
    for (size_t i = 0; i < cartella.Code.size(); ++i)
        if (cartella.Code[i].Colore == modTabellaCartelle::Verde) {
            fatti = static_cast<qint32>(i);
            break;
        }
    pugi::xml_document doc;
    const QByteArray xml = statoXml.toUtf8();
    if (fatti < 0 || !doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size())))
        return 0;
    // The counters: "Count" (all), then one element per queue, in queue order; the folder's
    // settings may stand before them in the same element.
    pugi::xml_node totale;
    for (const pugi::xml_node n : doc.document_element().children())
        if ((totale = n.child("Count")))
            break;
    qsizetype n = 0;
    qint32 coda = 0;
    for (pugi::xml_node c = totale.next_sibling(); c && coda < fatti; c = c.next_sibling()) {
        if (c.type() != pugi::node_element)
            continue;
        n += static_cast<qsizetype>(std::max(0LL, c.text().as_llong(0)));
        ++coda;
    }
    return n;
}

int CodiceStato(const QString& statoXml)
{
    pugi::xml_document doc;
    const QByteArray xml = statoXml.toUtf8();
    if (!doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size())))
        return -1;
    const pugi::xml_node codice = doc.document_element().child("Stato").child("Codice");
    return codice ? codice.text().as_int(-1) : -1;
}

} // namespace modComandiServizio
