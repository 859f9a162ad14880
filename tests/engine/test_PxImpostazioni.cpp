#include "PxImpostazioni.h"

#include <gtest/gtest.h>

#include <QSettings>
#include <QTemporaryDir>

namespace {

struct Registro
{
    QTemporaryDir dir;
    QSettings settings{dir.filePath(QStringLiteral("registro.ini")), QSettings::IniFormat};
};

} // namespace

TEST(PxImpostazioni, BooleansAreStoredAsMinusOneAndZero)
{
    Registro r;
    PxImpostazioni i;
    i.ShowTextBelowIcons = true;
    i.AlternateRow = false;
    i.IconSize = 32;
    i.Salva(r.settings);
    EXPECT_EQ(r.settings.value(QStringLiteral("ShowTextBelowIcons")).toInt(), -1);
    EXPECT_EQ(r.settings.value(QStringLiteral("ControlOption/AlternateRow")).toInt(), 0);
    EXPECT_EQ(r.settings.value(QStringLiteral("ControlOption/ShowProgressBar")).toInt(), -1);
    EXPECT_EQ(r.settings.value(QStringLiteral("IconSize")).toInt(), 32);
    PxImpostazioni letta;
    letta.Carica(r.settings);
    EXPECT_TRUE(letta.ShowTextBelowIcons);
    EXPECT_FALSE(letta.AlternateRow);
    EXPECT_EQ(letta.IconSize, 32);
}

TEST(PxImpostazioni, BestFitModeIsReadButNeverWritten)
{
    Registro r;
    PxImpostazioni i;
    i.ColumnBestFitMode = 3;
    i.Salva(r.settings);
    EXPECT_FALSE(r.settings.contains(QStringLiteral("ControlOption/ColumnBestFitMode"))) << "the default must not be written";
    r.settings.setValue(QStringLiteral("ControlOption/ColumnBestFitMode"), 2); // set by hand
    PxImpostazioni letta;
    letta.Carica(r.settings);
    EXPECT_EQ(letta.ColumnBestFitMode, 2);
    letta.ColumnBestFitMode = 5;
    letta.Salva(r.settings);
    EXPECT_EQ(r.settings.value(QStringLiteral("ControlOption/ColumnBestFitMode")).toInt(), 2);
}

TEST(PxImpostazioni, UnreadableValuesKeepTheDefault)
{
    Registro r;
    r.settings.setValue(QStringLiteral("VisualTheme"), QStringLiteral("scuro"));
    r.settings.setValue(QStringLiteral("RealTimeUpdateContenents"), QStringLiteral("false"));
    PxImpostazioni i;
    i.Carica(r.settings);
    EXPECT_EQ(i.VisualTheme, 4);
    EXPECT_FALSE(i.RealTimeUpdateContenents);
}
