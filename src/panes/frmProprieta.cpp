#include "frmProprieta.h"

#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxIconResource.h"
#include "PxImmagini.h"
#include "PxModelloProprieta.h"
#include "PxRigaLog.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"
#include "frmCorpoDocumento.h"
#include "frmLog.h"
#include "frmScriptDocumento.h"
#include "frmVisFirma.h"
#include "modAlberoServer.h"
#include "modApri.h"
#include "modSchede.h"
#include "modTraccia.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDateTime>
#include <QDir>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QSaveFile>
#include <QStyledItemDelegate>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <pugixml.hpp>

#include <stdexcept>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

// How often an object's description is asked again while it stays selected; the service sheets
// are local copies and refresh on every tick.
constexpr qint64 IntervalloDescrizione = 1000;

// The value column with a small button on the items that have something to open.
class PxDelegatoAzione : public QStyledItemDelegate
{
public:
    PxDelegatoAzione(std::function<void(const QModelIndex&)> premuto, QObject* parent)
        : QStyledItemDelegate(parent), mPremuto(std::move(premuto))
    {
    }

    static bool HaAzione(const QModelIndex& i)
    {
        return i.column() == 1
            && !frmProprieta::TestoAzione(i.data(PxModelloProprieta::RuoloAzione).toInt(),
                                          i.data(PxModelloProprieta::RuoloValoreIntero).toString(),
                                          i.data(PxModelloProprieta::RuoloSecondo).toString())
                    .isEmpty();
    }

    static QRect Pulsante(const QStyleOptionViewItem& opzione)
    {
        const int lato = opzione.rect.height();
        return {opzione.rect.right() - lato + 1, opzione.rect.top(), lato, lato};
    }

    void paint(QPainter* pittore, const QStyleOptionViewItem& opzione, const QModelIndex& i) const override
    {
        if (!HaAzione(i)) {
            QStyledItemDelegate::paint(pittore, opzione, i);
            return;
        }
        QStyleOptionViewItem testo = opzione;
        testo.rect.setRight(Pulsante(opzione).left() - 2);
        QStyledItemDelegate::paint(pittore, testo, i);
        QStyleOptionButton pulsante;
        pulsante.rect = Pulsante(opzione).adjusted(1, 1, -1, -1);
        pulsante.text = QStringLiteral("…");
        pulsante.state = QStyle::State_Enabled | QStyle::State_Raised;
        const QWidget* w = opzione.widget;
        (w ? w->style() : QApplication::style())->drawControl(QStyle::CE_PushButton, &pulsante, pittore, w);
    }

    bool editorEvent(QEvent* evento, QAbstractItemModel* modello, const QStyleOptionViewItem& opzione,
                     const QModelIndex& i) override
    {
        if (evento->type() == QEvent::MouseButtonRelease && HaAzione(i)
            && Pulsante(opzione).contains(static_cast<QMouseEvent*>(evento)->position().toPoint())) {
            mPremuto(i);
            return true;
        }
        return QStyledItemDelegate::editorEvent(evento, modello, opzione, i);
    }

private:
    std::function<void(const QModelIndex&)> mPremuto;
};

// The loaders in the order the kinds are tested; `Corpo`: the kind has a body and a script to show
// (every document: a fax, an e-mail and a printer fax have their body file too).
struct Caricatore
{
    const char* Tipo;
    void (frmProprieta::*Carica)(const pugi::xml_node&);
    bool Corpo;
    bool Collegabile; // a linked document of this kind is refreshed on the second timer
};

constexpr Caricatore Caricatori[] = {
    {"Stampa", &frmProprieta::CaricaProprietaDocStampa, true, true},
    {"Fax", &frmProprieta::CaricaProprietaDocFax, true, false},
    {"Email", &frmProprieta::CaricaProprietaDocEmail, true, true},
    {"PFax", &frmProprieta::CaricaProprietaDocPFax, true, false},
    {"Anteprima", &frmProprieta::CaricaProprietaDocAnterpima, true, true},
    {"Pbl", &frmProprieta::CaricaProprietaDocPbl, true, false},
    {"EFax", &frmProprieta::CaricaProprietaDocEFax, true, false},
    {"Fronte", &frmProprieta::CaricaProprietaFormatoFronte, false, false},
    {"Retro", &frmProprieta::CaricaProprietaFormatoRetro, false, false},
    {"Frontespizio", &frmProprieta::CaricaProprietaFormatoFrontespizio, false, false},
    {"Firma", &frmProprieta::CaricaProprietaFirmaEmail, false, false},
};

