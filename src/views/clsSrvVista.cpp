#include "clsSrvVista.h"

#include "PxBarraComandi.h"
#include "PxContesto.h"
#include "PxImpostazioni.h"
#include "modTraccia.h"
#include "modXml.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QScrollBar>
#include <QTimer>
#include <QTreeView>

#include <pugixml.hpp>

#include <algorithm>
#include <map>

namespace {
// Expanded rows are remembered by key; groups by their group key, marked so.
QString ChiaveEspansa(const QModelIndex& i)
{
    if (i.data(PxModelloContenuto::RuoloGruppo).toBool())
        return u'\x1f' + i.data(PxModelloContenuto::RuoloChiaveGruppo).toString();
    return i.data(PxModelloContenuto::RuoloChiave).toString();
}
} // namespace

clsSrvVista::clsSrvVista(PxAmbienteVista& ambiente, QString chiave, QString versione, QObject* parent)
    : QObject(parent), mAmbiente(ambiente), mContesto(ambiente.Contesto), mChiave(std::move(chiave)),
      mVersione(std::move(versione)), mTimerLayout(new QTimer(this))
{
    QTreeView& lista = mAmbiente.Lista;
    PxModelloContenuto& modello = mAmbiente.Modello;
    connect(lista.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { emit ContenutoCambiato(); });
    connect(lista.selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { emit OggettoCorrenteCambiato(); });
    connect(&modello, &QAbstractItemModel::modelReset, this, [this] { emit ContenutoCambiato(); });
    // One row at a time: what is above the viewport does not move what the operator looks at.
    connect(&modello, &QAbstractItemModel::rowsAboutToBeInserted, this, &clsSrvVista::FissaCima);
    connect(&modello, &QAbstractItemModel::rowsAboutToBeRemoved, this, &clsSrvVista::FissaCima);
    connect(&modello, &QAbstractItemModel::rowsAboutToBeMoved, this, &clsSrvVista::FissaCima);
    connect(lista.verticalScrollBar(), &QScrollBar::valueChanged, this, [this] {
        if (!mCambioInCorso)
            PrendiCima();
    });
    connect(&modello, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex& genitore, int primo, int ultimo) {
        if (!genitore.isValid())
            ApplicaStatoGruppi(primo, ultimo);
        emit ContenutoCambiato();
    });
    connect(&modello, &QAbstractItemModel::rowsRemoved, this, [this] { emit ContenutoCambiato(); });
    // Groups keep the state the operator gave them, by stage (or text), for the view's life.
    const auto ricorda = [this](const QModelIndex& i, bool aperto) {
        if (!i.data(PxModelloContenuto::RuoloGruppo).toBool())
            return;
        mGruppiAperti.insert(i.data(PxModelloContenuto::RuoloChiaveGruppo).toString(), aperto);
        if (!mInRiempimento && mContesto.Impostazioni().GroupRowExpandCollapseColumnBestFit)
            AdattaColonne();
    };
    connect(&lista, &QTreeView::expanded, this, [ricorda](const QModelIndex& i) { ricorda(i, true); });
    connect(&lista, &QTreeView::collapsed, this, [ricorda](const QModelIndex& i) { ricorda(i, false); });
    // The list's layout is taken when the operator moves, sorts or sizes a column (not while
    // the list is being filled), a moment after the last change.
    mTimerLayout->setSingleShot(true);
    mTimerLayout->setInterval(250);
    connect(mTimerLayout, &QTimer::timeout, this, [this] { modTraccia::Proteggi("SalvaLayout", [&] { SalvaLayout(); }); });
    const auto presa = [this] {
        if (!mInRiempimento)
            mTimerLayout->start();
    };
    QHeaderView* testata = lista.header();
    connect(testata, &QHeaderView::sectionMoved, this, presa);
    connect(testata, &QHeaderView::sectionResized, this, presa);
    // A column the operator sized is his; the others, fitted once, grow with their content
    // (an activity's text gets longer than the first one was), never shrink under his eyes.
    connect(testata, &QHeaderView::sectionResized, this, [this](int colonna) {
        if (!mAdatto && !mInRiempimento)
            mColonneDellOperatore.insert(colonna);
    });
    connect(&modello, &QAbstractItemModel::dataChanged, this, &clsSrvVista::Allarga);
    connect(testata, &QHeaderView::sortIndicatorChanged, this, presa);
    connect(&lista, &QTreeView::activated, this, [this](const QModelIndex& i) {
        if (i.data(PxModelloContenuto::RuoloRiga).toInt() >= 0)
            Attiva();
    });
    connect(&mAmbiente.Barra, &PxBarraComandi::Esegui, this, [this](int id) {
        modTraccia::Proteggi("Esegui", [&] { Esegui(id); });
    });
}

