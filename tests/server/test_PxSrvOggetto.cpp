// The console's side of the boundary against sources the test controls: answers that come
// late, never, out of order, or to nobody; a lost connection; listings to a callback.
#include "PxCollegamento.h"
#include "PxSrvCartellaDocumenti.h"
#include "PxXmlCallBack.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QSignalSpy>

#include <memory>

namespace {

// A document folder that keeps every request and answers only when the test says so.
class CartellaTrattenuta : public QObject
{
    Q_OBJECT
public:
    QList<quint64> Richieste;
    QStringList Selezioni;
    void Rispondi(quint64 n, qint32 esito, const QString& testo, const QByteArray& dati = {})
    {
        emit Risposta(n, esito, testo, dati);
    }
public slots:
    void RichiediElenco(quint64 n) { Richieste << n; }
    void SpostaDocumenti(quint64 n, const QString& selezione, qint32) { Richieste << n; Selezioni << selezione; }
signals:
    void Risposta(quint64 richiesta, qint32 esito, const QString& testo, const QByteArray& dati);
};

class Confine : public ::testing::Test
{
protected:
    void SetUp() override { mCartella.Collega(&mSorgente); }

    // Lets the queued requests reach the source.
    static void Gira() { QCoreApplication::processEvents(); }

    CartellaTrattenuta mSorgente;
    PxSrvCartellaDocumenti mCartella{QStringLiteral("PxSrvDocFax"), QStringLiteral("PxSrvFax"), true};
};

} // namespace

TEST_F(Confine, AnAnswerNeverArrivesInsideTheCall)
{
    bool risposto = false;
    mCartella.SpostaDocumenti(QStringLiteral("<Root/>"), 2, nullptr, [&](const PxRisposta&) { risposto = true; });
    EXPECT_TRUE(mSorgente.Richieste.isEmpty()) << "the request itself is queued";
    Gira();
    ASSERT_EQ(mSorgente.Richieste.size(), 1);
    mSorgente.Rispondi(mSorgente.Richieste[0], modContratto::Ok, {});
    EXPECT_TRUE(risposto);
    EXPECT_EQ(mCartella.RichiesteInAttesa(), 0);
}

TEST_F(Confine, TwoRequestsAnsweredOutOfOrderEachGetTheirOwn)
{
    QStringList ricevute;
    mCartella.SpostaDocumenti(QStringLiteral("<Root><ID>A</ID></Root>"), 1, nullptr,
                              [&](const PxRisposta& r) { ricevute << QStringLiteral("A:") + r.Testo; });
    mCartella.SpostaDocumenti(QStringLiteral("<Root><ID>B</ID></Root>"), 1, nullptr,
                              [&](const PxRisposta& r) { ricevute << QStringLiteral("B:") + r.Testo; });
    Gira();
    ASSERT_EQ(mSorgente.Richieste.size(), 2);
    EXPECT_NE(mSorgente.Richieste[0], mSorgente.Richieste[1]);
    mSorgente.Rispondi(mSorgente.Richieste[1], modContratto::Ok, QStringLiteral("seconda"));
    mSorgente.Rispondi(mSorgente.Richieste[0], modContratto::Rifiutato, QStringLiteral("prima"));
    EXPECT_EQ(ricevute, (QStringList{QStringLiteral("B:seconda"), QStringLiteral("A:prima")}));
    mSorgente.Rispondi(mSorgente.Richieste[0], modContratto::Ok, QStringLiteral("ancora")); // answered twice
    EXPECT_EQ(ricevute.size(), 2) << "a request is answered once";
}

TEST_F(Confine, AnAnswerAfterTheRequesterIsGoneIsDroppedAndReleasedNothingLeaks)
{
    auto tenuto = std::make_shared<int>(42); // what the request holds
    bool chiamato = false;
    {
        QObject richiedente;
        mCartella.SpostaDocumenti(QStringLiteral("<Root/>"), 3, &richiedente,
                                  [tenuto, &chiamato](const PxRisposta&) { chiamato = true; });
        EXPECT_EQ(tenuto.use_count(), 2);
        EXPECT_EQ(mCartella.RichiesteInAttesa(), 1);
    }
    EXPECT_EQ(mCartella.RichiesteInAttesa(), 0) << "a request never answered is released with its requester";
    EXPECT_EQ(tenuto.use_count(), 1);
    Gira();
    ASSERT_EQ(mSorgente.Richieste.size(), 1);
    mSorgente.Rispondi(mSorgente.Richieste[0], modContratto::Ok, {});
    EXPECT_FALSE(chiamato);
}