// The nodes whose service the pane's header starts and suspends: every service and worker, and
// the printers, clients and FTP clients, each acting on the service whose list holds it (the
// server has no command of its own for an entry of a list). The formats, the signatures and
// the document folders are not started or suspended from their sheets.
constexpr const char* Avviabili[] = {
    "SrvServer",   "SrvStampe",   "SrvEmail",     "SrvFax",      "SrvAnteprime", "SrvImporta",  "SrvEmlPdfVm",
    "SrvSmtp",     "SrvReportEmail", "SrvTifVm",  "SrvFaxVm",    "SrvReportFax", "SrvNotificaFax", "SrvStampante",
    "SrvFtp",      "SrvFtpSrv",   "SrvFtpCln",    "SrvWebSrv",   "SrvWebUpdate", "SrvPFax",     "SrvPFaxVm",
    "SrvNeFax",    "SrvUtente",   "SrvPbl",       "SrvPblPdfVm", "SrvPblVm",     "SrvEFax",     "SrvEFaxPdfVm",
    "SrvEFaxVm",
};

bool Avviabile(QStringView codice)
{
    for (const char* a : Avviabili)
        if (codice == QLatin1StringView(a))
            return true;
    return false;
}

const modAlberoServer::Nodo* RigaAlbero(const QString& codice)
{
    for (const modAlberoServer::Nodo& n : modAlberoServer::Nodi())
        if (codice == QLatin1StringView(n.Chiave))
            return &n;
    return nullptr;
}

} // namespace

frmProprieta::frmProprieta(PxContesto& contesto, QWidget* parent)
    : QWidget(parent), mContesto(contesto), mIcona(new QLabel(this)), mTitolo(new QLabel(this)),
      mxpgProprieta(new QTreeView(this)), mAvvia(new QAction(contesto.Testi().LoadDllString(128), this)),
      mSospendi(new QAction(contesto.Testi().LoadDllString(129), this)),
      mModello(new PxModelloProprieta(contesto.Testi(), this))
{
    setObjectName(QStringLiteral("frmProprieta"));
    mxpgProprieta->setObjectName(QStringLiteral("mxpgProprieta"));
    mxpgProprieta->setModel(mModello);
    mxpgProprieta->setHeaderHidden(true);
    mxpgProprieta->setAlternatingRowColors(true);
    mxpgProprieta->setUniformRowHeights(true);
    mxpgProprieta->setEditTriggers(QAbstractItemView::NoEditTriggers);
    mxpgProprieta->setSelectionMode(QAbstractItemView::ExtendedSelection);
    mxpgProprieta->setSelectionBehavior(QAbstractItemView::SelectRows);
    mxpgProprieta->setTextElideMode(Qt::ElideRight);
    mxpgProprieta->header()->setStretchLastSection(true);
    mxpgProprieta->header()->setSectionResizeMode(0, QHeaderView::Interactive);
    mxpgProprieta->setColumnWidth(0, 220);
    mxpgProprieta->setItemDelegate(new PxDelegatoAzione([this](const QModelIndex& i) { Esegui(i); }, this));

    auto* copia = new QAction(mContesto.Testi().LoadDllString(8047), this);
    copia->setShortcut(QKeySequence::Copy);
    copia->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(copia, &QAction::triggered, this, &frmProprieta::Copia);
    auto* apri = new QAction(mContesto.Testi().LoadDllString(8048), this);
    apri->setShortcuts({QKeySequence(Qt::Key_F4), QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter)});
    apri->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(apri, &QAction::triggered, this, [this] { Esegui(mxpgProprieta->currentIndex().siblingAtColumn(1)); });
    mxpgProprieta->addAction(copia);
    mxpgProprieta->addAction(apri);
    mxpgProprieta->setContextMenuPolicy(Qt::ActionsContextMenu);

    mTitolo->setTextFormat(Qt::PlainText);
    mAvvia->setToolTip(mContesto.Testi().LoadDllString(4011));
    mSospendi->setToolTip(mContesto.Testi().LoadDllString(4012));
    connect(mAvvia, &QAction::triggered, this, &frmProprieta::AvviaServizio);
    connect(mSospendi, &QAction::triggered, this, &frmProprieta::SospendiServizio);
    auto* testata = new QHBoxLayout;
    testata->setContentsMargins(4, 2, 4, 2);
    testata->addWidget(mIcona);
    testata->addWidget(mTitolo, 1);
    for (QAction* a : {mAvvia, mSospendi}) {
        auto* pulsante = new QToolButton(this);
        pulsante->setDefaultAction(a);
        pulsante->setAutoRaise(true);
        testata->addWidget(pulsante);
    }
    AbilitaComandi();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(testata);
    layout->addWidget(mxpgProprieta);

    mobjTimerProprieta.setInterval(100);
    mobjTimerCollegato.setInterval(100);
    connect(&mobjTimerProprieta, &QTimer::timeout, this, &frmProprieta::mobjTimerProprieta_TimerEvent);
    connect(&mobjTimerCollegato, &QTimer::timeout, this, &frmProprieta::mobjTimerCollegato_TimerEvent);
}