clsSrvVista::~clsSrvVista()
{
    modTraccia::Proteggi("Termina", [&] {
        SalvaLayout();
        mAmbiente.Barra.Svuota();
        mAmbiente.Lista.selectionModel()->clear();
        mAmbiente.Modello.ImpostaColonne({});
    });
}

void clsSrvVista::Avvia()
{
    modTraccia::Proteggi("Avvia", [&] {
        mInRiempimento = true;
        CreaPulsanti();
        const pugi::xml_node layout = NodoLayout(false);
        mAmbiente.Barra.CaricaStato(layout.child("Comandi"));
        const QList<PxModelloContenuto::Colonna> colonne = CreaColonne();
        mAmbiente.Modello.ImpostaColonne(colonne);
        mAmbiente.Modello.ImpostaColonnaFase(ColonnaFase(), Fasi());
        QHeaderView* testata = mAmbiente.Lista.header();
        for (int k = 0; k < colonne.size(); ++k)
            mAmbiente.Lista.setColumnHidden(k, colonne[k].Nascosta);
        mAmbiente.Lista.sortByColumn(-1, Qt::AscendingOrder);
        int gruppo = RaggruppamentoPredefinito();
        if (layout) {
            const QByteArray stato = QByteArray::fromBase64(layout.child_value("Colonne"));
            if (!stato.isEmpty())
                testata->restoreState(stato);
            if (const pugi::xml_attribute g = layout.child("Raggruppamento").attribute("Colonna"))
                gruppo = g.as_int(-1);
            for (const pugi::xml_node g : layout.child("Gruppi").children("Gruppo"))
                mGruppiAperti.insert(QString::fromUtf8(g.attribute("Chiave").value()), g.attribute("Aperto").as_bool());
        }
        // Columns fit their content once the first rows are there, unless the operator sized them.
        mMisura = mContesto.Impostazioni().ColumnBestFit && (!layout || !layout.child("Colonne").text());
        mAmbiente.Modello.ImpostaRaggruppamento(gruppo);
        if (testata->sortIndicatorSection() >= 0 && testata->sortIndicatorSection() < colonne.size())
            mAmbiente.Modello.sort(testata->sortIndicatorSection(), testata->sortIndicatorOrder());
        // Another view's columns may have been scrolled: this one starts at its first column.
        mAmbiente.Lista.horizontalScrollBar()->setValue(0);
        mInRiempimento = false;
        AggiornaContenuto();
    });
}

// ---- layout

pugi::xml_node clsSrvVista::NodoLayout(bool crea) const
{
    pugi::xml_node radice = mContesto.UIRoot();
    if (!radice)
        return {};
    const QByteArray chiave = mChiave.toUtf8(), versione = mVersione.toUtf8();
    pugi::xml_node nodo = radice.find_child_by_attribute("Vista", "Chiave", chiave.constData());
    // A layout saved by another version of the view does not fit its columns: it is dropped.
    if (nodo && versione != nodo.attribute("Versione").value()) {
        if (!crea)
            return {};
        radice.remove_child(nodo);
        nodo = {};
    }
    if (!nodo && crea) {
        nodo = radice.append_child("Vista");
        nodo.append_attribute("Chiave") = chiave.constData();
        nodo.append_attribute("Versione") = versione.constData();
    }
    return nodo;
}

