#include "RefServer.h"

#include "PxContratto.h"
#include "PxLettoreIni.h"
#include "PxRigaLog.h"
#include "RefBkgConsole.h"
#include "RefCartellaDocumenti.h"
#include "RefCatalogo.h"
#include "RefIngresso.h"
#include "RefAccesso.h"
#include "RefLavoratori.h"
#include "RefServizio.h"
#include "RefUsoSistema.h"
#include "modCartelle.h"
#include "modCatalogo.h"
#include "modLetturaFile.h"

#include <QDir>
#include <QFileInfo>
#include <QElapsedTimer>
#include <QMutexLocker>
#include <QSysInfo>

#include <limits>
#include <sstream>

using namespace Qt::StringLiterals;

// A list kept in a service's state XML, and the notices of its changes.
struct RefServer::Elenco
{
    const char* Servizio;
    const char* Nome;
    const char* Voce;   // an entry's element name
    const char* Chiave; // its key element
    void (RefServer::*Aggiunta)(const QString& nodoXml);
    void (RefServer::*Rimozione)(const QString& chiave);
};

namespace {

QString ChiaveVoce(const pugi::xml_node& voce, const char* elemento)
{
    return QString::fromUtf8(voce.child(elemento).child_value()).trimmed();
}

} // namespace

QString RefServer::CartellaServizi(const QString& server) { return QDir(server).filePath(u"Servizi"_s); }
QString RefServer::CartellaLog(const QString& server) { return QDir(server).filePath(u"Log"_s); }

RefServer::RefServer(const QString& cartella, Opzioni opzioni, QObject* parent)
    : QObject(parent),
      mOpzioni(opzioni),
      mCartella(QDir(cartella).absolutePath()),
      mIdentificativo(QStringLiteral("PlxSrv %1 su %2").arg(QStringLiteral(PLX_VERSION), QSysInfo::machineHostName())),
      mLog(QDir(CartellaLog(mCartella)).filePath(u"PxSrvServer.log"_s)),
      mBkgConsole(new RefBkgConsole(this)),
      mUsoSistema(new RefUsoSistema(this))
{
    Pubblica(QString::fromLatin1(modContratto::NomeServer), this);
    Pubblica(QString::fromLatin1(modContratto::NomeBkgConsole), mBkgConsole);
    Pubblica(QString::fromLatin1(modContratto::NomeUsoSistema), mUsoSistema);
    if (mOpzioni.CaricaSubito)
        Carica();
}

RefServer::~RefServer()
{
    if (mCaricato)
        mLog.Scrivi(modRigaLog::LivelloInformazione, u"Arresto del server"_s);
}

void RefServer::Pubblica(const QString& nome, QObject* oggetto)
{
    oggetto->setObjectName(nome);
    const QMutexLocker blocco(&mMutexNomi);
    mPubblicati.insert(nome, oggetto);
    mNomi << nome;
}

QObject* RefServer::Oggetto(const QString& nome) const
{
    const QMutexLocker blocco(&mMutexNomi);
    return mPubblicati.value(nome);
}

QStringList RefServer::Nomi() const
{
    const QMutexLocker blocco(&mMutexNomi);
    return mNomi;
}