frmProprieta::~frmProprieta()
{
    mobjTimerProprieta.stop();
    mobjTimerCollegato.stop();
}

int frmProprieta::IconWidth() const { return mIcona->pixmap().isNull() ? 0 : mIcona->pixmap().width(); }

int frmProprieta::LayoutVisualizzato() const { return mModello->Layout(); }

void frmProprieta::Oggetto(Riferimento oggetto)
{
    mobjTimerProprieta.stop();
    ++mGenerazione;
    mInAttesa = false;
    mUltimaRisposta = 0;
    mDescrizione.clear();
    mFallita = false;
    mOggetto = std::move(oggetto);
    mCollegato = {};
    mobjTimerCollegato.stop();
    AbilitaComandi();
    if (!mOggetto.Valido() && mServerVisualizzato.isEmpty())
        FileLog({});
    mobjTimerProprieta.start();
}

void frmProprieta::Collegato(Riferimento collegato)
{
    mCollegato = std::move(collegato);
    ++mGenerazione;
    mInAttesa = false;
    mUltimaRisposta = 0;
    mDescrizione.clear();
    mFallita = false;
    if (mCollegato.Valido()) {
        // The linked document takes over the sheet until the selection changes.
        mobjTimerProprieta.stop();
        mobjTimerCollegato.start();
    } else {
        mobjTimerCollegato.stop();
        mobjTimerProprieta.start();
    }
}

void frmProprieta::VisualizzaServer(const QString& caption, const QString& chiave)
{
    mServerVisualizzato = chiave;
    mCaptionVisualizzata = caption;
    mStatoRiempito.clear(); // another node may share the sheet and the state
    mStatoAzionabile = -1;  // no command until the node's own state is read
    mTitolo->setText(caption);
    Oggetto({});
}

void frmProprieta::FileLog(const QString& nome)
{
    if (nome == mFileLog)
        return;
    mFileLog = nome;
    if (mLog)
        mLog->CaricaLog(nome);
}

void frmProprieta::PulisciLayout()
{
    mModello->Pulisci();
    mStatoMostrato = -1;
    mStatoAzionabile = -1;
    mStatoRiempito.clear();
    mDescrizione.clear();
    AbilitaComandi();
}

void frmProprieta::mobjTimerProprieta_TimerEvent()
{
    modTraccia::Proteggi("mobjTimerProprieta_TimerEvent", [&] {
        if (!mOggetto.Valido()) {
            RiempiServizio();
            PulisciCorpo();
            PulisciScript();
            return;
        }
        const qint64 adesso = QDateTime::currentMSecsSinceEpoch();
        if (mInAttesa || (mUltimaRisposta && adesso - mUltimaRisposta < IntervalloDescrizione))
            return;
        ChiediDescrizione(mOggetto, false);
    });
}