void clsSrvVista::SalvaLayout()
{
    pugi::xml_node nodo = NodoLayout(true);
    if (!nodo)
        return;
    while (nodo.first_child())
        nodo.remove_child(nodo.first_child());
    nodo.append_child("Colonne").text().set(mAmbiente.Lista.header()->saveState().toBase64().constData());
    mAmbiente.Barra.SalvaStato(nodo.append_child("Comandi"));
    nodo.append_child("Raggruppamento").append_attribute("Colonna") = mAmbiente.Modello.ColonnaRaggruppamento();
    pugi::xml_node gruppi = nodo.append_child("Gruppi");
    int quanti = 0;
    // Grouped by a column of free text, groups come and go by the thousand: a few hundred do.
    for (auto g = mGruppiAperti.cbegin(); g != mGruppiAperti.cend() && quanti++ < 500; ++g) {
        pugi::xml_node n = gruppi.append_child("Gruppo");
        n.append_attribute("Chiave") = g.key().toUtf8().constData();
        n.append_attribute("Aperto") = g.value();
    }
}

// ---- keeping the operator's place

void clsSrvVista::RicaricaMantenendo(const std::function<void()>& carica)
{
    QTreeView& lista = mAmbiente.Lista;
    PxModelloContenuto& modello = mAmbiente.Modello;
    QItemSelectionModel* selezione = lista.selectionModel();
    const QStringList selezionati = ChiaviSelezionate();
    const QString corrente = ChiaveCorrente();
    const QModelIndex cima = lista.indexAt(QPoint(1, 1));
    const QString chiaveCima = cima.isValid() ? ChiaveEspansa(cima.siblingAtColumn(0)) : QString();
    const int orizzontale = lista.horizontalScrollBar()->value();
    // Groups keep their state by key (mGruppiAperti); documents showing their linked
    // documents are remembered here. Only documents in open groups can show them.
    QStringList espansi;
    for (int g = 0; g < modello.rowCount(); ++g) {
        const QModelIndex i = modello.index(g, 0);
        if (!i.data(PxModelloContenuto::RuoloGruppo).toBool()) {
            if (modello.hasChildren(i) && lista.isExpanded(i))
                espansi << ChiaveEspansa(i);
        } else if (lista.isExpanded(i)) {
            for (int r = 0; r < modello.rowCount(i); ++r)
                if (const QModelIndex d = modello.index(r, 0, i); modello.hasChildren(d) && lista.isExpanded(d))
                    espansi << ChiaveEspansa(d);
        }
    }

    mInRiempimento = true;
    carica();

    const auto trova = [&modello](const QString& chiave) {
        if (chiave.startsWith(u'\x1f'))
            return modello.IndiceGruppo(chiave.mid(1));
        return modello.Indice(modello.Riga(chiave));
    };
    SegnaGruppi();
    for (const QString& chiave : espansi)
        if (const QModelIndex i = trova(chiave); i.isValid())
            lista.expand(i);
    // The selection as ranges of consecutive rows under each parent.
    std::map<std::pair<quintptr, int>, std::vector<int>> perGenitore;
    QHash<quintptr, QModelIndex> genitori;
    for (const QString& chiave : selezionati)
        if (const QModelIndex i = modello.Indice(modello.Riga(chiave)); i.isValid()) {
            const QModelIndex g = i.parent();
            perGenitore[{g.internalId(), g.row()}].push_back(i.row());
            genitori.insert(g.internalId() ^ (quintptr(g.row()) << 48), g);
        }
    QItemSelection nuova;
    const int ultima = modello.columnCount() - 1;
    for (auto& [chiave, righe] : perGenitore) {
        const QModelIndex g = genitori.value(chiave.first ^ (quintptr(chiave.second) << 48));
        std::sort(righe.begin(), righe.end());
        for (size_t a = 0; a < righe.size();) {
            size_t b = a;
            while (b + 1 < righe.size() && righe[b + 1] == righe[b] + 1)
                ++b;
            nuova.select(modello.index(righe[a], 0, g), modello.index(righe[b], ultima, g));
            a = b + 1;
        }
    }
    if (const QModelIndex c = modello.Indice(modello.Riga(corrente)); c.isValid())
        selezione->setCurrentIndex(c, QItemSelectionModel::NoUpdate);
    selezione->select(nuova, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    if (const QModelIndex c = trova(chiaveCima); c.isValid())
        lista.scrollTo(c, QAbstractItemView::PositionAtTop);
    lista.horizontalScrollBar()->setValue(orizzontale);
    mInRiempimento = false;
    if ((mMisura || mContesto.Impostazioni().ColumnBestFitContinuous) && modello.NumeroRighe() > 0) {
        mMisura = false;
        AdattaColonne();
    }
    MostraSeguiti();
    mSeguiti.clear(); // the reload that follows a command: what it moved has been shown
    mCambioInCorso = false; // the reload put the operator's place back itself
    PrendiCima();
}

void clsSrvVista::AdattaColonne()
{
    QTreeView& lista = mAmbiente.Lista;
    PxModelloContenuto& modello = mAmbiente.Modello;
    const QFontMetrics metrica(lista.font());
    // Mode 0 measures the rows on screen; otherwise the rows of the list, a spread sample of
    // at most 1,000 of them, so that a million rows cost what a thousand do.
    std::vector<QModelIndex> righe;
    if (mContesto.Impostazioni().ColumnBestFitMode == 0) {
        for (QModelIndex i = lista.indexAt(QPoint(1, 1)); i.isValid() && lista.visualRect(i).top() < lista.viewport()->height();
             i = lista.indexBelow(i))
            if (i.data(PxModelloContenuto::RuoloRiga).toInt() >= 0)
                righe.push_back(i);
    } else {
        const std::vector<quint32>& ordine = modello.Ordine();
        const size_t passo = std::max<size_t>(1, ordine.size() / 1000);
        for (size_t i = 0; i < ordine.size(); i += passo)
            righe.push_back(modello.Indice(static_cast<qint32>(ordine[i])));
    }
    const int icona = lista.iconSize().width() > 0 ? lista.iconSize().width() : lista.style()->pixelMetric(QStyle::PM_SmallIconSize);
    const int margine = 2 * lista.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &lista) + 12;
    for (int k = 0; k < modello.columnCount(); ++k) {
        if (lista.isColumnHidden(k))
            continue;
        int larghezza = lista.header()->sectionSizeHint(k);
        for (const QModelIndex& i : righe)
            larghezza = std::max(larghezza, metrica.horizontalAdvance(i.siblingAtColumn(k).data().toString()) + margine);
        if (k == 0) // the document's icon and the tree's indentation (group, linked documents)
            larghezza += lista.indentation() * (modello.ColonnaRaggruppamento() >= 0 ? 2 : 1) + icona + 4;
        const bool adatto = std::exchange(mAdatto, true);
        lista.header()->resizeSection(k, std::min(larghezza, LarghezzaMassima));
        mAdatto = adatto;
    }
    mCresci = true;
}

