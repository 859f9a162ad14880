#include "RefServer.h"

#include "PxRigaLog.h"
#include "PxSrvEventiServer.h"
#include "RefBkgConsole.h"
#include "RefServizio.h"
#include "RefUsoSistema.h"
#include "modCatalogo.h"

#include <QDir>
#include <QSysInfo>

QString RefServer::CartellaServizi(const QString& server) { return QDir(server).filePath(QStringLiteral("Servizi")); }
QString RefServer::CartellaLog(const QString& server) { return QDir(server).filePath(QStringLiteral("Log")); }

RefServer::RefServer(const QString& cartella, QObject* parent)
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

PxSrvCartellaDocumenti* RefServer::CartellaDocumenti(const QString&) const
{
    return nullptr; // the document folders come with the documents
}

QStringList RefServer::Chiavi() const { return mChiavi; }

PxSrvEventiServer* RefServer::Eventi() const { return mEventi; }

PxSrvBkgConsole* RefServer::CreaBkgConsole() { return new RefBkgConsole(); }

PxSrvUsoSistema* RefServer::UsoSistema() const { return mUsoSistema; }
