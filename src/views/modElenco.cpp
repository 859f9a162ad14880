#include "modElenco.h"

#include "PxModelloContenuto.h"

#include <pugixml.hpp>

namespace modElenco {

namespace {
// Values as any XML reader gives them; each field's text stays inside its element's node.
constexpr unsigned Opzioni = pugi::parse_default | pugi::parse_embed_pcdata;
} // namespace

int NumeroCoda(std::string_view nome)
{
    constexpr std::string_view prefisso = "Coda_";
    if (nome.size() <= prefisso.size() || nome.size() > prefisso.size() + 6 || nome.substr(0, prefisso.size()) != prefisso)
        return -1;
    int n = 0;
    for (const char c : nome.substr(prefisso.size())) {
        if (c < '0' || c > '9')
            return -1;
        n = n * 10 + (c - '0');
    }
    return n;
}

bool LeggiNodo(const pugi::xml_node& documento, int colonne, Nodo& nodo)
{
    nodo.Celle.clear();
    nodo.Collegati.clear();
    pugi::xml_node campo = documento.first_child();
    // Elements only: whitespace-preserving readers would otherwise shift the positions.
    const auto prossimo = [](pugi::xml_node n) {
        while (n && n.type() != pugi::node_element)
            n = n.next_sibling();
        return n;
    };
    for (campo = prossimo(campo); campo && static_cast<int>(nodo.Celle.size()) < colonne; campo = prossimo(campo.next_sibling()))
        nodo.Celle.emplace_back(campo.child_value());
    if (static_cast<int>(nodo.Celle.size()) < colonne)
        return false;
    if (campo)
        for (pugi::xml_node l = prossimo(campo.first_child()); l; l = prossimo(l.next_sibling())) {
            const pugi::xml_node id = prossimo(l.first_child());
            const pugi::xml_node descrizione = id ? prossimo(id.next_sibling()) : pugi::xml_node();
            nodo.Collegati.emplace_back(id.child_value(), descrizione.child_value());
        }
    return true;
}

Esito Carica(PxModelloContenuto& modello, QByteArray testo, const Code& code, const std::function<void()>& errore)
{
    Esito esito;
    modello.IniziaCaricamento();
    pugi::xml_document doc;
    // The listing is ours to change: parse it in place, the fields' text stays in it.
    const pugi::xml_parse_result letto = doc.load_buffer_inplace(testo.data(), static_cast<size_t>(testo.size()),
                                                                 Opzioni);
    const pugi::xml_node radice = doc.document_element();
    if (!letto || !radice) {
        modello.FineCaricamento();
        return esito;
    }
    esito.Letto = true;
    // A document node takes some 200 bytes of listing; its cells fewer.
    modello.Riserva(static_cast<size_t>(testo.size()) / 180, static_cast<size_t>(testo.size()) * 3 / 4);
    const int colonne = static_cast<int>(modello.Colonne().size());
    Nodo nodo;
    for (const pugi::xml_node coda : radice.children()) {
        if (coda.type() != pugi::node_element)
            continue;
        const int numero = NumeroCoda(coda.name());
        if (!code.Mostra(numero))
            continue;
        const quint32 colore = code.Colore(numero);
        // A queue's number is its stage; an element of another name comes after them all.
        const qint16 fase = numero >= 0 && numero < 32767 ? static_cast<qint16>(numero) : qint16(32767);
        for (const pugi::xml_node documento : coda.children()) {
            if (documento.type() != pugi::node_element)
                continue;
            if (!LeggiNodo(documento, colonne, nodo)) {
                ++esito.Errati;
                if (errore)
                    errore();
                continue;
            }
            if (!modello.Aggiungi(nodo.Celle, colore, 0, fase))
                continue;
            for (const auto& [id, descrizione] : nodo.Collegati)
                modello.AggiungiCollegato(id, descrizione);
            ++esito.Righe;
        }
    }
    modello.FineCaricamento();
    return esito;
}

} // namespace modElenco
