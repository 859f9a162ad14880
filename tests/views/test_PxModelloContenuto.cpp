#include "PxModelloContenuto.h"
#include "modElenco.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QColor>
#include <QDateTime>
#include <QFont>
#include <QItemSelectionModel>
#include <QRandomGenerator>

#include <pugixml.hpp>

using namespace Qt::StringLiterals;

namespace {

// Three columns: key, stage, arrival date.
class Modello : public ::testing::Test
{
protected:
    void SetUp() override
    {
        mModello.ImpostaColonne({{u"ID"_s}, {u"Stato"_s}, {u"Inserito il"_s, true}});
        mModello.ImpostaTestiDate(u"Oggi"_s, u"Ieri"_s, u"n.d."_s);
    }

    void Carica(const std::vector<std::array<std::string, 3>>& righe)
    {
        mModello.IniziaCaricamento();
        for (const auto& r : righe) {
            const std::string_view celle[] = {r[0], r[1], r[2]};
            mModello.Aggiungi(celle, 0);
        }
        mModello.FineCaricamento();
    }

    void Aggiorna(const char* id, const char* stato, const char* data = "")
    {
        const std::string_view celle[] = {id, stato, data};
        mModello.Aggiorna(mModello.Riga(std::string_view(id)), celle, 0);
    }

    // Keys in display order, groups as "[text]".
    QStringList Righe() const
    {
        QStringList out;
        for (int i = 0; i < mModello.rowCount(); ++i) {
            const QModelIndex top = mModello.index(i, 0);
            if (top.data(PxModelloContenuto::RuoloGruppo).toBool()) {
                out << u'[' + top.data().toString() + u']';
                for (int j = 0; j < mModello.rowCount(top); ++j)
                    out << mModello.index(j, 0, top).data(PxModelloContenuto::RuoloChiave).toString();
            } else {
                out << top.data(PxModelloContenuto::RuoloChiave).toString();
            }
        }
        return out;
    }

