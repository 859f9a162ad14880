#include "PxSrvConsole.h"
#include "modXml.h"

#include "IFrmConsole.h"
#include "PxErrore.h"
#include "PxLettoreIni.h"
#include "PxRigaLog.h"
#include "PxSrvBkgConsole.h"
#include "PxSrvEventiServer.h"
#include "PxSrvServer.h"
#include "frmApertura.h"
#include "frmChiusura.h"
#include "PxMonitorCiclo.h"
#include "modPriorita.h"
#include "modTraccia.h"

#include <QApplication>
#include <QDir>
#include <QStandardPaths>
#include <QRegularExpression>
#include <QFileInfo>
#include <QSettings>

#include <sys/types.h>
#include <unistd.h>

namespace {

constexpr int IntervalloTransizione = 250;
constexpr int IntervalloInFunzione = 1500;

// The priority class the engine has always asked for: 0x8000 sign-extended, which the
// platform refuses, so the process keeps its priority. Kept as it is on purpose.
constexpr quint32 ClassePrioritaRichiesta = 0xFFFF8000u;

} // namespace

PxSrvConsole::PxSrvConsole(QObject* parent) : QObject(parent), mContesto(mRisorse, mIcone, mImpostazioni, mLog)
{
    // The platform's request-pending and busy-server time-outs have no counterpart here:
    // calls to the server are direct or queued, never blocked behind a busy dialog.
    modPriorita::ImpostaClassePriorita(ClassePrioritaRichiesta);
    mobjTimer.setObjectName(QStringLiteral("mobjTimer"));
    connect(&mobjTimer, &QTimer::timeout, this, &PxSrvConsole::mobjTimer_TimerEvent);
}

PxSrvConsole::~PxSrvConsole()
{
    mobjTimer.stop();
    mConsole.reset();
    mApertura.reset();
    mChiusura.reset();
    if (mobjSrvBkgConsoleEventi)
        disconnect(mobjSrvBkgConsoleEventi, nullptr, this, nullptr);
    if (mCursoreOccupato)
        QApplication::restoreOverrideCursor();
    if (modTraccia::Log() == &mLog)
        modTraccia::ImpostaLog(nullptr);
}

QString PxSrvConsole::TitoloProgramma() { return QStringLiteral("PlxSrvConsole"); }

qint64 PxSrvConsole::ProcessId() { return static_cast<qint64>(::getpid()); }

void PxSrvConsole::Solleva(qint32 numero) const
{
    throw PxErrore(numero, TitoloProgramma(), modErrori::TestoErrore(numero));
}

void PxSrvConsole::ImpostaCodice(qint32 codice)
{
    if (mStato.Codice == codice)
        return;
    mStato.Codice = codice;
    mContesto.mStato.Codice = codice;
    mLog.Scrivi(modRigaLog::LivelloInformazione, QStringLiteral("Stato console: %1").arg(mStato.Descrizione()));
    emit mContesto.CambioStato(codice);
    emit mConsoleEventi.CambioStato(codice);
    if (codice == PxConsoleStato::Avviato && mArrestoRichiesto) {
        mArrestoRichiesto = false;
        Arresta();
    }
}

void PxSrvConsole::ImpostaOccupato(bool occupato)
{
    if (mContesto.mOccupato == occupato)
        return;
    mContesto.mOccupato = occupato;
    emit mContesto.CambioOccupato(occupato);
}

bool PxSrvConsole::RichiediArresto()
{
    switch (mStato.Codice) {
    case PxConsoleStato::Avviato:
        Arresta();
        return true;
    case PxConsoleStato::AvvioInCorso:
        mArrestoRichiesto = true;
        return true;
    case PxConsoleStato::ArrestoInCorso:
        return true;
    default:
        return false;
    }
}

void PxSrvConsole::ImpostaIntervallo(int millisecondi)
{
    mobjTimer.setInterval(mStato.Codice == PxConsoleStato::Avviato ? millisecondi : IntervalloTransizione);
}

QString PxSrvConsole::FileServer(const char* nome) const
{
    // No folder (a server never reached): no file, rather than one in the working folder.
    return mServer && !mServer->Cartella().isEmpty() ? QDir(mServer->Cartella()).filePath(QString::fromLatin1(nome))
                                                     : QString();
}

