#include "frmPosizione.h"

#include "PxImmagini.h"
#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxErrore.h"
#include "PxIconResource.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"
#include "frmApertura.h"
#include "modAlberoServer.h"

#include <QTreeWidgetItemIterator>
#include "modTraccia.h"

#include <QApplication>
#include <QHeaderView>
#include <QSet>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <pugixml.hpp>

#include <sstream>

namespace {

using modAlberoServer::Genere;

constexpr int RuoloChiave = Qt::UserRole;
constexpr int RuoloIcona = Qt::UserRole + 1;

// The list rows of the tree and the operations that add and remove one of their nodes.
struct Elenco
{
    const char* Chiave;
    const char* Aggiungi; // procedure name, for the log
    void (frmPosizione::*Aggiunta)(const QString&);
    void (frmPosizione::*Rimozione)(const QString&);
};

const Elenco Elenchi[] = {
    {"SrvUtente", "frmPosizione_AggiungiUtente", &frmPosizione::AggiungiUtente, &frmPosizione::RimuoviUtente},
    {"SrvStampante", "frmPosizione_AggiungiStampante", &frmPosizione::AggiungiStampante, &frmPosizione::RimuoviStampante},
    {"SrvFtpCln", "frmPosizione_AggiungiFtpCliente", &frmPosizione::AggiungiFtpCliente, &frmPosizione::RimuoviFtpCliente},
};

const Elenco& ElencoDi(const char* chiave)
{
    for (const Elenco& e : Elenchi)
        if (std::string_view(e.Chiave) == chiave)
            return e;
    return Elenchi[0];
}

const modAlberoServer::Nodo& Riga(const char* chiave)
{
    const auto nodi = modAlberoServer::Nodi();
    for (const modAlberoServer::Nodo& riga : nodi)
        if (std::string_view(riga.Chiave) == chiave)
            return riga;
    return nodi.front();
}

bool Carica(pugi::xml_document& doc, const QString& testo)
{
    const QByteArray xml = testo.toUtf8();
    return doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size())) && doc.document_element();
}

bool Carica(pugi::xml_document& doc, const PxSrvServizio* servizio) { return servizio && servizio->LeggiStato(doc); }

QString Testo(const pugi::xml_node& nodo, const char* percorso)
{
    return QString::fromUtf8(nodo.select_node(percorso).node().child_value()).trimmed();
}

QString Xml(const pugi::xml_node& nodo)
{
    std::ostringstream out;
    nodo.print(out, "", pugi::format_raw);
    return QString::fromStdString(out.str());
}

// The key of a list entry; an entry without one is malformed.
QString ChiaveDi(const modAlberoServer::Nodo& riga, const pugi::xml_node& voce)
{
    const QString chiave = Testo(voce, riga.ElementoChiave);
    if (chiave.isEmpty())
        throw PxErrore(modErrori::ErrOggettoMancante, QStringLiteral("frmPosizione"),
                       modErrori::TestoErrore(modErrori::ErrOggettoMancante) + QStringLiteral(" (")
                           + QString::fromLatin1(riga.Elenco) + u'/' + QString::fromUtf8(voce.name()) + u'/'
                           + QString::fromLatin1(riga.ElementoChiave) + u')');
    return chiave;
}

QString InCorso(const PxConsoleResDll& testi, const QString& caption)
{
    return testi.LoadDllString(8006) + u' ' + caption + u' ' + testi.LoadDllString(8007);
}

} // namespace

frmPosizione::frmPosizione(PxContesto& contesto, QWidget* parent)
    : QWidget(parent), mContesto(contesto), mxtwPosizione(new QTreeWidget(this))
{
    setObjectName(QStringLiteral("frmPosizione"));
    mxtwPosizione->setObjectName(QStringLiteral("mxtwPosizione"));
    mxtwPosizione->setHeaderHidden(true);
    mxtwPosizione->setUniformRowHeights(true);
    mxtwPosizione->setIconSize(QSize(20, 20));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(mxtwPosizione);

    mobjTimerPosizione.setInterval(25);
    mobjTimerPosizione.setSingleShot(false);
    connect(&mobjTimerPosizione, &QTimer::timeout, this, &frmPosizione::mobjTimerPosizione_TimerEvent);
    // Every selection or click restarts the timer: a burst navigates once.
    const auto riavvia = [this] {
        mobjTimerPosizione.stop();
        mobjTimerPosizione.start();
    };
    connect(mxtwPosizione, &QTreeWidget::currentItemChanged, this, riavvia);
    connect(mxtwPosizione, &QTreeWidget::itemClicked, this, riavvia);
}

