#include "PxBarraComandi.h"
#include "ServerInLinea.h"
#include "PxCollegamento.h"
#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxIconResource.h"
#include "PxImpostazioni.h"
#include "PxLogConsole.h"
#include "PxModelloContenuto.h"
#include "PxSrvCartellaDocumenti.h"
#include "PxSrvServer.h"
#include "RefCartellaDocumenti.h"
#include "RefServer.h"
#include "RefServizio.h"
#include "clsSrvViste.h"
#include "modDemo.h"
#include "modTraccia.h"
#include "modViste.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QAction>
#include <QDir>
#include <QHeaderView>
#include <QMenu>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>
#include <QTreeView>

#include <pugixml.hpp>

#include <random>

using namespace Qt::StringLiterals;

struct PxContestoSonda
{
    static void ImpostaUIRoot(PxContesto& c, pugi::xml_node radice) { c.mUIRoot = radice; }
};

namespace {

bool Attendi(const std::function<bool()>& condizione) { return QTest::qWaitFor(condizione, 10000); }

// Lets the queued requests and answers of the in-thread server run their course.
void Scorri()
{
    for (int i = 0; i < 20; ++i)
        QCoreApplication::processEvents();
}

// The reference server on the test's thread, its workers still (nothing moves but what the
// test moves), and the console's side of it; a content list and command bars to lend a view.
class Vista : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(mS.Avvia(400));
        PxContestoSonda::ImpostaUIRoot(*mS.Contesto, mUI.append_child("PLX"));
        mLista.setModel(&mModello);
        mLista.setSelectionMode(QAbstractItemView::ExtendedSelection);
        mLista.setSelectionBehavior(QAbstractItemView::SelectRows);
        mLista.resize(900, 600);
        mAmbiente = std::make_unique<PxAmbienteVista>(PxAmbienteVista{*mS.Contesto, mLista, mModello, mComandi});
    }

    void TearDown() override { mVista.reset(); }

    RefCartellaDocumenti& Fax() const { return *mS.Ref->Cartella(GenereCartella::Fax); }

    // Makes the view of `chiave` and waits for its first rows.
    void Apri(const QString& chiave = u"SrvDocFax"_s)
    {
        mVista = modViste::Crea(*mAmbiente, chiave);
        QSignalSpy cambi(mVista.get(), &clsSrvVista::ContenutoCambiato);
        mVista->Avvia();
        ASSERT_TRUE(Attendi([&] { return mModello.NumeroRighe() > 0; }));
    }

    void Ricarica()
    {
        const qsizetype prima = mRicariche;
        QObject::connect(&mModello, &QAbstractItemModel::modelReset, mVista.get(), [this] { ++mRicariche; });
        mVista->AggiornaContenuto();
        ASSERT_TRUE(Attendi([&] { return mRicariche > prima; }));
        Scorri();
    }

    qsizetype Mostrati(std::initializer_list<int> nascoste = {}) const
    {
        qsizetype n = 0;
        for (int coda = 0; coda < 13; ++coda) // queue 12: the server runs its confirmations
            if (std::find(nascoste.begin(), nascoste.end(), coda) == nascoste.end())
                n += Fax().Coda(coda).size();
        return n;
    }

    void Seleziona(const QStringList& chiavi)
    {
        QItemSelection s;
        for (const QString& k : chiavi) {
            const QModelIndex i = mModello.Indice(mModello.Riga(k));
            s.select(i, i.siblingAtColumn(mModello.columnCount() - 1));
        }
        mLista.selectionModel()->select(s, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }

    QString Stato(const QString& id) const { return mModello.Testo(mModello.Riga(id), 2); }

    ServerInLinea mS;
    pugi::xml_document mUI;
    QTreeView mLista;
    PxModelloContenuto mModello;
    QAbstractItemModelTester mTester{&mModello, QAbstractItemModelTester::FailureReportingMode::Fatal};
    QToolBar mBarra;
    QMenu mMenu;
    PxBarraComandi mComandi{mS.Testi, &mBarra, &mMenu};
    std::unique_ptr<PxAmbienteVista> mAmbiente;
    std::unique_ptr<clsSrvVista> mVista;
    qsizetype mRicariche = 0;
};

