#include "PxIntestazioneHpx.h"
#include "RefCartellaDocumenti.h"
#include "RefIngresso.h"
#include "RefLavoratori.h"
#include "RefServer.h"
#include "RefServizio.h"
#include "modCartelle.h"
#include "modDemo.h"
#include "modProprieta.h"
#include "modDisco.h"

#include "Coerenza.h"
#include "DiscoGuasto.h"
#include "Selezione.h"
#include "SpiaSpostamenti.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QProcess>
#include <QDirIterator>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <pugixml.hpp>
#include <random>

using namespace Qt::StringLiterals;

namespace {

QByteArray Leggi(const QString& file)
{
    QFile f(file);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// With no `nome`, the names in a ZIP archive; with one, that file's text, as lines. Read by
// Debian's unzip, never by code of ours.
QStringList Decomprimi(const QString& archivio, const QString& nome)
{
    QProcess unzip;
    unzip.start(u"unzip"_s, nome.isEmpty() ? QStringList{u"-Z1"_s, archivio} : QStringList{u"-p"_s, archivio, nome});
    if (!unzip.waitForFinished(10000) || unzip.exitCode() != 0) {
        ADD_FAILURE() << "unzip failed on " << qPrintable(archivio) << ": " << unzip.readAllStandardError().constData();
        return {};
    }
    const QString testo = QString::fromUtf8(unzip.readAllStandardOutput());
    return nome.isEmpty() ? testo.split(u'\n', Qt::SkipEmptyParts) : testo.split(u'\n');
}

// The pages of a TIFF, as Debian's tiffinfo counts them.
int PagineTiff(const QString& file)
{
    QProcess tiffinfo;
    tiffinfo.start(u"tiffinfo"_s, {file});
    if (!tiffinfo.waitForFinished(10000) || tiffinfo.exitCode() != 0)
        return -1;
    return static_cast<int>(tiffinfo.readAllStandardOutput().count("TIFF Directory at offset"));
}

class Cartelle : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(modDemo::CreaServerDemo(mDir.path(), 400), QString());
        Apri();
    }
    void Apri()
    {
        mServer.reset();
        mServer = std::make_unique<RefServer>(mDir.path(), RefServer::Opzioni{false});
        mServer->Lavoratori().ImpostaPercentualeRespinti(0);
    }
    RefCartellaDocumenti& Fax() const { return *mServer->Cartella(GenereCartella::Fax); }

    QTemporaryDir mDir;
    std::unique_ptr<RefServer> mServer;
};

} // namespace

TEST_F(Cartelle, ListingShapePerFolder)
{
    for (const modCartelle::Definizione& def : modCartelle::Cartelle()) {
        RefCartellaDocumenti* c = mServer->CartellaRef(QString::fromLatin1(def.Chiave));
        ASSERT_NE(c, nullptr);
        EXPECT_EQ(mServer->Oggetto(u"Cartella/"_s + QString::fromLatin1(def.Chiave)), c);
        const QByteArray ricevuto = c->TestoElenco();
        pugi::xml_document doc;
        ASSERT_TRUE(doc.load_buffer(ricevuto.constData(), static_cast<size_t>(ricevuto.size())));
        qint32 coda = 0;
        qsizetype documenti = 0;
        for (const pugi::xml_node q : doc.document_element().children()) {
            EXPECT_EQ(QString::fromUtf8(q.name()), u"Coda_"_s + QString::number(coda)) << def.Chiave;
            for (const pugi::xml_node n : q.children()) {
                const auto figli = n.children();
                const qsizetype campi = std::distance(figli.begin(), figli.end());
                ASSERT_EQ(campi, static_cast<qsizetype>(def.Campi.size()) + 1) << def.Chiave;
                const QString id = QString::fromUtf8(n.first_child().child_value());
                const DatiDocumento* d = c->Trova(id);
                ASSERT_NE(d, nullptr) << qPrintable(id);
                EXPECT_EQ(d->Coda, coda);
                for (const pugi::xml_node l : n.last_child().children()) {
                    const auto campiL = l.children();
                    EXPECT_EQ(std::distance(campiL.begin(), campiL.end()), 2);
                }
                ++documenti;
            }
            ++coda;
        }
        EXPECT_EQ(coda, def.NumeroCode);
        EXPECT_EQ(documenti, c->Totale());
    }
}

TEST_F(Cartelle, ListingFieldsFollowTheColumnsAndDatesReadAsDates)
{
    const QString id = Fax().Coda(8).value(0);
    ASSERT_FALSE(id.isEmpty());
    const DatiDocumento& d = *Fax().Trova(id);
    pugi::xml_document doc;
    ASSERT_TRUE(doc.load_string(Fax().Nodo(id).toUtf8().constData()));
    QStringList campi;
    for (const pugi::xml_node f : doc.document_element().children())
        campi << QString::fromUtf8(f.child_value());
    // id, description, state, user, international and local prefixes, number, priority, in, done
    EXPECT_EQ(campi.mid(0, 7), (QStringList{d.Id, d.Descrizione, d.Stato, d.Utente, d.PrefissoInternazionale,
                                            d.PrefissoLocale, d.NumeroFax}));
    EXPECT_TRUE(modDate::Leggi(campi[8]).isValid());
    EXPECT_TRUE(modDate::Leggi(campi[9]).isValid());
    const int conCollegati = [&] {
        int n = 0;
        for (qint32 q = 0; q < 13; ++q)
            for (const QString& i : Fax().Coda(q))
                n += Fax().Trova(i)->Collegati.isEmpty() ? 0 : 1;
        return n;
    }();
    EXPECT_GT(conCollegati, 0) << "the demo has linked fax documents";
}

