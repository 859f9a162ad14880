#include "modSchede.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QStringList>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace {

// One line of the fixture scripts/extract-sheets.py writes from the design notes.
struct Riga
{
    int Livello;
    int Testo;
    char Genere; // 'G' group or category, 'T' item
    bool operator==(const Riga&) const = default;
};

std::map<int, std::vector<Riga>> Fixture()
{
    std::map<int, std::vector<Riga>> layout;
    QFile f(QStringLiteral(PLX_DATI_TEST "/schede/layout.tsv"));
    EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << f.fileName().toStdString();
    while (!f.atEnd()) {
        const QStringList c = QString::fromUtf8(f.readLine()).trimmed().split(u'\t');
        if (c.size() == 4)
            layout[c[0].toInt()].push_back({c[1].toInt(), c[2].toInt(), c[3].at(0).toLatin1()});
    }
    return layout;
}

void Appiattisci(const std::vector<modSchede::VoceEspansa>& voci, int scarto, std::vector<Riga>& uscita)
{
    using modSchede::Tipo;
    for (const modSchede::VoceEspansa& v : voci) {
        const bool gruppo = v.Genere == Tipo::Gruppo || v.Genere == Tipo::Elenco;
        uscita.push_back({v.Livello + scarto, v.Testo, gruppo ? 'G' : 'T'});
        // A list shows its template once per entry; the notes draw it once.
        Appiattisci(v.Modello, v.Livello + scarto, uscita);
    }
}

std::string Mostra(const std::vector<Riga>& righe)
{
    std::string s;
    for (const Riga& r : righe)
        s += std::string(static_cast<size_t>(r.Livello) * 2, ' ') + std::to_string(r.Testo) + ' ' + r.Genere + '\n';
    return s;
}

} // namespace

TEST(modSchede, EveryLayoutHasTheCaptionsAndOrderOfTheNotes)
{
    const auto fixture = Fixture();
    ASSERT_EQ(fixture.size(), 49u);
    ASSERT_EQ(modSchede::Layouts().size(), 49u);
    for (const auto& [numero, attese] : fixture) {
        ASSERT_NE(modSchede::Trova(numero), nullptr) << numero;
        std::vector<Riga> righe;
        Appiattisci(modSchede::Espansa(numero), 0, righe);
        EXPECT_EQ(Mostra(righe), Mostra(attese)) << "layout " << numero;
    }
}

TEST(modSchede, EveryValueHasAPathAndNoPathRepeatsWithinALayout)
{
    using modSchede::Tipo;
    for (const modSchede::Layout& l : modSchede::Layouts()) {
        std::set<std::string> visti;
        for (const modSchede::VoceEspansa& v : modSchede::Espansa(l.Numero)) {
            if (v.Genere == Tipo::Testo || v.Genere == Tipo::Data12) {
                EXPECT_FALSE(v.Percorso.empty()) << "layout " << l.Numero << " caption " << v.Testo;
                EXPECT_TRUE(visti.insert(v.Percorso).second) << "layout " << l.Numero << " reads " << v.Percorso << " twice";
            }
            EXPECT_EQ(v.Percorso.find("//"), std::string::npos) << v.Percorso;
        }
    }
}