TEST_F(Vista, TheViewOfANodeIsChosenByItsKey)
{
    const std::pair<QString, bool (*)(clsSrvVista*)> casi[] = {
        {u"SrvDocFax"_s, [](clsSrvVista* v) { return dynamic_cast<clsSrvDocFax*>(v) != nullptr; }},
        {u"SrvDocAnteprime"_s, [](clsSrvVista* v) { return dynamic_cast<clsSrvDocAnteprime*>(v) != nullptr; }},
        {u"SrvStampante|3"_s, [](clsSrvVista* v) { return dynamic_cast<clsSrvStampante*>(v) != nullptr; }},
        {u"SrvTifVm"_s, [](clsSrvVista* v) { return dynamic_cast<clsSrvTifVm*>(v) != nullptr; }},
        {u"SrvFirme"_s, [](clsSrvVista* v) { return dynamic_cast<clsSrvFirme*>(v) != nullptr; }},
        {u"SrvImporta"_s, [](clsSrvVista* v) { return dynamic_cast<clsSrvNessuno*>(v) != nullptr; }},
    };
    for (const auto& [chiave, giusta] : casi) {
        auto vista = modViste::Crea(*mAmbiente, chiave);
        EXPECT_TRUE(giusta(vista.get())) << qPrintable(chiave);
        EXPECT_EQ(vista->Chiave(), chiave.section(u'|', 0, 0));
    }
    EXPECT_EQ(modViste::Crea(*mAmbiente, u"SrvDocEmail"_s)->Versione(), u"01.00.06"_s);
    EXPECT_EQ(modViste::Crea(*mAmbiente, u"SrvDocPbl"_s)->Versione(), u"01.00.04"_s);
}

TEST_F(Vista, AFullListingFollowsTheTogglesAndTheOptionalQueue)
{
    Apri();
    ASSERT_TRUE(mS.Server->CartellaDocumenti(u"PxSrvDocFax"_s)->CodaOpzionale(12)) << "the server declares the queue it runs";
    ASSERT_FALSE(Fax().Coda(12).isEmpty());
    EXPECT_EQ(mModello.NumeroRighe(), Mostrati()) << "queue 11 has no toggle and stays; queue 12 is declared";
    // The commands in the folder's order; the fax toggles by id, 6104 between 6103 and 6105.
    QList<int> ordine;
    for (QAction* a : mBarra.actions())
        if (const int id = a->property(PxBarraComandi::ProprietaId).toInt(); id)
            ordine << id;
    EXPECT_EQ(ordine.mid(0, 6), (QList<int>{5311, 5315, 5302, 5303, 5300, 6100}));
    EXPECT_EQ(ordine.mid(4, 14), (QList<int>{5300, 6100, 6101, 6102, 6103, 6104, 6105, 6106, 6107, 6108, 6109, 6110, 6111, 5305}));
    EXPECT_EQ(ordine.last(), 5307);

    // A toggle re-asks the server: the confirmations' queue goes.
    const qsizetype prima = mRicariche;
    QObject::connect(&mModello, &QAbstractItemModel::modelReset, mVista.get(), [this] { ++mRicariche; });
    mComandi.Azione(6104)->trigger();
    ASSERT_TRUE(Attendi([&] { return mRicariche > prima; }));
    EXPECT_EQ(mModello.NumeroRighe(), Mostrati({12}));
    mComandi.Azione(6109)->trigger();
    ASSERT_TRUE(Attendi([&] { return mModello.NumeroRighe() == Mostrati({8, 12}); }));
    const QString trasmesso = Fax().Coda(8).value(0);
    EXPECT_LT(mModello.Riga(trasmesso), 0);
    const QString respinto = Fax().Coda(9).value(0);
    EXPECT_EQ(mModello.Colore(mModello.Riga(respinto)), 255u);
}

