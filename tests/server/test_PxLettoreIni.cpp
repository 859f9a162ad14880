#include "PxLettoreIni.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

namespace {
const QString Console = QStringLiteral("Console");
}

TEST(PxLettoreIni, WindowsRules)
{
    const PxLettoreIni ini = PxLettoreIni::DaDati(
        "\xEF\xBB\xBF; commento iniziale\r\n"
        "[Console]\r\n"
        "EstenzioneFileZip = .zip \r\n"
        "Percorso=C:\\Pelorix\\Dati\\new\r\n"
        "  ; commento rientrato\r\n"
        "Nota=valore ; non e' un commento\r\n"
        "Citato=\"  con spazi  \"\r\n"
        "Singolo='x'\r\n"
        "Doppio=primo\r\n"
        "doppio=secondo\r\n"
        "Vuoto=\r\n"
        "senza uguale\r\n"
        "[ server anteprime ]\r\n"
        "IndirizzoPredefinito=127.0.0.1\r\n"
        "[CONSOLE]\r\n"
        "Ripetuta=si\r\n");
    EXPECT_EQ(ini.Stringa(Console, QStringLiteral("EstenzioneFileZip"), {}), QStringLiteral(".zip"));
    EXPECT_EQ(ini.Stringa(QStringLiteral("console"), QStringLiteral("ESTENZIONEFILEZIP"), {}), QStringLiteral(".zip"));
    EXPECT_EQ(ini.Stringa(Console, QStringLiteral("Percorso"), {}), QStringLiteral("C:\\Pelorix\\Dati\\new"));
    EXPECT_EQ(ini.Stringa(Console, QStringLiteral("Nota"), {}), QStringLiteral("valore ; non e' un commento"));
    EXPECT_EQ(ini.Stringa(Console, QStringLiteral("Citato"), {}), QStringLiteral("  con spazi  "));
    EXPECT_EQ(ini.Stringa(Console, QStringLiteral("Singolo"), {}), QStringLiteral("x"));
    EXPECT_EQ(ini.Stringa(Console, QStringLiteral("Doppio"), {}), QStringLiteral("primo"));
    EXPECT_TRUE(ini.Contiene(Console, QStringLiteral("Vuoto")));
    EXPECT_EQ(ini.Stringa(Console, QStringLiteral("Vuoto"), QStringLiteral("def")), QString());
    EXPECT_EQ(ini.Stringa(Console, QStringLiteral("Manca"), QStringLiteral("def")), QStringLiteral("def"));
    EXPECT_EQ(ini.Stringa(QStringLiteral("Server anteprime"), QStringLiteral("indirizzopredefinito"), {}),
              QStringLiteral("127.0.0.1"));
    EXPECT_FALSE(ini.Contiene(Console, QStringLiteral("Ripetuta"))) << "a repeated section is not read";
    EXPECT_FALSE(ini.Contiene(Console, QStringLiteral("; commento rientrato")));
}

TEST(PxLettoreIni, LengthLimitActsLikeAFixedBuffer)
{
    const PxLettoreIni ini = PxLettoreIni::DaDati("[A]\nK=" + QByteArray(2000, 'z') + "\n");
    EXPECT_EQ(ini.Stringa(QStringLiteral("A"), QStringLiteral("K"), {}, 1024).size(), 1023);
    EXPECT_EQ(ini.Stringa(QStringLiteral("A"), QStringLiteral("K"), {}).size(), 2000);
    EXPECT_EQ(ini.Stringa(QStringLiteral("A"), QStringLiteral("X"), QStringLiteral(".pxz"), 1024), QStringLiteral(".pxz"));
}

TEST(PxLettoreIni, BooleansAndIntegers)
{
    const PxLettoreIni ini = PxLettoreIni::DaDati(
        "[B]\nuno=1\nmeno=-1\nzero=0\nvero=Vero\nfalse=FALSE\nsi=sì\nstrano=forse\nnumero= 42 \n");
    const QString b = QStringLiteral("B");
    EXPECT_TRUE(ini.Booleano(b, QStringLiteral("uno"), false));
    EXPECT_TRUE(ini.Booleano(b, QStringLiteral("meno"), false));
    EXPECT_FALSE(ini.Booleano(b, QStringLiteral("zero"), true));
    EXPECT_TRUE(ini.Booleano(b, QStringLiteral("vero"), false));
    EXPECT_FALSE(ini.Booleano(b, QStringLiteral("false"), true));
    EXPECT_TRUE(ini.Booleano(b, QStringLiteral("si"), false));
    EXPECT_TRUE(ini.Booleano(b, QStringLiteral("strano"), true));
    EXPECT_FALSE(ini.Booleano(b, QStringLiteral("strano"), false));
    EXPECT_FALSE(ini.Booleano(b, QStringLiteral("assente"), false));
    EXPECT_EQ(ini.Intero(b, QStringLiteral("numero"), 0), 42);
    EXPECT_EQ(ini.Intero(b, QStringLiteral("strano"), 7), 7);
}

TEST(PxLettoreIni, Windows1252WhenTheTextIsNotUtf8)
{
    // "Città €" in Windows-1252: à = E0, € = 80.
    const PxLettoreIni cp = PxLettoreIni::DaDati("[S]\nNome=Citt\xE0 \x80\r\n");
    EXPECT_EQ(cp.Stringa(QStringLiteral("S"), QStringLiteral("Nome"), {}), QStringLiteral("Città €"));
    const PxLettoreIni utf8 = PxLettoreIni::DaDati("[S]\nNome=Citt\xC3\xA0 \xE2\x82\xAC\n");
    EXPECT_EQ(utf8.Stringa(QStringLiteral("S"), QStringLiteral("Nome"), {}), QStringLiteral("Città €"));
}

TEST(PxLettoreIni, MissingFileReadsAsEmpty)
{
    QTemporaryDir dir;
    const PxLettoreIni assente(dir.filePath(QStringLiteral("nessuno.ini")));
    EXPECT_EQ(assente.Stringa(Console, QStringLiteral("EstenzioneFileZip"), QStringLiteral(".pxz")), QStringLiteral(".pxz"));
    QFile f(dir.filePath(QStringLiteral("a.ini")));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("[Console]\nMostraStrumentiProcessi=1\n");
    f.close();
    EXPECT_TRUE(PxLettoreIni(f.fileName()).Booleano(Console, QStringLiteral("MostraStrumentiProcessi"), false));
}
