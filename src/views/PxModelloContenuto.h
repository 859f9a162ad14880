#pragma once

#include <QAbstractItemModel>
#include <QHash>
#include <QIcon>
#include <QList>

#include <functional>
#include <span>
#include <string_view>
#include <vector>

// The content list's model: one row per document (or service, worker, format), keyed by the
// text of its first cell, with its linked documents as child rows; optionally grouped by the
// text of one column, each group a parent row that shows the text and its count.
//
// Built for folders of a million documents: every cell's text lives in one UTF-8 buffer and a
// row holds offsets into it; an open-addressing index finds a row by its key; the display order
// is a vector of row numbers sorted by our own comparator (a short prefix key first). QStrings
// are made only in data(), for the rows on screen. A full listing is one reset; a notice touches
// one row (dataChanged, or one move, insert or remove that keeps the operator's selection).
class PxModelloContenuto : public QAbstractItemModel
{
    Q_OBJECT

public:
    static constexpr int RuoloOrdinamento = Qt::UserRole + 1; // typed: QDateTime for date cells
    static constexpr int RuoloChiave = Qt::UserRole + 2;      // the row's key
    static constexpr int RuoloAvanzamento = Qt::UserRole + 3; // 0-100 in a progress cell
    static constexpr int RuoloGruppo = Qt::UserRole + 4;      // true on a group row
    static constexpr int RuoloRiga = Qt::UserRole + 5;        // the document's row; -1 for others
    // The key of the group a row is in, or of a group row: "F" + stage number when grouped by
    // stage, "T" + the column's text otherwise; invalid when not grouped.
    static constexpr int RuoloChiaveGruppo = Qt::UserRole + 6;

    // A stage of the work (a folder's queue) as its group shows it.
    struct Fase
    {
        qint16 Numero;
        QString Titolo;
    };

    struct Colonna
    {
        QString Titolo;
        bool Data = false;        // an empty cell is an empty date ("n.d.")
        bool Nascosta = false;
        bool Avanzamento = false; // "done/total" drawn as a bar
    };
    using Celle = std::span<const std::string_view>;

    explicit PxModelloContenuto(QObject* parent = nullptr);

    // Declares the columns; drops every row.
    void ImpostaColonne(QList<Colonna> colonne);
    const QList<Colonna>& Colonne() const { return mColonne; }
    // Icons: of a row whose icon number is 0, of a linked document, and of a number.
    void ImpostaIcone(QIcon documento, QIcon collegato, std::function<QIcon(qint32)> icona = {});
    // "Oggi", "Ieri" and "n.d." as the date cells show them.
    void ImpostaTestiDate(QString oggi, QString ieri, QString nonDisponibile);

    // A full load: rows added between Inizia and Fine appear in one reset.
    void IniziaCaricamento();
    // Room for about `righe` rows holding `testo` bytes of text, to grow once.
    void Riserva(size_t righe, size_t testo);
    // Adds a row (at least one cell, the key, and at most one per column); false, and nothing
    // added, when a row of that key exists.
    bool Aggiungi(Celle celle, quint32 colore, qint32 icona = 0, qint16 fase = 0);
    // A linked document of the row added last.
    void AggiungiCollegato(std::string_view id, std::string_view descrizione);
    void FineCaricamento();
    void Svuota();

    // One row, outside a load. Inserisci adds a row with its linked documents; Aggiorna rewrites
    // a row's cells but the key and its colour, keeping its linked documents.
    // `fase`: the row's stage (a folder's queue), which orders the groups of the stage column.
    bool Inserisci(Celle celle, quint32 colore, std::span<const std::pair<std::string_view, std::string_view>> collegati = {},
                   qint32 icona = 0, qint16 fase = 0);
    void Aggiorna(qint32 riga, Celle celle, quint32 colore, qint32 icona = 0, qint16 fase = 0);
    void Rimuovi(qint32 riga);

    // The row of a key (stable while it lives); -1 when none.
    qint32 Riga(std::string_view chiave) const;
    qint32 Riga(const QString& chiave) const { return Riga(std::string_view(chiave.toUtf8())); }
    QModelIndex Indice(qint32 riga, int colonna = 0) const;
    // The key of the document row at `indice`; "" for group rows and linked documents.
    QString Chiave(const QModelIndex& indice) const;
    QString Testo(qint32 riga, int colonna) const;
    quint32 Colore(qint32 riga) const { return mRighe[static_cast<size_t>(riga)].Colore; }
    qsizetype NumeroRighe() const { return mVive; }
    // Row numbers in display order.
    const std::vector<quint32>& Ordine() const { return mOrdine; }