TEST_F(Vista, NoticesAddRewriteOrRemoveOneRow)
{
    Apri();
    mComandi.Azione(6109)->setChecked(false); // "Trasmessi" hidden from now on
    const QString id = Fax().Coda(2).value(0), altro = Fax().Coda(2).value(1);
    ASSERT_FALSE(id.isEmpty());
    const QString nodo = Fax().Nodo(id);
    const qsizetype righe = mModello.NumeroRighe();

    // A notice into a shown queue rewrites the row in the queue's colour.
    mVista->DocumentoSpostato(9, id, nodo);
    EXPECT_EQ(mModello.Colore(mModello.Riga(id)), 255u);
    EXPECT_EQ(mModello.NumeroRighe(), righe);
    // Into a hidden queue the row goes; an unknown id there changes nothing.
    mVista->DocumentoSpostato(8, id, nodo);
    EXPECT_LT(mModello.Riga(id), 0);
    mVista->DocumentoSpostato(8, u"FAX-999999"_s, nodo);
    EXPECT_EQ(mModello.NumeroRighe(), righe - 1);
    // Back into a shown queue: the row is added again, with its linked documents.
    mVista->DocumentoSpostato(2, id, nodo);
    ASSERT_GE(mModello.Riga(id), 0);
    EXPECT_EQ(mModello.rowCount(mModello.Indice(mModello.Riga(id))), Fax().Trova(id)->Collegati.size());
    // Queue 11 and unknown queues have no toggle: the document is no longer shown.
    mVista->DocumentoSpostato(11, id, nodo);
    EXPECT_LT(mModello.Riga(id), 0);
    mVista->DocumentoSpostato(2, id, nodo);
    mVista->DocumentoSpostato(40, id, nodo);
    EXPECT_LT(mModello.Riga(id), 0);
    // Queue 12: a notice tests only the toggle, with or without the server's queue.
    mVista->DocumentoSpostato(12, id, nodo);
    ASSERT_GE(mModello.Riga(id), 0);
    EXPECT_EQ(mModello.Colore(mModello.Riga(id)), 33023u);
    mComandi.Azione(6104)->setChecked(false);
    mVista->DocumentoSpostato(12, id, nodo);
    EXPECT_LT(mModello.Riga(id), 0);
    // A node with too few fields leaves the row as it was.
    const QString prima = Stato(altro);
    mVista->DocumentoSpostato(2, altro, u"<D><F>"_s + altro + u"</F><F>x</F></D>"_s);
    EXPECT_EQ(Stato(altro), prima);
    EXPECT_EQ(mModello.NumeroRighe(), righe - 1);
}

TEST_F(Vista, TheOperatorsPlaceSurvivesAFullReloadAndHeldRowsWait)
{
    Apri();
    // A document with linked documents, in an open group; two rows selected, one focused.
    QString collegato;
    for (const QString& id : Fax().Coda(2))
        if (!Fax().Trova(id)->Collegati.isEmpty())
            collegato = id;
    ASSERT_FALSE(collegato.isEmpty());
    const QString altro = Fax().Coda(0).value(0);
    const QModelIndex i = mModello.Indice(mModello.Riga(collegato));
    mLista.expand(i.parent());
    mLista.expand(i);
    Seleziona({collegato, altro});
    mLista.selectionModel()->setCurrentIndex(mModello.Indice(mModello.Riga(altro)), QItemSelectionModel::NoUpdate);
    mModello.sort(1, Qt::DescendingOrder);

    Ricarica();
    EXPECT_EQ(mVista->ChiaviSelezionate().size(), 2);
    EXPECT_TRUE(mVista->ChiaviSelezionate().contains(collegato));
    EXPECT_EQ(mVista->ChiaveCorrente(), altro);
    const QModelIndex dopo = mModello.Indice(mModello.Riga(collegato));
    EXPECT_TRUE(mLista.isExpanded(dopo.parent()));
    EXPECT_TRUE(mLista.isExpanded(dopo));
    EXPECT_EQ(mModello.ColonnaOrdinamento(), 1);
    EXPECT_EQ(mModello.Verso(), Qt::DescendingOrder);

    // Held: a notice waits, and a full listing replaces what waited before it.
    mVista->Blocca(true);
    mVista->DocumentoSpostato(11, altro, Fax().Nodo(altro));
    EXPECT_GE(mModello.Riga(altro), 0);
    EXPECT_EQ(mVista->InAttesa(), 1);
    mVista->Blocca(false);
    EXPECT_LT(mModello.Riga(altro), 0);
    EXPECT_EQ(mVista->InAttesa(), 0);
}

