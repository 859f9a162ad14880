#include "FakeServer.h"
#include "IFrmConsole.h"
#include "PxErrore.h"
#include "PxRigaLog.h"
#include "PxSrvConsole.h"
#include "frmApertura.h"
#include "frmChiusura.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

// The engine's phases, timer and windows, which it keeps to itself.
struct PxSrvConsoleSonda
{
    static int Fase(const PxSrvConsole& e) { return e.mFase; }
    static const QTimer& Timer(const PxSrvConsole& e) { return e.mobjTimer; }
    static frmApertura* Apertura(const PxSrvConsole& e) { return e.mApertura.get(); }
    static frmChiusura* Chiusura(const PxSrvConsole& e) { return e.mChiusura.get(); }
    static IFrmConsole* Console(const PxSrvConsole& e) { return e.mConsole.get(); }
    static PxContesto& Contesto(PxSrvConsole& e) { return e.mContesto; }
};

namespace {

using Sonda = PxSrvConsoleSonda;

// A main window that records what the engine asks of it.
struct Registro
{
    int Create = 0, Inizializza = 0, Mostra = 0, Nascondi = 0, Termina = 0, Distrutte = 0;
    int ConfiguraPulsanti = 0, ConfiguraPulsantiServer = 0, AggiornaBarra = 0;
    bool AperturaVisibile = false;
    std::function<void()> DuranteInizializza;
};

class ConsoleFinta : public IFrmConsole
{
public:
    explicit ConsoleFinta(Registro& r) : mR(r) { ++mR.Create; }
    ~ConsoleFinta() override { ++mR.Distrutte; }
    void Inizializza(frmApertura* apertura) override
    {
        ++mR.Inizializza;
        mR.AperturaVisibile = apertura && apertura->isVisible();
        if (mR.DuranteInizializza)
            mR.DuranteInizializza();
    }
    void Mostra() override { ++mR.Mostra; mVisibile = true; }
    void Nascondi() override { ++mR.Nascondi; mVisibile = false; }
    bool Visibile() const override { return mVisibile; }
    void Termina() override { ++mR.Termina; }
    void ConfiguraPulsanti() override { ++mR.ConfiguraPulsanti; }
    void ConfiguraPulsantiServer() override { ++mR.ConfiguraPulsantiServer; }
    void AggiornaBarraComandi() override { ++mR.AggiornaBarra; }

private:
    Registro& mR;
    bool mVisibile = false;
};

qint32 Errore(const std::function<void()>& f)
{
    try {
        f();
    } catch (const PxErrore& e) {
        EXPECT_EQ(e.Sorgente(), PxSrvConsole::TitoloProgramma());
        EXPECT_FALSE(e.Descrizione().isEmpty());
        return e.Numero();
    }
    return 0;
}

class Engine : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(mDir.isValid());
        QDir(mDir.path()).mkpath(QStringLiteral("server"));
        QDir(mDir.path()).mkpath(QStringLiteral("gui"));
        mServer = std::make_unique<FakeServer>(mDir.filePath(QStringLiteral("server")));
        mServer->Aggiungi(QStringLiteral("PxSrvFax"), FakeServer::Xml(QStringLiteral("PxSrvFax"), 4));
        e.SetFabbricaConsole([this](PxContesto&) { return std::make_unique<ConsoleFinta>(r); });
    }

    void Collega()
    {
        e.SetSrvServer(&mServer->Client());
        e.SetServerEventi(mServer->Client().Eventi());
        e.SetPercorsoGui(mDir.filePath(QStringLiteral("gui")));
        e.SetPercorsoLog(mDir.filePath(QStringLiteral("log")));
    }

    QString FileServer(const char* nome) const { return QDir(mServer->Cartella()).filePath(QString::fromLatin1(nome)); }

    void Scrivi(const char* nome, const QByteArray& dati)
    {
        QFile f(FileServer(nome));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(dati);
    }

    QStringList TestiLog() const
    {
        QFile f(QDir(mDir.filePath(QStringLiteral("log"))).filePath(PxSrvConsole::TitoloProgramma() + QStringLiteral(".log")));
        QStringList testi;
        if (!f.open(QIODevice::ReadOnly))
            return testi;
        for (const QString& riga : QString::fromUtf8(f.readAll()).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts))
            testi << QString::number(modRigaLog::Analizza(riga)->Livello) + u' ' + modRigaLog::Analizza(riga)->Testo;
        return testi;
    }

    // Starts the engine on a server still loading, and ticks until it waits for it.
    void AvviaSuServerInCaricamento()
    {
        mServer = std::make_unique<FakeServer>(mDir.filePath(QStringLiteral("server")), false);
        Collega();
        e.Inizializza();
        e.Avvia();
        for (int i = 0; i < 3; ++i)
            e.mobjTimer_TimerEvent();
    }

    // Drives the engine from Avvia to running.
    void AvviaFinoInFunzione()
    {
        Collega();
        e.Inizializza();
        e.Avvia();
        for (int i = 0; i < 3; ++i)
            e.mobjTimer_TimerEvent();
        ASSERT_EQ(e.Stato().Codice, PxConsoleStato::Avviato);
    }

    QTemporaryDir mDir;
    std::unique_ptr<FakeServer> mServer;
    Registro r;
    PxSrvConsole e;
};

} // namespace

