// Input folders against hostile jobs: links, pipes, devices and huge headers are set aside
// whole, without being followed or read past a limit, and the folder goes on. What a job
// became, a document or a job set aside, is told to the consoles over either transport.
#include "PxCollegamento.h"
#include "PxCollegamentoRemoto.h"
#include "PxIntestazioneHpx.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"
#include "RefCartellaDocumenti.h"
#include "RefIngresso.h"
#include "RefServer.h"
#include "RefServizio.h"
#include "modDemo.h"
#include "modRemoto.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRemoteObjectHost>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <pugixml.hpp>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

class IngressoOstile : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(modDemo::CreaServerDemo(mDir.path(), 0), QString());
        mServer = std::make_unique<RefServer>(mDir.path(), RefServer::Opzioni{false, true});
        mIngresso = mServer->Ingresso(u"PxSrvFax"_s);
        ASSERT_NE(mIngresso, nullptr);
    }

    static QByteArray Intestazione(const QString& descrizione = u"Fax di prova"_s)
    {
        PxIntestazioneHpx h;
        h.ScriviIntero({}, u"Tipo"_s, 2);
        h.ScriviTesto(u"PROPRIETA"_s, u"Descrizione"_s, descrizione);
        h.ScriviTesto(u"FAX"_s, u"NumeroFax"_s, u"5551234"_s);
        return h.Serializza();
    }

    QString Base(const QString& nome) const { return mIngresso->Cartella() + u'/' + nome; }

    static void Scrivi(const QString& file, const QByteArray& dati)
    {
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(dati);
    }

    // A good job beside the bad ones: it must still be taken.
    void LavoroBuono()
    {
        Scrivi(Base(u"buono"_s) + u".bpx"_s, "Testo\r\n");
        Scrivi(Base(u"buono"_s) + u".hpx"_s, Intestazione());
    }

    QStringList MessiDaParte() const { return QDir(mIngresso->CartellaRespinti()).entryList(QDir::Files | QDir::System, QDir::Name); }

    QTemporaryDir mDir;
    std::unique_ptr<RefServer> mServer;
    RefIngresso* mIngresso = nullptr;
};

} // namespace

TEST_F(IngressoOstile, AHeaderThatIsALinkToADeviceIsSetAsideUnread)
{
    Scrivi(Base(u"zero"_s) + u".bpx"_s, "x");
    ASSERT_EQ(::symlink("/dev/zero", QFile::encodeName(Base(u"zero"_s) + u".hpx"_s).constData()), 0);
    LavoroBuono();
    EXPECT_EQ(mIngresso->Scansiona(), 1) << "the good job is taken, the link does not stop the folder";
    EXPECT_EQ(MessiDaParte(), (QStringList{u"zero.bpx"_s, u"zero.hpx"_s}));
    EXPECT_TRUE(QFileInfo(mIngresso->CartellaRespinti() + u"/zero.hpx"_s).isSymLink()) << "moved as a link";
    EXPECT_TRUE(QDir(mIngresso->Cartella()).isEmpty());
}

TEST_F(IngressoOstile, APipeAndALinkOutsideAreSetAsideAndTheTargetIsLeftAlone)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(Base(u"tubo"_s) + u".hpx"_s).constData(), 0600), 0);
    Scrivi(Base(u"tubo"_s) + u".bpx"_s, "x");
    // A job whose body is a link to a file elsewhere: taking it would bring the link in.
    const QString segreto = mDir.filePath(u"segreto.txt"_s);
    Scrivi(segreto, "riservato");
    Scrivi(Base(u"furbo"_s) + u".hpx"_s, Intestazione());
    ASSERT_EQ(::symlink(QFile::encodeName(segreto).constData(), QFile::encodeName(Base(u"furbo"_s) + u".bpx"_s).constData()), 0);
    EXPECT_EQ(mIngresso->Scansiona(), 0);
    EXPECT_EQ(MessiDaParte(), (QStringList{u"furbo.bpx"_s, u"furbo.hpx"_s, u"tubo.bpx"_s, u"tubo.hpx"_s}));
    QFile f(segreto);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), QByteArray("riservato"));
    EXPECT_EQ(mServer->Cartella(GenereCartella::Fax)->Totale(), 0);
}

