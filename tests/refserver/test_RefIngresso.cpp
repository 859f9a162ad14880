// Input folders against hostile jobs: links, pipes, devices and huge headers are set aside
// whole, without being followed or read past a limit, and the folder goes on.
#include "PxIntestazioneHpx.h"
#include "RefCartellaDocumenti.h"
#include "RefIngresso.h"
#include "RefServer.h"
#include "RefServizio.h"
#include "modDemo.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

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