TEST_F(Cartelle, AMixedSelectionWithAnUnknownIdMovesNothing)
{
    RefServizio* fax = mServer->ServizioRef(u"PxSrvFax"_s);
    SpiaSpostamenti spia(fax);
    const QStringList presi = Fax().Coda(8, 3);
    ASSERT_EQ(presi.size(), 3);
    EXPECT_FALSE(Fax().SpostaSelezione(Selezione(presi + QStringList{u"FAX-999999"_s}), 2).Riuscita());
    EXPECT_FALSE(Fax().SpostaSelezione(Selezione(presi), 13).Riuscita()) << "queue 13 does not exist";
    EXPECT_FALSE(Fax().SpostaSelezione(Selezione(presi), -1).Riuscita());
    EXPECT_FALSE(Fax().SpostaSelezione(u"<Root><ID>"_s, 2).Riuscita()) << "malformed selection";
    EXPECT_EQ(spia.Notizie(), 0);
    for (const QString& id : presi)
        EXPECT_EQ(Fax().Trova(id)->Coda, 8);
    ControllaCoerenza(Fax());

    EXPECT_TRUE(Fax().SpostaSelezione(Selezione(presi + QStringList{presi[0]}), 2).Riuscita()) << "a repeated id counts once";
    const std::vector<modContratto::Spostamento> spostati = spia.Tutti();
    ASSERT_EQ(spostati.size(), 3u);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(spostati[i].Coda, 2);
        EXPECT_EQ(spostati[i].Id, presi[i]);
        pugi::xml_document nodo;
        ASSERT_TRUE(nodo.load_string(spostati[i].Nodo.toUtf8().constData()));
        EXPECT_EQ(QString::fromUtf8(nodo.document_element().first_child().child_value()), presi[i]);
        EXPECT_TRUE(QFileInfo::exists(Fax().Radice() + u"/Coda_2/"_s + presi[i] + u'/' + presi[i] + u".xml"_s));
    }
    ControllaCoerenza(Fax());
}

// Moves asked together share their syncs: each is in the index at once, and their notice (one
// for the batch) and answers come once the batch is on disk and its descriptions in place; a
// description and its spare trade places, so no file is made or freed; a worker's move of a
// document in the batch completes the batch first.
TEST_F(Cartelle, MovesAskedTogetherAreAnsweredAndAnnouncedOnceTheyAreOnDisk)
{
    RefServizio* fax = mServer->ServizioRef(u"PxSrvFax"_s);
    SpiaSpostamenti spia(fax);
    QSignalSpy risposte(&Fax(), &RefCartellaDocumenti::Risposta);
    const QStringList presi = Fax().Coda(8, 4);
    ASSERT_EQ(presi.size(), 4);
    const auto descrizione = [&](const QString& id) { return Fax().CartellaDocumentoDi(id) + u'/' + id + u".xml"_s; };
    const auto inode = [](const QString& percorso) {
        struct stat s {};
        return ::lstat(QFile::encodeName(percorso).constData(), &s) == 0 ? s.st_ino : ino_t{0};
    };
    const ino_t primo = inode(descrizione(presi[0]));
    ASSERT_NE(primo, ino_t{0});
    for (int i = 0; i < 3; ++i)
        Fax().SpostaDocumenti(static_cast<quint64>(100 + i), Selezione({presi[i]}), 2);
    Fax().SpostaDocumenti(200, Selezione({u"FAX-999999"_s}), 2);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(Fax().Trova(presi[i])->Coda, 2) << "moved in the index at once";
    EXPECT_EQ(spia.Notizie(), 0) << "no notice before the batch is on disk";
    EXPECT_TRUE(risposte.isEmpty()) << "no answer either";
    EXPECT_EQ(inode(descrizione(presi[0])), primo) << "the new description waits in the spare";
    const ino_t riserva = inode(modDisco::NomeRiserva(descrizione(presi[0])));
    EXPECT_NE(riserva, ino_t{0});

    QCoreApplication::processEvents();
    EXPECT_EQ(spia.Notizie(), 1) << "the batch's moves travel as one notice";
    ASSERT_EQ(spia.Tutti().size(), 3u);
    ASSERT_EQ(risposte.size(), 4);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(spia.Tutti()[i].Id, presi[i]);
        EXPECT_EQ(risposte[i][0].toULongLong(), static_cast<quint64>(100 + i));
        EXPECT_EQ(risposte[i][1].toInt(), modContratto::Ok);
    }
    EXPECT_EQ(risposte[3][1].toInt(), modContratto::Rifiutato) << "a refusal waits its turn in the batch";
    EXPECT_EQ(inode(descrizione(presi[0])), riserva) << "in place";
    EXPECT_EQ(inode(modDisco::NomeRiserva(descrizione(presi[0]))), primo) << "the old one kept as the next spare";
    ControllaCoerenza(Fax());

    // A batch still open when a worker moves one of its documents: completed first, so the
    // worker's move and description are the last word.
    Fax().SpostaDocumenti(300, Selezione({presi[3]}), 2);
    EXPECT_EQ(Fax().Sposta(presi[3], 5, u"Preso dal lavoratore"_s), QString());
    const std::vector<modContratto::Spostamento> spostati = spia.Tutti();
    ASSERT_EQ(spostati.size(), 5u) << "the batch's notice, then the worker's";
    EXPECT_EQ(spostati[3].Coda, 2);
    EXPECT_EQ(spostati[4].Coda, 5);
    ControllaCoerenza(Fax());
    Apri(); // a start reads back what is on disk
    EXPECT_EQ(Fax().Trova(presi[3])->Coda, 5);
    EXPECT_EQ(Fax().Trova(presi[3])->Stato, u"Preso dal lavoratore"_s);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(Fax().Trova(presi[i])->Coda, 2);
}

