#include "RefServer.h"

#include "PxRigaLog.h"
#include "PxSrvEventiServer.h"
#include "PxLettoreIni.h"
#include "RefBkgConsole.h"
#include "RefCartellaDocumenti.h"
#include "RefCatalogo.h"
#include "RefIngresso.h"
#include "RefLavoratori.h"
#include "RefServizio.h"
#include "RefUsoSistema.h"
#include "modCartelle.h"
#include "modCatalogo.h"

#include <QDir>
#include <QElapsedTimer>
#include <QSysInfo>

QString RefServer::CartellaServizi(const QString& server) { return QDir(server).filePath(QStringLiteral("Servizi")); }
QString RefServer::CartellaLog(const QString& server) { return QDir(server).filePath(QStringLiteral("Log")); }

RefServer::RefServer(const QString& cartella, Opzioni opzioni, QObject* parent)
    : PxSrvServer(parent),
      mCartella(QDir(cartella).absolutePath()),
      mLog((QDir().mkpath(CartellaLog(mCartella)), QDir(CartellaLog(mCartella)).filePath(QStringLiteral("PxSrvServer.log")))),
      mEventi(new PxSrvEventiServer(this)),
      mUsoSistema(new RefUsoSistema(this))
{
    mLog.Scrivi(modRigaLog::LivelloInformazione, QStringLiteral("Avvio del server su %1").arg(mCartella));
    const QDir servizi(CartellaServizi(mCartella));
    for (const modCatalogo::VoceServizio& voce : modCatalogo::Voci()) {
        const QString chiave = QString::fromLatin1(voce.Chiave);
        const QString file = servizi.filePath(chiave + QStringLiteral(".xml"));
        pugi::xml_document configurazione;
        if (QFileInfo::exists(file)) {
            const pugi::xml_parse_result esito = configurazione.load_file(file.toUtf8().constData());
            if (!esito) {
                mLog.Scrivi(modRigaLog::LivelloErrore,
                            QStringLiteral("Configurazione %1 non valida: %2 (posizione %3)")
                                .arg(file, QString::fromUtf8(esito.description()))
                                .arg(esito.offset));
                configurazione.reset();
            }
        }
        auto* servizio = new RefServizio(voce, configurazione.document_element(), CartellaLog(mCartella), this);
        mServizi.insert(chiave, servizio);
        mChiavi << chiave;
    }

    mCataloghi.insert(QStringLiteral("PxSrvFormati"),
                      new RefCatalogo(QStringLiteral("PxSrvFormati"), QDir(mCartella).filePath(QStringLiteral("Formati")), mLog, this));
    mCataloghi.insert(QStringLiteral("PxSrvFirme"),
                      new RefCatalogo(QStringLiteral("PxSrvFirme"), QDir(mCartella).filePath(QStringLiteral("Firme")), mLog, this));

    const PxLettoreIni ini(QDir(mCartella).filePath(QStringLiteral("PlxConfigurazione.ini")));
    const QString sezione = QStringLiteral("Server di riferimento");
    QElapsedTimer tempo;
    tempo.start();
    QList<RefCartellaDocumenti*> cartelle;
    for (const modCartelle::Definizione& def : modCartelle::Cartelle()) {
        auto* c = new RefCartellaDocumenti(def, mCartella, mServizi.value(QString::fromLatin1(def.Servizio)),
                                           mServizi.value(QString::fromLatin1(def.Chiave)), mLog, this);
        c->ImpostaDestinazioni([this](GenereCartella g) { return Cartella(g); });
        c->ImpostaEstensioneZip(ini.Stringa(QStringLiteral("Console"), QStringLiteral("EstenzioneFileZip"), QStringLiteral(".pxz"), 1024));
        mCartelle.insert(c->Chiave(), c);
        cartelle << c;
    }
    int documenti = 0;
    for (RefCartellaDocumenti* c : std::as_const(cartelle))
        documenti += c->Carica();
    mLog.Scrivi(modRigaLog::LivelloInformazione,
                QStringLiteral("%1 documenti caricati in %2 ms").arg(documenti).arg(tempo.elapsed()));

    mLavoratori = new RefLavoratori(cartelle, [this](const QString& chiave) { return mServizi.value(chiave); }, this);
    mLavoratori->ImpostaPercentualeRespinti(ini.Intero(sezione, QStringLiteral("PercentualeRespinti"), 5));
    mLavoratori->ImpostaPerPasso(ini.Intero(sezione, QStringLiteral("DocumentiPerPasso"), 3));
    for (RefCartellaDocumenti* c : std::as_const(cartelle)) {
        auto* ingresso = new RefIngresso(mCartella, *c, *mServizi.value(c->ChiaveServizio()), mLog, this);
        mIngressi.insert(c->ChiaveServizio(), ingresso);
        if (opzioni.Automatico)
            ingresso->Avvia(ini.Intero(sezione, QStringLiteral("IntervalloIngresso"), 1000));
    }
    if (opzioni.Automatico)
        mLavoratori->ImpostaIntervallo(ini.Intero(sezione, QStringLiteral("IntervalloLavoro"), 2000));
}

RefCartellaDocumenti* RefServer::Cartella(GenereCartella genere) const
{
    return mCartelle.value(QString::fromLatin1(modCartelle::Di(genere).Chiave));
}

RefServer::~RefServer()
{
    mLog.Scrivi(modRigaLog::LivelloInformazione, QStringLiteral("Arresto del server"));
}

QString RefServer::Identificativo() const
{
    return QStringLiteral("PlxSrv %1 su %2").arg(QStringLiteral(PLX_VERSION), QSysInfo::machineHostName());
}

PxSrvServizio* RefServer::Servizio(const QString& chiave) const { return mServizi.value(chiave); }

PxSrvCartellaDocumenti* RefServer::CartellaDocumenti(const QString& chiave) const { return mCartelle.value(chiave); }

PxSrvCatalogo* RefServer::Catalogo(const QString& chiave) const { return mCataloghi.value(chiave); }

QStringList RefServer::Chiavi() const { return mChiavi; }

PxSrvEventiServer* RefServer::Eventi() const { return mEventi; }

PxSrvBkgConsole* RefServer::CreaBkgConsole() { return new RefBkgConsole(); }

PxSrvUsoSistema* RefServer::UsoSistema() const { return mUsoSistema; }
