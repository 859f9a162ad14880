// The reference server's demo against the sheets: every path a sheet reads is one the demo
// writes, so that a path can never drift between what the server writes and what the pane
// reads. Paths come from the same tables the pane builds its sheets from.

#include "ServerInLinea.h"

#include "RefCartellaDocumenti.h"
#include "RefServizio.h"
#include "modAlberoServer.h"
#include "modProprieta.h"
#include "modSchede.h"
#include "modTabellaCartelle.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <pugixml.hpp>

#include <set>
#include <vector>

using namespace Qt::StringLiterals;
#include <string>

namespace {

class SchedeDemo : public SuiteConServer<300>
{
protected:
    // The paths of layout `numero` missing under `base`, after the base itself.
    static std::set<std::string> Mancanti(int numero, const pugi::xml_node& base)
    {
        std::set<std::string> mancanti;
        for (const std::string& p : modSchede::Percorsi(numero))
            if (!base.first_element_by_path(p.c_str()))
                mancanti.insert(p);
        return mancanti;
    }

    static std::string Elenca(const std::set<std::string>& percorsi)
    {
        std::string s;
        for (const std::string& p : percorsi)
            s += p + ' ';
        return s;
    }

};

} // namespace

TEST_F(SchedeDemo, EveryServiceNodeStatesEveryPathItsSheetReads)
{
    int controllati = 0;
    for (const modAlberoServer::Nodo& n : modAlberoServer::Nodi()) {
        const modSchede::Layout* l = modSchede::DelCodice(QString::fromLatin1(n.Chiave));
        ASSERT_NE(l, nullptr) << n.Chiave << " has no sheet";
        const RefServizio* s = sServer->Ref->ServizioRef(QString::fromLatin1(*n.Oggetto ? n.Oggetto : "PxSrvServer"));
        ASSERT_NE(s, nullptr) << n.Chiave;
        pugi::xml_document doc;
        ASSERT_TRUE(doc.load_string(s->StatoXml().toUtf8().constData())) << n.Chiave;
        pugi::xml_node base = doc.document_element();
        if (n.Tipo == modAlberoServer::Genere::Elenco) {
            // Every entry of the list: a printer, a client, an FTP client.
            int voci = 0;
            for (const pugi::xml_node e : base.child(n.Elenco).children()) {
                EXPECT_EQ(Elenca(Mancanti(l->Numero, e)), "") << n.Chiave << " entry " << e.child_value(n.ElementoChiave);
                ++voci;
            }
            EXPECT_GT(voci, 0) << n.Chiave;
        } else {
            EXPECT_EQ(Elenca(Mancanti(l->Numero, base)), "") << n.Chiave;
        }
        ++controllati;
    }
    // Layouts 1-38: one node kind each.
    EXPECT_EQ(controllati, 38);
}

TEST_F(SchedeDemo, EveryDocumentKindStatesEveryPathItsSheetReads)
{
    for (const modTabellaCartelle::Cartella& c : modTabellaCartelle::Cartelle()) {
        const modSchede::Layout* l = modSchede::DellOggetto(QString::fromLatin1(modProprieta::NomeGenere(c.Genere)));
        ASSERT_NE(l, nullptr) << c.Chiave;
        RefCartellaDocumenti* cartella = sServer->Ref->Cartella(c.Genere);
        ASSERT_NE(cartella, nullptr) << c.Chiave;
        // What no document of the kind has: a path that some document may leave out still
        // has to appear in one of them.
        std::set<std::string> mancanti;
        for (const std::string& p : modSchede::Percorsi(l->Numero))
            mancanti.insert(p);
        int documenti = 0;
        for (qint32 coda = 0; coda < cartella->Definizione().NumeroCode; ++coda)
            for (const QString& id : cartella->Coda(coda)) {
                const DatiDocumento* d = cartella->Trova(id);
                pugi::xml_document doc;
                const QByteArray xml = RefCartellaDocumenti::TestoDescrizione(*d, cartella->CartellaDi(*d));
                ASSERT_TRUE(doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size())));
                const pugi::xml_node base = doc.document_element().child(l->Base);
                std::erase_if(mancanti, [&](const std::string& p) { return base.first_element_by_path(p.c_str()); });
                ++documenti;
            }
        EXPECT_GT(documenti, 0) << c.Chiave;
        EXPECT_EQ(Elenca(mancanti), "") << c.Chiave << ": paths no document fills";
    }
}

