// The form a job travels in when a console hands it to a service by request: what goes in
// comes out in publication order, and anything else is refused with a reason.
#include "PxContratto.h"
#include "modPacchettoLavoro.h"

#include <gtest/gtest.h>

#include <QtEndian>

#include <cstring>

using namespace Qt::StringLiterals;

namespace {

QByteArray Numero(quint32 n)
{
    char b[4];
    qToBigEndian(n, b);
    return QByteArray(b, 4);
}

// A package put together by hand, so that the reader is not checked against the writer alone.
QByteArray AMano(quint8 versione, const std::vector<std::pair<QByteArray, QByteArray>>& file, quint8 quanti = 0)
{
    QByteArray d("PXLAVORO");
    d += static_cast<char>(versione);
    d += static_cast<char>(quanti ? quanti : file.size());
    for (const auto& [estensione, dati] : file)
        d += estensione + Numero(static_cast<quint32>(dati.size())) + dati;
    return d;
}

QString Errore(const QByteArray& dati)
{
    QString errore;
    EXPECT_FALSE(modPacchettoLavoro::Leggi(dati, &errore).has_value());
    EXPECT_FALSE(errore.isEmpty());
    return errore;
}

} // namespace

TEST(PacchettoLavoro, WhatGoesInComesOutInPublicationOrder)
{
    const std::vector<modLavoro::File> file{{".hpx", "[PROPRIETA]\r\nTipo=2\r\n"}, {".bpx", QByteArray("corpo\0binario", 13)},
                                            {".spx", "<PLX/>"}};
    const QByteArray pacchetto = modPacchettoLavoro::Componi(file);
    EXPECT_EQ(pacchetto, AMano(1, {{".hpx", file[0].Dati}, {".bpx", file[1].Dati}, {".spx", file[2].Dati}}));
    const auto letti = modPacchettoLavoro::Leggi(pacchetto);
    ASSERT_TRUE(letti.has_value());
    ASSERT_EQ(letti->size(), 3u);
    EXPECT_STREQ((*letti)[0].Estensione, ".spx");
    EXPECT_EQ((*letti)[0].Dati, file[2].Dati);
    EXPECT_STREQ((*letti)[1].Estensione, ".bpx");
    EXPECT_EQ((*letti)[1].Dati, file[1].Dati);
    EXPECT_STREQ((*letti)[2].Estensione, ".hpx");
    EXPECT_EQ((*letti)[2].Dati, file[0].Dati);
    // Without a script, and with an empty body.
    const auto dueFile = modPacchettoLavoro::Leggi(AMano(1, {{".bpx", {}}, {".hpx", "h"}}));
    ASSERT_TRUE(dueFile.has_value());
    EXPECT_EQ(dueFile->size(), 2u);
}

TEST(PacchettoLavoro, AnythingButAWholeJobOfThisVersionIsRefused)
{
    const QByteArray buono = AMano(1, {{".bpx", "c"}, {".hpx", "h"}});
    ASSERT_TRUE(modPacchettoLavoro::Leggi(buono).has_value());
    Errore({});
    Errore("PXLAVOR");
    Errore("XXLAVORO" + buono.mid(8));
    Errore(AMano(2, {{".bpx", "c"}, {".hpx", "h"}}));
    Errore(buono.chopped(1));
    Errore(buono + 'x');
    Errore(AMano(1, {{".bpx", "c"}, {".hpx", "h"}}, 3));                       // says three, holds two
    Errore(AMano(1, {{".bpx", "c"}, {".hpx", "h"}, {".spx", "s"}, {".spx", "t"}})); // four
    Errore(AMano(1, {{".bpx", "c"}, {".bpx", "d"}, {".hpx", "h"}}));          // a body twice
    Errore(AMano(1, {{".bpx", "c"}, {".spx", "s"}}));                         // no header
    Errore(AMano(1, {{".hpx", "h"}, {".spx", "s"}}));                         // no body
    EXPECT_TRUE(Errore(AMano(1, {{".bpx", "c"}, {".exe", "h"}})).contains(u"estensione"_s));
    EXPECT_TRUE(Errore(AMano(1, {{".bpx", "c"}, {"/../", "h"}})).contains(u"estensione"_s));
    // A length that points past the end is not believed.
    QByteArray lungo = buono;
    std::memcpy(lungo.data() + 10 + 4, Numero(0xFFFFFFF0u).constData(), 4);
    Errore(lungo);
}

TEST(PacchettoLavoro, AJobOverTheLimitIsNeitherMadeNorRead)
{
    const QByteArray grande(static_cast<qsizetype>(modContratto::MassimoLavoro), 'x');
    EXPECT_TRUE(modPacchettoLavoro::Componi({{".bpx", grande}, {".hpx", "h"}}).isEmpty());
    EXPECT_TRUE(Errore(AMano(1, {{".bpx", grande}, {".hpx", "h"}})).contains(u"massimo"_s));
    EXPECT_FALSE(modPacchettoLavoro::Componi({{".bpx", grande.chopped(1)}, {".hpx", "h"}}).isEmpty());
    EXPECT_TRUE(modPacchettoLavoro::Componi({{".bpx", "c"}, {".txt", "h"}}).isEmpty());
}
