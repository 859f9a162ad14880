#include "ServerInLinea.h"

#include "PxModelloProprieta.h"
#include "RefServizio.h"
#include "frmCorpoDocumento.h"
#include "frmLog.h"
#include "frmScriptDocumento.h"
#include "frmVisFirma.h"
#include "frmProprieta.h"
#include "modCatalogo.h"

#include <gtest/gtest.h>

#include <QAction>
#include "PxVistaTesto.h"
#include <QTextBrowser>
#include <QFile>
#include <QSignalSpy>
#include <QTimer>
#include <QTreeView>

#include <map>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

// The pane over a demo server, with objects whose descriptions the test writes.
class Proprieta : public SuiteConServer<0>
{
protected:
    void SetUp() override
    {
        mPane = std::make_unique<frmProprieta>(*sServer->Contesto);
        mPane->resize(500, 700);
        mCaricati = std::make_unique<QSignalSpy>(mPane.get(), &frmProprieta::Caricato);
    }

    // An object that answers with `xml` (later, as the server would) and counts the requests.
    frmProprieta::Riferimento Oggetto(const QString& chiave, const QString& xml, bool collegato = false)
    {
        return {chiave, collegato, [this, chiave, xml](QObject* richiedente, PxSrvOggetto::Esito fatto) {
                    ++mRichieste[chiave];
                    QTimer::singleShot(0, richiedente, [fatto, xml] { fatto(PxRisposta{modContratto::Ok, xml, {}}); });
                }};
    }

    static QString Documento(const char* tipo, const QString& id, const QString& proprieta = {})
    {
        return u"<Documento Tipo=\"%1\" Id=\"%2\"><Proprieta><Id>%2</Id>%3</Proprieta></Documento>"_s.arg(
            QLatin1StringView(tipo), id, proprieta);
    }

    // Waits for the next sheet filled.
    bool Attendi()
    {
        const qsizetype prima = mCaricati->count();
        return QTest::qWaitFor([&] { return mCaricati->count() > prima; }, 5000);
    }

    QModelIndex Voce(int testo) const { return mPane->Modello()->TrovaTesto(testo); }
    QString Valore(int testo) const { return Voce(testo).data(PxModelloProprieta::RuoloValoreIntero).toString(); }

    std::unique_ptr<frmProprieta> mPane;
    std::unique_ptr<QSignalSpy> mCaricati;
    std::map<QString, int> mRichieste;
};

} // namespace

TEST_F(Proprieta, ABurstOfSelectionsLoadsOnlyTheLast)
{
    for (int i = 1; i <= 5; ++i)
        mPane->Oggetto(Oggetto(u"D%1"_s.arg(i), Documento("Stampa", u"D%1"_s.arg(i))));
    ASSERT_TRUE(Attendi());
    EXPECT_EQ(mRichieste, (std::map<QString, int>{{u"D5"_s, 1}}));
    EXPECT_EQ(Valore(3006), u"D5"_s);
    EXPECT_EQ(mPane->LayoutVisualizzato(), 40);

    // Asked again while it stays selected; the same description does not fill the sheet again.
    const qsizetype riempimenti = mCaricati->count();
    ASSERT_TRUE(QTest::qWaitFor([&] { return mRichieste[u"D5"_s] == 2; }, 5000));
    QTest::qWait(50);
    EXPECT_EQ(mCaricati->count(), riempimenti);
}

TEST_F(Proprieta, TheSameKindKeepsTheTreeAnotherKindRebuildsIt)
{
    mPane->Oggetto(Oggetto(u"D1"_s, Documento("Stampa", u"D1"_s, u"<Funzione>ORDINI</Funzione>"_s)));
    ASSERT_TRUE(Attendi());
    QTreeView* griglia = mPane->Griglia();
    const QModelIndex specifiche = Voce(3014).siblingAtColumn(0);
    ASSERT_TRUE(specifiche.isValid());
    griglia->collapse(specifiche);
    QSignalSpy ricostruzioni(mPane->Modello(), &QAbstractItemModel::modelReset);

    mPane->Oggetto(Oggetto(u"D2"_s, Documento("Stampa", u"D2"_s)));
    ASSERT_TRUE(Attendi());
    EXPECT_EQ(ricostruzioni.count(), 0);
    EXPECT_EQ(Valore(3006), u"D2"_s);
    EXPECT_EQ(Valore(3007), QString()) << "a missing element empties the item, it does not keep the last value";
    EXPECT_FALSE(griglia->isExpanded(Voce(3014).siblingAtColumn(0))) << "the operator's collapsed group stays so";

    mPane->Oggetto(Oggetto(u"F1"_s, Documento("Fax", u"F1"_s)));
    ASSERT_TRUE(Attendi());
    EXPECT_EQ(ricostruzioni.count(), 1);
    EXPECT_EQ(mPane->LayoutVisualizzato(), 42);

    // A preview document has its print properties in a second category.
    mPane->Oggetto(Oggetto(u"A1"_s, Documento("Anteprima", u"A1"_s, u"<Copie>3</Copie>"_s)));
    ASSERT_TRUE(Attendi());
    EXPECT_EQ(mPane->Modello()->rowCount(), 2);
    EXPECT_EQ(Valore(3076), u"3"_s);
    EXPECT_EQ(mPane->Modello()->index(1, 0).data().toString(), sServer->Testi.LoadDllString(3073));
}

