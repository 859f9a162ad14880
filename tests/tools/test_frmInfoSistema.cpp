#include "ServerInLinea.h"
#include "frmInfoSistema.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace {

class InfoSistema : public ::testing::Test
{
protected:
    void SetUp() override
    {
        // As a console on another machine: the settings come through the server.
        ASSERT_TRUE(mS.Avvia(0, false));
        mPannello = std::make_unique<frmInfoSistema>(*mS.Contesto);
        mPannello->resize(600, 160);
        mPannello->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(mPannello.get()));
    }
    ServerInLinea mS;
    std::unique_ptr<frmInfoSistema> mPannello;
};

TEST_F(InfoSistema, SamplesAreStoredPlusSixAndTheNewestIsNotDrawnYet)
{
    frmInfoSistema& p = *mPannello;
    p.mobjUsoSistema_Aggiornamento(0, 100, 2048, 37, 4096);
    EXPECT_EQ(p.Storico(0)[48], 6) << "0 % is stored as 6";
    EXPECT_EQ(p.Storico(1)[48], 106) << "100 % as 106";
    EXPECT_EQ(p.Storico(2)[48], 43);
    EXPECT_EQ(p.Storico(0)[47], 0);
    EXPECT_EQ(p.Etichetta(0)->text(), u"Utilizzo CPU: 0%"_s);
    EXPECT_EQ(p.Etichetta(1)->text(), u"Memoria fisica disponibile 2048 MB. Usata al 100%"_s);
    EXPECT_EQ(p.Etichetta(2)->text(), u"Memoria virtuale disponibile 4096 MB. Usata al 37%"_s);
    EXPECT_EQ(p.Barre(0), 48) << "indices 0 to 47";
    p.mobjUsoSistema_Aggiornamento(50, 10, 1, 20, 1);
    EXPECT_EQ(p.Storico(0)[47], 6) << "the sample moved one place left";
    EXPECT_EQ(p.Storico(0)[48], 56);
}

TEST_F(InfoSistema, AGraphThatIsOffNeitherMovesNorDrawsNorChangesItsLabel)
{
    frmInfoSistema& p = *mPannello;
    p.GraficoCpu = p.GraficoMemHw = p.GraficoMemPg = false;
    p.Etichetta(0)->setText(u"prima"_s);
    p.mobjUsoSistema_Aggiornamento(10, 20, 30, 40, 50);
    p.mobjUsoSistema_Aggiornamento(11, 21, 31, 41, 51);
    EXPECT_EQ(p.Etichetta(0)->text(), u"prima"_s);
    EXPECT_TRUE(p.Etichetta(1)->text().isEmpty());
    for (int g = 0; g < 3; ++g) {
        EXPECT_EQ(p.Barre(g), 0) << g;
        EXPECT_EQ(p.Storico(g)[47], 0) << "not shifted";
    }
    EXPECT_EQ(p.Storico(0)[48], 17) << "the newest sample is written all the same";
}

TEST_F(InfoSistema, TheServersSamplerFeedsThePaneThroughTheBoundary)
{
    mPannello->Inizializza();
    EXPECT_TRUE(mPannello->Inizializzato());
    // The demo samples every second ("VelocitaAggiorNamentoGrafico").
    ASSERT_TRUE(QTest::qWaitFor([&] { return mPannello->Storico(0)[48] >= 6; }, 5000));
    EXPECT_TRUE(mPannello->Etichetta(0)->text().startsWith(u"Utilizzo CPU: "_s));
    mPannello->Termina();
    EXPECT_FALSE(mPannello->Inizializzato());
}

TEST_F(InfoSistema, TheGraphsFollowTheInstallationsSettingsAsTheServerGivesThem)
{
    QFile ini(QDir(mS.Dir.path()).filePath(u"PlxConfigurazione.ini"_s));
    ASSERT_TRUE(ini.open(QIODevice::ReadOnly));
    QByteArray testo = ini.readAll();
    ini.close();
    ASSERT_TRUE(testo.contains("GraficoUsoCpu=1\r\n") && testo.contains("GraficoMemoriaPaginata=1\r\n"));
    testo.replace("GraficoUsoCpu=1\r\n", "GraficoUsoCpu=0\r\n").replace("GraficoMemoriaPaginata=1\r\n", "GraficoMemoriaPaginata=False\r\n");
    ASSERT_TRUE(ini.open(QIODevice::WriteOnly | QIODevice::Truncate));
    ini.write(testo);
    ini.close();
    mPannello.reset();
    ASSERT_TRUE(mS.Ricollega()); // read when a console connects
    frmInfoSistema pannello(*mS.Contesto);
    pannello.Inizializza();
    EXPECT_FALSE(pannello.GraficoCpu);
    EXPECT_TRUE(pannello.GraficoMemHw);
    EXPECT_FALSE(pannello.GraficoMemPg);
    pannello.Termina();
}

} // namespace