TEST_F(IngressoOstile, HeadersAndValuesOverTheirLimitsAreSetAsideNotLoaded)
{
    // A sparse header of 2 GB: it must not be read whole (nor abort the server).
    Scrivi(Base(u"enorme"_s) + u".bpx"_s, "x");
    Scrivi(Base(u"enorme"_s) + u".hpx"_s, Intestazione());
    ASSERT_EQ(::truncate(QFile::encodeName(Base(u"enorme"_s) + u".hpx"_s).constData(), 2LL << 30), 0);
    // One byte over the header's limit, and one value over its own.
    Scrivi(Base(u"lungo"_s) + u".bpx"_s, "x");
    QByteArray lungo = Intestazione();
    lungo.insert(lungo.indexOf("</HPX>"), QByteArray(PxIntestazioneHpx::MassimoTesto - lungo.size() + 1, ' '));
    ASSERT_EQ(lungo.size(), PxIntestazioneHpx::MassimoTesto + 1);
    Scrivi(Base(u"lungo"_s) + u".hpx"_s, lungo);
    Scrivi(Base(u"valore"_s) + u".bpx"_s, "x");
    Scrivi(Base(u"valore"_s) + u".hpx"_s, Intestazione(QString(PxIntestazioneHpx::MassimoValore + 1, u'x')));
    // Exactly at the limits is fine.
    Scrivi(Base(u"alLimite"_s) + u".bpx"_s, "x");
    Scrivi(Base(u"alLimite"_s) + u".hpx"_s, Intestazione(QString(PxIntestazioneHpx::MassimoValore, u'x')));
    EXPECT_EQ(mIngresso->Scansiona(), 1);
    const QStringList messi = MessiDaParte();
    for (const QString& nome : {u"enorme.hpx"_s, u"lungo.hpx"_s, u"valore.hpx"_s})
        EXPECT_TRUE(messi.contains(nome)) << qPrintable(nome);
    EXPECT_FALSE(messi.contains(u"alLimite.hpx"_s));
}

TEST_F(IngressoOstile, ASecondJobOfTheSameNameSetAsideOverwritesNothing)
{
    for (int volta = 0; volta < 3; ++volta) {
        Scrivi(Base(u"doppio"_s) + u".bpx"_s, QByteArray::number(volta));
        Scrivi(Base(u"doppio"_s) + u".hpx"_s, "<non valido");
        EXPECT_EQ(mIngresso->Scansiona(), 0);
    }
    EXPECT_EQ(MessiDaParte(), (QStringList{u"doppio-2.bpx"_s, u"doppio-2.hpx"_s, u"doppio-3.bpx"_s, u"doppio-3.hpx"_s,
                                           u"doppio.bpx"_s, u"doppio.hpx"_s}));
    QFile primo(mIngresso->CartellaRespinti() + u"/doppio.bpx"_s);
    ASSERT_TRUE(primo.open(QIODevice::ReadOnly));
    EXPECT_EQ(primo.readAll(), QByteArray("0"));
}

TEST_F(IngressoOstile, AnOrphanBodyIsReportedOnceAndANumberOutOfRangeIsRefused)
{
    Scrivi(Base(u"orfano"_s) + u".bpx"_s, "corpo");
    for (int volta = 0; volta < 3; ++volta)
        EXPECT_EQ(mIngresso->Scansiona(), 0);
    QFile log(mServer->ServizioRef(u"PxSrvFax"_s)->Log().Percorso());
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_EQ(log.readAll().count("orfano: corpo senza intestazione"), 1);
    EXPECT_TRUE(QFile::exists(Base(u"orfano"_s) + u".bpx"_s)) << "it waits for its header";

    // A printer number that does not fit the document's 32 bits.
    RefIngresso* stampe = mServer->Ingresso(u"PxSrvStampe"_s);
    PxIntestazioneHpx h;
    h.ScriviIntero({}, u"Tipo"_s, 2);
    h.ScriviTesto(u"PROPRIETA"_s, u"Descrizione"_s, u"Stampa"_s);
    h.ScriviTesto(u"STAMPA"_s, u"Stampante"_s, u"Laser"_s);
    h.ScriviIntero(u"STAMPA"_s, u"Numero"_s, 5'000'000'000LL);
    Scrivi(stampe->Cartella() + u"/grande.bpx"_s, "x");
    Scrivi(stampe->Cartella() + u"/grande.hpx"_s, h.Serializza());
    EXPECT_EQ(stampe->Scansiona(), 0);
    EXPECT_TRUE(QFile::exists(stampe->CartellaRespinti() + u"/grande.hpx"_s));
}

namespace {

// The description of document `id` as the folder publishes it (Documento).
pugi::xml_node Proprieta(RefCartellaDocumenti& cartella, const QString& id, pugi::xml_document& doc)
{
    QSignalSpy risposte(&cartella, &RefCartellaDocumenti::Risposta);
    cartella.Documento(7, id);
    if (risposte.size() != 1 || risposte[0][1].toInt() != 0)
        return {};
    const QByteArray xml = risposte[0][2].toString().toUtf8();
    doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size()));
    return doc.document_element().child("Proprieta");
}

} // namespace

