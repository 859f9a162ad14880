#include "frmPosizione.h"

#include "PxImmagini.h"
#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxIconResource.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"
#include "frmApertura.h"
#include "modAlberoServer.h"
#include "modTraccia.h"

#include <QApplication>
#include <QHeaderView>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <pugixml.hpp>

namespace {

constexpr int RuoloChiave = Qt::UserRole;
constexpr int RuoloIcona = Qt::UserRole + 1;

bool Carica(pugi::xml_document& doc, const PxSrvServizio* servizio)
{
    if (!servizio)
        return false;
    const QByteArray xml = servizio->StatoXml().toUtf8();
    return doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size())) && doc.document_element();
}

QString Testo(const pugi::xml_node& nodo, const char* percorso)
{
    return QString::fromUtf8(nodo.select_node(percorso).node().child_value()).trimmed();
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

void frmPosizione::Inizializza(frmApertura* apertura)
{
    modTraccia::Traccia traccia("frmPosizione_Inizializza");
    const PxConsoleResDll& testi = mContesto.Testi();
    const PxIconResource& icone = mContesto.Icone();
    const PxSrvServer* server = mContesto.Server();
    const auto avanza = [&](const QString& testo) {
        if (apertura)
            apertura->Avanzamento(testo);
    };
    const auto inCorso = [&](const QString& caption) {
        return testi.LoadDllString(8006) + u' ' + caption + u' ' + testi.LoadDllString(8007);
    };

    mxtwPosizione->clear();
    mNodi.clear();
    for (const modAlberoServer::Nodo& riga : modAlberoServer::Nodi()) {
        modTraccia::Proteggi("frmPosizione_AggiungiNodo", [&] {
            using modAlberoServer::Genere;
            const QString chiave = QString::fromLatin1(riga.Chiave);
            QTreeWidgetItem* padre = mNodi.value(QString::fromLatin1(riga.Padre));
            if (*riga.Padre && !padre)
                return; // its service is absent
            QString caption = riga.Testo ? testi.LoadDllString(riga.Testo) : QString();
            if (riga.Tipo == Genere::Server) {
                avanza(inCorso(caption));
                AggiungiNodo(nullptr, chiave, caption, server ? icone.IconaSrvServer(*server) : -modIcone::Server);
                return;
            }
            if (!server)
                return;
            const QString oggetto = QString::fromLatin1(riga.Oggetto);
            if (riga.Tipo == Genere::Cartella) {
                avanza(inCorso(caption));
                AggiungiNodo(padre, chiave, caption, modIcone::CartellaDocumenti);
                return;
            }
            pugi::xml_document doc;
            if (!Carica(doc, server->Servizio(oggetto)))
                return;
            const pugi::xml_node radice = doc.document_element();
            if (riga.Tipo == Genere::Servizio) {
                if (caption.isEmpty())
                    caption = Testo(radice, "NomeStampanteWindows");
                if (chiave == u"SrvFtpSrv" && !Testo(radice, "IndirizzoLocale").isEmpty())
                    caption += QStringLiteral(" (%1)").arg(Testo(radice, "IndirizzoLocale"));
                avanza(inCorso(caption));
                AggiungiNodo(padre, chiave, caption, (icone.*riga.Icona)(radice));
                return;
            }
            for (const pugi::xml_node voce : radice.child(riga.Elenco).children()) {
                modTraccia::Proteggi("frmPosizione_AggiungiVoce", [&] {
                    QString testo;
                    if (chiave == u"SrvStampante")
                        testo = Testo(voce, "NumeroTarquel") + QStringLiteral(") ") + Testo(voce, "NomeStampanteWindows");
                    else if (chiave == u"SrvUtente")
                        testo = Testo(voce, "Utente");
                    else
                        testo = caption + u' ' + Testo(voce, "Ip");
                    avanza(chiave == u"SrvUtente" ? testi.LoadDllString(8008) + u' ' + testo : inCorso(testo));
                    AggiungiNodo(padre, ChiaveVoce(riga.Chiave, Testo(voce, riga.ElementoChiave)), testo,
                                 (icone.*riga.Icona)(voce));
                });
            }
        });
    }
    // Follow the services' states from now on.
    if (server) {
        for (const QString& oggetto : server->Chiavi()) {
            if (PxSrvServizio* servizio = server->Servizio(oggetto))
                connect(servizio, &PxSrvServizio::StatoXmlCambiato, this,
                        [this, oggetto] { AggiornaServizio(oggetto); });
        }
    }
    mxtwPosizione->expandAll();
    if (mxtwPosizione->topLevelItemCount())
        mxtwPosizione->setCurrentItem(mxtwPosizione->topLevelItem(0));
}

void frmPosizione::AggiornaServizio(const QString& chiaveOggetto)
{
    modTraccia::Proteggi("frmPosizione_AggiornaServizio", [&] {
        pugi::xml_document doc;
        if (!Carica(doc, mContesto.Server()->Servizio(chiaveOggetto)))
            return;
        const pugi::xml_node radice = doc.document_element();
        for (const modAlberoServer::Nodo& riga : modAlberoServer::Nodi()) {
            if (chiaveOggetto != QLatin1StringView(riga.Oggetto) || !riga.Icona)
                continue;
            if (riga.Tipo == modAlberoServer::Genere::Servizio) {
                AggiornaIcona(QString::fromLatin1(riga.Chiave), (mContesto.Icone().*riga.Icona)(radice), QString());
                continue;
            }
            for (const pugi::xml_node voce : radice.child(riga.Elenco).children())
                AggiornaIcona(ChiaveVoce(riga.Chiave, Testo(voce, riga.ElementoChiave)),
                              (mContesto.Icone().*riga.Icona)(voce), QString());
        }
    });
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

qint32 frmPosizione::IconaNodo(const QString& chiave) const
{
    const QTreeWidgetItem* nodo = mNodi.value(chiave);
    return nodo ? nodo->data(0, RuoloIcona).toInt() : 0;
}

void frmPosizione::mobjTimerPosizione_TimerEvent()
{
    modTraccia::Proteggi("mobjTimerPosizione_TimerEvent", [&] {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        mobjTimerPosizione.stop();
        if (const QTreeWidgetItem* nodo = mxtwPosizione->currentItem()) {
            const QString chiave = nodo->data(0, RuoloChiave).toString();
            if (chiave != mChiaveVisualizzata && mNavigazione)
                mNavigazione(nodo->text(0), chiave);
        }
        QApplication::restoreOverrideCursor();
    });
}
