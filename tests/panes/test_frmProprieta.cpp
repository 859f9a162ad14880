#include "ServerInLinea.h"
#include "PxCollegamento.h"

#include "PxModelloProprieta.h"
#include "RefServizio.h"
#include "frmCorpoDocumento.h"
#include "frmLog.h"
#include "frmScriptDocumento.h"
#include "frmVisFirma.h"
#include "frmProprieta.h"
#include "modAlberoServer.h"
#include "modApri.h"
#include "modCatalogo.h"

#include <gtest/gtest.h>

#include <QAction>
#include "PxVistaTesto.h"
#include <QTextBrowser>
#include <QFile>
#include <QSignalSpy>
#include <QTimer>
#include <QTreeView>

#include <QDir>
#include <QUrl>
#include <QScopeGuard>
#include <QDesktopServices>
#include <QTemporaryDir>

#include <map>
#include <memory>
#include <set>

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

    // An object whose first `fallimenti` requests fail, as a document the server cannot read
    // for a moment; later requests answer with `xml`.
    frmProprieta::Riferimento OggettoInstabile(const QString& chiave, const QString& xml, int fallimenti, bool collegato = false)
    {
        return {chiave, collegato, [this, chiave, xml, fallimenti](QObject* richiedente, PxSrvOggetto::Esito fatto) {
                    const bool fallisce = ++mRichieste[chiave] <= fallimenti;
                    QTimer::singleShot(0, richiedente, [fatto, xml, fallisce] {
                        fatto(fallisce ? PxRisposta{modContratto::Rifiutato, u"Documento non leggibile"_s, {}}
                                       : PxRisposta{modContratto::Ok, xml, {}});
                    });
                }};
    }

    // The object key and state of the service the node's sheet acts on, and the key of its
    // first entry for a list node ("" otherwise).
    static std::pair<QString, int> Servizio(const modAlberoServer::Nodo& n)
    {
        const QString chiave = QString::fromLatin1(*n.Oggetto ? n.Oggetto : "PxSrvServer");
        pugi::xml_document doc;
        doc.load_string(sServer->Ref->ServizioRef(chiave)->StatoXml().toUtf8().constData());
        return {chiave, doc.document_element().child("Stato").child("Codice").text().as_int(-1)};
    }
    static QString PrimaVoce(const modAlberoServer::Nodo& n)
    {
        if (n.Tipo != modAlberoServer::Genere::Elenco)
            return {};
        pugi::xml_document doc;
        doc.load_string(sServer->Ref->ServizioRef(QString::fromLatin1(n.Oggetto))->StatoXml().toUtf8().constData());
        return QString::fromUtf8(doc.document_element().child(n.Elenco).first_child().child_value(n.ElementoChiave));
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

}

TEST_F(Proprieta, StartAndSuspendFollowTheKindOfNodeAndTheStateOfTheServiceTheyActOn)
{
    // Neither the formats, nor the signatures, nor a document folder are started from the pane;
    // every service and worker is, and so are the printers, clients and FTP clients.
    const std::set<QString> maiAvviabili = {u"SrvFormati"_s, u"SrvFirme"_s};
    int avviabili = 0;
    for (const modAlberoServer::Nodo& n : modAlberoServer::Nodi()) {
        const QString codice = QString::fromLatin1(n.Chiave);
        const QString voce = PrimaVoce(n);
        mPane->VisualizzaServer(codice, voce.isEmpty() ? codice : codice + u'|' + voce);
        ASSERT_TRUE(Attendi()) << n.Chiave;
        const bool atteso = !maiAvviabili.contains(codice) && n.Tipo != modAlberoServer::Genere::Cartella;
        const int stato = Servizio(n).second;
        EXPECT_EQ(mPane->ComandoSospendi()->isEnabled(), atteso && stato == modCatalogo::StatoInFunzione) << n.Chiave;
        EXPECT_EQ(mPane->ComandoAvvia()->isEnabled(), atteso && stato != modCatalogo::StatoInFunzione && stato != 8)
            << n.Chiave;
        avviabili += atteso ? 1 : 0;
    }
    EXPECT_EQ(avviabili, 29);

    // A printer acts on the print service that holds it, and its buttons follow that service.
    RefServizio* stampe = sServer->Ref->ServizioRef(u"PxSrvStampe"_s);
    ASSERT_EQ(stampe->CodiceStato(), modCatalogo::StatoInFunzione);
    mPane->VisualizzaServer(u"3) Etichette magazzino"_s, u"SrvStampante|3"_s);
    ASSERT_TRUE(Attendi());
    ASSERT_TRUE(mPane->ComandoSospendi()->isEnabled());
    mPane->ComandoSospendi()->trigger();
    ASSERT_TRUE(QTest::qWaitFor([&] { return stampe->CodiceStato() != modCatalogo::StatoInFunzione; }, 5000));
    ASSERT_TRUE(QTest::qWaitFor([&] { return mPane->ComandoAvvia()->isEnabled(); }, 5000));
    EXPECT_FALSE(mPane->ComandoSospendi()->isEnabled());
    mPane->ComandoAvvia()->trigger();
    ASSERT_TRUE(QTest::qWaitFor([&] { return stampe->CodiceStato() == modCatalogo::StatoInFunzione; }, 5000));

    // A folder's sheet never acts, even when asked.
    RefServizio* cartella = sServer->Ref->ServizioRef(u"PxSrvDocStampe"_s);
    const int prima = cartella->CodiceStato();
    mPane->VisualizzaServer(u"Documenti stampe"_s, u"SrvDocStampe"_s);
    ASSERT_TRUE(Attendi());
    mPane->SospendiServizio();
    mPane->AvviaServizio();
    QCoreApplication::processEvents();
    EXPECT_EQ(cartella->CodiceStato(), prima);
}