TEST_F(SchedeDemo, EveryFormatAndSignatureStatesEveryPathItsSheetReads)
{
    std::set<int> visti;
    for (const char* sotto : {"Formati", "Firme"}) {
        QDirIterator it(QDir(sServer->Ref->Cartella()).filePath(QLatin1StringView(sotto)), {QStringLiteral("*.xml")}, QDir::Files);
        while (it.hasNext()) {
            const QString file = it.next();
            pugi::xml_document doc;
            ASSERT_TRUE(doc.load_file(QFile::encodeName(file).constData())) << file.toStdString();
            const pugi::xml_node radice = doc.document_element();
            const modSchede::Layout* l = modSchede::DellOggetto(QString::fromUtf8(radice.attribute("Genere").value()));
            ASSERT_NE(l, nullptr) << file.toStdString();
            visti.insert(l->Numero);
            // A front page with no back page leaves "Retro associato" empty: the element is there.
            EXPECT_EQ(Elenca(Mancanti(l->Numero, radice.child(l->Base))), "") << file.toStdString();
        }
    }
    EXPECT_EQ(visti, (std::set<int>{46, 47, 48, 49}));
}

namespace {

// The "Paths of each kind" section of docs/documents.md, as the tables give it.
QString SezionePercorsi(const PxConsoleResDll& testi)
{
    QString s = QStringLiteral(
        "## Paths of each kind, in sheet order\n\n"
        "\"#\" is the item's place in the sheet's fill order; the sheet item is given as its caption trail\n"
        "below the top category, each caption with its string-table id. A group that holds a list takes\n"
        "one item per child element of its path (see Lists above); every other path fills one item.\n"
        "This section is written from the sheet tables (src/server/modSchede.cpp) by the test\n"
        "SchedeDemo.TheDocumentPathsInTheDocsAreTheTables; PLX_AGGIORNA_ORO=1 rewrites it.\n");
    const auto caption = [&](int id) { return u"\"%1\" (%2)"_s.arg(testi.LoadDllString(id)).arg(id); };
    const QString intestazione = u"\n| # | Element path | Sheet item |\n|---|---|---|\n"_s;
    using enum GenereCartella;
    for (const GenereCartella genere : {Stampa, Email, Fax, PFax, EFax, Pbl, Anteprima}) {
        const char* tipo = modProprieta::NomeGenere(genere);
        const modSchede::Layout* l = modSchede::DellOggetto(QString::fromLatin1(tipo));
        const std::vector<modSchede::VoceEspansa>& voci = modSchede::Espansa(l->Numero);
        QString righe;
        int n = 0;
        std::vector<int> scia; // the captions of the open groups, by level
        for (const modSchede::VoceEspansa& v : voci) {
            if (v.Livello == 0) {
                if (n > 0)
                    righe += u"\nSecond category %1, numbering continued:\n"_s.arg(caption(v.Testo)) + intestazione;
                scia.clear();
                continue;
            }
            scia.resize(static_cast<size_t>(v.Livello) - 1);
            scia.push_back(v.Testo);
            QStringList trail;
            for (const int t : scia)
                trail << caption(t);
            const QString voce = trail.join(u" › "_s);
            const auto riga = [&](const std::string& percorso, const QString& nota) {
                righe += u"| %1 | `%2` | %3%4 |\n"_s.arg(++n).arg(QString::fromStdString(percorso), voce, nota);
            };
            if (v.Genere == modSchede::Tipo::Elenco) {
                if (!v.Secondo.empty())
                    riga(v.Secondo, u" (the group's own value)"_s);
                riga(v.Percorso, u" (group: one item per child element)"_s);
            } else if (!v.Percorso.empty()) {
                riga(v.Percorso, v.Genere == modSchede::Tipo::Gruppo ? u" (the group's own value)"_s : QString());
            }
        }
        s += u"\n### %1: layout %2, %3, %4 paths\n"_s.arg(QLatin1StringView(tipo)).arg(l->Numero).arg(caption(voci.front().Testo)).arg(n)
            + intestazione + righe;
    }
    return s;
}

} // namespace

TEST_F(SchedeDemo, TheDocumentPathsInTheDocsAreTheTables)
{
    QFile file(QStringLiteral(PLX_DOCS "/documents.md"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString testo = QString::fromUtf8(file.readAll());
    file.close();
    const qsizetype inizio = testo.indexOf(u"## Paths of each kind"_s);
    ASSERT_GE(inizio, 0);
    qsizetype fine = testo.indexOf(u"\n## "_s, inizio + 1);
    fine = fine < 0 ? testo.size() : fine + 1;
    const QString atteso = SezionePercorsi(sServer->Testi);
    if (qEnvironmentVariableIsSet("PLX_AGGIORNA_ORO")) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write((testo.left(inizio) + atteso + testo.mid(fine)).toUtf8());
        return;
    }
    EXPECT_EQ(testo.mid(inizio, fine - inizio).toStdString(), atteso.toStdString());
}
