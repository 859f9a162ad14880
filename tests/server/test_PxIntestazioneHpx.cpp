#include "PxIntestazioneHpx.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(PxIntestazioneHpx, TypedValuesRoundTripAndRepeatedKeysKeepTheLast)
{
    PxIntestazioneHpx h;
    const QDateTime ora(QDate(2026, 11, 23), QTime(9, 5, 7));
    h.ScriviIntero({}, u"Tipo"_s, 2);
    h.ScriviTesto({}, u"Versione"_s, u"2.0.0"_s);
    h.ScriviTesto(u"PROPRIETA"_s, u"Id"_s, u"Pagina di prova di Laser <A&B>"_s);
    h.ScriviData(u"PROPRIETA"_s, u"Data"_s, ora);
    h.ScriviTesto(u"PROPRIETA"_s, u"Suddivisione"_s, u"prima"_s);
    h.ScriviTesto(u"PROPRIETA"_s, u"Suddivisione"_s, QString());
    h.ScriviDecimale(u"STAMPA"_s, u"Scala"_s, 0.75);
    h.ScriviIntero(u"PROPRIETA"_s, u"LunghezzaPagina"_s, 70); // back to an earlier section

    const QByteArray testo = h.Serializza();
    EXPECT_EQ(testo.count("Nome=\"Suddivisione\""), 2) << "both writes are kept";
    EXPECT_EQ(testo.count("<Sezione Nome=\"PROPRIETA\""), 1);

    PxIntestazioneHpx letta;
    QString errore;
    ASSERT_TRUE(letta.Analizza(testo, &errore)) << qPrintable(errore);
    EXPECT_EQ(letta.Intero({}, u"Tipo"_s), 2);
    EXPECT_EQ(letta.Testo(u"proprieta"_s, u"Id"_s), u"Pagina di prova di Laser <A&B>"_s);
    EXPECT_EQ(letta.Data(u"PROPRIETA"_s, u"Data"_s), ora);
    EXPECT_EQ(letta.Testo(u"PROPRIETA"_s, u"Suddivisione"_s, u"x"_s), QString());
    EXPECT_DOUBLE_EQ(letta.Leggi(u"STAMPA"_s, u"Scala"_s).toDouble(), 0.75);
    EXPECT_EQ(letta.Intero(u"PROPRIETA"_s, u"LunghezzaPagina"_s), 70);
    EXPECT_FALSE(letta.Leggi(u"PROPRIETA"_s, u"Manca"_s).isValid());
    EXPECT_EQ(letta.Valori().size(), h.Valori().size());
}

TEST(PxIntestazioneHpx, MalformedHeadersSayWhy)
{
    const std::pair<const char*, const char*> casi[] = {
        {"<HPX Versione=\"2.0.0\"><Valore", "XML non valido"},
        {"<Altro Versione=\"2.0.0\"/>", "radice"},
        {"<HPX Versione=\"1.0\"><Valore Nome=\"Tipo\" Tipo=\"Intero\">2</Valore></HPX>", "versione"},
        {"<HPX Versione=\"2.0.0\"><Valore Nome=\"Tipo\" Tipo=\"Intero\">due</Valore></HPX>", "non valido"},
        {"<HPX Versione=\"2.0.0\"><Valore Nome=\"Tipo\" Tipo=\"Colore\">2</Valore></HPX>", "non valido"},
        {"<HPX Versione=\"2.0.0\"><Valore Nome=\"Tipo\" Tipo=\"Intero\">2</Valore>"
         "<Sezione Nome=\"P\"><Valore Nome=\"Data\" Tipo=\"Data\">ieri</Valore></Sezione></HPX>", "sezione P"},
        {"<HPX Versione=\"2.0.0\"></HPX>", "manca il tipo"},
        {"", "XML non valido"},
    };
    for (const auto& [testo, motivo] : casi) {
        PxIntestazioneHpx h;
        QString errore;
        EXPECT_FALSE(h.Analizza(QByteArray(testo), &errore)) << testo;
        EXPECT_TRUE(errore.contains(QString::fromUtf8(motivo))) << testo << " -> " << qPrintable(errore);
    }
}