void clsSrvVista::Allarga(const QModelIndex& da, const QModelIndex& a)
{
    QTreeView& lista = mAmbiente.Lista;
    if (!mCresci || mInRiempimento || !da.isValid() || da.parent() != a.parent())
        return;
    const QFontMetrics metrica(lista.font());
    const int margine = 2 * lista.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &lista) + 12;
    for (int r = da.row(); r <= a.row() && r < da.row() + 64; ++r)
        for (int k = std::max(1, da.column()); k <= a.column(); ++k) {
            if (lista.isColumnHidden(k) || mColonneDellOperatore.contains(k))
                continue;
            const int serve = std::min(LarghezzaMassima, metrica.horizontalAdvance(da.sibling(r, k).data().toString()) + margine);
            if (serve > lista.header()->sectionSize(k)) {
                const bool adatto = std::exchange(mAdatto, true);
                lista.header()->resizeSection(k, serve);
                mAdatto = adatto;
            }
        }
}

void clsSrvVista::SegnaGruppi()
{
    PxModelloContenuto& modello = mAmbiente.Modello;
    if (modello.ColonnaRaggruppamento() >= 0)
        ApplicaStatoGruppi(0, modello.rowCount() - 1);
}

bool clsSrvVista::GruppoAperto(const QString& chiaveGruppo) const
{
    return mGruppiAperti.value(chiaveGruppo, !mContesto.Impostazioni().CollapseGroupRow);
}

