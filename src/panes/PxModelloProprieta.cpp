#include "PxModelloProprieta.h"

#include "PxConsoleResDll.h"

#include <QFont>

#include <algorithm>

#include <pugixml.hpp>

using modSchede::Tipo;
using modSchede::VoceEspansa;

namespace {

QString Testo(const pugi::xml_node& base, const std::string& percorso)
{
    if (percorso.empty())
        return {};
    const pugi::xml_node n = base.first_element_by_path(percorso.c_str());
    return n ? QString::fromUtf8(n.child_value()) : QString();
}

// "202611201730" → "20/11/2026 17.30"; anything else as it came.
QString DataPubblicazione(const QString& v)
{
    if (v.size() != 12 || !std::all_of(v.begin(), v.end(), [](QChar c) { return c.isDigit(); }))
        return v;
    return v.mid(6, 2) + u'/' + v.mid(4, 2) + u'/' + v.left(4) + u' ' + v.mid(8, 2) + u'.' + v.mid(10, 2);
}

QString Unisci(const QString& cartella, const QString& nome)
{
    if (cartella.isEmpty() || nome.isEmpty())
        return nome;
    const QChar ultimo = cartella.back();
    return ultimo == u'/' || ultimo == u'\\' ? cartella + nome : cartella + u'/' + nome;
}

} // namespace

PxModelloProprieta::PxModelloProprieta(const PxConsoleResDll& testi, QObject* parent)
    : QAbstractItemModel(parent), mTesti(testi)
{
}

PxModelloProprieta::~PxModelloProprieta() = default;

PxModelloProprieta::Nodo* PxModelloProprieta::Aggiungi(Nodo* padre, const VoceEspansa* voce, QString caption, bool gruppo)
{
    auto n = std::make_unique<Nodo>();
    n->Voce = voce;
    n->Caption = std::move(caption);
    n->Gruppo = gruppo;
    n->Azione = voce ? voce->Azione : 0;
    n->Padre = padre;
    n->Riga = static_cast<int>(padre->Figli.size());
    padre->Figli.push_back(std::move(n));
    return padre->Figli.back().get();
}

void PxModelloProprieta::Costruisci(int numero, const QString& categoria)
{
    beginResetModel();
    mRadice.Figli.clear();
    mOrdine.clear();
    mLayout = numero;
    // The open group at each level: level k's entries go under aperti[k].
    std::vector<Nodo*> aperti{&mRadice};
    for (const VoceEspansa& v : modSchede::Espansa(numero)) {
        aperti.resize(static_cast<size_t>(v.Livello) + 1);
        const bool gruppo = v.Genere == Tipo::Gruppo || v.Genere == Tipo::Elenco || v.Livello == 0;
        QString caption = v.Testo ? mTesti.LoadDllString(v.Testo) : categoria;
        Nodo* n = Aggiungi(aperti.back(), &v, std::move(caption), gruppo);
        mOrdine.push_back(n);
        aperti.push_back(n);
    }
    endResetModel();
}

void PxModelloProprieta::Pulisci()
{
    beginResetModel();
    mRadice.Figli.clear();
    mOrdine.clear();
    mLayout = 0;
    endResetModel();
}

void PxModelloProprieta::ImpostaCategoria(const QString& categoria)
{
    for (const auto& c : mRadice.Figli)
        if (c->Voce && c->Voce->Testo == 0 && c->Caption != categoria) {
            c->Caption = categoria;
            const QModelIndex i = IndiceDi(c.get(), 0);
            emit dataChanged(i, i, {Qt::DisplayRole});
        }
}

void PxModelloProprieta::ImpostaValore(Nodo* n, QString valore, QString secondo)
{
    if (n->Valore == valore && n->Secondo == secondo)
        return;
    n->Valore = std::move(valore);
    n->Secondo = std::move(secondo);
    const QModelIndex i = IndiceDi(n, 1);
    emit dataChanged(i, i);
}