void RefServer::Carica()
{
    if (mCaricato || !mServizi.isEmpty())
        return;
    QElapsedTimer tempo;
    tempo.start();
    QDir().mkpath(CartellaLog(mCartella));
    mLog.Scrivi(modRigaLog::LivelloInformazione, QStringLiteral("Avvio del server su %1").arg(mCartella));

    const QDir servizi(CartellaServizi(mCartella));
    for (const modCatalogo::VoceServizio& voce : modCatalogo::Voci()) {
        const QString chiave = QString::fromLatin1(voce.Chiave);
        const QString file = servizi.filePath(chiave + u".xml"_s);
        pugi::xml_document configurazione;
        if (QFileInfo::exists(file)) {
            const pugi::xml_parse_result esito = configurazione.load_file(QFile::encodeName(file).constData());
            if (!esito) {
                mLog.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("Configurazione %1 non valida: %2 (posizione %3)")
                                                           .arg(file, QString::fromUtf8(esito.description()))
                                                           .arg(esito.offset));
                configurazione.reset();
            }
        }
        auto* servizio = new RefServizio(voce, configurazione.document_element(), CartellaLog(mCartella), this);
        // A service log that cannot be written says so once, in the server's log and on the
        // service's state.
        servizio->Log().AlGuasto([this, servizio](const QString& motivo) {
            const QString testo = QStringLiteral("Log %1 non scrivibile: %2").arg(servizio->Log().Percorso(), motivo);
            mLog.Scrivi(modRigaLog::LivelloErrore, testo);
            servizio->ImpostaErrore(31, testo);
        });
        mServizi.insert(chiave, servizio);
        mChiavi << chiave;
        Pubblica(modContratto::NomeServizio(chiave), servizio);
    }
    for (const QString& chiave : {u"PxSrvFormati"_s, u"PxSrvFirme"_s}) {
        auto* catalogo = new RefCatalogo(chiave, QDir(mCartella).filePath(chiave == u"PxSrvFormati" ? u"Formati"_s : u"Firme"_s),
                                         mLog, this);
        mCataloghi.insert(chiave, catalogo);
        Pubblica(modContratto::NomeCatalogo(chiave), catalogo);
    }

    const PxLettoreIni ini(QDir(mCartella).filePath(u"PlxConfigurazione.ini"_s));
    const QString sezione = u"Server di riferimento"_s;
    const QString estensioneZip = ini.Stringa(u"Console"_s, u"EstenzioneFileZip"_s, u".pxz"_s, 1024);
    qint64 candidati = 0;
    for (const modCartelle::Definizione& def : modCartelle::Cartelle()) {
        auto* c = new RefCartellaDocumenti(def, mCartella, mServizi.value(QString::fromLatin1(def.Servizio)),
                                           mServizi.value(QString::fromLatin1(def.Chiave)), mLog, this);
        c->ImpostaDestinazioni([this](GenereCartella g) { return Cartella(g); });
        c->ImpostaEstensioneZip(estensioneZip);
        mCartelle.insert(c->Chiave(), c);
        mOrdineCartelle << c;
        candidati += c->Prepara();
    }
    // The loading is reported at most every 100 ms: enough for a bar, few events.
    const qint32 totale = static_cast<qint32>(std::min<qint64>(candidati, std::numeric_limits<qint32>::max()));
    qint64 fatti = 0;
    QElapsedTimer ultimo;
    ultimo.start();
    emit Caricamento(0, totale, {});
    int documenti = 0;
    for (RefCartellaDocumenti* c : std::as_const(mOrdineCartelle)) {
        const modCatalogo::VoceServizio* voce = modCatalogo::Trova(c->Chiave());
        const QString nome = voce ? QString::fromUtf8(voce->Nome) : c->Chiave();
        documenti += c->Carica([&](qint64 letti) {
            if (ultimo.elapsed() < 100)
                return;
            ultimo.restart();
            emit Caricamento(static_cast<qint32>(std::min<qint64>(fatti + letti, totale)), totale, nome);
        }, &mInterrompi);
        fatti += c->Totale();
        Pubblica(modContratto::NomeCartella(c->Chiave()), c);
    }
    if (mInterrompi) {
        // Closing before the end of the load: no worker starts on a half-read server.
        mLog.Scrivi(modRigaLog::LivelloAvviso, QStringLiteral("Caricamento interrotto dopo %1 ms").arg(tempo.elapsed()));
        return;
    }
    mLog.Scrivi(modRigaLog::LivelloInformazione,
                QStringLiteral("%1 documenti caricati in %2 ms").arg(documenti).arg(tempo.elapsed()));

    mLavoratori = new RefLavoratori(mOrdineCartelle, [this](const QString& chiave) { return mServizi.value(chiave); }, this);
    mLavoratori->ImpostaPercentualeRespinti(ini.Intero(sezione, u"PercentualeRespinti"_s, 5));
    mLavoratori->ImpostaPerPasso(ini.Intero(sezione, u"DocumentiPerPasso"_s, 3));
    for (RefCartellaDocumenti* c : std::as_const(mOrdineCartelle)) {
        auto* ingresso = new RefIngresso(mCartella, *c, *mServizi.value(c->ChiaveServizio()), mLog, this);
        mIngressi.insert(c->ChiaveServizio(), ingresso);
        if (mOpzioni.Automatico)
            ingresso->Avvia(ini.Intero(sezione, u"IntervalloIngresso"_s, 1000));
    }
    if (mOpzioni.Automatico)
        mLavoratori->ImpostaIntervallo(ini.Intero(sezione, u"IntervalloLavoro"_s, 2000));

    mCaricato = true;
    emit Caricamento(totale, totale, {});
    emit Pronto();
    const QList<quint64> attese = std::exchange(mDescrizioniAttese, {});
    for (const quint64 richiesta : attese)
        RichiediDescrizione(richiesta);
}