TEST_F(Proprieta, TheOpenJobsAreThePrintersAtWorkAndFollowTheList)
{
    const auto inFunzione = [] {
        pugi::xml_document doc;
        doc.load_string(sServer->Ref->ServizioRef(u"PxSrvStampe"_s)->StatoXml().toUtf8().constData());
        int n = 0;
        for (const pugi::xml_node s : doc.document_element().child("Stampanti").children("Stampante"))
            n += s.child("Stato").child("Codice").text().as_int() == modCatalogo::StatoInFunzione ? 1 : 0;
        return n;
    };
    mPane->VisualizzaServer(u"Stampe"_s, u"SrvStampe"_s);
    ASSERT_TRUE(Attendi());
    const int prima = inFunzione();
    ASSERT_GT(prima, 0);
    EXPECT_EQ(Valore(3233), QString::number(prima));

    // One more printer at work, then none of it.
    ASSERT_TRUE(sServer->Ref->AggiungiStampante(
        u"<Stampante><Chiave>99</Chiave><NumeroTarquel>99</NumeroTarquel><NomeStampanteWindows>Prova</NomeStampanteWindows>"
        "<Stato><Codice>4</Codice><Descrizione>In funzione</Descrizione></Stato></Stampante>"_s));
    ASSERT_TRUE(QTest::qWaitFor([&] { return Valore(3233) == QString::number(prima + 1); }, 5000)) << Valore(3233).toStdString();
    ASSERT_TRUE(sServer->Ref->RimuoviStampante(u"99"_s));
    ASSERT_TRUE(QTest::qWaitFor([&] { return Valore(3233) == QString::number(prima); }, 5000)) << Valore(3233).toStdString();
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

    // A folder shows the log its own state names, not its service's.
    mPane->VisualizzaServer(u"Documenti fax"_s, u"SrvDocFax"_s);
    ASSERT_TRUE(Attendi());
    EXPECT_TRUE(mPane->FileLog().endsWith(u"/PxSrvDocFax.log"_s)) << mPane->FileLog().toStdString();
    EXPECT_EQ(log.File(), mPane->FileLog());
}

TEST_F(Proprieta, ActionsOpenOnlyTheirTextAndNeverRunAnything)
{
    // A body that is a script (wherever it is), a script behind a document's name, and a header
    // with no file at all.
    QTemporaryDir fuori;
    QFile script(fuori.filePath(u"corpo.sh"_s));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\n");
    script.close();
    ASSERT_TRUE(QFile::link(script.fileName(), fuori.filePath(u"D1.pdf"_s)));
    mPane->Oggetto(Oggetto(u"D1"_s, Documento("Stampa", u"D1"_s,
                                              u"<FileCorpo><Percorso>%1</Percorso><Nome>corpo.sh</Nome></FileCorpo>"
                                              "<FileScript><Percorso>%1</Percorso><Nome>D1.pdf</Nome></FileScript>"
                                              "<FileIntestazione><Percorso/><Nome/></FileIntestazione>"_s.arg(fuori.path()))));
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
    premi(3035, 3032);
    ASSERT_EQ(messaggi.count(), 2);
    EXPECT_TRUE(messaggi.at(0).at(0).toString().startsWith(sServer->Testi.LoadDllString(modApri::TipoImprevisto)));
    EXPECT_TRUE(messaggi.at(0).at(0).toString().endsWith(u"/corpo.sh"_s));
    EXPECT_TRUE(messaggi.at(1).at(0).toString().startsWith(sServer->Testi.LoadDllString(modApri::TipoImprevisto)));
    EXPECT_TRUE(messaggi.at(1).at(0).toString().endsWith(u"/D1.pdf"_s));
}

namespace {

// Takes the desktop's place for file addresses: what would have been opened.
class Desktop : public QObject
{
    Q_OBJECT
public:
    QList<QUrl> Aperti;
public slots:
    void Apri(const QUrl& indirizzo) { Aperti << indirizzo; }
};

} // namespace