void PxModelloProprieta::Riempi(const pugi::xml_node& base) { RiempiNodi(mRadice.Figli, base); }

void PxModelloProprieta::RiempiNodi(std::span<const std::unique_ptr<Nodo>> nodi, const pugi::xml_node& base)
{
    for (const auto& figlio : nodi) {
        Nodo* n = figlio.get();
        const VoceEspansa* v = n->Voce;
        if (!v)
            continue;
        if (v->Genere == Tipo::Elenco) {
            ImpostaValore(n, Testo(base, v->Secondo), {});
            RiempiElenco(n, v->Percorso.empty() ? pugi::xml_node() : base.first_element_by_path(v->Percorso.c_str()));
            continue;
        }
        QString valore = Testo(base, v->Percorso);
        if (v->Genere == Tipo::Data12)
            valore = DataPubblicazione(valore);
        QString secondo = v->Secondo.empty() ? QString() : Unisci(Testo(base, v->Secondo), valore);
        ImpostaValore(n, std::move(valore), std::move(secondo));
        if (!n->Figli.empty())
            RiempiNodi(n->Figli, base);
    }
}

void PxModelloProprieta::RiempiElenco(Nodo* n, const pugi::xml_node& elenco)
{
    std::vector<pugi::xml_node> voci;
    for (const pugi::xml_node e : elenco.children())
        if (e.type() == pugi::node_element)
            voci.push_back(e);
    const std::vector<VoceEspansa>& modello = n->Voce->Modello;
    // A template's top entries per list entry; a plain list has one line per entry.
    size_t perVoce = 1;
    if (!modello.empty())
        perVoce = static_cast<size_t>(std::count_if(modello.begin(), modello.end(),
                                                    [&](const VoceEspansa& m) { return m.Livello == modello.front().Livello; }));
    const size_t attese = voci.size() * perVoce;
    if (n->Figli.size() != attese) {
        const QModelIndex padre = IndiceDi(n, 0);
        if (!n->Figli.empty()) {
            beginRemoveRows(padre, 0, static_cast<int>(n->Figli.size()) - 1);
            n->Figli.clear();
            endRemoveRows();
        }
        if (attese > 0) {
            beginInsertRows(padre, 0, static_cast<int>(attese) - 1);
            for (size_t k = 0; k < voci.size(); ++k) {
                if (modello.empty()) {
                    Aggiungi(n, nullptr, {}, false)->Azione = n->Voce->Azione;
                    continue;
                }
                std::vector<Nodo*> aperti{n};
                const int primo = modello.front().Livello;
                for (const VoceEspansa& m : modello) {
                    aperti.resize(static_cast<size_t>(m.Livello - primo) + 1);
                    Nodo* c = Aggiungi(aperti.back(), &m, mTesti.LoadDllString(m.Testo), m.Genere == Tipo::Gruppo);
                    aperti.push_back(c);
                }
            }
            endInsertRows();
        }
    }
    for (size_t k = 0; k < voci.size(); ++k) {
        const pugi::xml_node e = voci[k];
        if (modello.empty()) {
            Nodo* c = n->Figli[k].get();
            const pugi::xml_node id = e.child("Id");
            QString caption = id ? QString::fromUtf8(id.child_value()) : QString::number(static_cast<qsizetype>(k) + 1);
            if (c->Caption != caption) {
                c->Caption = std::move(caption);
                const QModelIndex i = IndiceDi(c, 0);
                emit dataChanged(i, i, {Qt::DisplayRole});
            }
            QString valore = QString::fromUtf8(e.child_value());
            if (valore.isEmpty())
                valore = QString::fromUtf8(e.child_value("Descrizione"));
            ImpostaValore(c, std::move(valore), {});
            continue;
        }
        // The template's top entries of entry k, filled from the entry's element.
        RiempiNodi(std::span<const std::unique_ptr<Nodo>>(n->Figli).subspan(k * perVoce, perVoce), e);
    }
}