void clsSrvVista::ApplicaStatoGruppi(int primo, int ultimo)
{
    // A group row's text spans the whole row.
    PxModelloContenuto& modello = mAmbiente.Modello;
    QTreeView& lista = mAmbiente.Lista;
    if (modello.ColonnaRaggruppamento() < 0)
        return;
    const bool riempimento = std::exchange(mInRiempimento, true); // no best fit per group
    for (int g = primo; g <= ultimo && g < modello.rowCount(); ++g) {
        const QModelIndex i = modello.index(g, 0);
        lista.setFirstColumnSpanned(g, {}, true);
        lista.setExpanded(i, GruppoAperto(i.data(PxModelloContenuto::RuoloChiaveGruppo).toString()));
    }
    mInRiempimento = riempimento;
}

// ---- the operator's place while rows come and go

void clsSrvVista::PrendiCima()
{
    // The row at the top of the viewport and the one below it, should the first one go.
    QTreeView& lista = mAmbiente.Lista;
    const QModelIndex cima = lista.indexAt(QPoint(1, 1));
    if (!cima.isValid())
        return;
    mCima = cima.siblingAtColumn(0);
    mCimaDopo = lista.indexBelow(mCima);
    mCimaY = lista.visualRect(mCima).top();
}

void clsSrvVista::FissaCima()
{
    // The first change of a burst takes the operator's place; the burst's last puts it back,
    // once, when the event loop turns (before the list is drawn: the list's repaint is asked
    // after this). Asking the tree where a row is lays out every row, so not once per change.
    if (mInRiempimento || mCambioInCorso)
        return;
    // The tree forgets its layout before a removal: the place taken at the last scroll serves.
    if (mAmbiente.Lista.indexAt(QPoint(1, 1)).isValid())
        PrendiCima();
    mCambioInCorso = true;
    QMetaObject::invokeMethod(this, [this] {
        RipristinaCima();
        MostraSeguiti();
    }, Qt::QueuedConnection);
}

void clsSrvVista::RipristinaCima()
{
    if (!std::exchange(mCambioInCorso, false) || mInRiempimento)
        return;
    QTreeView& lista = mAmbiente.Lista;
    QScrollBar* barra = lista.verticalScrollBar();
    const QModelIndex cima = mCima.isValid() ? QModelIndex(mCima) : QModelIndex(mCimaDopo);
    if (barra->value() == 0 || !cima.isValid()) {
        PrendiCima(); // at the top, new rows show where they come
        return;
    }
    const QRect r = lista.visualRect(cima);
    if (r.isValid() && r.top() != mCimaY) {
        const int scarto = lista.verticalScrollMode() == QAbstractItemView::ScrollPerPixel
            ? r.top() - mCimaY
            : (r.top() - mCimaY) / std::max(1, r.height());
        barra->setValue(barra->value() + scarto);
    }
    PrendiCima();
}

void clsSrvVista::Segui(const QStringList& chiavi)
{
    mSeguiti = QSet<QString>(chiavi.cbegin(), chiavi.cend());
}

void clsSrvVista::MostraSeguiti()
{
    if (mSeguiti.isEmpty() || mInRiempimento)
        return;
    PxModelloContenuto& modello = mAmbiente.Modello;
    QTreeView& lista = mAmbiente.Lista;
    QModelIndex mostra;
    const QString corrente = ChiaveCorrente();
    for (const QString& chiave : std::as_const(mSeguiti)) {
        const QModelIndex i = modello.Indice(modello.Riga(chiave));
        if (!i.isValid())
            continue;
        if (i.parent().isValid() && !lista.isExpanded(i.parent()))
            lista.expand(i.parent());
        if (!mostra.isValid() || chiave == corrente)
            mostra = i;
    }
    if (mostra.isValid())
        lista.scrollTo(mostra, QAbstractItemView::EnsureVisible);
}

void clsSrvVista::Raggruppa(int colonna)
{
    RicaricaMantenendo([&] { mAmbiente.Modello.ImpostaRaggruppamento(colonna); });
    // The groups are new: open the one the focused row is in, so the operator's place shows.
    if (const QModelIndex c = mAmbiente.Lista.selectionModel()->currentIndex(); c.isValid()) {
        mAmbiente.Lista.expand(c.parent());
        mAmbiente.Lista.scrollTo(c);
    }
}

// ---- held rows

void clsSrvVista::Applica(std::function<void()> cambio, bool sostituisce)
{
    if (!mBloccata) {
        cambio();
        return;
    }
    if (sostituisce)
        mInAttesa.clear();
    mInAttesa.push_back(std::move(cambio));
    emit InAttesaCambiata(InAttesa());
}