TEST_F(Proprieta, HostileValuesShowAsTextAndListsFollowTheirEntries)
{
    // Markup and control characters in a huge value; an e-mail's attachments and notes.
    QString enorme = u"<b>grassetto</b>&amp;\u0001"_s + QString(100000, u'x');
    pugi::xml_document doc;
    pugi::xml_node p = doc.append_child("Documento");
    p.append_attribute("Tipo") = "Email";
    p = p.append_child("Proprieta");
    p.append_child("Descrizione").text() = enorme.toUtf8().constData();
    pugi::xml_node allegati = p.append_child("Allegati").append_child("List");
    allegati.append_child("Item").text() = "Documenti/a.pdf";
    allegati.append_child("Item").text() = "Documenti/b.pdf";
    p.append_child("Messaggio").append_child("Nota_1").text() = "Prima nota";
    std::ostringstream testo;
    doc.save(testo);
    mPane->Oggetto(Oggetto(u"E1"_s, QString::fromStdString(testo.str())));
    ASSERT_TRUE(Attendi());

    const QModelIndex descrizione = Voce(3008);
    EXPECT_EQ(descrizione.data(PxModelloProprieta::RuoloValoreIntero).toString(), enorme) << "kept whole for copying";
    const QString mostrato = descrizione.data().toString();
    EXPECT_LE(mostrato.size(), PxModelloProprieta::LunghezzaMostrata + 1);
    EXPECT_TRUE(mostrato.startsWith(u"<b>grassetto</b>&amp;\u2401"_s)) << mostrato.left(40).toStdString();

    const QModelIndex elenco = Voce(3203).siblingAtColumn(0);
    ASSERT_EQ(mPane->Modello()->rowCount(elenco), 2);
    EXPECT_EQ(mPane->Modello()->index(1, 1, elenco).data().toString(), u"Documenti/b.pdf"_s);
    EXPECT_EQ(mPane->Modello()->index(1, 1, elenco).data(PxModelloProprieta::RuoloAzione).toInt(), 1);
    EXPECT_EQ(mPane->Modello()->index(0, 1, Voce(3360).siblingAtColumn(0)).data().toString(), u"Prima nota"_s);

    // One attachment fewer on the next description of the same document.
    allegati.remove_child(allegati.last_child());
    std::ostringstream meno;
    doc.save(meno);
    mPane->Oggetto(Oggetto(u"E1"_s, QString::fromStdString(meno.str())));
    ASSERT_TRUE(Attendi());
    EXPECT_EQ(mPane->Modello()->rowCount(Voce(3203).siblingAtColumn(0)), 1);
}

TEST_F(Proprieta, AServiceSheetColoursItsStateOnlyWhenTheCodeChanges)
{
    QSignalSpy stati(mPane.get(), &frmProprieta::StatoServizioCambiato);
    mPane->VisualizzaServer(u"Stampe"_s, u"SrvStampe"_s);
    ASSERT_TRUE(Attendi());
    EXPECT_EQ(mPane->LayoutVisualizzato(), 5);
    EXPECT_EQ(Voce(3200).data(Qt::ForegroundRole).value<QColor>(), QColor(0, 192, 0));
    ASSERT_EQ(stati.count(), 1);
    EXPECT_EQ(stati.at(0).at(0).toInt(), modCatalogo::StatoInFunzione);
    EXPECT_TRUE(mPane->ComandoSospendi()->isEnabled());
    EXPECT_FALSE(mPane->ComandoAvvia()->isEnabled());

    // The same code again (the activity changed): the colour is not set a second time.
    QSignalSpy ricostruzioni(mPane->Modello(), &QAbstractItemModel::modelReset);
    mPane->Modello()->ImpostaColore(1, Qt::black);
    sServer->Ref->ServizioRef(u"PxSrvStampe"_s)->ImpostaAttivita(u"Stampa in corso"_s);
    ASSERT_TRUE(Attendi());
    EXPECT_EQ(Valore(3201), u"Stampa in corso"_s);
    EXPECT_EQ(Voce(3200).data(Qt::ForegroundRole).value<QColor>(), QColor(Qt::black));
    EXPECT_EQ(stati.count(), 1);

    sServer->Ref->ServizioRef(u"PxSrvStampe"_s)->SospendiServizio();
    ASSERT_TRUE(QTest::qWaitFor([&] { return stati.count() == 2; }, 5000));
    EXPECT_EQ(Voce(3200).data(Qt::ForegroundRole).value<QColor>(), QColor(0, 0, 255));
    EXPECT_EQ(ricostruzioni.count(), 0) << "refreshes of the same sheet never rebuild it";

    // The pane's own start command runs it again.
    ASSERT_TRUE(mPane->ComandoAvvia()->isEnabled());
    EXPECT_FALSE(mPane->ComandoSospendi()->isEnabled());
    mPane->ComandoAvvia()->trigger();
    ASSERT_TRUE(QTest::qWaitFor([&] { return stati.count() == 3; }, 5000));
    EXPECT_EQ(sServer->Ref->ServizioRef(u"PxSrvStampe"_s)->CodiceStato(), modCatalogo::StatoInFunzione);
    EXPECT_TRUE(mPane->ComandoSospendi()->isEnabled());

    // A printer of the service's list is not the service: neither command.
    mPane->VisualizzaServer(u"3) Etichette magazzino"_s, u"SrvStampante|3"_s);
    ASSERT_TRUE(Attendi());
    EXPECT_FALSE(mPane->ComandoAvvia()->isEnabled());
    EXPECT_FALSE(mPane->ComandoSospendi()->isEnabled());
}

