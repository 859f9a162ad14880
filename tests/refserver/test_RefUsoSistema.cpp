#include "RefUsoSistema.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

namespace {
const QByteArray MemInfo = "MemTotal:       16000000 kB\nMemFree:         1000000 kB\n"
                           "MemAvailable:    4000000 kB\nSwapTotal:       4000000 kB\nSwapFree:        2000000 kB\n";
}

TEST(RefUsoSistema, ProcessorUseIsTheBusyShareBetweenTwoSamples)
{
    std::optional<std::pair<quint64, quint64>> precedente;
    // user nice system idle iowait irq softirq steal
    auto c = RefUsoSistema::Leggi("cpu  100 0 100 700 100 0 0 0\ncpu0 1 2 3\n", MemInfo, precedente);
    EXPECT_EQ(c.Cpu, 0) << "no interval yet";
    c = RefUsoSistema::Leggi("cpu  400 0 200 900 100 0 0 0\n", MemInfo, precedente);
    EXPECT_EQ(c.Cpu, 67); // 400 busy of 600
    c = RefUsoSistema::Leggi("cpu  400 0 200 900 100 0 0 0\n", MemInfo, precedente);
    EXPECT_EQ(c.Cpu, 0) << "no time passed";
}

TEST(RefUsoSistema, MemoryFromMeminfo)
{
    std::optional<std::pair<quint64, quint64>> precedente;
    const auto c = RefUsoSistema::Leggi({}, MemInfo, precedente);
    EXPECT_EQ(c.FisicaUsata, 75);
    EXPECT_EQ(c.FisicaDisponibileMb, 3906);
    EXPECT_EQ(c.VirtualeUsata, 70); // (20M - 6M) / 20M
    EXPECT_EQ(c.VirtualeDisponibileMb, 5859);
    const auto vuoto = RefUsoSistema::Leggi("garbage", "nonsense", precedente);
    EXPECT_EQ(vuoto.FisicaUsata, 0);
    EXPECT_EQ(vuoto.Cpu, 0);
}

TEST(RefUsoSistema, SamplesArriveAtTheInterval)
{
    RefUsoSistema s;
    QSignalSpy spy(&s, &RefUsoSistema::Aggiornamento);
    s.AvviaCampionamento(100);
    ASSERT_TRUE(spy.wait(2000));
    const auto args = spy.takeFirst();
    EXPECT_GE(args[0].toInt(), 0);
    EXPECT_LE(args[0].toInt(), 100);
    EXPECT_GT(args[1].toInt(), 0) << "a real machine uses some memory";
    s.FermaCampionamento();
}