QString PxSrvConsole::FileProprio(const char* nome) const
{
    // The layout is the console's own: beside the server's files when it shares them and may
    // write there, in the user's data folder, one per server, when the server is across the
    // network or is the system's (its folder is its own user's).
    if (!mServer)
        return FileServer(nome);
    if (mServer->FileLocali()) {
        const QString file = FileServer(nome);
        if (QFileInfo(QFileInfo(file).absolutePath()).isWritable())
            return file;
    }
    QString server = mServer->Cartella();
    server.replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9._-]+")), QStringLiteral("_"));
    const QDir proprio(QDir(QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation))
                           .filePath(QStringLiteral("server/") + server));
    proprio.mkpath(QStringLiteral("."));
    return proprio.filePath(QString::fromLatin1(nome));
}

void PxSrvConsole::Inizializza()
{
    if (mInizializzato)
        Solleva(modErrori::ErrAzioneNonSupportata);
    if (!mServer || !mServerEventi)
        Solleva(modErrori::ErrOggettoMancante);
    const QFileInfo gui(mPercorsoGui);
    if (mPercorsoGui.isEmpty() || !gui.exists() || !gui.isDir())
        Solleva(modErrori::ErrPercorsoNonTrovato);

    LeggiConfigurazioneLog();
    mLog.NomeApplicazione = TitoloProgramma();
    mLog.Cartella = mPercorsoLog;
    mLog.Abilitato = true;
    mLog.Apri();
    modTraccia::ImpostaLog(&mLog);
    mContesto.mServer = mServer;
    connect(mServer, &PxSrvServer::Interrotto, this, &PxSrvConsole::SrvServer_Interrotto);
    connect(mServer, &PxSrvServer::Ricollegato, this,
            [this] { mLog.Scrivi(modRigaLog::LivelloInformazione, QStringLiteral("SrvServer_Ricollegato> server di nuovo raggiungibile")); });
    // A server that stops for good ends its consoles the way the host's Arresta does.
    connect(mServer, &PxSrvServer::StatoCambiato, this, [this](qint32 codice) {
        if (codice == modContratto::ServerInArresto) {
            mLog.Scrivi(modRigaLog::LivelloInformazione, QStringLiteral("SrvServer_StatoCambiato> il server si arresta"));
            RichiediArresto();
        }
    });

    mobjSrvBkgConsoleEventi = mServer->BkgConsole();
    if (mobjSrvBkgConsoleEventi) {
        connect(mobjSrvBkgConsoleEventi, &PxSrvBkgConsole::Inizio, this, &PxSrvConsole::mobjSrvBkgConsoleEventi_Inizio);
        connect(mobjSrvBkgConsoleEventi, &PxSrvBkgConsole::Fine, this, &PxSrvConsole::mobjSrvBkgConsoleEventi_Fine);
        connect(mobjSrvBkgConsoleEventi, &PxSrvBkgConsole::Errore, this, &PxSrvConsole::mobjSrvBkgConsoleEventi_Errore);
        mobjSrvBkgConsoleEventi->Avvia(mServer->Cartella(), mServer->Identificativo(), mPercorsoGui);
    }

    ApplicaConfigurazione();

    mImpostazioni.Carica(*PxImpostazioni::ApriRegistro());
    CaricaDocumentoUI();

    mLog.Scrivi(modRigaLog::LivelloDettaglio, mRisorse.LoadDllString(20000));
    mInizializzato = true;
    ImpostaCodice(PxConsoleStato::Inizializzato);
}

void PxSrvConsole::LeggiConfigurazioneLog()
{
    // Read before the log opens, so that its first line already follows them; a server still
    // loading has not given its settings yet, and ApplicaConfigurazione follows them later.
    const PxLettoreIni& ini = mServer->Configurazione();
    const QString console = QStringLiteral("Console");
    mLog.DimensioneMassima = std::clamp<qint64>(ini.Intero(console, QStringLiteral("LogDimensioneMassimaMB"), 10), 1, 4096)
        * 1024 * 1024;
    mLog.NumeroFile = std::clamp(ini.Intero(console, QStringLiteral("LogNumeroFile"), 5), 1, 100);
    mLog.TracciaProcedure = ini.Booleano(console, QStringLiteral("LogTracciaProcedure"), true);
}

void PxSrvConsole::ApplicaConfigurazione()
{
    // The installation's settings as the server gave them (through LeggiFile, while it loaded).
    const PxLettoreIni& ini = mServer->Configurazione();
    const QString console = QStringLiteral("Console");
    mContesto.mEstensioneFileZip = ini.Stringa(console, QStringLiteral("EstenzioneFileZip"), QStringLiteral(".pxz"), 1024);
    mContesto.mMostraStrumentiProcessi = ini.Booleano(console, QStringLiteral("MostraStrumentiProcessi"), false);
    if (!mMonitor && ini.Booleano(console, QStringLiteral("MonitorCicloEventi"), false))
        mMonitor = std::make_unique<PxMonitorCiclo>(mLog);
    const qint64 dimensione = mLog.DimensioneMassima;
    const int numero = mLog.NumeroFile;
    LeggiConfigurazioneLog();
    // The file's limits are fixed when it opens: changed, it opens again (and appends).
    if (mLog.Aperto() && (dimensione != mLog.DimensioneMassima || numero != mLog.NumeroFile)) {
        mLog.Chiudi();
        mLog.Apri();
    }
}