TEST_F(Vista, SelectAllAndInvertCountDocumentsOnly)
{
    Apri();
    mVista->SelezionaTutto();
    EXPECT_EQ(mVista->NumeroSelezionati(), mModello.NumeroRighe());
    mVista->InvertiSelezione();
    EXPECT_EQ(mVista->NumeroSelezionati(), 0);
    Seleziona({Fax().Coda(0).value(0)});
    mVista->InvertiSelezione();
    EXPECT_EQ(mVista->NumeroSelezionati(), mModello.NumeroRighe() - 1);
    EXPECT_FALSE(mVista->ChiaviSelezionate().contains(Fax().Coda(0).value(0)));
}

TEST_F(Vista, AMoveReachesTheServerWithTheSelectionAndARefusalChangesNothing)
{
    Apri();
    const QString a = Fax().Coda(2).value(0), b = Fax().Coda(2).value(1);
    Seleziona({a, b});
    // The selection document: UTF-8 declaration, root "Root", one "ID" per selected row.
    pugi::xml_document doc;
    const QByteArray xml = mVista->CreaXmlSelezione().toUtf8();
    ASSERT_TRUE(doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size()), pugi::parse_default | pugi::parse_declaration));
    EXPECT_STREQ(doc.first_child().attribute("encoding").value(), "UTF-8");
    EXPECT_STREQ(doc.document_element().name(), "Root");
    QStringList id;
    for (const pugi::xml_node n : doc.document_element().children("ID"))
        id << QString::fromUtf8(n.child_value());
    EXPECT_EQ(id, (QStringList{a, b}));

    mComandi.Azione(6121)->trigger(); // "Trasmessi": queue 8
    ASSERT_TRUE(Attendi([&] { return Fax().Trova(a)->Coda == 8 && Fax().Trova(b)->Coda == 8; }));
    mComandi.Azione(6116)->trigger(); // "Da pubblicare": no action
    Scorri();
    EXPECT_EQ(Fax().Trova(a)->Coda, 8);

    // One unknown document makes the server refuse the whole move.
    const QString c = Fax().Coda(2).value(0);
    mVista->DocumentoSpostato(2, u"FAX-999999"_s, Fax().Nodo(c).replace(c, u"FAX-999999"_s));
    Seleziona({c, u"FAX-999999"_s});
    QSignalSpy messaggi(mVista.get(), &clsSrvVista::Messaggio);
    mComandi.Azione(6122)->trigger();
    ASSERT_TRUE(Attendi([&] { return messaggi.size() == 1; }));
    EXPECT_TRUE(messaggi[0][0].toString().contains(u"FAX-999999"_s));
    Scorri();
    EXPECT_EQ(Fax().Trova(c)->Coda, 2);
    EXPECT_EQ(mModello.Colore(mModello.Riga(c)), 0u);
}