TEST_F(Engine, InizializzaRefusesMissingObjectsAndBadGuiPath)
{
    EXPECT_EQ(Errore([&] { e.Inizializza(); }), 91);
    e.SetSrvServer(&mServer->Client());
    EXPECT_EQ(Errore([&] { e.Inizializza(); }), 91) << "events object still missing";
    e.SetServerEventi(mServer->Client().Eventi());
    e.SetPercorsoGui(mDir.filePath(QStringLiteral("nessuna")));
    EXPECT_EQ(Errore([&] { e.Inizializza(); }), 76);
    Scrivi("file.txt", "x");
    e.SetPercorsoGui(FileServer("file.txt"));
    EXPECT_EQ(Errore([&] { e.Inizializza(); }), 76) << "a file is not a folder";
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::NonInizializzato);
    EXPECT_FALSE(e.Inizializzato());
}

TEST_F(Engine, InizializzaSetsUpEverythingOnce)
{
    Scrivi("PlxConfigurazione.ini", "[Console]\r\nEstenzioneFileZip=.zip\r\nMostraStrumentiProcessi=-1\r\n");
    Collega();
    e.Inizializza();
    EXPECT_TRUE(e.Inizializzato());
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::Inizializzato);
    EXPECT_EQ(e.Stato().Descrizione(), QStringLiteral("Inizializzato"));
    EXPECT_EQ(Sonda::Contesto(e).EstensioneFileZip(), QStringLiteral(".zip"));
    EXPECT_TRUE(Sonda::Contesto(e).MostraStrumentiProcessi());
    ASSERT_TRUE(mServer->Bkg);
    EXPECT_TRUE(QTest::qWaitFor([&] { return mServer->Bkg->Avviato; }, 10000));
    EXPECT_EQ(mServer->Bkg->Cartella, mServer->Cartella());
    EXPECT_EQ(mServer->Bkg->Identificativo, mServer->Identificativo());
    EXPECT_EQ(mServer->Bkg->Gui, e.PercorsoGui());
    EXPECT_EQ(QString::fromUtf8(Sonda::Contesto(e).UIRoot().name()), QStringLiteral("PLX"));
    EXPECT_TRUE(TestiLog().contains(QStringLiteral("3 Server inizializzato")));
    EXPECT_EQ(Errore([&] { e.Inizializza(); }), 445);
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::Inizializzato);
}