TEST_F(Proprieta, WithoutTheServersFilesADocumentsFileOpensAsACopyAndAFolderSaysWhy)
{
    PxCollegamentoDiretto altrove([](const QString& nome) { return sServer->Ref->Oggetto(nome); }, nullptr, false);
    PxSrvServer server(&altrove);
    server.Connetti();
    ASSERT_TRUE(QTest::qWaitFor([&] { return server.Caricato(); }, 10000));
    PxContesto contesto(sServer->Testi, sServer->Icone, sServer->Impostazioni, sServer->Log, &server);
    const auto fine = qScopeGuard([this] { mPane.reset(); }); // the pane goes before the context it holds
    mPane = std::make_unique<frmProprieta>(contesto);
    mCaricati = std::make_unique<QSignalSpy>(mPane.get(), &frmProprieta::Caricato);
    Desktop desktop;
    QDesktopServices::setUrlHandler(u"file"_s, &desktop, "Apri");
    const auto via = qScopeGuard([] { QDesktopServices::unsetUrlHandler(u"file"_s); });

    QTemporaryDir dir(QDir(sServer->Dir.path()).filePath(u"apri-XXXXXX"_s));
    QFile pdf(dir.filePath(u"D1.pdf"_s));
    ASSERT_TRUE(pdf.open(QIODevice::WriteOnly));
    const QByteArray contenuto = "%PDF-1.4\n% prova\n" + QByteArray(5 * 1024 * 1024, 'p'); // more than one answer carries
    pdf.write(contenuto);
    pdf.close();
    mPane->Oggetto(Oggetto(u"D1"_s, Documento("Stampa", u"D1"_s,
                                              u"<FileCorpo><Percorso>%1</Percorso><Nome>D1.pdf</Nome></FileCorpo>"_s.arg(dir.path()))));
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

    // The file: a copy of this machine's, whole, is what the desktop opens.
    premi(3034, 3032);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !desktop.Aperti.isEmpty() || !messaggi.isEmpty(); }, 10000));
    ASSERT_TRUE(messaggi.isEmpty()) << qPrintable(messaggi.at(0).at(0).toString());
    const QString copia = desktop.Aperti.at(0).toLocalFile();
    EXPECT_FALSE(copia.startsWith(QFileInfo(sServer->Dir.path()).canonicalFilePath())) << qPrintable(copia);
    QFile letta(copia);
    ASSERT_TRUE(letta.open(QIODevice::ReadOnly));
    EXPECT_TRUE(letta.readAll() == contenuto);
    // The folder: the server's, and said so.
    premi(3034, 3031);
    ASSERT_EQ(messaggi.count(), 1);
    EXPECT_TRUE(messaggi.at(0).at(0).toString().startsWith(sServer->Testi.LoadDllString(8049)));
    EXPECT_EQ(desktop.Aperti.size(), 1);
}

TEST_F(Proprieta, TheViewersFollowTheSelection)
{
    frmCorpoDocumento corpo(*sServer->Contesto);
    frmScriptDocumento script(*sServer->Contesto);
    frmVisFirma firma;
    mPane->ImpostaVisualizzatori(&corpo, &script, &firma);
    // The server reads only its own folder's files.
    QTemporaryDir dir(QDir(sServer->Dir.path()).filePath(u"viste-XXXXXX"_s));
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

TEST_F(Proprieta, AFailedRefreshIsDroppedTheSheetKeepsWhatItShowsAndTheNextTickTriesAgain)
{
    mPane->Oggetto(Oggetto(u"D1"_s, Documento("Stampa", u"D1"_s)));
    ASSERT_TRUE(Attendi());
    const int righe = mPane->Modello()->rowCount();

    // The selection: two failures, then its description.
    mPane->Oggetto(OggettoInstabile(u"E1"_s, Documento("Email", u"E1"_s), 2));
    ASSERT_TRUE(QTest::qWaitFor([&] { return mRichieste[u"E1"_s] >= 2; }, 5000));
    EXPECT_EQ(mPane->LayoutVisualizzato(), 40);
    EXPECT_EQ(mPane->Modello()->rowCount(), righe);
    EXPECT_EQ(Valore(3006), u"D1"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return mPane->LayoutVisualizzato() == 41; }, 5000));
    EXPECT_EQ(Valore(3006), u"E1"_s);
    EXPECT_EQ(mRichieste[u"E1"_s], 3);

    // The linked document: one failure, then its description, on the linked timer.
    mPane->Collegato(OggettoInstabile(u"A9"_s, Documento("Anteprima", u"A9"_s), 1, true));
    ASSERT_TRUE(QTest::qWaitFor([&] { return mRichieste[u"A9"_s] >= 1; }, 5000));
    EXPECT_EQ(Valore(3006), u"E1"_s) << "the sheet stays as it was";
    ASSERT_TRUE(QTest::qWaitFor([&] { return mPane->LayoutVisualizzato() == 39; }, 5000));
    EXPECT_EQ(Valore(3006), u"A9"_s);
    EXPECT_EQ(mRichieste[u"A9"_s], 2);

    // A description that is not XML is dropped the same way.
    mPane->Oggetto(Oggetto(u"X1"_s, u"<Documento Tipo="_s));
    ASSERT_TRUE(QTest::qWaitFor([&] { return mRichieste[u"X1"_s] >= 2; }, 5000));
    EXPECT_EQ(mPane->LayoutVisualizzato(), 39);
    EXPECT_EQ(Valore(3006), u"A9"_s);
}

#include "test_frmProprieta.moc"