void PxSrvConsole::NuovoDocumentoUI()
{
    mUIDocumento.reset();
    modXml::Dichiara(mUIDocumento);
    mContesto.mUIRoot = mUIDocumento.append_child("PLX");
}

void PxSrvConsole::CaricaDocumentoUI()
{
    const QString file = FileProprio(FileUI);
    const pugi::xml_parse_result esito =
        mUIDocumento.load_file(file.toUtf8().constData(), pugi::parse_default | pugi::parse_declaration | pugi::parse_ws_pcdata);
    const pugi::xml_node radice = mUIDocumento.child("PLX");
    if (esito && radice) {
        mContesto.mUIRoot = radice;
        return;
    }
    if (QFileInfo::exists(file))
        mLog.Scrivi(modRigaLog::LivelloAvviso, QStringLiteral("%1 non valido (%2, posizione %3): nuovo documento")
                                                   .arg(file, QString::fromUtf8(esito.description()))
                                                   .arg(esito.offset));
    NuovoDocumentoUI();
}

void PxSrvConsole::SalvaDocumentoUI()
{
    const QString file = FileProprio(FileUI);
    if (file.isEmpty())
        return;
    // Whitespace was kept on load, so the document is written back as it stands.
    if (!mUIDocumento.save_file(file.toUtf8().constData(), "", pugi::format_raw, pugi::encoding_utf8))
        mLog.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("Impossibile salvare %1").arg(file));
}

void PxSrvConsole::Avvia()
{
    if (!mInizializzato)
        Solleva(modErrori::ErrAzioneNonSupportata);
    if (mStato.Codice != PxConsoleStato::Inizializzato && mStato.Codice != PxConsoleStato::Arrestato)
        Solleva(modErrori::ErrAzioneNonSupportata);
    ImpostaCodice(PxConsoleStato::AvvioInCorso);
    ImpostaIntervallo(IntervalloTransizione);
    mobjTimer.start();
}

void PxSrvConsole::Arresta()
{
    if (!mInizializzato || mStato.Codice != PxConsoleStato::Avviato)
        Solleva(modErrori::ErrAzioneNonSupportata);
    ImpostaCodice(PxConsoleStato::ArrestoInCorso);
    MostraChiusura();
    ImpostaIntervallo(IntervalloTransizione);
}

void PxSrvConsole::MostraChiusura()
{
    mChiusura = std::make_unique<frmChiusura>();
    mChiusura->show();
}

void PxSrvConsole::Termina()
{
    if (!mInizializzato)
        Solleva(modErrori::ErrAzioneNonSupportata);
    if (mStato.Codice != PxConsoleStato::Inizializzato && mStato.Codice != PxConsoleStato::Arrestato)
        Solleva(modErrori::ErrCaricamentoOggetto);
    mobjTimer.stop();
    SalvaDocumentoUI();
    mInizializzato = false;
    if (mobjSrvBkgConsoleEventi) {
        mobjSrvBkgConsoleEventi->Termina();
        disconnect(mobjSrvBkgConsoleEventi, nullptr, this, nullptr);
        mobjSrvBkgConsoleEventi = nullptr;
    }
    if (mMonitor)
        mMonitor->Chiudi();
    mMonitor.reset();
    mServer = nullptr;
    mContesto.mServer = nullptr;
    mLog.Scrivi(modRigaLog::LivelloDettaglio, mRisorse.LoadDllString(20001));
    mLog.Chiudi();
    if (modTraccia::Log() == &mLog)
        modTraccia::ImpostaLog(nullptr);
    ImpostaCodice(PxConsoleStato::Terminato);
    mServerEventi = nullptr;
}

void PxSrvConsole::Visualizza()
{
    modTraccia::Proteggi("Visualizza", [&] {
        if (mConsole)
            mConsole->Mostra();
    });
}

void PxSrvConsole::RiavviaConsole()
{
    if (mStato.Codice == PxConsoleStato::Avviato && mFase == 0)
        mFase = 5;
}