TEST_F(Engine, RefusedRequestsKeepTheState)
{
    EXPECT_EQ(Errore([&] { e.Avvia(); }), 445);
    EXPECT_EQ(Errore([&] { e.Arresta(); }), 445);
    EXPECT_EQ(Errore([&] { e.Termina(); }), 445);
    Collega();
    e.Inizializza();
    EXPECT_EQ(Errore([&] { e.Arresta(); }), 445) << "Arresta only while running";
    e.Avvia();
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::AvvioInCorso);
    EXPECT_EQ(Errore([&] { e.Avvia(); }), 445);
    EXPECT_EQ(Errore([&] { e.Arresta(); }), 445);
    EXPECT_EQ(Errore([&] { e.Termina(); }), 361);
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::AvvioInCorso);
}

TEST_F(Engine, StartShowsTheOpeningWindowThenTheMainWindow)
{
    Collega();
    e.Inizializza();
    e.Avvia();
    EXPECT_TRUE(Sonda::Timer(e).isActive());
    EXPECT_EQ(Sonda::Timer(e).interval(), 250);

    e.mobjTimer_TimerEvent(); // phase 0 -> 2: the opening window
    EXPECT_EQ(Sonda::Fase(e), 2);
    ASSERT_NE(Sonda::Apertura(e), nullptr);
    EXPECT_TRUE(Sonda::Apertura(e)->isVisible());
    EXPECT_EQ(Sonda::Apertura(e)->Massimo(), 3) << "the root, the fax service and its folder";
    EXPECT_EQ(r.Create, 0);
    EXPECT_EQ(Sonda::Timer(e).interval(), 250);

    e.mobjTimer_TimerEvent(); // phase 2 -> 4: the main window loads while the opening window shows
    EXPECT_EQ(Sonda::Fase(e), 4);
    EXPECT_EQ(r.Create, 1);
    EXPECT_EQ(r.Inizializza, 1);
    EXPECT_TRUE(r.AperturaVisibile);
    EXPECT_EQ(r.Mostra, 1);
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::AvvioInCorso);

    e.mobjTimer_TimerEvent(); // phase 4 -> 0: running
    EXPECT_EQ(Sonda::Fase(e), 0);
    EXPECT_EQ(Sonda::Apertura(e), nullptr);
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::Avviato);
    EXPECT_EQ(Sonda::Timer(e).interval(), 1500);

    e.mobjTimer_TimerEvent(); // running and visible: nothing happens
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::Avviato);
    EXPECT_EQ(r.Create, 1);
}

TEST_F(Engine, ATickDuringTheStartWorkReturnsAtOnce)
{
    Collega();
    e.Inizializza();
    e.Avvia();
    e.mobjTimer_TimerEvent();
    int faseVista = -1;
    qsizetype righeLog = 0;
    r.DuranteInizializza = [&] {
        righeLog = TestiLog().size();
        e.mobjTimer_TimerEvent(); // as if the loading let a timer event through
        faseVista = Sonda::Fase(e);
    };
    e.mobjTimer_TimerEvent();
    EXPECT_EQ(faseVista, 3);
    EXPECT_EQ(r.Create, 1) << "the start work ran twice";
    EXPECT_EQ(Sonda::Fase(e), 4);
    // The nested tick left before writing anything, not even its entry line.
    const QStringList log = TestiLog();
    EXPECT_EQ(log.mid(righeLog).filter(QStringLiteral("mobjTimer_TimerEvent> Entra")).size(), 0);
}