TEST_F(Cartelle, DocumentObjectPathsAndCounters)
{
    const QString id = Fax().Coda(8).value(0);
    const QString documento = Fax().DocumentoXml(id);
    pugi::xml_document doc;
    ASSERT_TRUE(doc.load_string(documento.toUtf8().constData()));
    EXPECT_STREQ(doc.document_element().name(), "Documento");
    EXPECT_TRUE(doc.document_element().child("Proprieta"));
    EXPECT_TRUE(doc.document_element().child("ElencoFile").first_child());
    EXPECT_TRUE(QFileInfo(Fax().CartellaDocumentoDi(id)).isDir());
    const QString tif = Fax().FileOutputDi(id);
    ASSERT_FALSE(tif.isEmpty());
    EXPECT_EQ(PagineTiff(tif), std::clamp(Fax().Trova(id)->Pagine, 1, 3));
    EXPECT_EQ(Fax().DocumentoXml(u"FAX-999999"_s), QString());
    EXPECT_EQ(Fax().CartellaDocumentoDi(u"FAX-999999"_s), QString());

    pugi::xml_document stato;
    ASSERT_TRUE(stato.load_string(mServer->ServizioRef(u"PxSrvDocFax"_s)->StatoXml().toUtf8().constData()));
    EXPECT_EQ(stato.document_element().select_node("Fax/Count").node().text().as_llong(), Fax().Totale());
    EXPECT_EQ(stato.document_element().select_node("Fax/Trasmessi").node().text().as_llong(), Fax().Conteggio(8));
}

TEST_F(Cartelle, WorkersMoveDocumentsAndWriteOutputs)
{
    RefCartellaDocumenti& email = *mServer->Cartella(GenereCartella::Email);
    const QStringList daConvertire = Fax().Coda(0);
    const QStringList emailDaConvertire = email.Coda(0);
    ASSERT_FALSE(daConvertire.isEmpty());
    mServer->Lavoratori().ImpostaPerPasso(1000);
    mServer->Lavoratori().Lavora();
    for (const QString& id : daConvertire)
        EXPECT_EQ(Fax().Trova(id)->Coda, 1);
    mServer->Lavoratori().Lavora();
    for (const QString& id : daConvertire) {
        EXPECT_EQ(Fax().Trova(id)->Coda, 2);
        EXPECT_GE(PagineTiff(Fax().FileOutputDi(id)), 1);
    }
    mServer->Lavoratori().Lavora();
    for (const QString& id : emailDaConvertire)
        EXPECT_TRUE(Leggi(email.FileOutputDi(id)).startsWith("%PDF-")) << qPrintable(id);
    ControllaCoerenza(Fax());
    ControllaCoerenza(email);
}

TEST_F(Cartelle, ASuspendedServiceStopsItsFolderAndASuspendedWorkerItsStage)
{
    RefCartellaDocumenti& stampe = *mServer->Cartella(GenereCartella::Stampa);
    mServer->ServizioRef(u"PxSrvFax"_s)->SospendiServizio();
    const QStringList fax0 = Fax().Coda(0), stampe0 = stampe.Coda(0);
    ASSERT_FALSE(fax0.isEmpty());
    ASSERT_FALSE(stampe0.isEmpty());
    mServer->Lavoratori().ImpostaPerPasso(1000);
    mServer->Lavoratori().Lavora();
    EXPECT_EQ(Fax().Coda(0), fax0) << "the suspended fax service moved documents";
    EXPECT_TRUE(stampe.Coda(0).isEmpty()) << "the printing service kept working";

    mServer->ServizioRef(u"PxSrvFax"_s)->AvviaServizio();
    mServer->ServizioRef(u"PxSrvFaxVm"_s)->SospendiServizio();
    const QStringList fax2 = Fax().Coda(2);
    mServer->Lavoratori().Lavora();
    EXPECT_TRUE(Fax().Coda(0).isEmpty()) << "conversion runs";
    for (const QString& id : fax2)
        EXPECT_EQ(Fax().Trova(id)->Coda, 2) << "transmission is suspended";
}