TEST_F(Vista, TheFolderCommandsFollowTheDocumentsFolderOnDisk)
{
    Apri();
    const QString id = Fax().Coda(8).value(0);
    Seleziona({id});
    mVista->AbilitaPulsanti(true);
    ASSERT_TRUE(Attendi([&] { return mComandi.Azione(5305)->isEnabled() && mComandi.Azione(5307)->isEnabled(); }));
    ASSERT_TRUE(QDir(Fax().CartellaDocumentoDi(id)).removeRecursively());
    // Chosen again (an unchanged choice keeps the answers it had).
    mVista->AbilitaPulsanti(false);
    mVista->AbilitaPulsanti(true);
    Scorri();
    EXPECT_FALSE(mComandi.Azione(5305)->isEnabled());
    EXPECT_FALSE(mComandi.Azione(5307)->isEnabled());
    for (const int comando : {5315, 5303, 5300})
        EXPECT_TRUE(mComandi.Azione(comando)->isEnabled()) << comando;
    mVista->AbilitaPulsanti(false);
    for (const int comando : {5315, 5303, 5300, 5305})
        EXPECT_FALSE(mComandi.Azione(comando)->isEnabled()) << comando;
}

TEST_F(Vista, WithoutTheServersFilesOnlyTheDocumentsFolderIsOffAndSaysWhy)
{
    // The same server, reached as from another machine.
    PxCollegamentoDiretto altrove([this](const QString& nome) { return mS.Ref->Oggetto(nome); }, nullptr, false);
    PxSrvServer server(&altrove);
    server.Connetti();
    ASSERT_TRUE(Attendi([&] { return server.Caricato(); }));
    PxContesto contesto(mS.Testi, mS.Icone, mS.Impostazioni, mS.Log, &server);
    PxContestoSonda::ImpostaUIRoot(contesto, mUI.child("PLX"));
    const auto fine = qScopeGuard([this] { mVista.reset(); }); // the view goes before the context it holds
    mAmbiente = std::make_unique<PxAmbienteVista>(PxAmbienteVista{contesto, mLista, mModello, mComandi});
    Apri();
    const QString id = Fax().Coda(8).value(0);
    Seleziona({id});
    mVista->AbilitaPulsanti(true);
    // The output file is still offered (the server sends its bytes); the folder is not.
    ASSERT_TRUE(Attendi([&] { return mComandi.Azione(5307)->isEnabled(); }));
    Scorri();
    EXPECT_FALSE(mComandi.Azione(5305)->isEnabled());
    EXPECT_TRUE(mComandi.Azione(5305)->toolTip().contains(mS.Testi.LoadDllString(8049)));
    EXPECT_EQ(mComandi.Azione(5305)->statusTip(), mS.Testi.LoadDllString(8049));
    for (const int comando : {5315, 5303, 5300})
        EXPECT_TRUE(mComandi.Azione(comando)->isEnabled()) << comando;
}

TEST_F(Vista, LayoutTogglesAndGroupingAreKeptUnderKeyAndVersion)
{
    Apri();
    mComandi.Azione(6110)->setChecked(false);
    mVista->Raggruppa(3);
    mVista.reset();
    const pugi::xml_node nodo = mUI.child("PLX").find_child_by_attribute("Vista", "Chiave", "SrvDocFax");
    ASSERT_TRUE(nodo);
    EXPECT_STREQ(nodo.attribute("Versione").value(), "01.00.04");
    EXPECT_FALSE(nodo.child("Comandi").find_child_by_attribute("Comando", "Id", "6110").attribute("Spuntato").as_bool(true));

    Apri();
    EXPECT_FALSE(mComandi.Azione(6110)->isChecked());
    EXPECT_TRUE(mComandi.Azione(6111)->isChecked());
    EXPECT_EQ(mModello.ColonnaRaggruppamento(), 3);
    mVista.reset();
    // A layout of another version does not fit: the view starts as new.
    mUI.child("PLX").find_child_by_attribute("Vista", "Chiave", "SrvDocFax").attribute("Versione") = "01.00.03";
    Apri();
    EXPECT_TRUE(mComandi.Azione(6110)->isChecked());
    EXPECT_EQ(mModello.ColonnaRaggruppamento(), 2) << "grouped by stage";
}