TEST_F(Engine, ClosingTheMainWindowStopsWithinOnePoll)
{
    AvviaFinoInFunzione();
    auto* console = Sonda::Console(e);
    ASSERT_NE(console, nullptr);
    console->Nascondi(); // the operator closed it
    e.mobjTimer_TimerEvent();
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::ArrestoInCorso);
    ASSERT_NE(Sonda::Chiusura(e), nullptr);
    EXPECT_TRUE(Sonda::Chiusura(e)->isVisible());
    EXPECT_EQ(Sonda::Timer(e).interval(), 250);
    e.mobjTimer_TimerEvent();
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::Arrestato);
    EXPECT_EQ(r.Termina, 1);
    EXPECT_EQ(r.Distrutte, 1);
    EXPECT_EQ(Sonda::Console(e), nullptr);
    EXPECT_EQ(Sonda::Chiusura(e), nullptr);
    EXPECT_EQ(Errore([&] { e.Arresta(); }), 445);

    e.Termina();
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::Terminato);
    EXPECT_FALSE(e.Inizializzato());
    EXPECT_FALSE(Sonda::Timer(e).isActive());
    EXPECT_TRUE(QTest::qWaitFor([&] { return mServer->Bkg->Terminato; }, 10000)) << "the worker is told to end";
    EXPECT_TRUE(QFile::exists(FileServer("UIConsole.xml")));
    EXPECT_TRUE(TestiLog().contains(QStringLiteral("3 Server terminato")));
    EXPECT_EQ(Errore([&] { e.Termina(); }), 445);
}

TEST_F(Engine, ArrestaFromTheHostAndRestart)
{
    AvviaFinoInFunzione();
    e.Arresta();
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::ArrestoInCorso);
    EXPECT_TRUE(Sonda::Chiusura(e) && Sonda::Chiusura(e)->isVisible());
    e.mobjTimer_TimerEvent();
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::Arrestato);
    e.Avvia(); // 5 -> 2
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::AvvioInCorso);
    for (int i = 0; i < 3; ++i)
        e.mobjTimer_TimerEvent();
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::Avviato);
    EXPECT_EQ(r.Create, 2);
}

TEST_F(Engine, RestartOfTheMainWindowStartsFromAFreshLayout)
{
    Scrivi("UIConsole.xml", "<?xml version=\"1.0\" encoding=\"UTF-8\"?><PLX><SrvFax Versione=\"01.00.04\"/></PLX>");
    AvviaFinoInFunzione();
    EXPECT_TRUE(Sonda::Contesto(e).UIRoot().child("SrvFax"));
    e.RiavviaConsole();
    EXPECT_EQ(Sonda::Fase(e), 5);
    e.mobjTimer_TimerEvent();
    EXPECT_EQ(Sonda::Fase(e), 0);
    EXPECT_EQ(r.Distrutte, 1);
    EXPECT_EQ(r.Create, 2);
    EXPECT_EQ(QString::fromUtf8(Sonda::Contesto(e).UIRoot().name()), QStringLiteral("PLX"));
    EXPECT_FALSE(Sonda::Contesto(e).UIRoot().first_child());
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::Avviato);
}

TEST_F(Engine, MissingOrMalformedLayoutGivesAFreshDocumentWrittenOnTermina)
{
    Scrivi("UIConsole.xml", "<PLX><SrvFax>"); // malformed
    Collega();
    e.Inizializza();
    EXPECT_EQ(QString::fromUtf8(Sonda::Contesto(e).UIRoot().name()), QStringLiteral("PLX"));
    EXPECT_FALSE(Sonda::Contesto(e).UIRoot().first_child());
    Sonda::Contesto(e).UIRoot().append_child("SrvDocFax").append_attribute("Versione") = "01.00.04";
    e.Termina(); // from state 1
    QFile f(FileServer("UIConsole.xml"));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?><PLX><SrvDocFax Versione=\"01.00.04\"/></PLX>"));
}

TEST_F(Engine, ALayoutThatLoadsIsKeptWithItsWhiteSpace)
{
    const QByteArray testo = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<PLX>\n  <SrvFax>  testo  </SrvFax>\n</PLX>";
    Scrivi("UIConsole.xml", testo);
    Collega();
    e.Inizializza();
    EXPECT_STREQ(Sonda::Contesto(e).UIRoot().child("SrvFax").child_value(), "  testo  ");
    e.Termina();
    QFile f(FileServer("UIConsole.xml"));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    // Everything inside the root is written back as it was read.
    EXPECT_EQ(f.readAll(), QByteArray(testo).replace("?>\n<PLX>", "?><PLX>"));
}