void PxModelloProprieta::ImpostaColore(int indice, const QColor& colore)
{
    if (indice < 0 || indice >= static_cast<int>(mOrdine.size()))
        return;
    Nodo* n = mOrdine[static_cast<size_t>(indice)];
    if (n->Colore == colore)
        return;
    n->Colore = colore;
    const QModelIndex i = IndiceDi(n, 1);
    emit dataChanged(i, i, {Qt::ForegroundRole});
}

QModelIndex PxModelloProprieta::TrovaTesto(int testo, const QModelIndex& da) const
{
    const Nodo* base = da.isValid() ? NodoDi(da) : &mRadice;
    for (const auto& f : base->Figli) {
        if (f->Voce && f->Voce->Testo == testo)
            return IndiceDi(f.get(), 1);
        if (const QModelIndex i = TrovaTesto(testo, IndiceDi(f.get(), 0)); i.isValid())
            return i;
    }
    return {};
}

PxModelloProprieta::Nodo* PxModelloProprieta::NodoDi(const QModelIndex& i) const
{
    return i.isValid() ? static_cast<Nodo*>(i.internalPointer()) : const_cast<Nodo*>(&mRadice);
}

QModelIndex PxModelloProprieta::IndiceDi(const Nodo* n, int colonna) const
{
    if (!n || n == &mRadice)
        return {};
    return createIndex(n->Riga, colonna, const_cast<Nodo*>(n));
}

QModelIndex PxModelloProprieta::index(int row, int column, const QModelIndex& parent) const
{
    const Nodo* p = NodoDi(parent);
    if (row < 0 || column < 0 || column > 1 || row >= static_cast<int>(p->Figli.size()))
        return {};
    return createIndex(row, column, p->Figli[static_cast<size_t>(row)].get());
}

QModelIndex PxModelloProprieta::parent(const QModelIndex& child) const
{
    if (!child.isValid())
        return {};
    return IndiceDi(NodoDi(child)->Padre, 0);
}

int PxModelloProprieta::rowCount(const QModelIndex& parent) const
{
    if (parent.column() > 0)
        return 0;
    return static_cast<int>(NodoDi(parent)->Figli.size());
}

int PxModelloProprieta::columnCount(const QModelIndex&) const { return 2; }

QString PxModelloProprieta::Mostrabile(const QString& valore)
{
    QString s = valore.size() > LunghezzaMostrata ? valore.left(LunghezzaMostrata) + QChar(0x2026) : valore;
    for (QChar& c : s) {
        const char16_t u = c.unicode();
        if (u < 0x20)
            c = QChar(char16_t(0x2400 + u)); // the control pictures: ␀ ␉ ␊ ␍ ...
        else if (u == 0x7f)
            c = QChar(char16_t(0x2421));
    }
    return s;
}

QVariant PxModelloProprieta::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const Nodo* n = NodoDi(index);
    switch (role) {
    case Qt::DisplayRole:
        return index.column() == 0 ? n->Caption : Mostrabile(n->Valore);
    case Qt::ToolTipRole:
        return index.column() == 1 && !n->Valore.isEmpty() ? Mostrabile(n->Valore) : QVariant();
    case Qt::ForegroundRole:
        return index.column() == 1 && n->Colore.isValid() ? QVariant(n->Colore) : QVariant();
    case Qt::FontRole:
        if (n->Padre == &mRadice) {
            QFont f;
            f.setBold(true);
            return f;
        }
        return {};
    case RuoloAzione: return n->Azione;
    case RuoloSecondo: return n->Secondo;
    case RuoloGruppo: return n->Gruppo;
    case RuoloValoreIntero: return n->Valore;
    default: return {};
    }
}

QVariant PxModelloProprieta::headerData(int, Qt::Orientation, int) const { return {}; }

Qt::ItemFlags PxModelloProprieta::flags(const QModelIndex& index) const
{
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags;
}