void frmProprieta::mobjTimerCollegato_TimerEvent()
{
    modTraccia::Proteggi("mobjTimerCollegato_TimerEvent", [&] {
        const qint64 adesso = QDateTime::currentMSecsSinceEpoch();
        if (!mCollegato.Valido() || mInAttesa || (mUltimaRisposta && adesso - mUltimaRisposta < IntervalloDescrizione))
            return;
        ChiediDescrizione(mCollegato, true);
    });
}

void frmProprieta::ChiediDescrizione(const Riferimento& r, bool collegato)
{
    mInAttesa = true;
    const quint64 generazione = mGenerazione;
    r.Descrizione(this, [this, generazione, collegato](const PxRisposta& risposta) {
        if (generazione != mGenerazione)
            return; // asked for an object no longer selected
        mInAttesa = false;
        // A refresh that fails is dropped: the sheet keeps what it shows and the next tick asks
        // afresh. The reason is logged once, not at every tick it persists.
        const auto fallita = [this](const QString& motivo) {
            mUltimaRisposta = 0;
            if (std::exchange(mFallita, true))
                return;
            modTraccia::Scrivi(2, QStringLiteral("frmProprieta: ") + motivo);
        };
        if (!risposta.Riuscita()) {
            fallita(risposta.Testo);
            return;
        }
        mUltimaRisposta = QDateTime::currentMSecsSinceEpoch();
        // The same description as last time: the sheet already shows it.
        if (risposta.Testo == mDescrizione && LayoutVisualizzato() > 0)
            return;
        pugi::xml_document doc;
        const QByteArray xml = risposta.Testo.toUtf8();
        const pugi::xml_parse_result letto = doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size()),
                                                             pugi::parse_default | pugi::parse_ws_pcdata_single,
                                                             pugi::encoding_utf8);
        if (!letto) {
            fallita(QString::fromUtf8(letto.description()));
            return;
        }
        // Only a description shown to the end counts as shown: one abandoned half way is
        // filled again on the next answer, even an identical one.
        if (modTraccia::Proteggi("frmProprieta_Descrizione", [&] { Descrivi(doc, collegato); })) {
            mDescrizione = risposta.Testo;
            mFallita = false;
        } else {
            fallita(QStringLiteral("descrizione non caricata"));
        }
    });
}

void frmProprieta::Descrivi(const pugi::xml_document& doc, bool collegato)
{
    const pugi::xml_node radice = doc.document_element();
    const char* tipo = radice.attribute("Tipo") ? radice.attribute("Tipo").value() : radice.attribute("Genere").value();
    for (const Caricatore& c : Caricatori) {
        if (std::string_view(tipo) != c.Tipo || (collegato && !c.Collegabile))
            continue;
        mTitolo->setText(QString::fromUtf8(radice.attribute("Id") ? radice.attribute("Id").value() : radice.child("Proprieta").child_value("Key")));
        mIcona->clear();
        mIconaVisualizzata = 0;
        const pugi::xml_node proprieta = radice.child("Proprieta");
        if (collegato) {
            // The linked document's refresh goes on past an error: the sheet, the body and
            // the script are each reloaded whatever happened to the one before.
            bool riuscito = modTraccia::Proteggi("mobjTimerCollegato_Scheda", [&] { (this->*c.Carica)(radice); });
            riuscito &= modTraccia::Proteggi("mobjTimerCollegato_Corpo", [&] { CaricaCorpo(proprieta); });
            riuscito &= modTraccia::Proteggi("mobjTimerCollegato_Script", [&] { CaricaScript(proprieta); });
            if (!riuscito)
                throw std::runtime_error("aggiornamento del documento collegato incompleto");
            return;
        }
        (this->*c.Carica)(radice);
        if (c.Corpo) {
            CaricaCorpo(proprieta);
            CaricaScript(proprieta);
        } else {
            PulisciCorpo();
            PulisciScript();
        }
        if (mFirma)
            mFirma->Mostra(std::string_view(tipo) == "Firma" ? QString::fromUtf8(proprieta.child_value("Html")) : QString());
        return;
    }
}