    // Groups rows by the text of `colonna`; -1 for none.
    void ImpostaRaggruppamento(int colonna);
    // The column that tells a row's stage: grouped by it, the rows are grouped by their stage
    // (not by the column's text), one group per stage, in the order of `fasi` (the order of
    // the work), each titled with its stage's caption; a stage missing from `fasi` comes after
    // them, titled with its first row's text.
    void ImpostaColonnaFase(int colonna, QList<Fase> fasi = {});
    bool PerFase() const { return mColonnaGruppo >= 0 && mColonnaGruppo == mColonnaFase; }
    int ColonnaRaggruppamento() const { return mColonnaGruppo; }
    int ColonnaOrdinamento() const { return mColonnaOrdine; }
    Qt::SortOrder Verso() const { return mVerso; }
    // The group row of `chiave` (as RuoloChiaveGruppo gives it); invalid when none.
    QModelIndex IndiceGruppo(const QString& chiave) const;

    // QAbstractItemModel
    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    bool hasChildren(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& indice, int ruolo = Qt::DisplayRole) const override;
    QVariant headerData(int sezione, Qt::Orientation orientamento, int ruolo = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& indice) const override;
    void sort(int colonna, Qt::SortOrder verso = Qt::AscendingOrder) override;

    // Bytes held for the rows, beside the cells' text (for the benchmarks).
    size_t MemoriaStrutture() const;
    size_t MemoriaTesto() const { return mTesto.capacity(); }

private:
    struct RigaDati
    {
        quint32 Celle;           // first of this row's offsets in mCelle (columns + 1 of them)
        quint32 Colore;
        quint32 PrimoCollegato;
        quint32 NumeroCollegati;
        qint32 Icona;
        bool Viva;
        qint16 Fase;
    };
    struct Collegato
    {
        quint32 Id, Descrizione, Fine; // offsets in mTesto
    };
    struct Gruppo
    {
        quint32 Inizio;   // first position in mOrdine
        quint32 Numero;
        quint32 Id;       // stable, for the indexes of its rows
        quint32 Campione; // a row of the group, naming it while it is being filled (Numero 0)
    };

    static constexpr quint32 BitData = 0x80000000u;
    static constexpr quintptr BaseCollegati = quintptr(1) << 40;

    std::string_view Cella(quint32 riga, int colonna) const;
    bool CellaData(quint32 riga, int colonna) const;
    quint32 Scrivi(Celle celle); // appends a row's cells, returns its first offset
    std::string_view TestoDi(quint32 inizio, quint32 fine) const;

    // Index of keys.
    void Indicizza(quint32 riga);
    void Deindicizza(quint32 riga);
    void RifaiIndice();
    void SvuotaRighe();

    // Order: the comparison of two rows by group then sort column; where a row goes.
    int Confronta(quint32 a, quint32 b) const;
    int ConfrontaColonna(quint32 a, quint32 b, int colonna) const;
    int ConfrontaGruppo(quint32 a, quint32 b) const;
    int RangoFase(qint16 fase) const;
    // The row that names group `g`, its title and its key.
    quint32 RigaDelGruppo(size_t g) const;
    QString TitoloGruppo(size_t g) const;
    QString ChiaveGruppo(quint32 riga) const;
    void Riordina(); // sorts mOrdine, rebuilds groups and positions
    quint32 PosizioneNuova(quint32 riga) const;
    qint32 GruppoDellaPosizione(quint32 posizione) const;
    QModelIndex GenitoreDellaPosizione(quint32 posizione, int* rigaNelGenitore) const;
    void Sposta(quint32 riga);     // after a change of its group or sort text
    void Inserimento(quint32 riga);
    void Rimozione(quint32 riga);
    void Compatta();

    QList<Colonna> mColonne;
    QIcon mIconaDocumento, mIconaCollegato;
    std::function<QIcon(qint32)> mIcona;
    mutable QHash<qint32, QIcon> mIcone;
    QString mOggi, mIeri, mNonDisponibile;
    qint64 mGiornoOggi = 0; // yyyymmdd of today, refreshed per reset

    std::vector<char> mTesto;
    size_t mTestoMorto = 0;
    std::vector<quint32> mCelle;
    std::vector<RigaDati> mRighe;
    std::vector<Collegato> mCollegati;
    qsizetype mVive = 0;
    std::vector<quint64> mIndice; // open addressing: hash << 32 | row + 1; 0 empty; Tomba removed
    static constexpr quint32 Tomba = 0xFFFFFFFFu;
    size_t mOccupati = 0;

    std::vector<quint32> mOrdine;    // rows in display order
    std::vector<quint32> mPosizione; // row to its place in mOrdine
    std::vector<Gruppo> mGruppi;
    QHash<quint32, quint32> mGruppoDaId;
    quint32 mProssimoGruppo = 1;
    int mColonnaGruppo = -1;
    int mColonnaFase = -1;
    QHash<qint16, std::pair<int, QString>> mFasi; // stage: its rank in the work, its title
    int mColonnaOrdine = -1;
    Qt::SortOrder mVerso = Qt::AscendingOrder;
    bool mInCaricamento = false;
};