void clsSrvVista::Blocca(bool bloccata)
{
    mBloccata = bloccata;
    if (bloccata)
        return;
    std::vector<std::function<void()>> cambi;
    cambi.swap(mInAttesa);
    for (const auto& c : cambi)
        c();
    emit InAttesaCambiata(0);
}

// ---- notices the frame does not use

void clsSrvVista::Avanzamento(const QString&, const QString&, qint32, qint32) {}

void clsSrvVista::DocumentoSpostato(qint32, const QString&, const QString&) {}

// ---- selection

void clsSrvVista::SelezionaTutto()
{
    PxModelloContenuto& modello = mAmbiente.Modello;
    QItemSelection tutto;
    const int ultima = modello.columnCount() - 1;
    if (modello.rowCount() == 0 || ultima < 0)
        return;
    if (modello.ColonnaRaggruppamento() < 0) {
        tutto.select(modello.index(0, 0), modello.index(modello.rowCount() - 1, ultima));
    } else {
        for (int g = 0; g < modello.rowCount(); ++g) {
            const QModelIndex gi = modello.index(g, 0);
            if (const int n = modello.rowCount(gi))
                tutto.select(modello.index(0, 0, gi), modello.index(n - 1, ultima, gi));
        }
    }
    mAmbiente.Lista.selectionModel()->select(tutto, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void clsSrvVista::InvertiSelezione()
{
    PxModelloContenuto& modello = mAmbiente.Modello;
    QItemSelectionModel* selezione = mAmbiente.Lista.selectionModel();
    const int ultima = modello.columnCount() - 1;
    if (modello.rowCount() == 0 || ultima < 0)
        return;
    // Every document row flips; group rows and linked documents end unselected.
    QSet<QString> prima;
    for (const QString& k : ChiaviSelezionate())
        prima.insert(k);
    QItemSelection nuova;
    const auto parte = [&](const QModelIndex& genitore) {
        int inizio = -1;
        const int n = modello.rowCount(genitore);
        for (int r = 0; r <= n; ++r) {
            const bool prendi = r < n && !prima.contains(modello.Chiave(modello.index(r, 0, genitore)));
            if (prendi && inizio < 0)
                inizio = r;
            if (!prendi && inizio >= 0) {
                nuova.select(modello.index(inizio, 0, genitore), modello.index(r - 1, ultima, genitore));
                inizio = -1;
            }
        }
    };
    if (modello.ColonnaRaggruppamento() < 0)
        parte({});
    else
        for (int g = 0; g < modello.rowCount(); ++g)
            parte(modello.index(g, 0));
    selezione->select(nuova, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

QStringList clsSrvVista::ChiaviSelezionate() const
{
    // Every selected row but group rows: a linked document counts as itself (its first cell).
    QStringList chiavi;
    QSet<QString> viste;
    for (const QModelIndex& i : mAmbiente.Lista.selectionModel()->selectedRows()) {
        if (i.data(PxModelloContenuto::RuoloGruppo).toBool())
            continue;
        const QString chiave = i.data(PxModelloContenuto::RuoloRiga).toInt() >= 0 ? mAmbiente.Modello.Chiave(i)
                                                                                  : i.siblingAtColumn(0).data().toString();
        if (!chiave.isEmpty() && !viste.contains(chiave)) {
            viste.insert(chiave);
            chiavi << chiave;
        }
    }
    return chiavi;
}

qsizetype clsSrvVista::NumeroSelezionati() const { return ChiaviSelezionate().size(); }

QString clsSrvVista::ChiaveCorrente() const
{
    const QModelIndex i = mAmbiente.Lista.selectionModel()->currentIndex();
    return i.isValid() && i.data(PxModelloContenuto::RuoloRiga).toInt() >= 0 ? mAmbiente.Modello.Chiave(i) : QString();
}

QString clsSrvVista::CreaXmlSelezione() const
{
    pugi::xml_document doc;
    modXml::Dichiara(doc);
    pugi::xml_node radice = doc.append_child("Root");
    for (const QString& chiave : ChiaviSelezionate())
        radice.append_child("ID").text().set(chiave.toUtf8().constData());
    return QString::fromUtf8(modXml::Testo(doc));
}