QString frmPosizione::ChiaveVoce(const char* chiaveNodo, const QString& chiaveVoce)
{
    return QString::fromLatin1(chiaveNodo) + u'|' + chiaveVoce;
}

QString frmPosizione::ChiaveNodo(const QTreeWidgetItem* nodo)
{
    return nodo ? nodo->data(0, RuoloChiave).toString() : QString();
}

QTreeWidgetItem* frmPosizione::AggiungiNodo(QTreeWidgetItem* padre, const QString& chiave, const QString& caption,
                                            qint32 icona)
{
    auto* nodo = padre ? new QTreeWidgetItem(padre) : new QTreeWidgetItem(mxtwPosizione);
    nodo->setText(0, caption);
    nodo->setData(0, RuoloChiave, chiave);
    nodo->setData(0, RuoloIcona, icona);
    nodo->setIcon(0, PxImmagini::Istanza().Icona(icona));
    mNodi.insert(chiave, nodo);
    return nodo;
}

QString frmPosizione::CaptionServizio(const modAlberoServer::Nodo& riga, const pugi::xml_node& radice) const
{
    QString caption = riga.Testo ? mContesto.Testi().LoadDllString(riga.Testo) : Testo(radice, "NomeStampanteWindows");
    if (std::string_view(riga.Chiave) == "SrvFtpSrv") {
        const QString indirizzo = Testo(radice, "IndirizzoLocale");
        if (!indirizzo.isEmpty())
            caption += QStringLiteral(" (%1)").arg(indirizzo);
    }
    return caption;
}

QString frmPosizione::CaptionVoce(const modAlberoServer::Nodo& riga, const pugi::xml_node& voce) const
{
    const std::string_view chiave(riga.Chiave);
    if (chiave == "SrvStampante")
        return Testo(voce, "NumeroTarquel") + QStringLiteral(") ") + Testo(voce, "NomeStampanteWindows");
    if (chiave == "SrvUtente")
        return Testo(voce, "Utente");
    return mContesto.Testi().LoadDllString(riga.Testo);
}

void frmPosizione::Inizializza(frmApertura* apertura)
{
    modTraccia::Traccia traccia("frmPosizione_Inizializza");
    const PxConsoleResDll& testi = mContesto.Testi();
    const PxIconResource& icone = mContesto.Icone();
    const PxSrvServer* server = mContesto.Server();
    // Each step is told once the node's caption and icon are known, right before it is
    // added: a node that fails tells nothing, so the steps told are the nodes built.
    const auto aggiungi = [&](QTreeWidgetItem* padre, const QString& chiave, const QString& caption, qint32 icona) {
        if (apertura)
            apertura->Avanzamento(InCorso(testi, caption));
        AggiungiNodo(padre, chiave, caption, icona);
    };

    mxtwPosizione->clear();
    mNodi.clear();
    for (const modAlberoServer::Nodo& riga : modAlberoServer::Nodi()) {
        const QString chiave = QString::fromLatin1(riga.Chiave);
        QTreeWidgetItem* padre = mNodi.value(QString::fromLatin1(riga.Padre));
        if (*riga.Padre && !padre)
            continue; // its service is absent
        if (riga.Tipo == Genere::Elenco) {
            pugi::xml_document doc;
            if (!server || !Carica(doc, server->Servizio(QString::fromLatin1(riga.Oggetto))))
                continue;
            // One entry's fault costs that entry only.
            for (const pugi::xml_node voce : doc.document_element().child(riga.Elenco).children()) {
                if (voce.type() == pugi::node_element)
                    modTraccia::Proteggi(ElencoDi(riga.Chiave).Aggiungi, [&] { AggiungiVoce(riga, voce, apertura); });
            }
            continue;
        }
        modTraccia::Proteggi("frmPosizione_AggiungiNodo", [&] {
            if (riga.Tipo == Genere::Server) {
                aggiungi(nullptr, chiave, testi.LoadDllString(riga.Testo),
                         server ? icone.IconaSrvServer(*server) : -modIcone::Server);
                return;
            }
            if (!server)
                return;
            if (riga.Tipo == Genere::Cartella) {
                aggiungi(padre, chiave, testi.LoadDllString(riga.Testo), modIcone::CartellaDocumenti);
                return;
            }
            pugi::xml_document doc;
            if (!Carica(doc, server->Servizio(QString::fromLatin1(riga.Oggetto))))
                return;
            const pugi::xml_node radice = doc.document_element();
            const qint32 icona = (icone.*riga.Icona)(radice);
            aggiungi(padre, chiave, CaptionServizio(riga, radice), icona);
        });
    }
    mxtwPosizione->expandAll();
    if (mxtwPosizione->topLevelItemCount())
        mxtwPosizione->setCurrentItem(mxtwPosizione->topLevelItem(0));
}