TEST_F(Vista, AServiceGroupShowsItsWorkersAndFollowsTheirState)
{
    Apri(u"SrvFax"_s);
    for (const char* riga : {"SrvFax", "SrvTifVm", "SrvFaxVm", "SrvNeFax", "SrvReportFax", "SrvNotificaFax"})
        EXPECT_GE(mModello.Riga(std::string_view(riga)), 0) << riga;
    EXPECT_EQ(mModello.NumeroRighe(), 6);
    RefServizio* tif = qobject_cast<RefServizio*>(mS.Ref->Oggetto(u"Servizio/PxSrvTifVm"_s));
    ASSERT_NE(tif, nullptr);
    const QString prima = mModello.Testo(mModello.Riga(u"SrvTifVm"_s), 2);
    ASSERT_TRUE(tif->SospendiServizio());
    ASSERT_TRUE(Attendi([&] {
        mVista->AggiornaSrv(u"PxSrvTifVm"_s);
        return mModello.Testo(mModello.Riga(u"SrvTifVm"_s), 2) != prima;
    }));
    // Fitted at the first listing, a column grows when a row's new text no longer fits it,
    // but one the operator sized stays as he left it.
    const QString lunga = u"Conversione in tiff del documento FAX-000123, pagina 3 di 12"_s;
    mVista->Avanzamento(u"PxSrvTifVm"_s, lunga, 3, 12);
    EXPECT_GE(mLista.header()->sectionSize(3), mLista.fontMetrics().horizontalAdvance(lunga));
    mLista.header()->resizeSection(3, 60);
    mVista->Avanzamento(u"PxSrvTifVm"_s, lunga + u" (ripresa)"_s, 3, 12);
    EXPECT_EQ(mLista.header()->sectionSize(3), 60);
    mVista->Avanzamento(u"PxSrvTifVm"_s, u"Conversione in tiff"_s, 3, 12);
    const QModelIndex avanzamento = mModello.Indice(mModello.Riga(u"SrvTifVm"_s), 4);
    EXPECT_EQ(avanzamento.data(PxModelloContenuto::RuoloAvanzamento).toInt(), 25);
    EXPECT_EQ(mModello.Testo(mModello.Riga(u"SrvTifVm"_s), 3), u"Conversione in tiff"_s);
}