    PxModelloContenuto mModello;
    QAbstractItemModelTester mTester{&mModello, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(Modello, DatesSortAsDatesAndEmptyDatesShowNotAvailable)
{
    Carica({{"A", "x", "02/01/2024 10:00:00"}, {"B", "x", "15/12/2023 09:00:00"}, {"C", "x", ""}, {"D", "x", "31/12/2023 23:59:59"}});
    mModello.sort(2, Qt::AscendingOrder);
    EXPECT_EQ(Righe(), (QStringList{u"C"_s, u"B"_s, u"D"_s, u"A"_s}));
    EXPECT_EQ(mModello.index(0, 2).data().toString(), u"n.d."_s);
    EXPECT_EQ(mModello.index(1, 2).data(PxModelloContenuto::RuoloOrdinamento).toDateTime(),
              QDateTime(QDate(2023, 12, 15), QTime(9, 0)));
    mModello.sort(2, Qt::DescendingOrder);
    EXPECT_EQ(Righe(), (QStringList{u"A"_s, u"D"_s, u"B"_s, u"C"_s}));
}

TEST_F(Modello, NumbersStayTextAndTodayIsMarked)
{
    const QDateTime ora = QDateTime::currentDateTime();
    const std::string oggi = ora.toString(u"dd/MM/yyyy HH:mm:ss"_s).toStdString();
    const std::string ieri = ora.addDays(-1).toString(u"dd/MM/yyyy HH:mm:ss"_s).toStdString();
    Carica({{"10", "x", oggi}, {"9", "x", ieri}, {"100", "x", "01/01/2020 00:00:00"}});
    mModello.sort(0, Qt::AscendingOrder);
    EXPECT_EQ(Righe(), (QStringList{u"10"_s, u"100"_s, u"9"_s}));
    EXPECT_EQ(mModello.index(0, 2).data().toString(), u"Oggi "_s + ora.toString(u"HH:mm:ss"_s));
    EXPECT_TRUE(mModello.index(0, 2).data(Qt::FontRole).value<QFont>().bold());
    EXPECT_TRUE(mModello.index(2, 2).data().toString().startsWith(u"Ieri "_s));
    EXPECT_FALSE(mModello.index(1, 2).data(Qt::FontRole).isValid());
    // A plain number in a date column is text, not a date.
    EXPECT_EQ(mModello.index(0, 0).data(PxModelloContenuto::RuoloOrdinamento).typeId(), QMetaType::QString);
}

TEST_F(Modello, NoticesMoveRowsBetweenGroupsAndKeepTheSelection)
{
    Carica({{"A", "Da stampare", ""}, {"B", "Stampato", ""}, {"C", "Da stampare", ""}, {"D", "Stampato", ""}});
    mModello.ImpostaRaggruppamento(1);
    mModello.sort(0, Qt::AscendingOrder);
    EXPECT_EQ(Righe(), (QStringList{u"[Da stampare (2)]"_s, u"A"_s, u"C"_s, u"[Stampato (2)]"_s, u"B"_s, u"D"_s}));

    QItemSelectionModel selezione(&mModello);
    selezione.select(mModello.Indice(mModello.Riga(std::string_view("C"))), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    selezione.setCurrentIndex(mModello.Indice(mModello.Riga(std::string_view("B"))), QItemSelectionModel::NoUpdate);

    Aggiorna("C", "Stampato");
    EXPECT_EQ(Righe(), (QStringList{u"[Da stampare (1)]"_s, u"A"_s, u"[Stampato (3)]"_s, u"B"_s, u"C"_s, u"D"_s}));
    ASSERT_EQ(selezione.selectedRows().size(), 1);
    EXPECT_EQ(mModello.Chiave(selezione.selectedRows().first()), u"C"_s);
    EXPECT_EQ(mModello.Chiave(selezione.currentIndex()), u"B"_s);

    // The last row of a group leaves it: the group goes; a new stage makes a new group.
    Aggiorna("A", "Respinto");
    EXPECT_EQ(Righe(), (QStringList{u"[Respinto (1)]"_s, u"A"_s, u"[Stampato (3)]"_s, u"B"_s, u"C"_s, u"D"_s}));
    Aggiorna("D", "Zeta");
    Aggiorna("B", "Alfa");
    EXPECT_EQ(Righe(), (QStringList{u"[Alfa (1)]"_s, u"B"_s, u"[Respinto (1)]"_s, u"A"_s, u"[Stampato (1)]"_s, u"C"_s,
                                    u"[Zeta (1)]"_s, u"D"_s}));
    EXPECT_EQ(mModello.Chiave(selezione.selectedRows().first()), u"C"_s);
    EXPECT_EQ(mModello.Chiave(selezione.currentIndex()), u"B"_s);

    mModello.Rimuovi(mModello.Riga(std::string_view("C")));
    EXPECT_EQ(Righe(), (QStringList{u"[Alfa (1)]"_s, u"B"_s, u"[Respinto (1)]"_s, u"A"_s, u"[Zeta (1)]"_s, u"D"_s}));
    EXPECT_TRUE(selezione.selectedRows().isEmpty());
    const std::string_view nuovo[] = {"E", "Respinto", ""};
    EXPECT_TRUE(mModello.Inserisci(nuovo, 255));
    EXPECT_FALSE(mModello.Inserisci(nuovo, 255)) << "a key is one row";
    EXPECT_EQ(Righe(), (QStringList{u"[Alfa (1)]"_s, u"B"_s, u"[Respinto (2)]"_s, u"A"_s, u"E"_s, u"[Zeta (1)]"_s, u"D"_s}));
    EXPECT_EQ(mModello.NumeroRighe(), 4);
}

// Random notices against a plain reference: the order, the groups and the index stay right.
TEST_F(Modello, RandomNoticesKeepOrderGroupsAndIndex)
{
    QRandomGenerator caso(7);
    std::map<std::string, std::pair<std::string, std::string>> atteso;
    const char* stati[] = {"a", "b", "c", "d"};
    std::vector<std::array<std::string, 3>> righe;
    for (int i = 0; i < 200; ++i) {
        const std::string id = "K" + std::to_string(i);
        const std::string data = "0" + std::to_string(1 + i % 9) + "/01/2024 10:00:00";
        atteso[id] = {stati[i % 4], data};
        righe.push_back({id, stati[i % 4], data});
    }
    // The stage of "a" comes last: groups follow the stages, not the alphabet.
    const auto fase = [](const std::string& stato) { return static_cast<qint16>('d' - stato[0]); };
    mModello.IniziaCaricamento();
    for (const auto& r : righe) {
        const std::string_view celle[] = {r[0], r[1], r[2]};
        mModello.Aggiungi(celle, 0, 0, fase(r[1]));
    }
    mModello.FineCaricamento();
    mModello.ImpostaColonnaFase(1);
    mModello.ImpostaRaggruppamento(1);
    mModello.sort(2, Qt::DescendingOrder);
    for (int passo = 0; passo < 800; ++passo) {
        const std::string id = "K" + std::to_string(caso.bounded(260));
        const int azione = caso.bounded(10);
        const std::string stato = stati[caso.bounded(4)];
        const std::string data = "0" + std::to_string(1 + caso.bounded(9)) + "/02/2024 10:00:00";
        const std::string_view celle[] = {id, stato, data};
        const qint32 riga = mModello.Riga(std::string_view(id));
        if (azione == 0 && riga >= 0) {
            mModello.Rimuovi(riga);
            atteso.erase(id);
        } else if (riga >= 0) {
            mModello.Aggiorna(riga, celle, 0, 0, fase(stato));
            atteso[id] = {stato, data};
        } else {
            mModello.Inserisci(celle, 0, {}, 0, fase(stato));
            atteso[id] = {stato, data};
        }
    }
    ASSERT_EQ(mModello.NumeroRighe(), static_cast<qsizetype>(atteso.size()));
    QString gruppo;
    QDateTime ultima;
    qsizetype visti = 0;
    for (int g = 0; g < mModello.rowCount(); ++g) {
        const QModelIndex gi = mModello.index(g, 0);
        for (int j = 0; j < mModello.rowCount(gi); ++j) {
            const QModelIndex i = mModello.index(j, 0, gi);
            const std::string id = mModello.Chiave(i).toStdString();
            ASSERT_TRUE(atteso.count(id)) << id;
            const QString stato = mModello.index(j, 1, gi).data().toString();
            EXPECT_EQ(stato.toStdString(), atteso[id].first);
            EXPECT_TRUE(gi.data().toString().startsWith(stato + u" ("_s));
            EXPECT_EQ(mModello.Indice(mModello.Riga(std::string_view(id))), i);
            const QDateTime quando = mModello.index(j, 2, gi).data(PxModelloContenuto::RuoloOrdinamento).toDateTime();
            if (j > 0) {
                EXPECT_LE(quando, ultima) << "descending within the group";
            }
            ultima = quando;
            ++visti;
        }
        if (g > 0) {
            EXPECT_GT(gruppo, gi.data().toString()) << "stage order, the reverse of the alphabet here";
        }
        gruppo = gi.data().toString();
    }
    EXPECT_EQ(visti, static_cast<qsizetype>(atteso.size()));
}

TEST(Elenco, HiddenQueuesAreCutLinkedDocumentsBecomeChildrenShortNodesAreSkipped)
{
    PxModelloContenuto modello;
    QAbstractItemModelTester tester(&modello, QAbstractItemModelTester::FailureReportingMode::Fatal);
    modello.ImpostaColonne({{u"ID"_s}, {u"Descrizione"_s}, {u"Stato"_s}});
    const QByteArray testo = R"(<?xml version="1.0" encoding="UTF-8"?>
<E>
  <Coda_0>
    <D><F>1</F><F>uno</F><F>s</F><C/></D>
    <D><F>2</F><F>due</F></D>
    <D><F>3</F><F>tre</F><F>s</F><C><L><F>3a</F><F>copertina</F></L><L><F>3b</F><F>allegato</F></L></C></D>
  </Coda_0>
  <Coda_1><D><F>4</F><F>quattro</F><F>s</F><C/></D></Coda_1>
  <Altro><D><F>5</F><F>cinque</F><F>s</F></D></Altro>
</E>)";
    int errori = 0;
    const modElenco::Code code{[](int coda) { return coda != 1; }, [](int coda) { return coda == -1 ? 255u : 0u; }};
    const modElenco::Esito esito = modElenco::Carica(modello, testo, code, [&errori] { ++errori; });
    EXPECT_TRUE(esito.Letto);
    EXPECT_EQ(esito.Righe, 3);
    EXPECT_EQ(errori, 1);
    ASSERT_EQ(modello.rowCount(), 3);
    EXPECT_EQ(modello.rowCount(modello.index(0, 0)), 0);
    const QModelIndex tre = modello.index(1, 0);
    ASSERT_EQ(modello.rowCount(tre), 2);
    EXPECT_EQ(modello.index(1, 0, tre).data().toString(), u"3b"_s);
    EXPECT_EQ(modello.index(1, 1, tre).data().toString(), u"allegato"_s);
    EXPECT_FALSE(modello.index(1, 2, tre).data().isValid());
    EXPECT_EQ(modello.index(2, 1).data(Qt::ForegroundRole).value<QColor>(), QColor(255, 0, 0));

    EXPECT_FALSE(modElenco::Carica(modello, "<E><Coda_0>", code, {}).Letto);
    EXPECT_EQ(modello.rowCount(), 0);
    EXPECT_TRUE(modElenco::Carica(modello, "<E/>", code, {}).Letto);
    EXPECT_EQ(modello.rowCount(), 0);
}

// Grouped by stage, a group is a queue: one per stage whatever its rows' state texts say,
// titled with the stage's caption, in the order of the work, its key the stage's.
TEST_F(Modello, StagesGroupByQueueTitledWithTheirCaptionInTheOrderOfTheWork)
{
    mModello.IniziaCaricamento();
    const auto aggiungi = [this](const char* id, const char* stato, qint16 fase) {
        const std::string_view celle[] = {id, stato, ""};
        mModello.Aggiungi(celle, fase == 9 ? 255u : 0u, 0, fase);
    };
    aggiungi("A", "Errore 12: linea occupata", 9);
    aggiungi("B", "In attesa", 0);
    aggiungi("C", "Errore 12: nessuna risposta", 9);
    aggiungi("D", "Spostato dall'operatore", 12);
    aggiungi("E", "Sconosciuto", 11);
    mModello.FineCaricamento();
    mModello.ImpostaColonnaFase(1, {{0, u"Da convertire"_s}, {12, u"Da pubblicare"_s}, {9, u"Respinti"_s}});
    mModello.ImpostaRaggruppamento(1);
    EXPECT_EQ(Righe(), (QStringList{u"[Da convertire (1)]"_s, u"B"_s, u"[Da pubblicare (1)]"_s, u"D"_s,
                                    u"[Respinti (2)]"_s, u"A"_s, u"C"_s, u"[Sconosciuto (1)]"_s, u"E"_s}));
    const QModelIndex respinti = mModello.IndiceGruppo(u"F9"_s);
    ASSERT_TRUE(respinti.isValid());
    EXPECT_EQ(respinti.row(), 2);
    EXPECT_EQ(respinti.data(Qt::ForegroundRole).value<QColor>(), QColor(255, 0, 0));
    EXPECT_EQ(mModello.index(0, 1, respinti).data().toString(), u"Errore 12: linea occupata"_s) << "the state stays a column";

    // A notice that changes only the state text keeps the row in its stage; a new stage opens
    // its group where the work puts it, and the last row leaving a stage closes it.
    const std::string_view b[] = {"B", "Errore 7: carta", ""};
    mModello.Aggiorna(mModello.Riga(std::string_view("B")), b, 255, 0, 9);
    const std::string_view a[] = {"A", "Errore 99", ""};
    mModello.Aggiorna(mModello.Riga(std::string_view("A")), a, 255, 0, 9);
    EXPECT_EQ(Righe(), (QStringList{u"[Da pubblicare (1)]"_s, u"D"_s, u"[Respinti (3)]"_s, u"A"_s, u"B"_s, u"C"_s,
                                    u"[Sconosciuto (1)]"_s, u"E"_s}));
    const std::string_view d[] = {"D", "x", ""};
    mModello.Aggiorna(mModello.Riga(std::string_view("D")), d, 0, 0, 0);
    EXPECT_EQ(Righe().first(), u"[Da convertire (1)]"_s);
    EXPECT_FALSE(mModello.IndiceGruppo(u"F12"_s).isValid());

    // Grouped by another column, the texts make the groups again.
    mModello.ImpostaRaggruppamento(0);
    EXPECT_EQ(mModello.rowCount(), 5);
    EXPECT_TRUE(mModello.IndiceGruppo(u"TA"_s).isValid());
}

TEST_F(Modello, DatesWrittenInOtherFormsStillSortAsDates)
{
    Carica({{"A", "x", "1/2/2024 9.05"}, {"B", "x", "2024-01-03T10:00:00"}, {"C", "x", "02-01-2024 10:00"},
            {"D", "x", "31.01.2024"}, {"E", "x", "05/01/24 08:00:00"}});
    mModello.sort(2, Qt::AscendingOrder);
    EXPECT_EQ(Righe(), (QStringList{u"C"_s, u"B"_s, u"E"_s, u"D"_s, u"A"_s}));
    EXPECT_EQ(mModello.index(4, 2).data(PxModelloContenuto::RuoloOrdinamento).toDateTime(),
              QDateTime(QDate(2024, 2, 1), QTime(9, 5)));
    EXPECT_EQ(mModello.index(4, 2).data().toString(), u"1/2/2024 9.05"_s) << "shown as the server wrote it";
    // Versions, numbers and impossible days stay text.
    for (const char* testo : {"1.2.3", "12", "31/02/2024", "2024-13-01", "1/2/2024 25:00", "10/10/2024x"}) {
        Carica({{"A", "x", testo}});
        EXPECT_EQ(mModello.index(0, 2).data(PxModelloContenuto::RuoloOrdinamento).typeId(), QMetaType::QString) << testo;
    }
}

TEST(Avanzamento, NothingToDoIsZeroDoneIsAHundredTheRestRounds)
{
    PxModelloContenuto modello;
    modello.ImpostaColonne({{u"ID"_s}, {u"Avanzamento"_s, false, false, true}});
    const std::pair<const char*, int> casi[] = {{"0/0", 0}, {"5/5", 100}, {"7/5", 100}, {"1/3", 33}, {"2/3", 67},
                                                {"1/200", 1}, {"199/200", 100}, {"0/7", 0}};
    for (const auto& [testo, atteso] : casi) {
        modello.Svuota();
        const std::string_view celle[] = {"K", testo};
        ASSERT_TRUE(modello.Inserisci(celle, 0));
        EXPECT_EQ(modello.index(0, 1).data(PxModelloContenuto::RuoloAvanzamento).toInt(), atteso) << testo;
    }
}

} // namespace