void frmPosizione::AggiungiVoce(const modAlberoServer::Nodo& riga, const pugi::xml_node& voce, frmApertura* apertura)
{
    const QString chiave = ChiaveVoce(riga.Chiave, ChiaveDi(riga, voce));
    if (mNodi.contains(chiave))
        return;
    QTreeWidgetItem* padre = mNodi.value(QString::fromLatin1(riga.Padre));
    if (!padre) // a notice for a service the tree does not show: under the root
        padre = mNodi.value(QString::fromLatin1(modAlberoServer::Nodi().front().Chiave));
    const QString caption = CaptionVoce(riga, voce);
    const qint32 icona = (mContesto.Icone().*riga.Icona)(voce);
    const bool utente = std::string_view(riga.Chiave) == "SrvUtente";
    if (apertura) {
        const PxConsoleResDll& testi = mContesto.Testi();
        apertura->Avanzamento(utente ? testi.LoadDllString(8008) + u' ' + caption : InCorso(testi, caption));
    }
    QTreeWidgetItem* nodo = AggiungiNodo(padre, chiave, caption, icona);
    if (utente && !Testo(voce, "ProcessId").isEmpty())
        nodo->setToolTip(0, mContesto.Testi().LoadDllString(2038) + u' ' + Testo(voce, "ProcessId"));
}

void frmPosizione::AggiungiDaXml(const char* chiaveNodo, const QString& nodoXml)
{
    modTraccia::Proteggi(ElencoDi(chiaveNodo).Aggiungi, [&] {
        pugi::xml_document doc;
        if (!Carica(doc, nodoXml))
            throw PxErrore(modErrori::ErrOggettoMancante, QStringLiteral("frmPosizione"),
                           modErrori::TestoErrore(modErrori::ErrOggettoMancante) + QStringLiteral(" (") + nodoXml.left(200)
                               + u')');
        AggiungiVoce(Riga(chiaveNodo), doc.document_element(), nullptr);
    });
}

void frmPosizione::RimuoviVoce(const char* chiaveNodo, const QString& chiaveVoce)
{
    delete mNodi.take(ChiaveVoce(chiaveNodo, chiaveVoce.trimmed()));
}

void frmPosizione::AggiungiStampante(const QString& nodoXml) { AggiungiDaXml("SrvStampante", nodoXml); }

void frmPosizione::AggiungiUtente(const QString& nodoXml) { AggiungiDaXml("SrvUtente", nodoXml); }

void frmPosizione::RimuoviUtente(const QString& keyUtente)
{
    modTraccia::Proteggi("frmPosizione_RimuoviUtente", [&] { RimuoviVoce("SrvUtente", keyUtente); });
}

void frmPosizione::RimuoviStampante(const QString& chiave)
{
    modTraccia::Proteggi("frmPosizione_RimuoviStampante", [&] { RimuoviVoce("SrvStampante", chiave); });
}

void frmPosizione::AggiungiFtpCliente(const QString& nodoXml) { AggiungiDaXml("SrvFtpCln", nodoXml); }

void frmPosizione::RimuoviFtpCliente(const QString& chiave)
{
    modTraccia::Proteggi("frmPosizione_RimuoviFtpCliente", [&] { RimuoviVoce("SrvFtpCln", chiave); });
}

void frmPosizione::AggiornaIcona(const QString& chiave, qint32 icona, const QString& caption)
{
    QTreeWidgetItem* nodo = mNodi.value(chiave);
    if (!nodo)
        return;
    if (nodo->data(0, RuoloIcona).toInt() != icona) {
        nodo->setData(0, RuoloIcona, icona);
        nodo->setIcon(0, PxImmagini::Istanza().Icona(icona));
    }
    if (!caption.isEmpty() && nodo->text(0) != caption)
        nodo->setText(0, caption);
}