TEST_F(Cartelle, DocumentsThatCannotMoveNeverStopTheirStageAndAreReportedOnce)
{
    // Conversion to TIFF takes queue 1 to 2; the first three of queue 1 cannot get there (a
    // file already has their name in queue 2, so the rename is refused, even to root).
    RefServizio* tif = mServer->ServizioRef(u"PxSrvTifVm"_s);
    mServer->Lavoratori().ImpostaPerPasso(3);
    ASSERT_TRUE(Fax().SpostaSelezione(Selezione(Fax().Coda(8, 6)), 1).Riuscita());
    const QStringList coda = Fax().Coda(1);
    ASSERT_GE(coda.size(), 8);
    const QStringList bloccati = coda.mid(0, 3);
    for (const QString& id : bloccati) {
        QFile ostacolo(Fax().Radice() + u"/Coda_2/"_s + id);
        ASSERT_TRUE(ostacolo.open(QIODevice::WriteOnly));
    }
    QSignalSpy errori(tif, &RefServizio::NotificaErrore);
    for (int tick = 0; tick < 6; ++tick)
        mServer->Lavoratori().Lavora();
    for (const QString& id : coda.mid(3))
        EXPECT_NE(Fax().Trova(id)->Coda, 1) << qPrintable(id) << " waited behind the stuck ones";
    for (const QString& id : bloccati) {
        EXPECT_EQ(Fax().Trova(id)->Coda, 1);
        EXPECT_TRUE(Fax().Trova(id)->Stato.startsWith(u"Bloccato: "_s)) << qPrintable(Fax().Trova(id)->Stato);
    }
    EXPECT_EQ(errori.size(), 3) << "one report per stuck document, not one per tick";
    EXPECT_EQ(mServer->Lavoratori().Bloccati(), 3);
    ControllaCoerenza(Fax());

    // The obstacle goes: each is retried within its growing interval and moves on.
    for (const QString& id : bloccati)
        ASSERT_TRUE(QFile::remove(Fax().Radice() + u"/Coda_2/"_s + id));
    for (int tick = 0; tick < 10; ++tick)
        mServer->Lavoratori().Lavora();
    for (const QString& id : bloccati)
        EXPECT_NE(Fax().Trova(id)->Coda, 1) << qPrintable(id);
    EXPECT_EQ(mServer->Lavoratori().Bloccati(), 0);
    ControllaCoerenza(Fax());
}

TEST_F(Cartelle, NamesFromDescriptionsAndLinksInADocumentNeverLeadOutOfItsFolder)
{
    const QString segreto = mDir.filePath(u"segreto.txt"_s);
    { QFile f(segreto); ASSERT_TRUE(f.open(QIODevice::WriteOnly)); f.write("riservato"); }
    // A description edited to name files outside its folder.
    const QString id = Fax().Coda(8).value(0);
    DatiDocumento d = *Fax().Trova(id);
    const QString cartella = Fax().CartellaDocumentoDi(id);
    d.FileCorpo = QDir(cartella).relativeFilePath(segreto);
    d.FileLog = u"../../../../fuori.log"_s;
    ASSERT_TRUE(d.FileCorpo.startsWith(u"../"_s));
    { QFile f(cartella + u'/' + id + u".xml"_s); ASSERT_TRUE(f.open(QIODevice::WriteOnly)); f.write(RefCartellaDocumenti::TestoDescrizione(d, cartella)); }
    // Another document brings a link to the secret among its files.
    const QString altro = Fax().Coda(8).value(1);
    ASSERT_EQ(::symlink(QFile::encodeName(segreto).constData(),
                        QFile::encodeName(Fax().CartellaDocumentoDi(altro) + u"/allegato.txt"_s).constData()), 0);
    Apri();
    ASSERT_NE(Fax().Trova(id), nullptr);
    EXPECT_TRUE(Fax().Trova(id)->FileCorpo.isEmpty());
    EXPECT_FALSE(Fax().Trova(id)->FileLog.contains(u'/')) << "only a name, in the folder";

    RefCartellaDocumenti& anteprime = *mServer->Cartella(GenereCartella::Anteprima);
    const QStringList primaAnteprime = anteprime.Coda(0);
    ASSERT_TRUE(Fax().Anteprime(Selezione({id}), u"127.0.0.1"_s).Riuscita());
    for (const QString& nuovo : anteprime.Coda(0)) {
        if (primaAnteprime.contains(nuovo))
            continue;
        const QDir dir(anteprime.CartellaDocumentoDi(nuovo));
        for (const QString& nome : dir.entryList(QDir::Files))
            EXPECT_FALSE(Leggi(dir.filePath(nome)).contains("riservato")) << qPrintable(nome);
    }
    ASSERT_TRUE(Fax().SpostaSelezione(Selezione({id}), 2).Riuscita());
    EXPECT_FALSE(QFileInfo::exists(QDir(cartella).absoluteFilePath(u"../../../../fuori.log"_s)));

    RefCartellaDocumenti& email = *mServer->Cartella(GenereCartella::Email);
    const QStringList primaEmail = email.Coda(0);
    ASSERT_TRUE(Fax().Comprimi(Selezione({altro})).Riuscita());
    for (const QString& nuovo : email.Coda(0)) {
        if (primaEmail.contains(nuovo))
            continue;
        const QDir dir(email.CartellaDocumentoDi(nuovo));
        for (const QString& nome : dir.entryList({u"*.pxz"_s}, QDir::Files))
            for (const QString& dentro : Decomprimi(dir.filePath(nome), {}))
                EXPECT_FALSE(dentro.endsWith(u"allegato.txt"_s)) << "the link was followed";
    }
    QFile f(segreto);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), QByteArray("riservato"));
}