TEST_F(IngressoOstile, AnEmailJobIsReadByTheKeysClientsWriteAndByTheOlderOnes)
{
    RefIngresso* email = mServer->Ingresso(u"PxSrvEmail"_s);
    RefServizio* servizio = mServer->ServizioRef(u"PxSrvEmail"_s);
    QSignalSpy presi(servizio, &RefServizio::LavoroPreso);
    QSignalSpy respinti(servizio, &RefServizio::LavoroRespinto);
    const auto lavoro = [&](const QString& nome, const std::vector<std::pair<QString, QString>>& chiavi) {
        PxIntestazioneHpx h;
        h.ScriviIntero({}, u"Tipo"_s, 3);
        h.ScriviTesto(u"PROPRIETA"_s, u"Descrizione"_s, nome);
        for (const auto& [chiave, valore] : chiavi)
            h.ScriviTesto(u"EMAIL"_s, chiave, valore);
        Scrivi(email->Cartella() + u'/' + nome + u".bpx"_s, "x");
        Scrivi(email->Cartella() + u'/' + nome + u".hpx"_s, h.Serializza());
        email->Scansiona();
    };
    lavoro(u"nuovo"_s, {{u"Oggetto"_s, u"Prova"_s}, {u"Account_IndirizzoEmail"_s, u"da@ditta.it"_s},
                        {u"A_NomiVisualizzati"_s, u"a@cliente.it"_s}, {u"A_IndirizziEmail"_s, u"a@cliente.it"_s}});
    lavoro(u"vecchio"_s, {{u"Da"_s, u"vecchio@ditta.it"_s}, {u"A"_s, u"vecchio@cliente.it"_s}});
    lavoro(u"senzaDestinatario"_s, {{u"A_IndirizziEmail"_s, u"  "_s}, {u"Oggetto"_s, u"Prova"_s}});

    ASSERT_EQ(presi.size(), 2);
    EXPECT_EQ(presi[0][0].toString(), u"nuovo"_s);
    EXPECT_EQ(presi[1][0].toString(), u"vecchio"_s);
    RefCartellaDocumenti& cartella = *mServer->Cartella(GenereCartella::Email);
    pugi::xml_document d1, d2;
    const pugi::xml_node nuovo = Proprieta(cartella, presi[0][1].toString(), d1);
    EXPECT_STREQ(nuovo.child("A").child_value("IndirizziEmail"), "a@cliente.it");
    EXPECT_STREQ(nuovo.child("Da").child_value("IndirizziEmail"), "da@ditta.it");
    EXPECT_STREQ(nuovo.child_value("Oggetto"), "Prova");
    const pugi::xml_node vecchio = Proprieta(cartella, presi[1][1].toString(), d2);
    EXPECT_STREQ(vecchio.child("A").child_value("IndirizziEmail"), "vecchio@cliente.it");
    EXPECT_STREQ(vecchio.child("Da").child_value("IndirizziEmail"), "vecchio@ditta.it");

    ASSERT_EQ(respinti.size(), 1);
    EXPECT_EQ(respinti[0][0].toString(), u"senzaDestinatario"_s);
    EXPECT_TRUE(respinti[0][1].toString().contains(u"A_IndirizziEmail"_s)) << qPrintable(respinti[0][1].toString());
    EXPECT_TRUE(QFile::exists(email->CartellaRespinti() + u"/senzaDestinatario.hpx"_s));
}

