#include "clsSrvVista.h"

#include "PxBarraComandi.h"
#include "PxContesto.h"
#include "PxImpostazioni.h"
#include "modTraccia.h"
#include "modXml.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QScrollBar>
#include <QTreeView>

#include <pugixml.hpp>

#include <algorithm>
#include <map>

namespace {
// Expanded rows are remembered by key; groups by their text, marked so.
QString ChiaveEspansa(const QModelIndex& i)
{
    if (i.data(PxModelloContenuto::RuoloGruppo).toBool())
        return u'\x1f' + i.data(PxModelloContenuto::RuoloOrdinamento).toString();
    return i.data(PxModelloContenuto::RuoloChiave).toString();
}
} // namespace

clsSrvVista::clsSrvVista(PxAmbienteVista& ambiente, QString chiave, QString versione, QObject* parent)
    : QObject(parent), mAmbiente(ambiente), mContesto(ambiente.Contesto), mChiave(std::move(chiave)),
      mVersione(std::move(versione))
{
    QTreeView& lista = mAmbiente.Lista;
    connect(lista.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] { emit ContenutoCambiato(); });
    connect(lista.selectionModel(), &QItemSelectionModel::currentChanged, this, [this] { emit OggettoCorrenteCambiato(); });
    connect(&mAmbiente.Modello, &QAbstractItemModel::modelReset, this, [this] { emit ContenutoCambiato(); });
    connect(&mAmbiente.Modello, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex& genitore) {
        if (!genitore.isValid())
            SegnaGruppi();
        emit ContenutoCambiato();
    });
    connect(&mAmbiente.Modello, &QAbstractItemModel::rowsRemoved, this, [this] { emit ContenutoCambiato(); });
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
        CreaPulsanti();
        const pugi::xml_node layout = NodoLayout(false);
        mAmbiente.Barra.CaricaStato(layout.child("Comandi"));
        const QList<PxModelloContenuto::Colonna> colonne = CreaColonne();
        mAmbiente.Modello.ImpostaColonne(colonne);
        mAmbiente.Modello.ImpostaColonnaFase(ColonnaFase());
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
        } else {
            // Columns fit their content once the first rows are there.
            mMisura = mContesto.Impostazioni().ColumnBestFit;
        }
        mAmbiente.Modello.ImpostaRaggruppamento(gruppo);
        if (testata->sortIndicatorSection() >= 0 && testata->sortIndicatorSection() < colonne.size())
            mAmbiente.Modello.sort(testata->sortIndicatorSection(), testata->sortIndicatorOrder());
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
    QStringList espansi;
    for (int g = 0; g < modello.rowCount(); ++g) {
        const QModelIndex i = modello.index(g, 0);
        if (lista.isExpanded(i))
            espansi << ChiaveEspansa(i);
        // Linked documents shown: only documents in expanded groups can be.
        if (i.data(PxModelloContenuto::RuoloGruppo).toBool() && lista.isExpanded(i))
            for (int r = 0; r < modello.rowCount(i); ++r)
                if (const QModelIndex d = modello.index(r, 0, i); modello.hasChildren(d) && lista.isExpanded(d))
                    espansi << ChiaveEspansa(d);
    }
    const bool primaVolta = modello.rowCount() == 0;

    carica();

    const auto trova = [&modello](const QString& chiave) {
        if (chiave.startsWith(u'\x1f'))
            return modello.IndiceGruppo(chiave.mid(1));
        return modello.Indice(modello.Riga(chiave));
    };
    SegnaGruppi();
    if (primaVolta)
        EspandiGruppi();
    else
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
    if (mMisura && modello.NumeroRighe() > 0) {
        mMisura = false;
        AdattaColonne();
    }
}

void clsSrvVista::AdattaColonne()
{
    // Measured on the first rows of the model, not on those on screen: groups may be closed.
    QTreeView& lista = mAmbiente.Lista;
    PxModelloContenuto& modello = mAmbiente.Modello;
    const QFontMetrics metrica(lista.font());
    const std::vector<quint32>& ordine = modello.Ordine();
    const size_t campione = std::min<size_t>(ordine.size(), 300);
    for (int k = 0; k < modello.columnCount(); ++k) {
        if (lista.isColumnHidden(k))
            continue;
        int larghezza = lista.header()->sectionSizeHint(k);
        for (size_t i = 0; i < campione; ++i) {
            const QModelIndex indice = modello.Indice(static_cast<qint32>(ordine[i]), k);
            larghezza = std::max(larghezza, metrica.horizontalAdvance(indice.data().toString()) + 16);
        }
        if (k == 0)
            larghezza += lista.indentation() * 2 + lista.iconSize().width() + 8;
        lista.header()->resizeSection(k, std::min(larghezza, 420));
    }
}

void clsSrvVista::SegnaGruppi()
{
    // A group row's text spans the whole row.
    PxModelloContenuto& modello = mAmbiente.Modello;
    if (modello.ColonnaRaggruppamento() < 0)
        return;
    for (int g = 0; g < modello.rowCount(); ++g)
        mAmbiente.Lista.setFirstColumnSpanned(g, {}, true);
}

void clsSrvVista::EspandiGruppi()
{
    if (mAmbiente.Modello.ColonnaRaggruppamento() < 0)
        return;
    if (mContesto.Impostazioni().CollapseGroupRow)
        mAmbiente.Lista.collapseAll();
    else
        for (int g = 0; g < mAmbiente.Modello.rowCount(); ++g)
            mAmbiente.Lista.expand(mAmbiente.Modello.index(g, 0));
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
    QStringList chiavi;
    for (const QModelIndex& i : mAmbiente.Lista.selectionModel()->selectedRows())
        if (i.data(PxModelloContenuto::RuoloRiga).toInt() >= 0)
            chiavi << mAmbiente.Modello.Chiave(i);
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