TEST_F(Cartelle, AFaultAtAnyStepOfTakingAJobLosesNothingAndSplitsNothing)
{
    RefIngresso* ingresso = mServer->Ingresso(u"PxSrvFax"_s);
    PxIntestazioneHpx h;
    h.ScriviIntero({}, u"Tipo"_s, 2);
    h.ScriviTesto(u"PROPRIETA"_s, u"Descrizione"_s, u"Fax nel guasto"_s);
    h.ScriviTesto(u"FAX"_s, u"NumeroFax"_s, u"5551234"_s);
    int passo = 1;
    QString ultimoId;
    for (bool guastata = true; guastata; ++passo) {
        const QString base = ingresso->Cartella() + u"/lavoro-"_s + QString::number(passo);
        const QByteArray corpo = "Corpo del lavoro " + QByteArray::number(passo);
        for (const auto& [estensione, dati] : {std::pair{u".spx"_s, QByteArray("<PLX/>")}, std::pair{u".bpx"_s, corpo},
                                               std::pair{u".hpx"_s, h.Serializza()}}) {
            QFile f(base + estensione);
            ASSERT_TRUE(f.open(QIODevice::WriteOnly));
            f.write(dati);
        }
        const qsizetype prima = Fax().Totale();
        {
            OperazioniGuaste guasto(passo);
            ingresso->Scansiona();
            guastata = guasto.Guastata();
        }
        // Either a whole document, or the whole job still waiting: never half of each.
        const bool preso = Fax().Totale() == prima + 1;
        EXPECT_TRUE(preso || Fax().Totale() == prima) << "step " << passo;
        for (const char* estensione : {".spx", ".bpx", ".hpx"})
            EXPECT_EQ(QFileInfo::exists(base + QString::fromLatin1(estensione)), !preso) << "step " << passo << estensione;
        for (qint32 coda = 0; coda < Fax().Definizione().NumeroCode; ++coda)
            EXPECT_TRUE(QDir(Fax().Radice() + u"/Coda_"_s + QString::number(coda)).entryList({u".*.nuovo"_s}, QDir::Dirs | QDir::Hidden).isEmpty())
                << "step " << passo << ": a creation left behind";
        // With the disk back, the job is taken once, whole, and failed tries used up no id.
        ingresso->Scansiona();
        ASSERT_EQ(Fax().Totale(), prima + 1) << "step " << passo;
        const QString id = Fax().Coda(0).last();
        if (!ultimoId.isEmpty()) {
            EXPECT_EQ(id.mid(4).toInt(), ultimoId.mid(4).toInt() + 1) << "step " << passo;
        }
        ultimoId = id;
        EXPECT_EQ(Leggi(Fax().CartellaDocumentoDi(id) + u'/' + id + u".bpx"_s), corpo) << "step " << passo;
        ControllaCoerenza(Fax());
    }
    EXPECT_GT(passo, 12) << "every operation of taking a job was failed once";
    Apri(); // and a start agrees with what is on disk
    ControllaCoerenza(Fax());
}

TEST_F(Cartelle, AFaultAtAnyStepOfAMoveLeavesTheDocumentInExactlyOneQueue)
{
    int passo = 1;
    for (bool guastata = true; guastata; ++passo) {
        const QString id = Fax().Coda(8).value(0);
        ASSERT_FALSE(id.isEmpty());
        {
            OperazioniGuaste guasto(passo);
            Fax().SpostaSelezione(Selezione({id}), 2);
            guastata = guasto.Guastata();
        }
        ControllaCoerenza(Fax());
        const qint32 coda = Fax().Trova(id)->Coda;
        EXPECT_TRUE(coda == 8 || coda == 2) << "step " << passo;
    }
    EXPECT_GT(passo, 4);
    // A start corrects every description that a failed rewrite left naming the old queue.
    Apri();
    ControllaCoerenza(Fax());
    for (const QString& id : Fax().Coda(2)) {
        pugi::xml_document doc;
        ASSERT_TRUE(doc.load_file(QFile::encodeName(Fax().CartellaDocumentoDi(id) + u'/' + id + u".xml"_s).constData()));
        DatiDocumento letto;
        ASSERT_TRUE(modProprieta::Leggi(doc.document_element(), letto));
        EXPECT_EQ(letto.Coda, 2) << qPrintable(id);
    }
}

TEST_F(Cartelle, RejectedTwiceIsDiscarded)
{
    mServer->Lavoratori().ImpostaPercentualeRespinti(100);
    mServer->Lavoratori().ImpostaPerPasso(1000);
    const QStringList presi = Fax().Coda(1);
    ASSERT_FALSE(presi.isEmpty());
    mServer->Lavoratori().Lavora();
    for (const QString& id : presi) {
        EXPECT_EQ(Fax().Trova(id)->Coda, 9);
        EXPECT_FALSE(Fax().Trova(id)->Errore.isEmpty());
    }
    ASSERT_TRUE(Fax().SpostaSelezione(Selezione(presi), 1).Riuscita());
    mServer->Lavoratori().Lavora();
    for (const QString& id : presi)
        EXPECT_EQ(Fax().Trova(id)->Coda, 10);
}