TEST_F(Confine, AnswersToOtherConsolesAreIgnored)
{
    PxSrvCartellaDocumenti altra(QStringLiteral("PxSrvDocFax"), QStringLiteral("PxSrvFax"), true);
    altra.Collega(&mSorgente); // a second console on the same server
    int mie = 0, sue = 0;
    mCartella.SpostaDocumenti(QStringLiteral("<Root/>"), 1, nullptr, [&](const PxRisposta&) { ++mie; });
    altra.SpostaDocumenti(QStringLiteral("<Root/>"), 1, nullptr, [&](const PxRisposta&) { ++sue; });
    Gira();
    ASSERT_EQ(mSorgente.Richieste.size(), 2);
    EXPECT_NE(mSorgente.Richieste[0], mSorgente.Richieste[1]) << "each console numbers apart";
    mSorgente.Rispondi(mSorgente.Richieste[1], modContratto::Ok, {});
    EXPECT_EQ(mie, 0);
    EXPECT_EQ(sue, 1);
    mSorgente.Rispondi(987654321, modContratto::Ok, {}); // nobody's
    EXPECT_EQ(mie + sue, 1);
}

TEST_F(Confine, ALostConnectionFailsWhatIsPendingAndWhatFollows)
{
    QList<PxRisposta> risposte;
    mCartella.SpostaDocumenti(QStringLiteral("<Root/>"), 1, nullptr, [&](const PxRisposta& r) { risposte << r; });
    mCartella.Interrompi(QStringLiteral("collegamento perso"));
    ASSERT_EQ(risposte.size(), 1);
    EXPECT_EQ(risposte[0].Esito, modContratto::NonDisponibile);
    EXPECT_EQ(risposte[0].Testo, QStringLiteral("collegamento perso"));
    mCartella.SpostaDocumenti(QStringLiteral("<Root/>"), 1, nullptr, [&](const PxRisposta& r) { risposte << r; });
    EXPECT_EQ(risposte.size(), 1) << "even a failure comes later";
    Gira();
    ASSERT_EQ(risposte.size(), 2);
    EXPECT_EQ(risposte[1].Esito, modContratto::NonDisponibile);
    // The first request was already on its way; its late answer reaches nobody.
    ASSERT_EQ(mSorgente.Richieste.size(), 1);
    mSorgente.Rispondi(mSorgente.Richieste[0], modContratto::Ok, QStringLiteral("tardi"));
    EXPECT_EQ(risposte.size(), 2);
}

TEST_F(Confine, AMethodTheServerLacksIsAnsweredUnknown)
{
    QList<PxRisposta> risposte;
    mCartella.Documento(QStringLiteral("FAX-1"), nullptr, [&](const PxRisposta& r) { risposte << r; });
    Gira();
    ASSERT_EQ(risposte.size(), 1);
    EXPECT_EQ(risposte[0].Esito, modContratto::Sconosciuto);
}

TEST_F(Confine, AListingGoesToItsCallbackAndACancelledOneToNobody)
{
    PxXmlCallBack callback;
    QSignalSpy xml(&callback, &PxXmlCallBack::XmlCallBack);
    QSignalSpy errore(&callback, &PxXmlCallBack::Errore);
    mCartella.Elenca(&callback);
    Gira();
    ASSERT_EQ(mSorgente.Richieste.size(), 1);
    mSorgente.Rispondi(mSorgente.Richieste[0], modContratto::Ok, {}, "<Elenco/>");
    ASSERT_EQ(xml.size(), 1);
    EXPECT_EQ(xml[0][0].toByteArray(), QByteArray("<Elenco/>"));
    mCartella.Elenca(&callback);
    Gira();
    mSorgente.Rispondi(mSorgente.Richieste[1], modContratto::Fallito, QStringLiteral("disco pieno"));
    ASSERT_EQ(errore.size(), 1);
    EXPECT_EQ(errore[0][0].toInt(), modContratto::Fallito);

    auto* breve = new PxXmlCallBack;
    mCartella.Elenca(breve);
    delete breve;
    EXPECT_EQ(mCartella.RichiesteInAttesa(), 0);
    Gira();
    mSorgente.Rispondi(mSorgente.Richieste.last(), modContratto::Ok, {}, "<Elenco/>"); // must not crash
}

#include "test_PxSrvOggetto.moc"