TEST_F(Proprieta, ListNodesFormatsTimeStampsAndTheLogFollowTheNode)
{
    // Two printers share one sheet: values and caption change, the tree stays.
    mPane->VisualizzaServer(u"3) Etichette magazzino"_s, u"SrvStampante|3"_s);
    ASSERT_TRUE(Attendi());
    EXPECT_EQ(Valore(3257), u"Etichette magazzino"_s);
    QSignalSpy ricostruzioni(mPane->Modello(), &QAbstractItemModel::modelReset);
    mPane->VisualizzaServer(u"4) Laser amministrazione"_s, u"SrvStampante|4"_s);
    ASSERT_TRUE(Attendi());
    EXPECT_EQ(Valore(3257), u"Laser amministrazione"_s);
    EXPECT_EQ(mPane->Modello()->index(0, 0).data().toString(), u"4) Laser amministrazione"_s);
    EXPECT_EQ(ricostruzioni.count(), 0);

    // The formats' database publication time, masked and formatted.
    mPane->VisualizzaServer(u"Formati"_s, u"SrvFormati"_s);
    ASSERT_TRUE(Attendi());
    EXPECT_EQ(Valore(3326), u"20/11/2026 17.30"_s);

    // The log file goes to the log pane once, not on every refresh.
    frmLog log(*sServer->Contesto);
    mPane->ImpostaLog(&log);
    QSignalSpy letture(&log, &frmLog::Letto);
    RefServizio* faxVm = sServer->Ref->ServizioRef(u"PxSrvFaxVm"_s);
    mPane->VisualizzaServer(u"Fax virtual machine"_s, u"SrvFaxVm"_s);
    ASSERT_TRUE(Attendi());
    faxVm->ImpostaAttivita(u"Composizione del numero"_s);
    ASSERT_TRUE(Attendi());
    ASSERT_TRUE(QTest::qWaitFor([&] { return letture.count() > 0; }, 5000));
    EXPECT_TRUE(log.File().endsWith(u"PxSrvFaxVm.log"_s)) << log.File().toStdString();
    EXPECT_EQ(mPane->FileLog(), log.File());
    faxVm->ImpostaAttivita(u"Trasmissione"_s);
    ASSERT_TRUE(Attendi());
    QTest::qWait(50);
    EXPECT_EQ(letture.count(), 1);

    // An unchanged state is not read again: no fill in three ticks.
    const qsizetype riempimenti = mCaricati->count();
    QTest::qWait(300);
    EXPECT_EQ(mCaricati->count(), riempimenti);

    // A folder shows the log of the service that owns it.
    mPane->VisualizzaServer(u"Documenti fax"_s, u"SrvDocFax"_s);
    ASSERT_TRUE(Attendi());
    EXPECT_TRUE(mPane->FileLog().endsWith(u"/PxSrvFax.log"_s)) << mPane->FileLog().toStdString();
}