TEST_F(IngressoOstile, AFaxJobKeepsItsSubjectAndAFaxByEmailItsSendingAccount)
{
    RefIngresso* efax = mServer->Ingresso(u"PxSrvEFax"_s);
    QSignalSpy presi(mServer->ServizioRef(u"PxSrvEFax"_s), &RefServizio::LavoroPreso);
    PxIntestazioneHpx h;
    h.ScriviIntero({}, u"Tipo"_s, 1);
    h.ScriviTesto(u"PROPRIETA"_s, u"Descrizione"_s, u"Fax di prova"_s);
    h.ScriviTesto(u"FAX"_s, u"NumeroFax"_s, u"7654321"_s);
    h.ScriviTesto(u"FAX"_s, u"Oggetto"_s, u"Ordine 12"_s);
    h.ScriviTesto(u"NOTIFICA"_s, u"Account_IndirizzoEmail"_s, u"fax@ditta.it"_s);
    Scrivi(efax->Cartella() + u"/efax.bpx"_s, "x");
    Scrivi(efax->Cartella() + u"/efax.hpx"_s, h.Serializza());
    ASSERT_EQ(efax->Scansiona(), 1);
    ASSERT_EQ(presi.size(), 1);
    pugi::xml_document doc;
    const pugi::xml_node p = Proprieta(*mServer->Cartella(GenereCartella::EFax), presi[0][1].toString(), doc);
    EXPECT_STREQ(p.child_value("Oggetto"), "Ordine 12");
    EXPECT_STREQ(p.child("Da").child_value("IndirizziEmail"), "fax@ditta.it");
    EXPECT_STREQ(p.child("NumeroFax").child_value("Numero"), "7654321");
}

// The console's side hears both notices, with the job's base name, whatever carries them.
TEST_F(IngressoOstile, TheFateOfAJobReachesTheConsoleOverBothTransports)
{
    const QUrl indirizzo(u"local:plx-ingresso-"_s + QString::number(QCoreApplication::applicationPid()));
    QRemoteObjectHost host(indirizzo);
    ASSERT_EQ(modRemoto::Pubblica(host, *mServer), mServer->Nomi().size());
    PxCollegamentoDiretto diretto([this](const QString& nome) { return mServer->Oggetto(nome); });
    PxCollegamentoRemoto remoto(indirizzo);
    int volta = 0;
    for (PxCollegamento* collegamento : {static_cast<PxCollegamento*>(&diretto), static_cast<PxCollegamento*>(&remoto)}) {
        SCOPED_TRACE(volta == 0 ? "diretto" : "remoto");
        PxSrvServer console(collegamento);
        console.Connetti();
        ASSERT_TRUE(QTest::qWaitFor([&] { return console.Caricato(); }, 10000));
        PxSrvServizio* fax = console.Servizio(u"PxSrvFax"_s);
        ASSERT_NE(fax, nullptr);
        QSignalSpy presi(fax, &PxSrvServizio::LavoroPreso);
        QSignalSpy respinti(fax, &PxSrvServizio::LavoroRespinto);
        const QString buono = u"buono-"_s + QString::number(volta), cattivo = u"cattivo-"_s + QString::number(volta);
        Scrivi(Base(buono) + u".bpx"_s, "Testo\r\n");
        Scrivi(Base(buono) + u".hpx"_s, Intestazione());
        Scrivi(Base(cattivo) + u".bpx"_s, "Testo\r\n");
        Scrivi(Base(cattivo) + u".hpx"_s, "<non valido");
        mIngresso->Scansiona();
        ASSERT_TRUE(QTest::qWaitFor([&] { return presi.size() == 1 && respinti.size() == 1; }, 10000));
        EXPECT_EQ(presi[0][0].toString(), buono);
        EXPECT_TRUE(mServer->Cartella(GenereCartella::Fax)->Trova(presi[0][1].toString()));
        EXPECT_EQ(respinti[0][0].toString(), cattivo);
        EXPECT_TRUE(respinti[0][1].toString().startsWith(u"intestazione non valida"_s)) << qPrintable(respinti[0][1].toString());
        ++volta;
    }
}