TEST_F(Cartelle, InputJobsBecomeDocumentsAndBadHeadersAreSetAside)
{
    RefIngresso* ingresso = mServer->Ingresso(u"PxSrvStampe"_s);
    ASSERT_NE(ingresso, nullptr);
    RefCartellaDocumenti& stampe = *mServer->Cartella(GenereCartella::Stampa);
    const qsizetype prima = stampe.Totale();
    const QString base = ingresso->Cartella() + u"/Pagina di prova di Laser-1"_s;
    PxIntestazioneHpx h;
    h.ScriviIntero({}, u"Tipo"_s, 2);
    h.ScriviTesto(u"PROPRIETA"_s, u"Descrizione"_s, u"Stampa pagina di prova di Laser"_s);
    h.ScriviTesto(u"PROPRIETA"_s, u"Utente"_s, u"operatore"_s);
    h.ScriviTesto(u"STAMPA"_s, u"Stampante"_s, u"Laser amministrazione"_s);
    h.ScriviIntero(u"STAMPA"_s, u"Numero"_s, 4);
    QFile(base + u".spx"_s).open(QIODevice::WriteOnly);
    { QFile f(base + u".bpx"_s); ASSERT_TRUE(f.open(QIODevice::WriteOnly)); f.write("Riga 1\r\n"); }
    { QFile f(base + u".hpx"_s); ASSERT_TRUE(f.open(QIODevice::WriteOnly)); f.write(h.Serializza()); }
    // Two bad jobs: a header that does not parse, and one without a printer.
    const QString rotto = ingresso->Cartella() + u"/rotto"_s;
    { QFile f(rotto + u".bpx"_s); ASSERT_TRUE(f.open(QIODevice::WriteOnly)); f.write("x"); }
    { QFile f(rotto + u".hpx"_s); ASSERT_TRUE(f.open(QIODevice::WriteOnly)); f.write("<HPX Versione=\"2.0.0\"><Valore"); }
    const QString incompleto = ingresso->Cartella() + u"/incompleto"_s;
    PxIntestazioneHpx h2 = h;
    PxIntestazioneHpx senzaStampante;
    senzaStampante.ScriviIntero({}, u"Tipo"_s, 2);
    senzaStampante.ScriviTesto(u"PROPRIETA"_s, u"Descrizione"_s, u"x"_s);
    { QFile f(incompleto + u".bpx"_s); ASSERT_TRUE(f.open(QIODevice::WriteOnly)); f.write("x"); }
    { QFile f(incompleto + u".hpx"_s); ASSERT_TRUE(f.open(QIODevice::WriteOnly)); f.write(senzaStampante.Serializza()); }

    SpiaSpostamenti spia(mServer->ServizioRef(u"PxSrvStampe"_s));
    EXPECT_EQ(ingresso->Scansiona(), 1);
    EXPECT_EQ(stampe.Totale(), prima + 1);
    const std::vector<modContratto::Spostamento> spostati = spia.Tutti();
    ASSERT_EQ(spostati.size(), 1u);
    EXPECT_EQ(spostati[0].Coda, 0);
    const DatiDocumento* d = stampe.Trova(spostati[0].Id);
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->Descrizione, u"Stampa pagina di prova di Laser"_s);
    EXPECT_EQ(d->Stampante, u"Laser amministrazione"_s);
    EXPECT_EQ(Leggi(stampe.CartellaDocumentoDi(d->Id) + u'/' + d->FileCorpo), QByteArray("Riga 1\r\n"));
    EXPECT_FALSE(d->FileScript.isEmpty());
    EXPECT_TRUE(QDir(ingresso->Cartella()).entryList(QDir::Files).isEmpty()) << "every file was taken or set aside";
    const QStringList messi = QDir(ingresso->CartellaRespinti()).entryList(QDir::Files);
    EXPECT_EQ(messi, (QStringList{u"incompleto.bpx"_s, u"incompleto.hpx"_s, u"rotto.bpx"_s, u"rotto.hpx"_s}));
    const QByteArray log = Leggi(mServer->ServizioRef(u"PxSrvStampe"_s)->Log().Percorso());
    EXPECT_TRUE(log.contains("Lavoro rotto respinto, intestazione non valida"));
    EXPECT_TRUE(log.contains("manca STAMPA/Stampante"));
    ControllaCoerenza(stampe);
    Q_UNUSED(h2);
}