void frmProprieta::Carica(int layout, const pugi::xml_node& oggetto)
{
    if (LayoutVisualizzato() != layout)
        Costruisci(layout, {});
    const pugi::xml_node proprieta = oggetto.child("Proprieta");
    FileLog(PxSrvServer::PercorsoLocale(QString::fromUtf8(proprieta.child_value("FileLog")),
                                        mContesto.Server() ? mContesto.Server()->Cartella() : QString()));
    mxpgProprieta->setUpdatesEnabled(false);
    mModello->Riempi(proprieta);
    mxpgProprieta->setUpdatesEnabled(true);
    emit Caricato(layout);
}

void frmProprieta::Costruisci(int layout, const QString& categoria)
{
    mModello->Costruisci(layout, categoria);
    mStatoMostrato = -1; // the new tree's state item has no colour yet
    // Every group starts open; the captions get the room they need, up to 60% of the width.
    mxpgProprieta->expandAll();
    mxpgProprieta->resizeColumnToContents(0);
    const int massimo = mxpgProprieta->viewport()->width() * 3 / 5;
    if (massimo > 0 && mxpgProprieta->columnWidth(0) > massimo)
        mxpgProprieta->setColumnWidth(0, massimo);
}

void frmProprieta::CaricaProprietaDocStampa(const pugi::xml_node& oggetto) { Carica(40, oggetto); }
void frmProprieta::CaricaProprietaDocEmail(const pugi::xml_node& oggetto) { Carica(41, oggetto); }
void frmProprieta::CaricaProprietaDocFax(const pugi::xml_node& oggetto) { Carica(42, oggetto); }
void frmProprieta::CaricaProprietaDocPFax(const pugi::xml_node& oggetto) { Carica(44, oggetto); }
void frmProprieta::CaricaProprietaDocEFax(const pugi::xml_node& oggetto) { Carica(45, oggetto); }
void frmProprieta::CaricaProprietaFormatoFronte(const pugi::xml_node& oggetto) { Carica(46, oggetto); }
void frmProprieta::CaricaProprietaFormatoRetro(const pugi::xml_node& oggetto) { Carica(47, oggetto); }
void frmProprieta::CaricaProprietaFormatoFrontespizio(const pugi::xml_node& oggetto) { Carica(48, oggetto); }
void frmProprieta::CaricaProprietaFirmaEmail(const pugi::xml_node& oggetto) { Carica(49, oggetto); }
void frmProprieta::CaricaProprietaDocAnterpima(const pugi::xml_node& oggetto) { Carica(39, oggetto); }
void frmProprieta::CaricaProprietaDocPbl(const pugi::xml_node& oggetto) { Carica(43, oggetto); }

PxSrvServizio* frmProprieta::ServizioVisualizzato() const
{
    PxSrvServer* server = mContesto.Server();
    const modAlberoServer::Nodo* riga = RigaAlbero(mServerVisualizzato.section(u'|', 0, 0));
    if (!server || !riga)
        return nullptr;
    return server->Servizio(QString::fromLatin1(*riga->Oggetto ? riga->Oggetto : "PxSrvServer"));
}

void frmProprieta::RiempiServizio()
{
    const QString codice = mServerVisualizzato.section(u'|', 0, 0);
    const modSchede::Layout* layout = modSchede::DelCodice(codice);
    const modAlberoServer::Nodo* riga = RigaAlbero(codice);
    PxSrvServizio* servizio = ServizioVisualizzato();
    if (!layout || !riga || !servizio)
        return; // nothing to fill it from: the sheet stays as it is until the next tick
    // Nothing changed since the last fill: nothing to read again.
    const QString stato = servizio->StatoXml();
    if (LayoutVisualizzato() == layout->Numero && stato == mStatoRiempito)
        return;
    pugi::xml_document doc;
    if (!servizio->LeggiStato(doc))
        return; // a state that does not read is dropped; the next tick reads it afresh
    pugi::xml_node base = doc.document_element();
    if (riga->Tipo == modAlberoServer::Genere::Elenco) {
        // A printer, client or FTP client: its entry in the owner's list.
        const QByteArray voce = mServerVisualizzato.section(u'|', 1).toUtf8();
        pugi::xml_node trovata;
        for (const pugi::xml_node e : base.child(riga->Elenco).children())
            if (voce == e.child_value(riga->ElementoChiave)) {
                trovata = e;
                break;
            }
        base = trovata;
    }
    const qint32 icona = riga->Icona && base ? (mContesto.Icone().*riga->Icona)(base) : 0;
    if (icona != mIconaVisualizzata || mIcona->pixmap().isNull()) {
        mIconaVisualizzata = icona;
        mIcona->setPixmap(PxImmagini::Istanza().Icona(icona).pixmap(16, 16));
    }
    if (LayoutVisualizzato() != layout->Numero) {
        Costruisci(layout->Numero, mCaptionVisualizzata);
    } else {
        mModello->ImpostaCategoria(mCaptionVisualizzata);
    }
    mTitolo->setText(mCaptionVisualizzata);
    // The commands act on the service (for an entry of a list, the one that holds the list).
    mStatoAzionabile = doc.document_element().child("Stato").child("Codice").text().as_int(-1);
    ImpostaStato(base.child("Stato").child("Codice").text().as_int(-1));
    AbilitaComandi();
    // Every node, a folder too, shows the log its own state names.
    FileLog(mContesto.Server()->PercorsoLocale(QString::fromUtf8(base.child_value("FileLog"))));
    mxpgProprieta->setUpdatesEnabled(false);
    mModello->Riempi(base);
    mxpgProprieta->setUpdatesEnabled(true);
    mStatoRiempito = stato;
    emit Caricato(layout->Numero);
}

