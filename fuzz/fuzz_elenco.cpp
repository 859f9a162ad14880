// A folder's listing as the server sends it, and a notice's document node: into the content
// model, then read back, sorted, grouped and changed as the operator and the notices would.
#include "PxModelloContenuto.h"
#include "modElenco.h"

#include <pugixml.hpp>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* dati, size_t quanti)
{
    static PxModelloContenuto modello;
    if (modello.Colonne().isEmpty())
        modello.ImpostaColonne({{QStringLiteral("ID")}, {QStringLiteral("Stato")}, {QStringLiteral("Utente")},
                                {QStringLiteral("Inserito il"), true}});
    const QByteArray testo(reinterpret_cast<const char*>(dati), static_cast<qsizetype>(quanti));
    const modElenco::Code code{[](int coda) { return coda != 3; }, [](int coda) { return coda == 8 ? 49152u : 0u; }};
    modello.ImpostaRaggruppamento(quanti % 2 ? 1 : -1);
    modElenco::Carica(modello, testo, code, {});
    modello.sort(static_cast<int>(quanti % 4), quanti % 3 ? Qt::AscendingOrder : Qt::DescendingOrder);
    // Each document node of the text as a notice: rewrite, add, remove.
    pugi::xml_document doc;
    if (doc.load_buffer(dati, quanti, pugi::parse_default | pugi::parse_embed_pcdata))
        for (const pugi::xml_node coda : doc.document_element().children())
            for (const pugi::xml_node n : coda.children()) {
                modElenco::Nodo nodo;
                if (!modElenco::LeggiNodo(n, 4, nodo))
                    continue;
                const qint32 riga = modello.Riga(nodo.Celle[0]);
                if (riga < 0)
                    modello.Inserisci(nodo.Celle, 0, nodo.Collegati);
                else if (nodo.Celle[2].size() % 2)
                    modello.Rimuovi(riga);
                else
                    modello.Aggiorna(riga, nodo.Celle, 255);
            }
    for (int r = 0; r < modello.rowCount(); ++r) {
        const QModelIndex i = modello.index(r, 0);
        (void)modello.data(i);
        for (int c = 0; c < modello.rowCount(i) && c < 4; ++c)
            (void)modello.data(modello.index(c, 3, i), PxModelloContenuto::RuoloOrdinamento);
    }
    return 0;
}