void PxSrvConsole::AvviaLavoro()
{
    if (!mFabbrica)
        return;
    mConsole = mFabbrica(mContesto);
    if (!mConsole)
        return;
    mConsole->Inizializza(mApertura.get());
    mConsole->Mostra();
}

void PxSrvConsole::ChiudiConsole()
{
    if (!mConsole)
        return;
    mConsole->Nascondi();
    mConsole->Termina();
    mConsole.reset();
}

void PxSrvConsole::mobjTimer_TimerEvent()
{
    // Phases 1 and 3 mark a tick at work (the opening window lets events through while the
    // main window loads): a tick arriving meanwhile leaves at once and does not re-arm.
    if (mFase == 1 || mFase == 3)
        return;
    modTraccia::Proteggi("mobjTimer_TimerEvent", [&] {
        switch (mFase) {
        case 0:
            if (mStato.Codice == PxConsoleStato::AvvioInCorso) {
                mFase = 1;
                mApertura = std::make_unique<frmApertura>(mServer);
                mApertura->show();
                mFase = 2;
            } else if (mStato.Codice == PxConsoleStato::Avviato) {
                if (!mConsole || !mConsole->Visibile()) {
                    ImpostaCodice(PxConsoleStato::ArrestoInCorso);
                    MostraChiusura();
                }
            } else if (mStato.Codice == PxConsoleStato::ArrestoInCorso) {
                ChiudiConsole();
                if (mChiusura)
                    mChiusura->hide();
                mChiusura.reset();
                ImpostaCodice(PxConsoleStato::Arrestato);
            }
            break;
        case 2:
            // The server loads on its own thread while the opening window shows it; the
            // main window is built once the server has described itself, or at once when a
            // stop is waiting (the operator need not wait for a long load to end).
            if (mServer && !mServer->Caricato() && mServer->Interruzione().isEmpty() && !mArrestoRichiesto)
                break;
            mFase = 3;
            ApplicaConfigurazione();
            AvviaLavoro();
            mFase = 4;
            break;
        case 4:
            if (mApertura)
                mApertura->hide();
            mApertura.reset();
            mFase = 0;
            ImpostaCodice(PxConsoleStato::Avviato);
            break;
        case 5:
            ChiudiConsole();
            NuovoDocumentoUI();
            AvviaLavoro();
            mFase = 0;
            break;
        default:
            break;
        }
    });
    // A tick that failed half-way must not leave a phase that blocks every later tick.
    if (mFase == 1 || mFase == 3)
        mFase = mFase == 1 ? 2 : 4;
    ImpostaIntervallo(IntervalloInFunzione);
}

void PxSrvConsole::mobjSrvBkgConsoleEventi_Inizio()
{
    modTraccia::Proteggi("mobjSrvBkgConsoleEventi_Inizio", [&] {
        ImpostaOccupato(true);
        if (!mCursoreOccupato) {
            QApplication::setOverrideCursor(Qt::BusyCursor);
            mCursoreOccupato = true;
        }
        if (mConsole) {
            modTraccia::Proteggi("ConfiguraPulsanti", [&] { mConsole->ConfiguraPulsanti(); });
            mConsole->AggiornaBarraComandi();
        }
    });
}

void PxSrvConsole::mobjSrvBkgConsoleEventi_Fine()
{
    modTraccia::Proteggi("mobjSrvBkgConsoleEventi_Fine", [&] {
        ImpostaOccupato(false);
        if (mCursoreOccupato) {
            QApplication::restoreOverrideCursor();
            mCursoreOccupato = false;
        }
        if (mConsole) {
            modTraccia::Proteggi("ConfiguraPulsanti", [&] { mConsole->ConfiguraPulsanti(); });
            modTraccia::Proteggi("ConfiguraPulsantiServer", [&] { mConsole->ConfiguraPulsantiServer(); });
            mConsole->AggiornaBarraComandi();
        }
    });
}

void PxSrvConsole::SrvServer_Interrotto(const QString& motivo)
{
    mLog.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("SrvServer_Interrotto> %1").arg(motivo));
    // A lost server is waited for: the main window says so and the server is tried again.
    // One that was never reached, or that said it stops, ends the console.
    if (!mServer || !mServer->Riprovando())
        RichiediArresto();
}

void PxSrvConsole::mobjSrvBkgConsoleEventi_Errore(qint32 numero, const QString& sorgente, const QString& descrizione)
{
    mLog.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("mobjSrvBkgConsoleEventi_Errore> %1-%2 (%3)")
                                                .arg(numero)
                                                .arg(sorgente, descrizione));
    // Hiding the main window makes the next tick close the console.
    if (mConsole)
        mConsole->Nascondi();
}