void RefServer::RichiediRuolo(quint64 richiesta)
{
    const RefAccesso::Chiamante& chi = RefAccesso::Corrente();
    emit Risposta(richiesta, modContratto::Ok, RefAccesso::NomeRuolo(chi.Permessi), chi.Nome.toUtf8());
}

void RefServer::AnnunciaArresto()
{
    if (mStato == StatoInArresto)
        return;
    mLog.Scrivi(modRigaLog::LivelloInformazione, u"Arresto richiesto: nessun nuovo lavoro"_s);
    if (mLavoratori)
        mLavoratori->ImpostaIntervallo(0);
    for (RefIngresso* ingresso : std::as_const(mIngressi))
        ingresso->Ferma();
    mStato = StatoInArresto;
    emit CambioStatoServer(mStato);
}

const RefServer::Elenco RefServer::Utenti{"PxSrvAnteprime", "Utenti", "Utente", "KeyUtente",
                                          &RefServer::UtenteConnesso, &RefServer::UtenteDisconnesso};
const RefServer::Elenco RefServer::Stampanti{"PxSrvStampe", "Stampanti", "Stampante", "Chiave",
                                             &RefServer::StampanteAggiunta, &RefServer::StampanteRimossa};
const RefServer::Elenco RefServer::ClientiFtp{"PxSrvFtp", "FtpClients", "FtpClient", "Key",
                                              &RefServer::FtpClienteConnesso, &RefServer::FtpClienteDisconnesso};

bool RefServer::ConnettiUtente(const QString& nodoXml) { return AggiungiVoce(Utenti, nodoXml); }
bool RefServer::DisconnettiUtente(const QString& keyUtente) { return RimuoviVoce(Utenti, keyUtente); }
bool RefServer::AggiungiStampante(const QString& nodoXml) { return AggiungiVoce(Stampanti, nodoXml); }
bool RefServer::RimuoviStampante(const QString& chiave) { return RimuoviVoce(Stampanti, chiave); }
bool RefServer::ConnettiFtpCliente(const QString& nodoXml) { return AggiungiVoce(ClientiFtp, nodoXml); }
bool RefServer::DisconnettiFtpCliente(const QString& chiave) { return RimuoviVoce(ClientiFtp, chiave); }

bool RefServer::AggiungiVoce(const Elenco& elenco, const QString& nodoXml)
{
    RefServizio* servizio = mCaricato ? mServizi.value(QString::fromLatin1(elenco.Servizio)) : nullptr;
    if (!servizio)
        return false;
    const QByteArray testo = nodoXml.toUtf8();
    pugi::xml_document doc;
    if (!doc.load_buffer(testo.constData(), static_cast<size_t>(testo.size())))
        return false;
    const pugi::xml_node record = doc.document_element();
    const QString chiave = ChiaveVoce(record, elenco.Chiave);
    if (std::string_view(record.name()) != elenco.Voce || chiave.isEmpty())
        return false;
    pugi::xml_node lista = servizio->Elemento(elenco.Nome);
    for (const pugi::xml_node voce : lista.children(elenco.Voce))
        if (ChiaveVoce(voce, elenco.Chiave) == chiave)
            return false;
    const pugi::xml_node copia = lista.append_copy(record);
    std::ostringstream out;
    copia.print(out, "", pugi::format_raw);
    mLog.Scrivi(modRigaLog::LivelloInformazione,
                QStringLiteral("%1: aggiunto %2").arg(QString::fromLatin1(elenco.Nome), chiave));
    servizio->Pubblica();
    emit (this->*elenco.Aggiunta)(QString::fromStdString(out.str()));
    return true;
}