void frmProprieta::ImpostaStato(int codice)
{
    if (codice == mStatoMostrato)
        return;
    mStatoMostrato = codice;
    switch (codice) {
    case 4: mModello->ImpostaColore(1, QColor(0, 192, 0)); break;
    case 2: mModello->ImpostaColore(1, QColor(255, 0, 0)); break;
    case 8: break; // its own branch: the commands change, the colour does not
    default: mModello->ImpostaColore(1, QColor(0, 0, 255)); break;
    }
    AbilitaComandi();
    emit StatoServizioCambiato(codice);
}

void frmProprieta::AbilitaComandi()
{
    // A node that can be started on display: start what does not run, suspend what runs; a
    // service that cannot run (8) gets neither.
    const PxSrvServer* server = mContesto.Server();
    const bool puoAgire = !server || (server->Raggiungibile() && !server->SoloLettura());
    const bool servizio = puoAgire && !mOggetto.Valido() && Avviabile(mServerVisualizzato.section(u'|', 0, 0))
        && LayoutVisualizzato() > 0 && mStatoMostrato >= 0;
    mAvvia->setEnabled(servizio && mStatoAzionabile != 4 && mStatoAzionabile != 8 && mStatoAzionabile >= 0);
    mSospendi->setEnabled(servizio && mStatoAzionabile == 4);
}

void frmProprieta::AvviaServizio()
{
    if (!Avviabile(mServerVisualizzato.section(u'|', 0, 0)))
        return;
    if (PxSrvServizio* s = ServizioVisualizzato())
        s->Avvia(this, [this](const PxRisposta& r) {
            if (!r.Riuscita())
                emit Messaggio(r.Testo);
        });
}

void frmProprieta::SospendiServizio()
{
    if (!Avviabile(mServerVisualizzato.section(u'|', 0, 0)))
        return;
    if (PxSrvServizio* s = ServizioVisualizzato())
        s->Sospendi(this, [this](const PxRisposta& r) {
            if (!r.Riuscita())
                emit Messaggio(r.Testo);
        });
}

void frmProprieta::InfoDescrizione()
{
    if (!mOggetto.Valido())
        RiempiServizio();
}

void frmProprieta::AggiornaInformazioniClasseVisualizzata()
{
    mStatoMostrato = -1; // the colour and the commands are set again
    mStatoRiempito.clear();
    InfoDescrizione();
}

QString frmProprieta::TestoAzione(int azione, const QString& valore, const QString& secondo)
{
    switch (azione) {
    case modSchede::Percorso:
    case modSchede::FileLog: return valore.trimmed();
    case modSchede::PercorsoFile:
    case modSchede::FileLog2: return secondo.trimmed();
    default: return {};
    }
}

