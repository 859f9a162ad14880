#include "RefCatalogo.h"
#include "RefLog.h"
#include "modDemoFormati.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <pugixml.hpp>

#include <algorithm>
#include <array>
#include <set>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

struct Catalogo
{
    QString Servizio;
    QString Cartella;
    std::vector<std::string> Generi; // every kind the demo must hold
};

const Catalogo Cataloghi[] = {{u"PxSrvFormati"_s, u"Formati"_s, {"Fronte", "Retro", "Frontespizio"}},
                              {u"PxSrvFirme"_s, u"Firme"_s, {"Firma"}}};

class modDemoFormati : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_EQ(modDemo::CreaFormatiDemo(mDir.path()), QString()); }

    QString Cartella(const Catalogo& c) const { return mDir.filePath(c.Cartella); }
    QStringList File(const Catalogo& c) const { return QDir(Cartella(c)).entryList({u"*.xml"_s}, QDir::Files, QDir::Name); }

    // The catalogue's listing, as its rows.
    std::vector<std::array<QString, 3>> Elenco(RefCatalogo& catalogo)
    {
        std::vector<std::array<QString, 3>> righe;
        const QByteArray xml = catalogo.TestoElenco();
        pugi::xml_document doc;
        EXPECT_TRUE(doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size())));
        for (pugi::xml_node o : doc.child("Elenco").children("Oggetto")) {
            std::array<QString, 3> riga;
            size_t i = 0;
            for (pugi::xml_node f : o.children("F"))
                if (i < riga.size())
                    riga[i++] = QString::fromUtf8(f.text().get());
            EXPECT_EQ(i, riga.size());
            righe.push_back(riga);
        }
        return righe;
    }

    QTemporaryDir mDir;
    RefLog mLog{mDir.filePath(u"x.log"_s)};
};

TEST_F(modDemoFormati, ElencoUnOggettoPerFileConChiaveGenereDescrizione)
{
    for (const Catalogo& c : Cataloghi) {
        RefCatalogo catalogo(c.Servizio, Cartella(c), mLog);
        const QStringList file = File(c);
        const auto righe = Elenco(catalogo);
        ASSERT_EQ(righe.size(), static_cast<size_t>(file.size())) << c.Servizio.toStdString();
        std::set<std::string> generi;
        for (size_t i = 0; i < righe.size(); ++i) {
            pugi::xml_document doc;
            ASSERT_TRUE(doc.load_file(QFile::encodeName(QDir(Cartella(c)).filePath(file[static_cast<qsizetype>(i)])).constData()));
            const pugi::xml_node radice = doc.document_element();
            EXPECT_EQ(righe[i][0] + u".xml"_s, file[static_cast<qsizetype>(i)]);
            EXPECT_EQ(righe[i][1], QString::fromUtf8(radice.attribute("Genere").value()));
            EXPECT_EQ(righe[i][2], QString::fromUtf8(radice.child("Proprieta").child_value("Descrizione")));
            EXPECT_FALSE(righe[i][2].isEmpty());
            EXPECT_TRUE(catalogo.Descrizione(righe[i][0]).contains(u"<Key>"_s + righe[i][0] + u"</Key>"_s));
            generi.insert(radice.attribute("Genere").value());
        }
        EXPECT_EQ(catalogo.Descrizione(u"NESSUNO"_s), QString());
        EXPECT_EQ(generi, std::set<std::string>(c.Generi.begin(), c.Generi.end())) << c.Servizio.toStdString();
    }
}

TEST_F(modDemoFormati, RetroAssociatoVuotoOppureUnRetro)
{
    RefCatalogo catalogo(u"PxSrvFormati"_s, Cartella(Cataloghi[0]), mLog);
    const auto righe = Elenco(catalogo);
    QStringList retro;
    for (const auto& riga : righe)
        if (riga[1] == u"Retro"_s)
            retro << riga[0];
    int associati = 0, senza = 0;
    for (const auto& riga : righe) {
        if (riga[1] != u"Fronte"_s)
            continue;
        const QByteArray xml = catalogo.Descrizione(riga[0]).toUtf8();
        pugi::xml_document doc;
        ASSERT_TRUE(doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size())));
        const QString chiave = QString::fromUtf8(doc.document_element().child("Proprieta").child_value("KeyRetro"));
        EXPECT_TRUE(chiave.isEmpty() || retro.contains(chiave)) << riga[0].toStdString() << " -> " << chiave.toStdString();
        ++(chiave.isEmpty() ? senza : associati);
    }
    EXPECT_GT(associati, 0);
    EXPECT_GT(senza, 0);
}

TEST_F(modDemoFormati, RefCatalogoSaltaIFileDifettosiELiScriveNelLog)
{
    const QDir formati(Cartella(Cataloghi[0]));
    const qsizetype buoni = File(Cataloghi[0]).size();
    const std::pair<const char*, const char*> difettosi[] = {
        {"000_Rotto.xml", "<Formato Genere=\"Fronte\"><Proprieta><Key>X</Key>"},
        {"F005a.xml", "<Formato Genere=\"Fronte\"><Proprieta><Descrizione>Senza chiave</Descrizione></Proprieta></Formato>"},
        {"F005b.xml", "<Formato Genere=\"Retro\"><Proprieta><Key>  </Key></Proprieta></Formato>"}};
    for (const auto& [nome, testo] : difettosi) {
        QFile f(formati.filePath(QString::fromUtf8(nome)));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(testo);
    }

    RefCatalogo catalogo(u"PxSrvFormati"_s, formati.path(), mLog);
    EXPECT_EQ(catalogo.Conteggio(), buoni);
    EXPECT_EQ(Elenco(catalogo).size(), static_cast<size_t>(buoni));
    QFile log(mLog.Percorso());
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    const QList<QByteArray> righe = log.readAll().split('\n');
    for (const auto& [nome, testo] : difettosi)
        EXPECT_EQ(std::count_if(righe.begin(), righe.end(), [n = nome](const QByteArray& r) { return r.contains(n); }), 1)
            << nome;
}

} // namespace