// An operator's hour compressed: notices for known and new documents into every queue, full
// listings, holds, regrouping, sorting, selections and folder switches, in a random order, on
// a list that is shown, with group rows spanning and the model checked after every step.
TEST_F(Vista, AnyOrderOfNoticesListingsAndSwitchesKeepsViewAndModelConsistent)
{
    mLista.setUniformRowHeights(true);
    mLista.setSortingEnabled(true);
    mLista.show();
    Apri();
    std::mt19937 caso(20261124);
    const auto tira = [&caso](int n) { return static_cast<int>(caso() % static_cast<unsigned>(n)); };
    GenereCartella genere = GenereCartella::Fax;
    const auto cartella = [&]() -> RefCartellaDocumenti& { return *mS.Ref->Cartella(genere); };
    const auto idCasuale = [&]() {
        const QStringList ids = cartella().Coda(tira(9));
        if (ids.isEmpty() || tira(4) == 0)
            return u"NUOVO-%1"_s.arg(tira(60));
        return ids.value(tira(static_cast<int>(ids.size())));
    };
    const auto nodoCasuale = [&]() {
        for (int coda = tira(9);; coda = (coda + 1) % 9)
            if (const QStringList ids = cartella().Coda(coda, 5); !ids.isEmpty())
                return cartella().Nodo(ids.value(tira(static_cast<int>(ids.size()))));
    };
    for (int passo = 0; passo < 3000; ++passo) {
        const int azione = tira(100);
        if (azione < 70) {
            mVista->DocumentoSpostato(tira(16) - 1, idCasuale(), nodoCasuale());
        } else if (azione < 74) {
            mVista->AggiornaContenuto(); // arrives when it arrives, held or not
            Scorri();
        } else if (azione < 77) {
            genere = genere == GenereCartella::Fax ? GenereCartella::Email : GenereCartella::Fax;
            mVista.reset();
            Apri(genere == GenereCartella::Fax ? u"SrvDocFax"_s : u"SrvDocEmail"_s);
        } else if (azione < 81) {
            const int colonne = mModello.columnCount();
            mVista->Raggruppa(tira(3) == 0 ? -1 : tira(colonne));
        } else if (azione < 85) {
            mModello.sort(tira(mModello.columnCount() + 1) - 1, tira(2) ? Qt::AscendingOrder : Qt::DescendingOrder);
        } else if (azione < 89) {
            mVista->Blocca(!mVista->Bloccata());
        } else if (azione < 95) {
            if (mModello.rowCount() > 0) {
                const QModelIndex g = mModello.index(tira(mModello.rowCount()), 0);
                tira(2) ? mLista.expand(g) : mLista.collapse(g);
                if (const int n = mModello.rowCount(g))
                    mLista.selectionModel()->setCurrentIndex(mModello.index(tira(n), 0, g),
                                                             QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
            }
        } else {
            mLista.scrollToBottom();
            (void)mLista.grab(); // paints what is on screen: data() for every visible cell
        }
        if (passo % 50 == 0)
            Scorri();
    }
    mVista->Blocca(false);
    // Every document row is in the group its stage or text says, and each key is found again.
    qsizetype righe = 0;
    for (int g = 0; g < mModello.rowCount(); ++g) {
        const QModelIndex gi = mModello.index(g, 0);
        if (!gi.data(PxModelloContenuto::RuoloGruppo).toBool()) {
            ++righe;
            continue;
        }
        ASSERT_GT(mModello.rowCount(gi), 0) << "an empty group stays";
        const QVariant chiaveGruppo = mModello.index(0, 0, gi).data(PxModelloContenuto::RuoloChiaveGruppo);
        for (int r = 0; r < mModello.rowCount(gi); ++r) {
            const QModelIndex d = mModello.index(r, 0, gi);
            EXPECT_EQ(d.data(PxModelloContenuto::RuoloChiaveGruppo), chiaveGruppo);
            EXPECT_EQ(mModello.Indice(mModello.Riga(mModello.Chiave(d))), d);
            ++righe;
        }
    }
    EXPECT_EQ(righe, mModello.NumeroRighe());
}

// The operator moves a document out of sight: it stays selected, its new stage's group opens
// and the list scrolls to it; a group closed by the operator stays closed through the reloads,
// by stage, even when it empties and comes back.
TEST_F(Vista, AMovedDocumentStaysInSightAndGroupsKeepTheirStateByStage)
{
    mLista.show();
    Apri();
    ASSERT_EQ(mModello.ColonnaRaggruppamento(), 2);
    const QString id = Fax().Coda(0).value(0);
    const QModelIndex daConvertire = mModello.IndiceGruppo(u"F0"_s);
    ASSERT_TRUE(daConvertire.isValid());
    mLista.expand(daConvertire);
    mLista.collapse(mModello.IndiceGruppo(u"F9"_s));
    Seleziona({id});
    mLista.selectionModel()->setCurrentIndex(mModello.Indice(mModello.Riga(id)), QItemSelectionModel::NoUpdate);
    mComandi.Azione(6122)->trigger(); // "Respinti"
    ASSERT_TRUE(Attendi([&] { return Fax().Trova(id)->Coda == 9; }));
    Ricarica();
    const QModelIndex dopo = mModello.Indice(mModello.Riga(id));
    ASSERT_TRUE(dopo.isValid());
    EXPECT_EQ(dopo.parent(), mModello.IndiceGruppo(u"F9"_s));
    EXPECT_TRUE(mLista.isExpanded(dopo.parent()));
    EXPECT_EQ(mVista->ChiaviSelezionate(), QStringList{id});
    EXPECT_EQ(mVista->ChiaveCorrente(), id);
    EXPECT_TRUE(mLista.viewport()->rect().intersects(mLista.visualRect(dopo)));

    // "Da convertire" closed by the operator; its documents all leave and one comes back.
    mLista.collapse(mModello.IndiceGruppo(u"F0"_s));
    for (const QString& d : Fax().Coda(0))
        mVista->DocumentoSpostato(2, d, Fax().Nodo(d));
    EXPECT_FALSE(mModello.IndiceGruppo(u"F0"_s).isValid());
    mVista->DocumentoSpostato(0, id, Fax().Nodo(id));
    ASSERT_TRUE(mModello.IndiceGruppo(u"F0"_s).isValid());
    EXPECT_FALSE(mLista.isExpanded(mModello.IndiceGruppo(u"F0"_s)));
    EXPECT_TRUE(mLista.isFirstColumnSpanned(mModello.IndiceGruppo(u"F0"_s).row(), {}));
    // Kept with the layout, for the next time the folder opens.
    mVista.reset();
    Apri();
    EXPECT_TRUE(mVista->GruppoAperto(u"F9"_s));
    EXPECT_FALSE(mVista->GruppoAperto(u"F0"_s));
}

// Rows that come and go above what the operator is reading do not move it.
TEST_F(Vista, RowsAboveTheViewportKeepItStill)
{
    mLista.resize(900, 300);
    mLista.show();
    Apri();
    mVista->Raggruppa(-1);
    mModello.sort(0, Qt::AscendingOrder);
    mLista.scrollTo(mModello.index(mModello.rowCount() / 2, 0), QAbstractItemView::PositionAtTop);
    const QString cima = mLista.indexAt(QPoint(1, 1)).data(PxModelloContenuto::RuoloChiave).toString();
    ASSERT_FALSE(cima.isEmpty());
    const QString modello = Fax().Coda(2).value(0);
    for (int i = 0; i < 5; ++i) // ids that sort before every other: rows above the viewport
        mVista->DocumentoSpostato(2, u"AAA-%1"_s.arg(i), Fax().Nodo(modello));
    mVista->DocumentoSpostato(11, Fax().Coda(0).value(0), Fax().Nodo(modello));
    QCoreApplication::processEvents(); // the burst is over: the place is put back once
    EXPECT_EQ(mLista.indexAt(QPoint(1, 1)).data(PxModelloContenuto::RuoloChiave).toString(), cima);
    // At the top, new rows show where they come.
    mLista.scrollToTop();
    mVista->DocumentoSpostato(2, u"AA-0"_s, Fax().Nodo(modello));
    QCoreApplication::processEvents();
    EXPECT_EQ(mLista.indexAt(QPoint(1, 1)).data(PxModelloContenuto::RuoloChiave).toString(), u"AA-0"_s);
}

// A linked document's row is a row like the others for a command; the column layout is taken
// as soon as the operator changes it, not only when the view ends.
TEST_F(Vista, LinkedRowsAreSelectedForCommandsAndTheLayoutIsTakenWhenChanged)
{
    Apri();
    mVista->Raggruppa(-1);
    QModelIndex padre;
    for (int r = 0; r < mModello.rowCount() && !padre.isValid(); ++r)
        if (mModello.rowCount(mModello.index(r, 0)) > 0)
            padre = mModello.index(r, 0);
    ASSERT_TRUE(padre.isValid());
    const QModelIndex collegato = mModello.index(0, 0, padre);
    QItemSelection s(padre, padre.siblingAtColumn(mModello.columnCount() - 1));
    s.select(collegato, collegato.siblingAtColumn(mModello.columnCount() - 1));
    mLista.selectionModel()->select(s, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    EXPECT_EQ(mVista->ChiaviSelezionate(), (QStringList{mModello.Chiave(padre), collegato.data().toString()}));
    EXPECT_TRUE(mVista->CreaXmlSelezione().contains(u"<ID>"_s + collegato.data().toString() + u"</ID>"_s));

    mLista.header()->resizeSection(1, 333);
    ASSERT_TRUE(Attendi([&] {
        const pugi::xml_node v = mUI.child("PLX").find_child_by_attribute("Vista", "Chiave", "SrvDocFax");
        return v && QByteArray::fromBase64(v.child_value("Colonne")) == mLista.header()->saveState();
    }));
}

} // namespace