void frmProprieta::Esegui(const QModelIndex& indice)
{
    modTraccia::Proteggi("frmProprieta_Esegui", [&] {
        const QModelIndex i = indice.siblingAtColumn(1);
        QString testo = TestoAzione(i.data(PxModelloProprieta::RuoloAzione).toInt(),
                                    i.data(PxModelloProprieta::RuoloValoreIntero).toString(),
                                    i.data(PxModelloProprieta::RuoloSecondo).toString());
        PxSrvServer* server = mContesto.Server();
        if (testo.isEmpty() || !server)
            return;
        // A folder opens wherever it is; a file only when it is a document, never a program.
        testo = server->PercorsoLocale(testo);
        if (!server->FileLocali()) {
            ApriDalServer(testo);
            return;
        }
        const modApri::Motivo motivo = modApri::ApriPercorso(testo);
        if (motivo != modApri::Consentito)
            emit Messaggio(mContesto.Testi().LoadDllString(motivo) + QStringLiteral(" ") + testo);
    });
}

void frmProprieta::ApriDalServer(const QString& percorso)
{
    const PxConsoleResDll& testi = mContesto.Testi();
    const QString suffisso = QFileInfo(percorso).suffix().toLower();
    if (suffisso.isEmpty()) {
        emit Messaggio(testi.LoadDllString(8049) + QStringLiteral(" ") + percorso);
        return;
    }
    if (!modApri::TipiDocumento().contains(suffisso)) {
        emit Messaggio(testi.LoadDllString(modApri::TipoImprevisto) + QStringLiteral(" ") + percorso);
        return;
    }
    mContesto.Server()->LeggiTutto(percorso, modContratto::MassimoFileInviato, this, [this, percorso](const PxRisposta& r) {
        modTraccia::Proteggi("frmProprieta_ApriDalServer", [&] {
            const PxConsoleResDll& t = mContesto.Testi();
            if (!r.Riuscita()) {
                modTraccia::Scrivi(modRigaLog::LivelloErrore, QStringLiteral("Errore in frmProprieta_ApriDalServer: %1").arg(r.Testo));
                emit Messaggio(t.LoadDllString(8021) + QStringLiteral(" ") + r.Testo);
                return;
            }
            // The copy is checked like any file before the desktop gets it: never run.
            QSaveFile copia(QDir(frmScriptDocumento::CartellaLavoro()).filePath(QFileInfo(percorso).fileName()));
            if (!copia.open(QIODevice::WriteOnly) || copia.write(r.Dati) != r.Dati.size() || !copia.commit()) {
                modTraccia::Scrivi(modRigaLog::LivelloErrore, QStringLiteral("Errore in frmProprieta_ApriDalServer: %1").arg(copia.errorString()));
                emit Messaggio(t.LoadDllString(modApri::NessunProgramma) + QStringLiteral(" ") + copia.fileName());
                return;
            }
            if (const modApri::Motivo motivo = modApri::ApriPercorso(copia.fileName()); motivo != modApri::Consentito)
                emit Messaggio(t.LoadDllString(motivo) + QStringLiteral(" ") + percorso);
        });
    });
}

void frmProprieta::Copia()
{
    QStringList valori;
    const QModelIndexList righe = mxpgProprieta->selectionModel()->selectedRows(1);
    for (const QModelIndex& i : righe)
        valori << i.data(PxModelloProprieta::RuoloValoreIntero).toString();
    if (!valori.isEmpty())
        QApplication::clipboard()->setText(valori.join(u'\n'));
}

void frmProprieta::ImpostaVisualizzatori(frmCorpoDocumento* corpo, frmScriptDocumento* script, frmVisFirma* firma)
{
    mCorpo = corpo;
    mScript = script;
    mFirma = firma;
}

void frmProprieta::CaricaCorpo(const pugi::xml_node& proprieta)
{
    if (mCorpo)
        mCorpo->CaricaCorpo(proprieta);
}

void frmProprieta::CaricaScript(const pugi::xml_node& proprieta)
{
    if (mScript)
        mScript->CaricaScript(proprieta);
}

void frmProprieta::PulisciCorpo()
{
    if (mCorpo && !mCorpo->File().isEmpty())
        mCorpo->PulisciCorpo();
}

void frmProprieta::PulisciScript()
{
    if (mScript && !mScript->File().isEmpty())
        mScript->PulisciScript();
}
