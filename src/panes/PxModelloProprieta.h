#pragma once

#include "modSchede.h"

#include <QAbstractItemModel>
#include <QColor>

#include <memory>
#include <span>
#include <vector>

class PxConsoleResDll;
namespace pugi { class xml_node; }

// The property grid's content: a read-only tree of categories, groups and items with a caption
// and a value column, built from a sheet's layout table and filled from an XML description.
// Building resets the model; filling changes only the values that differ (and the entries of the
// lists), so the view keeps its expanded groups, selection and scroll across refreshes.
class PxModelloProprieta : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Ruolo {
        RuoloAzione = Qt::UserRole + 1, // int: the item's action code (0: no button)
        RuoloSecondo,                   // QString: the item's second text
        RuoloGruppo,                    // bool: a category or group
        RuoloValoreIntero,              // QString: the whole value, never shortened
    };
    // Longest value shown in the cell; the whole text stays available to copy.
    static constexpr qsizetype LunghezzaMostrata = 2000;

    explicit PxModelloProprieta(const PxConsoleResDll& testi, QObject* parent = nullptr);
    ~PxModelloProprieta() override;

    // Builds layout `numero`; the categories with no caption of their own take `categoria`.
    void Costruisci(int numero, const QString& categoria);
    // Removes every category (the layout number becomes 0).
    void Pulisci();
    int Layout() const { return mLayout; }
    // Sets every value from the elements under `base` (a missing element leaves an empty value).
    void Riempi(const pugi::xml_node& base);
    // The text colour of item `indice` (in creation order, the category being 0); invalid: default.
    void ImpostaColore(int indice, const QColor& colore);
    // The caption of every category that takes the node's caption.
    void ImpostaCategoria(const QString& categoria);

    // The value shown for the first item whose caption id is `testo` (tests and screenshots).
    QModelIndex TrovaTesto(int testo, const QModelIndex& da = {}) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    // How a value is shown: control characters as visible symbols, a huge text shortened.
    static QString Mostrabile(const QString& valore);

private:
    struct Nodo
    {
        const modSchede::VoceEspansa* Voce = nullptr; // nullptr for a list's entry built from data
        QString Caption;
        QString Valore;
        QString Secondo;
        int Azione = 0;
        bool Gruppo = false;
        QColor Colore;
        Nodo* Padre = nullptr;
        int Riga = 0;
        std::vector<std::unique_ptr<Nodo>> Figli;
    };

    Nodo* NodoDi(const QModelIndex& i) const;
    QModelIndex IndiceDi(const Nodo* n, int colonna) const;
    Nodo* Aggiungi(Nodo* padre, const modSchede::VoceEspansa* voce, QString caption, bool gruppo);
    void ImpostaValore(Nodo* n, QString valore, QString secondo);
    void RiempiElenco(Nodo* n, const pugi::xml_node& elenco);
    void RiempiNodi(std::span<const std::unique_ptr<Nodo>> nodi, const pugi::xml_node& base);

    const PxConsoleResDll& mTesti;
    Nodo mRadice;
    std::vector<Nodo*> mOrdine; // every node of the layout in creation order
    int mLayout = 0;
};
