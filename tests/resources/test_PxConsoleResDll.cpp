#include "PxConsoleResDll.h"
#include "PxErrore.h"
#include "TabellaTesti.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace {

const QString ModuloA = QStringLiteral(PLX_MODULI_TEST "/modulo_a.rcc");
const QString ModuloB = QStringLiteral(PLX_MODULI_TEST "/modulo_b.rcc");

QString Messaggio(const std::function<void()>& f)
{
    try {
        f();
    } catch (const PxErrore& e) {
        return e.Descrizione();
    }
    return QStringLiteral("<nessun errore>");
}

} // namespace

TEST(PxConsoleResDll, ExcludedRangesReturnEmptyEvenWhenTheTableHasTheId)
{
    const PxConsoleResDll r;
    ASSERT_EQ(TabellaTesti::Italiano().Testo(1400), QStringLiteral("Del"));
    ASSERT_EQ(TabellaTesti::Italiano().Testo(1401), QStringLiteral("Descrizione"));
    for (const int id : {1400, 1401, 1450, 1499, 6000, 6500, 6999})
        EXPECT_EQ(r.LoadDllString(id), QString()) << id;
    EXPECT_FALSE(r.LoadDllString(1500).isEmpty()) << "1500 is past the excluded range";
    EXPECT_FALSE(r.LoadDllString(1356).isEmpty());
}

TEST(PxConsoleResDll, UnknownIdsReturnEmptyNotNull)
{
    const PxConsoleResDll r;
    for (const int id : {0, -1, 3, 99, 7009, 99999}) {
        EXPECT_TRUE(r.LoadDllString(id).isEmpty()) << id;
        EXPECT_FALSE(r.LoadDllString(id).isNull()) << id;
    }
}

TEST(TabellaTesti, ParsesEscapesCommentsAndCrLf)
{
    const TabellaTesti t = TabellaTesti::DaTesto(
        QStringLiteral("# commento\r\n10\tuno\\ndue\r\n11\ttab\\there\n12\tbarra \\\\ fine\nxx\tscartata\n\n13\t\n"));
    EXPECT_EQ(t.Testo(10), QStringLiteral("uno\ndue"));
    EXPECT_EQ(t.Testo(11), QStringLiteral("tab\there"));
    EXPECT_EQ(t.Testo(12), QStringLiteral("barra \\ fine"));
    EXPECT_TRUE(t.Contiene(13));
    EXPECT_EQ(t.Testo(13), QString());
    EXPECT_EQ(t.RigheScartate(), 1);
}

TEST(PxConsoleResDll, DefaultModuleIsTheProgramAndCarriesTheIcons)
{
    const PxConsoleResDll r;
    EXPECT_EQ(QFileInfo(r.DllName()), QFileInfo(PxConsoleResDll::ProgrammaCorrente()));
    EXPECT_NE(r.Handle(), 0u);
    EXPECT_FALSE(r.LoadDllIcon(200).isNull());
    EXPECT_EQ(r.GetDllURL(QStringLiteral("  ICON "), 200), QStringLiteral("RES://") + r.DllName() + QStringLiteral("/ICON/200"));
    EXPECT_EQ(Messaggio([&] { r.LoadDllData(4242, QStringLiteral("CUSTOM")); }),
              QStringLiteral("Custom resource with Identifier 4242 not found."));
}

TEST(PxConsoleResDll, SwitchingModulesTwiceFreesTheFirst)
{
    PxConsoleResDll r;
    r.SetDllName(ModuloA);
    const quintptr primo = r.Handle();
    EXPECT_NE(primo, 0u);
    EXPECT_EQ(r.LoadDllData(101, QStringLiteral("CUSTOM")), QByteArray("AAAA\x00\x01", 6));
    EXPECT_EQ(r.LoadDllText(7), QStringLiteral("Testo del modulo A: è così"));
    EXPECT_FALSE(r.LoadDllIcon(200).isNull());

    r.SetDllName(ModuloB);
    EXPECT_NE(r.Handle(), 0u);
    EXPECT_NE(r.Handle(), primo);
    EXPECT_EQ(r.LoadDllData(102, QStringLiteral("custom")), QByteArray("BBBB"));
    EXPECT_FALSE(QFileInfo::exists(QStringLiteral(":/plxmodulo/CUSTOM/101"))) << "module A is still mapped";
    EXPECT_EQ(Messaggio([&] { r.LoadDllData(101, QStringLiteral("CUSTOM")); }),
              QStringLiteral("Custom resource with Identifier 101 not found."));

    r.SetDllName(ModuloA); // and back again: A maps anew
    EXPECT_EQ(r.LoadDllData(101, QStringLiteral("CUSTOM")).left(4), QByteArray("AAAA"));
    EXPECT_FALSE(QFileInfo::exists(QStringLiteral(":/plxmodulo/CUSTOM/102")));
}

TEST(PxConsoleResDll, AModuleThatCannotLoadLeavesNone)
{
    PxConsoleResDll r;
    r.SetDllName(ModuloB);
    const QString nome = QStringLiteral("/non/esiste/risorse.rcc");
    EXPECT_EQ(Messaggio([&] { r.SetDllName(nome); }), QStringLiteral("Error in loading DLL: ") + nome);
    EXPECT_EQ(r.Handle(), 0u);
    EXPECT_FALSE(QFileInfo::exists(QStringLiteral(":/plxmodulo/CUSTOM/102"))) << "the previous module was not freed";
    EXPECT_EQ(Messaggio([&] { r.LoadDllData(102, QStringLiteral("CUSTOM")); }),
              QStringLiteral("Custom resource with Identifier 102 not found."));
    EXPECT_EQ(r.LoadDllString(200), QStringLiteral("Servizi")) << "texts do not depend on the module";
}

TEST(PxConsoleResDll, SaveDllDataReplacesAnExistingFile)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("dati.bin"));
    {
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(QByteArray(1000, 'x'));
    }
    PxConsoleResDll r;
    r.SetDllName(ModuloA);
    r.SaveDllData(101, QStringLiteral("CUSTOM"), file);
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), QByteArray("AAAA\x00\x01", 6));
    EXPECT_EQ(Messaggio([&] { r.SaveDllData(999, QStringLiteral("CUSTOM"), file); }),
              QStringLiteral("Resource with Identifier 999 not found."));
    EXPECT_EQ(Messaggio([&] { r.PlayWave(5); }), QStringLiteral("Resource with Identifier 5 not found."));
}