void frmPosizione::SegnaIrraggiungibile(const QString& motivo)
{
    const QBrush grigio = mxtwPosizione->palette().brush(QPalette::Disabled, QPalette::Text);
    for (QTreeWidgetItemIterator it(mxtwPosizione); *it; ++it) {
        (*it)->setForeground(0, motivo.isEmpty() ? QBrush() : grigio);
        (*it)->setToolTip(0, motivo);
    }
}

void frmPosizione::AggiornaServizio(const QString& chiaveOggetto)
{
    modTraccia::Proteggi("frmPosizione_AggiornaServizio", [&] {
        const PxSrvServer* server = mContesto.Server();
        const PxSrvServizio* servizio = server ? server->Servizio(chiaveOggetto) : nullptr;
        if (!servizio)
            return;
        pugi::xml_document doc;
        if (!servizio->LeggiStato(doc))
            throw PxErrore(modErrori::ErrGenerico, QStringLiteral("frmPosizione"),
                           modErrori::TestoErrore(modErrori::ErrGenerico) + QStringLiteral(" (") + chiaveOggetto + u')');
        const pugi::xml_node radice = doc.document_element();
        for (const modAlberoServer::Nodo& riga : modAlberoServer::Nodi()) {
            if (chiaveOggetto != QLatin1StringView(riga.Oggetto) || !riga.Icona)
                continue;
            if (riga.Tipo == Genere::Elenco) {
                RiconciliaElenco(riga, radice);
                continue;
            }
            // A state whose icon cannot be read leaves the node as it was; the lists still follow.
            modTraccia::Proteggi("frmPosizione_AggiornaNodo", [&] {
                AggiornaIcona(QString::fromLatin1(riga.Chiave), (mContesto.Icone().*riga.Icona)(radice),
                              CaptionServizio(riga, radice));
            });
        }
    });
}

void frmPosizione::RiconciliaElenco(const modAlberoServer::Nodo& riga, const pugi::xml_node& radice)
{
    const Elenco& elenco = ElencoDi(riga.Chiave);
    QSet<QString> presenti;
    for (const pugi::xml_node voce : radice.child(riga.Elenco).children()) {
        if (voce.type() != pugi::node_element)
            continue;
        modTraccia::Proteggi("frmPosizione_AggiornaVoce", [&] {
            const QString chiave = ChiaveDi(riga, voce);
            presenti.insert(chiave);
            const QString chiaveNodo = ChiaveVoce(riga.Chiave, chiave);
            if (!mNodi.contains(chiaveNodo)) {
                (this->*elenco.Aggiunta)(Xml(voce));
                return;
            }
            AggiornaIcona(chiaveNodo, (mContesto.Icone().*riga.Icona)(voce), CaptionVoce(riga, voce));
        });
    }
    const QString prefisso = ChiaveVoce(riga.Chiave, QString());
    QStringList andati;
    for (auto it = mNodi.cbegin(); it != mNodi.cend(); ++it) {
        if (it.key().startsWith(prefisso) && !presenti.contains(it.key().mid(prefisso.size())))
            andati << it.key().mid(prefisso.size());
    }
    for (const QString& chiave : std::as_const(andati))
        (this->*elenco.Rimozione)(chiave);
}

qint32 frmPosizione::IconaNodo(const QString& chiave) const
{
    const QTreeWidgetItem* nodo = mNodi.value(chiave);
    return nodo ? nodo->data(0, RuoloIcona).toInt() : 0;
}

void frmPosizione::mobjTimerPosizione_TimerEvent()
{
    modTraccia::Proteggi("mobjTimerPosizione_TimerEvent", [&] {
        // The pointer comes back even when the navigation fails.
        struct Clessidra
        {
            Clessidra() { QApplication::setOverrideCursor(Qt::WaitCursor); }
            ~Clessidra() { QApplication::restoreOverrideCursor(); }
            Clessidra(const Clessidra&) = delete;
            Clessidra& operator=(const Clessidra&) = delete;
        } clessidra;
        mobjTimerPosizione.stop();
        if (const QTreeWidgetItem* nodo = mxtwPosizione->currentItem()) {
            const QString chiave = nodo->data(0, RuoloChiave).toString();
            if (chiave != mChiaveVisualizzata && mNavigazione)
                mNavigazione(nodo->text(0), chiave);
        }
    });
}