TEST_F(Engine, BackgroundWorkerMarksBusyAndItsErrorClosesTheConsole)
{
    AvviaFinoInFunzione();
    ASSERT_TRUE(mServer->Bkg);
    mServer->Bkg->EmettiInizio();
    EXPECT_TRUE(Sonda::Contesto(e).Occupato());
    EXPECT_EQ(r.ConfiguraPulsanti, 1);
    EXPECT_EQ(r.AggiornaBarra, 1);
    mServer->Bkg->EmettiFine();
    EXPECT_FALSE(Sonda::Contesto(e).Occupato());
    EXPECT_EQ(r.ConfiguraPulsanti, 2);
    EXPECT_EQ(r.ConfiguraPulsantiServer, 1);
    EXPECT_EQ(r.AggiornaBarra, 2);

    mServer->Bkg->EmettiErrore(76, QStringLiteral("PxSrvBkgConsole"), QStringLiteral("cartella sparita"));
    EXPECT_TRUE(TestiLog().contains(QStringLiteral("0 mobjSrvBkgConsoleEventi_Errore> 76-PxSrvBkgConsole (cartella sparita)")));
    EXPECT_FALSE(Sonda::Console(e)->Visibile());
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::Avviato) << "the error is not raised to the host";
    e.mobjTimer_TimerEvent();
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::ArrestoInCorso);
}

TEST_F(Engine, EveryStateChangeReachesTheHost)
{
    QList<qint32> visti;
    QObject::connect(e.ConsoleEventi(), &PxConsoleEventi::CambioStato, [&](qint32 c) { visti << c; });
    AvviaFinoInFunzione();
    e.Arresta();
    e.mobjTimer_TimerEvent();
    e.Termina();
    EXPECT_EQ(visti, (QList<qint32>{1, 2, 3, 4, 5, 6}));
    EXPECT_GT(PxSrvConsole::ProcessId(), 0);
}

TEST_F(Engine, TheMainWindowWaitsForTheServerToLoad)
{
    mServer = std::make_unique<FakeServer>(mDir.filePath(QStringLiteral("server")), false);
    mServer->Aggiungi(QStringLiteral("PxSrvFax"), FakeServer::Xml(QStringLiteral("PxSrvFax"), 4));
    Collega();
    e.Inizializza();
    e.Avvia();
    e.mobjTimer_TimerEvent();
    ASSERT_NE(Sonda::Apertura(e), nullptr);
    EXPECT_TRUE(Sonda::Apertura(e)->isVisible()) << "the opening window does not wait for the server";
    for (int i = 0; i < 3; ++i)
        e.mobjTimer_TimerEvent();
    EXPECT_EQ(Sonda::Fase(e), 2);
    EXPECT_EQ(r.Create, 0) << "no main window before the server has described itself";
    EXPECT_EQ(Sonda::Timer(e).interval(), 250);
    mServer->Carica();
    ASSERT_TRUE(QTest::qWaitFor([&] { return mServer->Client().Caricato(); }, 10000));
    EXPECT_EQ(Sonda::Apertura(e)->Massimo(), 3);
    e.mobjTimer_TimerEvent();
    EXPECT_EQ(r.Create, 1);
    e.mobjTimer_TimerEvent();
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::Avviato);
}

TEST_F(Engine, AServerLostWhileLoadingClosesTheConsoleWithItsReason)
{
    AvviaSuServerInCaricamento();
    ASSERT_EQ(Sonda::Fase(e), 2) << "waiting for the server";
    mServer->Interrompi(QStringLiteral("il server non risponde"));
    for (int i = 0; i < 4 && e.Stato().Codice != PxConsoleStato::Arrestato; ++i)
        e.mobjTimer_TimerEvent();
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::Arrestato) << "no waiting for ever on a server that is gone";
    EXPECT_TRUE(TestiLog().contains(QStringLiteral("0 SrvServer_Interrotto> il server non risponde")));
}