TEST_F(Cartelle, ARestartFindsEveryDocumentWhereItWasAndSkipsCorruptOnes)
{
    const QString id = Fax().Coda(8).value(0);
    ASSERT_TRUE(Fax().SpostaSelezione(Selezione({id}), 3).Riuscita());
    const QString vittima = Fax().Coda(9).value(0);
    ASSERT_FALSE(vittima.isEmpty());
    { QFile f(Fax().CartellaDocumentoDi(vittima) + u'/' + vittima + u".xml"_s); ASSERT_TRUE(f.open(QIODevice::WriteOnly)); f.write("<Documento"); }
    QDir().mkpath(Fax().Radice() + u"/Coda_0/vuota"_s);
    // A creation cut short by a crash: its files are set aside, not lost and not loaded.
    const QString interrotta = Fax().Radice() + u"/Coda_0/.FAX-777777.nuovo"_s;
    QDir().mkpath(interrotta);
    { QFile f(interrotta + u"/lavoro.bpx"_s); ASSERT_TRUE(f.open(QIODevice::WriteOnly)); f.write("corpo"); }
    const qsizetype prima = Fax().Totale();
    Apri();
    EXPECT_FALSE(QFileInfo::exists(interrotta));
    const QStringList messi = QDir(mDir.filePath(u"LavoriRespinti/PxSrvFax"_s)).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    ASSERT_EQ(messi.size(), 1);
    EXPECT_TRUE(messi[0].startsWith(u"FAX-777777-interrotto-"_s));
    EXPECT_EQ(Leggi(mDir.filePath(u"LavoriRespinti/PxSrvFax/"_s + messi[0] + u"/lavoro.bpx"_s)), QByteArray("corpo"));
    EXPECT_EQ(Fax().Trova(id)->Coda, 3);
    EXPECT_EQ(Fax().Trova(vittima), nullptr);
    EXPECT_EQ(Fax().Totale(), prima - 1);
    const QByteArray log = Leggi(QDir(RefServer::CartellaLog(mDir.path())).filePath(u"PxSrvServer.log"_s));
    EXPECT_TRUE(log.contains(vittima.toUtf8() + " saltato"));
    EXPECT_TRUE(log.contains("vuota saltato"));
    const QString nuovo = Fax().NuovoId();
    EXPECT_EQ(Fax().Trova(nuovo), nullptr) << "new ids never reuse a loaded one";
}

TEST_F(Cartelle, IdsOfUnreadableDocumentsAndOfCreationsSetAsideAreNeverHandedOutAgain)
{
    // The highest id of the folder, made unreadable: its folder still holds that id.
    QStringList tutti;
    for (qint32 coda = 0; coda < Fax().Definizione().NumeroCode; ++coda)
        tutti << Fax().Coda(coda);
    tutti.sort();
    const QString ultimo = tutti.last();
    { QFile f(Fax().CartellaDocumentoDi(ultimo) + u'/' + ultimo + u".xml"_s); ASSERT_TRUE(f.open(QIODevice::WriteOnly)); f.write("<Documento"); }
    Apri();
    ASSERT_EQ(Fax().Trova(ultimo), nullptr);
    const QString dopoIlSaltato = Fax().NuovoId();
    EXPECT_GT(dopoIlSaltato, ultimo) << qPrintable(dopoIlSaltato);

    // A creation a crash interrupted is set aside under its id; that id stays taken too.
    const qint32 numero = dopoIlSaltato.mid(4).toInt() + 50;
    const QString interrotto = QStringLiteral("FAX-%1").arg(numero, 6, 10, QChar(u'0'));
    QDir().mkpath(Fax().Radice() + u"/Coda_0/."_s + interrotto + u".nuovo"_s);
    Apri();
    EXPECT_GT(Fax().NuovoId(), interrotto);

    // A folder that appears on disk while the server runs is not handed out either.
    const QString prossimo = QStringLiteral("FAX-%1").arg(numero + 1, 6, 10, QChar(u'0'));
    Apri();
    QDir().mkpath(Fax().Radice() + u"/Coda_5/"_s + prossimo);
    EXPECT_NE(Fax().NuovoId(), prossimo);
}

TEST_F(Cartelle, PreviewsAndCompressedSendCreateDocumentsElsewhere)
{
    RefCartellaDocumenti& anteprime = *mServer->Cartella(GenereCartella::Anteprima);
    RefCartellaDocumenti& email = *mServer->Cartella(GenereCartella::Email);
    const QStringList presi = Fax().Coda(8, 2);
    const qsizetype a = anteprime.Totale(), e = email.Totale();
    EXPECT_TRUE(Fax().Anteprime(Selezione(presi), u"127.0.0.1"_s).Riuscita());
    EXPECT_EQ(anteprime.Totale(), a + 2);
    EXPECT_TRUE(Fax().Comprimi(Selezione(presi)).Riuscita());
    ASSERT_EQ(email.Totale(), e + 1);
    const QString nuovo = email.Coda(0).constLast();
    const QDir cartella(email.CartellaDocumentoDi(nuovo));
    const QStringList archivi = cartella.entryList({u"*.pxz"_s});
    ASSERT_EQ(archivi.size(), 1);
    // Read back by Debian's unzip: any recipient's tools open it.
    const QString archivio = cartella.filePath(archivi[0]);
    const QStringList nomi = Decomprimi(archivio, {});
    ASSERT_FALSE(nomi.isEmpty());
    EXPECT_TRUE(nomi.front().startsWith(presi[0] + u'/'));
    const QString descrizione = presi[0] + u'/' + presi[0] + u".xml"_s;
    ASSERT_TRUE(nomi.contains(descrizione));
    EXPECT_EQ(Decomprimi(archivio, descrizione).join(u'\n').toUtf8(),
              Leggi(Fax().CartellaDocumentoDi(presi[0]) + u'/' + presi[0] + u".xml"_s));
    EXPECT_FALSE(Fax().Comprimi(Selezione({u"FAX-999999"_s})).Riuscita());
}

