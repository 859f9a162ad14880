#include "PxRigaLog.h"

#include <gtest/gtest.h>

using namespace modRigaLog;

TEST(PxRigaLog, LineFormHasLevelTimeAndTextAtFixedColumns)
{
    const QByteArray riga = Formatta(3, QTime(14, 3, 22), u"Server inizializzato");
    EXPECT_EQ(riga, QByteArray(" 3 14:03:22 Server inizializzato\r\n"));
    // Level in characters 1-2, time in 3-11, text from 13 (1-based).
    EXPECT_EQ(riga.mid(0, 2).trimmed(), "3");
    EXPECT_EQ(riga.mid(2, 9).trimmed(), "14:03:22");
    EXPECT_EQ(riga.mid(12, 6), "Server");
}

TEST(PxRigaLog, TextStaysOnOneLineAndRoundTrips)
{
    const QByteArray riga = Formatta(0, QTime(0, 0, 1), u"prima\r\nseconda è");
    EXPECT_EQ(riga.count("\r\n"), 1);
    const auto letta = Analizza(QString::fromUtf8(riga.chopped(2)));
    ASSERT_TRUE(letta);
    EXPECT_EQ(letta->Livello, 0);
    EXPECT_EQ(letta->Ora, QTime(0, 0, 1));
    EXPECT_EQ(letta->Testo, QStringLiteral("prima  seconda è"));
}

TEST(PxRigaLog, ReaderRejectsShortOrLevellessLinesButKeepsOddTimes)
{
    EXPECT_FALSE(Analizza(u"3 12:00"));
    EXPECT_FALSE(Analizza(u"xx 12:00:00 testo"));
    const auto strano = Analizza(u" 7 ab:cd:ef testo");
    ASSERT_TRUE(strano);
    EXPECT_EQ(strano->Livello, 7);
    EXPECT_FALSE(strano->Ora.isValid());
    const auto senzaTesto = Analizza(u" 1 09:30:00");
    ASSERT_TRUE(senzaTesto);
    EXPECT_TRUE(senzaTesto->Testo.isEmpty());
}