bool RefServer::RimuoviVoce(const Elenco& elenco, const QString& chiave)
{
    RefServizio* servizio = mCaricato ? mServizi.value(QString::fromLatin1(elenco.Servizio)) : nullptr;
    const QString cercata = chiave.trimmed();
    if (!servizio || cercata.isEmpty())
        return false;
    pugi::xml_node lista = servizio->Elemento(elenco.Nome);
    for (const pugi::xml_node voce : lista.children(elenco.Voce)) {
        if (ChiaveVoce(voce, elenco.Chiave) != cercata)
            continue;
        lista.remove_child(voce);
        mLog.Scrivi(modRigaLog::LivelloInformazione,
                    QStringLiteral("%1: rimosso %2").arg(QString::fromLatin1(elenco.Nome), cercata));
        servizio->Pubblica();
        emit (this->*elenco.Rimozione)(cercata);
        return true;
    }
    return false;
}

RefCartellaDocumenti* RefServer::Cartella(GenereCartella genere) const
{
    return mCartelle.value(QString::fromLatin1(modCartelle::Di(genere).Chiave));
}

void RefServer::RichiediDescrizione(quint64 richiesta)
{
    if (!mCaricato) {
        mDescrizioniAttese << richiesta;
        return;
    }
    emit Risposta(richiesta, modContratto::Ok, {}, Descrizione());
}

void RefServer::LeggiFile(quint64 richiesta, const QString& percorso, qint64 inizio, qint32 quanti)
{
    const PxRisposta r = modLetturaFile::Leggi(mCartella, percorso, inizio, quanti);
    if (!r.Riuscita()) {
        // A file not there yet (the log of a service that has not written one) is ordinary;
        // a refusal is worth a warning.
        const bool manca = !QFileInfo::exists(QDir(mCartella).filePath(QDir::fromNativeSeparators(percorso.trimmed())));
        mLog.Scrivi(manca ? modRigaLog::LivelloDettaglio : modRigaLog::LivelloAvviso,
                    QStringLiteral("Lettura di %1 non eseguita: %2").arg(percorso.left(300), r.Testo));
    }
    emit Risposta(richiesta, r.Esito, r.Testo, r.Dati);
}

QByteArray RefServer::Descrizione() const
{
    // Each state goes as text: one service's malformed state cannot spoil the others.
    pugi::xml_document doc;
    pugi::xml_node radice = doc.append_child("Server");
    radice.append_attribute("Stato") = mStato;
    for (const QString& chiave : mChiavi) {
        pugi::xml_node n = radice.append_child("Servizio");
        n.append_attribute("Chiave") = chiave.toUtf8().constData();
        n.text().set(mServizi.value(chiave)->StatoXml().toUtf8().constData());
    }
    for (const RefCartellaDocumenti* c : mOrdineCartelle) {
        pugi::xml_node n = radice.append_child("Cartella");
        n.append_attribute("Chiave") = c->Chiave().toUtf8().constData();
        n.append_attribute("Servizio") = c->ChiaveServizio().toUtf8().constData();
        // The optional queue is run when a worker of ours takes documents out of it (the fax
        // confirmations): then a console lists it like the others.
        const qint32 opzionale = modTabellaCartelle::Di(c->Definizione().Genere).CodaOpzionale;
        for (const modCartelle::Passo& passo : c->Definizione().Passi)
            if (opzionale >= 0 && passo.Da == opzionale && mServizi.contains(QString::fromLatin1(passo.Lavoratore))) {
                n.append_attribute("CodeOpzionali") = opzionale;
                break;
            }
    }
    for (const QString& chiave : {u"PxSrvFormati"_s, u"PxSrvFirme"_s})
        radice.append_child("Catalogo").append_attribute("Chiave") = chiave.toUtf8().constData();
    std::ostringstream out;
    doc.save(out, "", pugi::format_raw | pugi::format_no_declaration);
    return QByteArray::fromStdString(out.str());
}