TEST_F(Cartelle, StressMovesWhileWorkersRunKeepEveryDocumentOnce)
{
    mServer->Lavoratori().ImpostaPercentualeRespinti(10);
    std::mt19937 caso(7);
    QHash<QString, qsizetype> totali;
    for (const modCartelle::Definizione& def : modCartelle::Cartelle())
        totali.insert(QString::fromLatin1(def.Chiave), mServer->CartellaRef(QString::fromLatin1(def.Chiave))->Totale());
    int comandi = 0;
    for (int giro = 0; giro < 60; ++giro) {
        for (const modCartelle::Definizione& def : modCartelle::Cartelle()) {
            RefCartellaDocumenti& c = *mServer->CartellaRef(QString::fromLatin1(def.Chiave));
            const qint32 da = static_cast<qint32>(caso() % static_cast<unsigned>(def.NumeroCode));
            QStringList presi = c.Coda(da, 1 + static_cast<int>(caso() % 4));
            if (caso() % 5 == 0)
                presi << u"SCONOSCIUTO"_s; // refused whole
            const qint32 a = static_cast<qint32>(caso() % static_cast<unsigned>(def.NumeroCode + 1)); // sometimes invalid
            c.SpostaSelezione(Selezione(presi), a);
            ++comandi;
        }
        if (giro % 3 == 0)
            mServer->Lavoratori().Lavora();
        if (giro % 10 == 0)
            mServer->ServizioRef(u"PxSrvFax"_s)->SospendiServizio();
        if (giro % 10 == 5)
            mServer->ServizioRef(u"PxSrvFax"_s)->AvviaServizio();
    }
    for (const modCartelle::Definizione& def : modCartelle::Cartelle()) {
        const RefCartellaDocumenti& c = *mServer->CartellaRef(QString::fromLatin1(def.Chiave));
        ControllaCoerenza(c);
        EXPECT_EQ(c.Totale(), totali.value(QString::fromLatin1(def.Chiave))) << def.Chiave;
    }
    // And a fresh start reads back exactly the same.
    QHash<QString, qint32> code;
    for (qint32 q = 0; q < 13; ++q)
        for (const QString& id : Fax().Coda(q))
            code.insert(id, q);
    Apri();
    for (auto it = code.cbegin(); it != code.cend(); ++it)
        ASSERT_EQ(Fax().Trova(it.key())->Coda, it.value());
    EXPECT_GT(comandi, 0);
}

TEST(modDemoDocumenti, SameNumberSameDocuments)
{
    QTemporaryDir a, b;
    ASSERT_EQ(modDemo::CreaServerDemo(a.path(), 150), QString());
    ASSERT_EQ(modDemo::CreaServerDemo(b.path(), 150), QString());
    QStringList fa, fb;
    for (QDirIterator it(a.path() + u"/Documenti"_s, QDir::Files, QDirIterator::Subdirectories); it.hasNext();)
        fa << QDir(a.path()).relativeFilePath(it.next());
    for (QDirIterator it(b.path() + u"/Documenti"_s, QDir::Files, QDirIterator::Subdirectories); it.hasNext();)
        fb << QDir(b.path()).relativeFilePath(it.next());
    fa.sort();
    fb.sort();
    ASSERT_EQ(fa, fb);
    EXPECT_GT(fa.size(), 150 * 4);
    for (const QString& f : fa) {
        // Descriptions name their own folder, which differs; everything else is equal byte for byte.
        if (f.endsWith(u".xml"_s))
            continue;
        ASSERT_EQ(Leggi(a.filePath(f)), Leggi(b.filePath(f))) << qPrintable(f);
    }
    RefServer s(a.path(), RefServer::Opzioni{false});
    qsizetype totale = 0;
    for (const modCartelle::Definizione& def : modCartelle::Cartelle()) {
        const RefCartellaDocumenti& c = *s.CartellaRef(QString::fromLatin1(def.Chiave));
        totale += c.Totale();
        EXPECT_GT(c.Totale(), 0) << def.Chiave;
    }
    EXPECT_EQ(totale, 150);
}

TEST(RefIngresso, AJobDroppedIntoARunningServerIsTakenWithoutAsking)
{
    QTemporaryDir dir;
    ASSERT_EQ(modDemo::CreaServerDemo(dir.path(), 0), QString());
    RefServer server(dir.path()); // timers and file watchers on, as in use
    SpiaSpostamenti spia(server.ServizioRef(u"PxSrvFax"_s));
    const QString base = server.Ingresso(u"PxSrvFax"_s)->Cartella() + u"/fax-di-prova"_s;
    PxIntestazioneHpx h;
    h.ScriviIntero({}, u"Tipo"_s, 2);
    h.ScriviTesto(u"PROPRIETA"_s, u"Descrizione"_s, u"Fax di prova"_s);
    h.ScriviTesto(u"FAX"_s, u"NumeroFax"_s, u"5551234"_s);
    // Written aside and renamed into place, body first and header last, as clients do.
    for (const auto& [estensione, dati] : {std::pair{u".bpx"_s, QByteArray("Testo del fax\r\n")},
                                           std::pair{u".hpx"_s, h.Serializza()}}) {
        QFile f(base + u".tmp"_s);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(dati);
        f.close();
        ASSERT_TRUE(QFile::rename(base + u".tmp"_s, base + estensione));
    }
    ASSERT_TRUE(spia.Attendi());
    const std::vector<modContratto::Spostamento> spostati = spia.Tutti();
    ASSERT_FALSE(spostati.empty());
    EXPECT_EQ(spostati[0].Coda, 0);
    EXPECT_NE(server.Cartella(GenereCartella::Fax)->Trova(spostati[0].Id), nullptr);
}
