// A client without windows sends a printer's test page the console's way: this program links
// the job library, the reference server and Qt Core alone (no QApplication, no widgets), and
// reaches the server as a client on another machine would, without its files.
#include "ServerSenzaFile.h"
#include "PxCollegamento.h"
#include "PxConsoleResDll.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"
#include "RefIngresso.h"
#include "RefServer.h"
#include "modContenuto.h"
#include "modDemo.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

bool Attendi(const std::function<bool()>& condizione) { return AttendiSenzaFinestre(condizione); }

class SenzaFinestre : public ServerSenzaFile
{
protected:
    void SetUp() override
    {
        ServerSenzaFile::SetUp();
        if (HasFatalFailure())
            return;
        ASSERT_TRUE(mServer->AggiungiStampante(
            uR"(<Stampante><Chiave>riga-1</Chiave><NumeroTarquel>41</NumeroTarquel><NomeStampanteWindows>Magazzino</NomeStampanteWindows>
<Modello><Codice>0</Codice></Modello><InfoStampante><DriverName>Generico</DriverName><PortName>LPT1:</PortName></InfoStampante>
<Margini><Superiore>5</Superiore><Sinistro>4</Sinistro><Destro>4</Destro><Inferiore>6</Inferiore></Margini></Stampante>)"_s));
        PxSrvServizio* stampe = mClient->Servizio(u"PxSrvStampe"_s);
        ASSERT_NE(stampe, nullptr);
        ASSERT_TRUE(Attendi([&] { return stampe->StatoXml().contains(u"Magazzino"_s); }));
    }

    PxRisposta Invia(const QString& stampante)
    {
        PxRisposta risposta{-1, {}, {}};
        QObject richiedente;
        modContenuto::InviaPaginaDiProva(mClient.get(), stampante, mTesti, &richiedente, [&](const PxRisposta& r) { risposta = r; });
        EXPECT_EQ(risposta.Esito, -1) << "answered inside the call";
        EXPECT_TRUE(Attendi([&] { return risposta.Esito != -1; }));
        return risposta;
    }

    PxConsoleResDll mTesti;
};

} // namespace

TEST_F(SenzaFinestre, APrintersTestPageIsHandedOverAndTaken)
{
    QStringList presi;
    QObject ascolto; // goes before the list it fills
    QObject::connect(mClient->Servizio(u"PxSrvStampe"_s), &PxSrvServizio::LavoroPreso, &ascolto,
                     [&](const QString& base) { presi << base; });
    const PxRisposta r = Invia(u"Magazzino"_s);
    ASSERT_EQ(r.Esito, modContratto::Ok) << qPrintable(r.Testo);
    EXPECT_EQ(r.Testo, u"Pagina di prova di Magazzino"_s);
    const QDir ingresso(mServer->Ingresso(u"PxSrvStampe"_s)->Cartella());
    EXPECT_EQ(ingresso.entryList(QDir::Files, QDir::Name),
              (QStringList{u"Pagina di prova di Magazzino.bpx"_s, u"Pagina di prova di Magazzino.hpx"_s,
                           u"Pagina di prova di Magazzino.spx"_s}));
    EXPECT_EQ(mServer->Ingresso(u"PxSrvStampe"_s)->Scansiona(), 1);
    ASSERT_TRUE(Attendi([&] { return !presi.isEmpty(); }));
    EXPECT_EQ(presi.value(0), r.Testo);
    // By its key too.
    EXPECT_EQ(Invia(u"riga-1"_s).Esito, modContratto::Ok);
}

TEST_F(SenzaFinestre, AnUnknownPrinterIsRefusedWithItsName)
{
    const PxRisposta r = Invia(u"Nessuna"_s);
    EXPECT_EQ(r.Esito, modContratto::Rifiutato);
    EXPECT_TRUE(r.Testo.startsWith(u"Nessuna: "_s)) << qPrintable(r.Testo);
    EXPECT_TRUE(QDir(mServer->Ingresso(u"PxSrvStampe"_s)->Cartella()).entryList(QDir::Files).isEmpty());
}

int main(int argc, char** argv)
{
    QTemporaryDir casa;
    qputenv("XDG_CONFIG_HOME", casa.filePath(QStringLiteral("config")).toUtf8());
    qputenv("XDG_DATA_HOME", casa.filePath(QStringLiteral("data")).toUtf8());
    QStandardPaths::setTestModeEnabled(true);
    ::testing::InitGoogleTest(&argc, argv);
    QCoreApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
