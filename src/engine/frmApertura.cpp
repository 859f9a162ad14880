#include "frmApertura.h"

#include "PxConsoleResDll.h"
#include "PxErrore.h"
#include "PxRigaLog.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"

#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QSet>

#include "modProcesso.h"
#include "modTraccia.h"

#include <pugixml.hpp>

#include <algorithm>

#include <initializer_list>
#include <limits>

namespace {

// Service key, and what a present service adds beside its own node: its document folder,
// its workers (each counted when present) and the list whose entries become nodes. These
// are the nodes the server tree builds, in the same terms: a worker or folder only under
// its present group, one entry per distinct non-empty key (the tree skips the others).
struct PesoServizio
{
    const char* Chiave;
    std::initializer_list<const char*> Lavoratori;
    bool Cartella;
    const char* Elenco;      // child element whose entries each count 1
    const char* ChiaveVoce;  // an entry's key element
};

const PesoServizio Pesi[] = {
    {"PxSrvFormati", {}, false, nullptr, nullptr},
    {"PxSrvFirme", {}, false, nullptr, nullptr},
    {"PxSrvAnteprime", {}, true, "Utenti", "KeyUtente"},
    {"PxSrvStampe", {}, true, "Stampanti", "Chiave"},
    {"PxSrvEmail", {"PxSrvEmlPdfVm", "PxSrvSmtp", "PxSrvRprtEml"}, true, nullptr, nullptr},
    {"PxSrvFax", {"PxSrvTifVm", "PxSrvFaxVm", "PxSrvNeFax", "PxSrvRprtFax", "PxSrvNtfcFax"}, true, nullptr, nullptr},
    {"PxSrvPFax", {"PxSrvPFaxVm"}, true, nullptr, nullptr},
    {"PxSrvEFax", {"PxSrvEFaxPdfVm", "PxSrvEFaxVm"}, true, nullptr, nullptr},
    {"PxSrvPbl", {"PxSrvPblPdfVm", "PxSrvPblVm"}, true, nullptr, nullptr},
    {"PxSrvFtp", {"PxSrvFtpSrv"}, false, "FtpClients", "Key"},
    {"PxSrvImporta", {}, false, nullptr, nullptr},
    {"PxSrvWebSrv", {}, false, nullptr, nullptr},
    {"PxSrvWebUpdate", {}, false, nullptr, nullptr},
};

// The service's description parsed, or an empty document when it is missing or malformed.
bool Descrizione(const PxSrvServer& server, const char* chiave, pugi::xml_document& doc)
{
    const PxSrvServizio* servizio = server.Servizio(QString::fromLatin1(chiave));
    return servizio && servizio->LeggiStato(doc);
}

void Aggiungi(qint32& conteggio, qint64 passi)
{
    qint32 risultato = 0;
    if (passi > std::numeric_limits<qint32>::max() || __builtin_add_overflow(conteggio, static_cast<qint32>(passi), &risultato))
        throw PxErrore(modErrori::ErrOverflow, QStringLiteral("frmApertura"), modErrori::TestoErrore(modErrori::ErrOverflow));
    conteggio = risultato;
}

} // namespace

qint32 frmApertura::ContaPassi(const PxSrvServer* server)
{
    qint32 conteggio = 1;
    if (!server)
        return conteggio;
    for (const PesoServizio& peso : Pesi) {
        pugi::xml_document doc;
        if (!Descrizione(*server, peso.Chiave, doc))
            continue;
        Aggiungi(conteggio, peso.Cartella ? 2 : 1);
        if (peso.Elenco) {
            QSet<QString> chiavi;
            for (const pugi::xml_node voce : doc.document_element().child(peso.Elenco).children()) {
                const QString chiave = QString::fromUtf8(voce.child(peso.ChiaveVoce).child_value()).trimmed();
                if (voce.type() == pugi::node_element && !chiave.isEmpty())
                    chiavi.insert(chiave);
            }
            Aggiungi(conteggio, chiavi.size());
        }
        for (const char* lavoratore : peso.Lavoratori) {
            pugi::xml_document docLavoratore;
            if (Descrizione(*server, lavoratore, docLavoratore))
                Aggiungi(conteggio, 1);
        }
    }
    return conteggio;
}

frmApertura::frmApertura(const PxSrvServer* server, QWidget* parent) : frmTransitoria(8003, 8004, parent), mServer(server)
{
    setObjectName(QStringLiteral("frmApertura"));
    mEtichette[0]->setObjectName(QStringLiteral("lblApertura_0"));
    mEtichette[1]->setObjectName(QStringLiteral("lblApertura_1"));
    mInformazione->setObjectName(QStringLiteral("lblInformazione"));
    mBarra->setObjectName(QStringLiteral("prgApertura"));
    if (!server || server->Caricato()) {
        ServerPronto();
    } else {
        // A range of 0 shows activity until the server says how much it has to load.
        mBarra->setRange(0, 0);
        mInformazione->setText(PxConsoleResDll().LoadDllString(8012));
        connect(server, &PxSrvServer::Caricamento, this, &frmApertura::CaricamentoServer);
        connect(server, &PxSrvServer::Pronto, this, &frmApertura::ServerPronto);
    }
    Completa();
}

void frmApertura::CaricamentoServer(qint32 fatti, qint32 totale, const QString& testo)
{
    if (mPassiContati)
        return;
    mBarra->setRange(0, std::max(0, totale));
    mBarra->setValue(std::clamp(fatti, 0, std::max(0, totale)));
    const PxConsoleResDll testi;
    const QLocale italiano(QLocale::Italian, QLocale::Italy);
    mInformazione->setText(totale > 0 && !testo.isEmpty()
                               ? QStringLiteral("%1: %2 %3 %4")
                                     .arg(testo, italiano.toString(std::min(fatti, totale)), testi.LoadDllString(8013),
                                          italiano.toString(totale))
                               : testi.LoadDllString(8012));
}

void frmApertura::ServerPronto()
{
    if (mPassiContati)
        return;
    mPassiContati = true;
    mBarra->setRange(0, ContaPassi(mServer));
    mBarra->setValue(0);
    mInformazione->clear();
}

void frmApertura::showEvent(QShowEvent* evento)
{
    frmTransitoria::showEvent(evento);
    modTraccia::Scrivi(modRigaLog::LivelloDettaglio, QStringLiteral("Finestra di apertura visibile dopo %1 ms dall'avvio del processo")
                                                         .arg(modProcesso::MillisecondiDallAvvio()));
}

void frmApertura::Avanzamento(const QString& testo)
{
    // A progress bar repaints itself at once on every step, which made half the time of
    // building the tree; with updates held it paints when the event loop next turns.
    ++mPassi;
    mBarra->setUpdatesEnabled(false);
    if (mBarra->value() < mBarra->maximum())
        mBarra->setValue(mBarra->value() + 1);
    mBarra->setUpdatesEnabled(true);
    mInformazione->setText(testo);
}

int frmApertura::Massimo() const { return mBarra->maximum(); }
int frmApertura::Valore() const { return mBarra->value(); }
QString frmApertura::Informazione() const { return mInformazione->text(); }