TEST_F(Proprieta, ActionsOpenOnlyTheirTextAndOnlyInsideTheServerFolder)
{
    // A body file outside the server folder, and a header with no file at all.
    mPane->Oggetto(Oggetto(u"D1"_s, Documento("Stampa", u"D1"_s,
                                              u"<FileCorpo><Percorso>/etc</Percorso><Nome>passwd</Nome></FileCorpo>"
                                              "<FileIntestazione><Percorso/><Nome/></FileIntestazione>"_s)));
    ASSERT_TRUE(Attendi());
    QAction* apri = nullptr;
    for (QAction* a : mPane->Griglia()->actions())
        if (a->text() == sServer->Testi.LoadDllString(8048))
            apri = a;
    ASSERT_NE(apri, nullptr);
    QSignalSpy messaggi(mPane.get(), &frmProprieta::Messaggio);
    const auto premi = [&](int gruppo, int voce) {
        const QModelIndex g = Voce(gruppo).siblingAtColumn(0);
        mPane->Griglia()->setCurrentIndex(mPane->Modello()->TrovaTesto(voce, g));
        apri->trigger();
    };
    premi(3033, 3032);
    premi(3033, 3031);
    EXPECT_EQ(messaggi.count(), 0) << "an empty text opens nothing";
    premi(3034, 3032);
    ASSERT_EQ(messaggi.count(), 1);
    EXPECT_TRUE(messaggi.at(0).at(0).toString().startsWith(sServer->Testi.LoadDllString(8031)));
    EXPECT_TRUE(messaggi.at(0).at(0).toString().endsWith(u"/etc/passwd"_s));
}

TEST_F(Proprieta, TheViewersFollowTheSelection)
{
    frmCorpoDocumento corpo(*sServer->Contesto);
    frmScriptDocumento script(*sServer->Contesto);
    frmVisFirma firma;
    mPane->ImpostaVisualizzatori(&corpo, &script, &firma);
    QTemporaryDir dir;
    QFile bpx(dir.filePath(u"D1.bpx"_s));
    ASSERT_TRUE(bpx.open(QIODevice::WriteOnly));
    bpx.write("Corpo del documento\r\n");
    bpx.close();
    QSignalSpy corpi(&corpo, &frmCorpoDocumento::Caricato);
    mPane->Oggetto(Oggetto(u"D1"_s, Documento("Fax", u"D1"_s,
                                              u"<FileCorpo><Percorso>%1</Percorso><Nome>D1.bpx</Nome></FileCorpo>"_s.arg(dir.path()))));
    ASSERT_TRUE(QTest::qWaitFor([&] { return corpi.count() == 1; }, 5000));
    EXPECT_EQ(corpo.Testo()->TestoVisibile(), u"Corpo del documento\n"_s);

    // A signature: its page in the signature viewer, the body viewer emptied.
    QSignalSpy firme(&firma, &frmVisFirma::Caricato);
    mPane->Oggetto(Oggetto(u"MROSSI"_s, u"<Firma Genere=\"Firma\"><Proprieta><Key>MROSSI</Key>"
                                        "<Html>&lt;b&gt;Mario Rossi&lt;/b&gt;</Html></Proprieta></Firma>"_s));
    ASSERT_TRUE(QTest::qWaitFor([&] { return firme.count() == 1; }, 5000));
    EXPECT_EQ(firma.Pagina()->toPlainText(), u"Mario Rossi"_s);
    EXPECT_EQ(mPane->LayoutVisualizzato(), 49);
    EXPECT_TRUE(corpo.Testo()->Vuoto());

    // Back to a node: nothing of the documents stays on show.
    mPane->Oggetto(Oggetto(u"D1"_s, Documento("Stampa", u"D1"_s,
                                              u"<FileCorpo><Percorso>%1</Percorso><Nome>D1.bpx</Nome></FileCorpo>"_s.arg(dir.path()))));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !corpo.Testo()->Vuoto(); }, 5000));
    mPane->VisualizzaServer(u"Stampe"_s, u"SrvStampe"_s);
    ASSERT_TRUE(Attendi());
    EXPECT_TRUE(corpo.Testo()->Vuoto());
    EXPECT_TRUE(corpo.File().isEmpty());
}

TEST_F(Proprieta, AnObjectTheServerCannotDescribeLeavesNoOtherSheetAndIsNotAskedAgain)
{
    mPane->Oggetto(Oggetto(u"D1"_s, Documento("Stampa", u"D1"_s)));
    ASSERT_TRUE(Attendi());
    int richieste = 0;
    mPane->Collegato({u"X9"_s, true, [&](QObject* richiedente, PxSrvOggetto::Esito fatto) {
                          ++richieste;
                          QTimer::singleShot(0, richiedente, [fatto] {
                              fatto(PxRisposta{modContratto::Rifiutato, u"Documento X9 sconosciuto"_s, {}});
                          });
                      }});
    ASSERT_TRUE(QTest::qWaitFor([&] { return mPane->LayoutVisualizzato() == 0; }, 5000));
    QTest::qWait(1300);
    EXPECT_EQ(richieste, 1);
    EXPECT_EQ(mPane->Modello()->rowCount(), 0);
}
