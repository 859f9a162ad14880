#pragma once

#include "PxConsoleResDll.h"
#include "PxConsoleStato.h"
#include "PxContesto.h"
#include "PxIconResource.h"
#include "PxImpostazioni.h"
#include "PxLogConsole.h"
#include "PxSrvEventiServer.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <pugixml.hpp>

#include <functional>
#include <memory>

class IFrmConsole;
class PxSrvBkgConsole;
class PxSrvEventiServer;
class PxMonitorCiclo;
class PxSrvServer;
class frmApertura;
class frmChiusura;

// The console's events object, handed to the host: the state as it changes.
class PxConsoleEventi : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

signals:
    void CambioStato(qint32 codice);
};

// The engine: owns the console's life. The host sets SrvServer, ServerEventi, PercorsoGui
// and PercorsoLog, calls Inizializza and Avvia; Arresta and Termina close it down. Start and
// stop are asynchronous: the public operations change the state and arm the timer, and the
// timer's handler does the work on its next ticks. Public operations raise PxErrore (445
// wrong state, 91 missing object, 76 bad path, 361 cannot terminate) with the program's
// title as source. Windows get a PxContesto, never the engine.
class PxSrvConsole : public QObject
{
    Q_OBJECT

public:
    using FabbricaConsole = std::function<std::unique_ptr<IFrmConsole>(PxContesto&)>;

    explicit PxSrvConsole(QObject* parent = nullptr);
    ~PxSrvConsole() override;

    void Inizializza();
    void Avvia();
    void Arresta();
    void Termina();
    // Shows the main window when there is one.
    void Visualizza();
    // Rebuilds the main window with a fresh layout document (phase 5), when running.
    void RiavviaConsole();
    // A stop asked for from outside the console (a signal of the system): Arresta now when
    // running, as soon as running when starting, nothing when already stopping. False when
    // there is nothing to stop (not started, or stopped): the host may then end at once.
    bool RichiediArresto();

    // The server's console-side root; its folder must be known (connected) before Inizializza.
    void SetSrvServer(PxSrvServer* server) { mServer = server; }
    void SetServerEventi(PxSrvEventiServer* eventi) { mServerEventi = eventi; }
    PxConsoleEventi* ConsoleEventi() { return &mConsoleEventi; }
    static qint64 ProcessId();
    QString PercorsoGui() const { return mPercorsoGui; }
    void SetPercorsoGui(const QString& percorso) { mPercorsoGui = percorso; }
    QString PercorsoLog() const { return mPercorsoLog; }
    void SetPercorsoLog(const QString& percorso) { mPercorsoLog = percorso; }
    const PxConsoleStato& Stato() const { return mStato; }
    bool Inizializzato() const { return mInizializzato; }

    // The main window's maker; set by the host before Avvia.
    void SetFabbricaConsole(FabbricaConsole fabbrica) { mFabbrica = std::move(fabbrica); }

    // The file names the engine keeps in the server folder.
    static constexpr const char* FileUI = "UIConsole.xml";
    static QString TitoloProgramma();

public slots:
    // The start/stop driver.
    void mobjTimer_TimerEvent();
    void mobjSrvBkgConsoleEventi_Inizio();
    void mobjSrvBkgConsoleEventi_Fine();
    void mobjSrvBkgConsoleEventi_Errore(qint32 numero, const QString& sorgente, const QString& descrizione);
    // The server cannot be reached (any more): logged, and the console closes.
    void SrvServer_Interrotto(const QString& motivo);

private:
    friend struct PxSrvConsoleSonda; // the tests' window into the phases

    [[noreturn]] void Solleva(qint32 numero) const;
    void ImpostaCodice(qint32 codice);
    void ImpostaOccupato(bool occupato);
    void ImpostaIntervallo(int millisecondi);
    void LeggiConfigurazioneLog();
    void ApplicaConfigurazione();
    void NuovoDocumentoUI();
    void CaricaDocumentoUI();
    void SalvaDocumentoUI();
    void AvviaLavoro();
    void ChiudiConsole();
    void MostraChiusura();
    QString FileServer(const char* nome) const;
    QString FileProprio(const char* nome) const;

    bool mInizializzato = false;
    qint32 mFase = 0;
    PxConsoleStato mStato;
    QTimer mobjTimer;
    PxSrvBkgConsole* mobjSrvBkgConsoleEventi = nullptr; // the server's, reached by name
    QString mPercorsoGui;
    QString mPercorsoLog;

    PxSrvServer* mServer = nullptr;
    QPointer<PxSrvEventiServer> mServerEventi;
    PxConsoleEventi mConsoleEventi;
    PxLogConsole mLog;
    PxConsoleResDll mRisorse;
    PxIconResource mIcone;
    PxImpostazioni mImpostazioni;
    PxContesto mContesto;
    pugi::xml_document mUIDocumento;
    bool mCursoreOccupato = false;
    bool mArrestoRichiesto = false;
    std::unique_ptr<PxMonitorCiclo> mMonitor;

    FabbricaConsole mFabbrica;
    std::unique_ptr<IFrmConsole> mConsole;
    std::unique_ptr<frmApertura> mApertura;
    std::unique_ptr<frmChiusura> mChiusura;
};