TEST_F(Engine, AStopAskedWhileTheServerLoadsDoesNotWaitForTheLoad)
{
    AvviaSuServerInCaricamento();
    ASSERT_EQ(Sonda::Fase(e), 2);
    EXPECT_TRUE(e.RichiediArresto());
    for (int i = 0; i < 4 && e.Stato().Codice != PxConsoleStato::Arrestato; ++i)
        e.mobjTimer_TimerEvent();
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::Arrestato);
    EXPECT_FALSE(mServer->Client().Caricato()) << "the server never finished loading";
}

TEST_F(Engine, AStopAskedFromOutsideWaitsForTheStartThenGoesAsArresta)
{
    EXPECT_FALSE(e.RichiediArresto()) << "nothing to stop";
    Collega();
    e.Inizializza();
    EXPECT_FALSE(e.RichiediArresto());
    e.Avvia();
    EXPECT_TRUE(e.RichiediArresto());
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::AvvioInCorso) << "Arresta is refused while starting";
    for (int i = 0; i < 3; ++i)
        e.mobjTimer_TimerEvent();
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::ArrestoInCorso) << "stopped as soon as it ran";
    EXPECT_TRUE(Sonda::Chiusura(e) && Sonda::Chiusura(e)->isVisible());
    EXPECT_TRUE(e.RichiediArresto()) << "a second request while stopping changes nothing";
    e.mobjTimer_TimerEvent();
    EXPECT_EQ(e.Stato().Codice, PxConsoleStato::Arrestato);
    EXPECT_FALSE(e.RichiediArresto());
}

TEST_F(Engine, PanesLearnTheBusyMarkAndTheStateFromTheContext)
{
    AvviaFinoInFunzione();
    PxContesto& contesto = Sonda::Contesto(e);
    EXPECT_EQ(contesto.Server(), &mServer->Client());
    QSignalSpy occupato(&contesto, &PxContesto::CambioOccupato);
    QSignalSpy stato(&contesto, &PxContesto::CambioStato);
    mServer->Bkg->EmettiInizio();
    mServer->Bkg->EmettiInizio(); // no change, no signal
    mServer->Bkg->EmettiFine();
    ASSERT_EQ(occupato.size(), 2);
    EXPECT_TRUE(occupato[0][0].toBool());
    EXPECT_FALSE(occupato[1][0].toBool());
    e.Arresta();
    ASSERT_EQ(stato.size(), 1);
    EXPECT_EQ(contesto.Stato().Codice, PxConsoleStato::ArrestoInCorso);
}

TEST_F(Engine, ProcedureLinesCanBeSwitchedOffWithoutLosingErrorsOrStates)
{
    Scrivi("PlxConfigurazione.ini", "[Console]\r\nLogTracciaProcedure=0\r\n");
    AvviaFinoInFunzione();
    mServer->Bkg->EmettiErrore(76, QStringLiteral("PxSrvBkgConsole"), QStringLiteral("sparita"));
    e.mobjTimer_TimerEvent();
    e.mobjTimer_TimerEvent();
    e.Termina();
    const QStringList log = TestiLog();
    EXPECT_TRUE(log.filter(QStringLiteral("> Entra")).isEmpty());
    EXPECT_TRUE(log.filter(QStringLiteral("> Esce")).isEmpty());
    EXPECT_TRUE(log.contains(QStringLiteral("3 Server inizializzato")));
    EXPECT_TRUE(log.contains(QStringLiteral("2 Stato console: Avviato")));
    EXPECT_TRUE(log.contains(QStringLiteral("0 mobjSrvBkgConsoleEventi_Errore> 76-PxSrvBkgConsole (sparita)")));
    EXPECT_TRUE(log.contains(QStringLiteral("3 Server terminato")));
}
