#include "PxModelloContenuto.h"

#include <QColor>
#include <QDateTime>
#include <QFont>

#include <algorithm>
#include <cstring>
#include <map>
#include <unordered_map>

namespace {

// yyyymmddhhmmss of "dd/MM/yyyy[ HH:mm[:ss]]"; -1 when the text is not a date.
// A date as the server may write it: "dd/MM/yyyy hh:mm:ss" above all, but also one-digit day
// and month, "-" or "." between its parts (a dotted date needs a four-digit year, so that
// "1.2.3" stays a version), a two-digit year (taken as 20yy), ISO "yyyy-MM-dd" with "T" or a
// space before the time, "." between hours and minutes; seconds optional. yyyyMMddhhmmss, or
// -1 when the text is no date. `ora`, when given, gets the offset of the time of day ("" none).
qint64 LeggiData(std::string_view t, size_t* ora = nullptr)
{
    size_t i = 0;
    const auto numero = [&t, &i](size_t minimo, size_t massimo, int& v) {
        const size_t da = i;
        v = 0;
        while (i < t.size() && i - da < massimo && t[i] >= '0' && t[i] <= '9')
            v = v * 10 + (t[i++] - '0');
        return i - da >= minimo && (i == t.size() || t[i] < '0' || t[i] > '9');
    };
    const auto segno = [&t, &i](char c) { return i < t.size() && t[i] == c ? (++i, true) : false; };
    if (t.size() < 6 || t.size() > 32)
        return -1;
    int g = 0, m = 0, a = 0, h = 0, mi = 0, s = 0;
    if (!numero(1, 4, g))
        return -1;
    if (i == 4) { // ISO: year first
        a = g;
        if (!segno('-') || !numero(2, 2, m) || !segno('-') || !numero(2, 2, g))
            return -1;
    } else {
        const char sep = i < t.size() ? t[i] : '\0';
        if (sep != '/' && sep != '-' && sep != '.')
            return -1;
        ++i;
        const size_t inizioAnno = (numero(1, 2, m) && segno(sep)) ? i : std::string_view::npos;
        if (inizioAnno == std::string_view::npos || !numero(2, 4, a) || i - inizioAnno == 3)
            return -1;
        if (i - inizioAnno == 2) {
            if (sep == '.')
                return -1;
            a += 2000;
        }
    }
    size_t inizioOra = std::string_view::npos;
    if (i < t.size()) {
        if (t[i] != ' ' && t[i] != 'T')
            return -1;
        ++i;
        inizioOra = i;
        if (!numero(1, 2, h))
            return -1;
        const char sep = i < t.size() ? t[i] : '\0';
        if ((sep != ':' && sep != '.') || (++i, !numero(2, 2, mi)))
            return -1;
        if (i < t.size() && (!segno(sep) || !numero(2, 2, s)))
            return -1;
        if (i != t.size())
            return -1;
    }
    if (!QDate::isValid(a, m, g) || h > 23 || mi > 59 || s > 59)
        return -1;
    if (ora)
        *ora = inizioOra == std::string_view::npos ? t.size() : inizioOra;
    return ((((qint64(a) * 100 + m) * 100 + g) * 100 + h) * 100 + mi) * 100 + s;
}

// 0 when there is nothing to do, 100 once done reaches the total, else rounded.
int Percentuale(qint64 fatti, qint64 totale)
{
    if (totale <= 0 || fatti <= 0)
        return 0;
    if (fatti >= totale)
        return 100;
    return static_cast<int>(std::clamp<qint64>((fatti * 200 + totale) / (totale * 2), 0, 100));
}

char Minuscola(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// Case-insensitive first (ASCII), then byte order, so that equal means the same text.
int ConfrontaTesti(std::string_view a, std::string_view b)
{
    const size_t n = std::min(a.size(), b.size());
    for (size_t i = 0; i < n; ++i) {
        const unsigned char x = static_cast<unsigned char>(Minuscola(a[i]));
        const unsigned char y = static_cast<unsigned char>(Minuscola(b[i]));
        if (x != y)
            return x < y ? -1 : 1;
    }
    if (a.size() != b.size())
        return a.size() < b.size() ? -1 : 1;
    const int c = a.compare(b);
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

// A sort key that decides most comparisons alone: two bits of kind (empty date, date, text),
// then the date's value or the text's first seven bytes folded to lower case.
quint64 Prefisso(std::string_view testo, bool data)
{
    if (data) {
        const qint64 v = LeggiData(testo);
        return v < 0 ? 0 : (quint64(1) << 62) | quint64(v);
    }
    quint64 k = quint64(2) << 62;
    for (size_t i = 0; i < 7 && i < testo.size(); ++i)
        k |= quint64(static_cast<unsigned char>(Minuscola(testo[i]))) << (48 - 8 * i);
    return k;
}

quint32 Hash(std::string_view s)
{
    quint32 h = 2166136261u;
    for (const char c : s)
        h = (h ^ static_cast<unsigned char>(c)) * 16777619u;
    return h;
}

QString Utf8(std::string_view s) { return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size())); }

} // namespace

PxModelloContenuto::PxModelloContenuto(QObject* parent) : QAbstractItemModel(parent)
{
    mIndice.assign(16, 0);
}

void PxModelloContenuto::ImpostaColonne(QList<Colonna> colonne)
{
    beginResetModel();
    mColonne = std::move(colonne);
    mColonnaOrdine = -1;
    mColonnaFase = -1;
    if (mColonnaGruppo >= mColonne.size())
        mColonnaGruppo = -1;
    SvuotaRighe();
    // Another view: the room a large folder took goes back.
    for (auto* v : {&mCelle, &mOrdine, &mPosizione})
        v->shrink_to_fit();
    mTesto.shrink_to_fit();
    mRighe.shrink_to_fit();
    mCollegati.shrink_to_fit();
    mIndice.assign(16, 0);
    mIndice.shrink_to_fit();
    endResetModel();
}

void PxModelloContenuto::SvuotaRighe()
{
    // The vectors keep their room: the next listing of a folder is about as large.
    mTesto.clear();
    mCelle.clear();
    mRighe.clear();
    mCollegati.clear();
    mOrdine.clear();
    mPosizione.clear();
    mGruppi.clear();
    mGruppoDaId.clear();
    mVive = 0;
    mTestoMorto = 0;
    mIndice.assign(mIndice.size(), 0);
    mOccupati = 0;
}

void PxModelloContenuto::ImpostaIcone(QIcon documento, QIcon collegato, std::function<QIcon(qint32)> icona)
{
    mIconaDocumento = std::move(documento);
    mIconaCollegato = std::move(collegato);
    mIcona = std::move(icona);
    mIcone.clear();
}

void PxModelloContenuto::ImpostaTestiDate(QString oggi, QString ieri, QString nonDisponibile)
{
    mOggi = std::move(oggi);
    mIeri = std::move(ieri);
    mNonDisponibile = std::move(nonDisponibile);
}

// ---- storage

std::string_view PxModelloContenuto::TestoDi(quint32 inizio, quint32 fine) const
{
    return {mTesto.data() + inizio, fine - inizio};
}

std::string_view PxModelloContenuto::Cella(quint32 riga, int colonna) const
{
    const quint32* o = mCelle.data() + mRighe[riga].Celle + colonna;
    return TestoDi(o[0] & ~BitData, o[1] & ~BitData);
}

bool PxModelloContenuto::CellaData(quint32 riga, int colonna) const
{
    return (mCelle[mRighe[riga].Celle + static_cast<quint32>(colonna)] & BitData) != 0;
}

quint32 PxModelloContenuto::Scrivi(Celle celle)
{
    const quint32 primo = static_cast<quint32>(mCelle.size());
    const int n = static_cast<int>(mColonne.size());
    for (int k = 0; k < n; ++k) {
        const std::string_view t = k < static_cast<int>(celle.size()) ? celle[static_cast<size_t>(k)] : std::string_view();
        quint32 o = static_cast<quint32>(mTesto.size());
        if (k > 0 && (t.empty() ? mColonne[k].Data : LeggiData(t) >= 0))
            o |= BitData;
        mCelle.push_back(o);
        mTesto.insert(mTesto.end(), t.begin(), t.end());
    }
    mCelle.push_back(static_cast<quint32>(mTesto.size()));
    return primo;
}

void PxModelloContenuto::Compatta()
{
    std::vector<char> testo;
    testo.reserve(mTesto.size() - mTestoMorto + 1024);
    const int n = static_cast<int>(mColonne.size());
    for (RigaDati& r : mRighe) {
        if (!r.Viva)
            continue;
        // A row's cells are contiguous: move them as one block.
        quint32* o = mCelle.data() + r.Celle;
        const quint32 da = o[0] & ~BitData, a = o[n] & ~BitData;
        const quint32 nuovo = static_cast<quint32>(testo.size());
        testo.insert(testo.end(), mTesto.begin() + da, mTesto.begin() + a);
        for (int k = 0; k <= n; ++k)
            o[k] = ((o[k] & ~BitData) - da + nuovo) | (o[k] & BitData);
        for (quint32 c = r.PrimoCollegato; c < r.PrimoCollegato + r.NumeroCollegati; ++c) {
            Collegato& l = mCollegati[c];
            const quint32 base = static_cast<quint32>(testo.size());
            testo.insert(testo.end(), mTesto.begin() + l.Id, mTesto.begin() + l.Fine);
            l.Descrizione = base + (l.Descrizione - l.Id);
            l.Fine = base + (l.Fine - l.Id);
            l.Id = base;
        }
    }
    mTesto = std::move(testo);
    mTestoMorto = 0;
}

// ---- key index

void PxModelloContenuto::RifaiIndice()
{
    size_t capacita = 16;
    while (capacita < static_cast<size_t>(mVive) * 2 + 16)
        capacita *= 2;
    mIndice.assign(capacita, 0);
    mOccupati = 0;
    for (quint32 r = 0; r < mRighe.size(); ++r)
        if (mRighe[r].Viva)
            Indicizza(r);
}

void PxModelloContenuto::Indicizza(quint32 riga)
{
    if ((mOccupati + 1) * 2 > mIndice.size()) {
        RifaiIndice(); // also indexes `riga`, which is already alive
        return;
    }
    const quint32 h = Hash(Cella(riga, 0));
    const size_t maschera = mIndice.size() - 1;
    size_t i = h & maschera;
    while (mIndice[i] != 0 && static_cast<quint32>(mIndice[i]) != Tomba)
        i = (i + 1) & maschera;
    if (mIndice[i] == 0)
        ++mOccupati;
    mIndice[i] = (quint64(h) << 32) | (riga + 1);
}

void PxModelloContenuto::Deindicizza(quint32 riga)
{
    const size_t maschera = mIndice.size() - 1;
    for (size_t i = Hash(Cella(riga, 0)) & maschera; mIndice[i] != 0; i = (i + 1) & maschera)
        if (static_cast<quint32>(mIndice[i]) == riga + 1) {
            mIndice[i] = Tomba;
            return;
        }
}

qint32 PxModelloContenuto::Riga(std::string_view chiave) const
{
    // Each slot keeps its key's hash beside the row: other rows' text is read only on a match.
    const quint32 h = Hash(chiave);
    const size_t maschera = mIndice.size() - 1;
    for (size_t i = h & maschera; mIndice[i] != 0; i = (i + 1) & maschera) {
        const quint32 v = static_cast<quint32>(mIndice[i]);
        if (v != Tomba && (mIndice[i] >> 32) == h && Cella(v - 1, 0) == chiave)
            return static_cast<qint32>(v - 1);
    }
    return -1;
}

// ---- loading

void PxModelloContenuto::IniziaCaricamento()
{
    beginResetModel();
    mInCaricamento = true;
    SvuotaRighe();
}

bool PxModelloContenuto::Aggiungi(Celle celle, quint32 colore, qint32 icona, qint16 fase)
{
    if (celle.empty() || mColonne.isEmpty())
        return false;
    if ((mOccupati + 1) * 2 > mIndice.size())
        RifaiIndice();
    // The key's slot is far in memory: it is asked for first, and the cells are written while
    // it comes; a key already there takes them back.
    const quint32 h = Hash(celle[0]);
    const size_t maschera = mIndice.size() - 1;
    size_t i = h & maschera;
    __builtin_prefetch(&mIndice[i]);
    const size_t testoPrima = mTesto.size();
    const quint32 primaCella = Scrivi(celle);
    size_t libero = SIZE_MAX;
    for (; mIndice[i] != 0; i = (i + 1) & maschera) {
        const quint32 v = static_cast<quint32>(mIndice[i]);
        if (v == Tomba) {
            if (libero == SIZE_MAX)
                libero = i;
        } else if ((mIndice[i] >> 32) == h && Cella(v - 1, 0) == celle[0]) {
            mTesto.resize(testoPrima);
            mCelle.resize(primaCella);
            return false;
        }
    }
    if (libero == SIZE_MAX) {
        libero = i;
        ++mOccupati;
    }
    const quint32 riga = static_cast<quint32>(mRighe.size());
    mRighe.push_back({primaCella, colore, static_cast<quint32>(mCollegati.size()), 0, icona, true, fase});
    mIndice[libero] = (quint64(h) << 32) | (riga + 1);
    ++mVive;
    return true;
}

void PxModelloContenuto::AggiungiCollegato(std::string_view id, std::string_view descrizione)
{
    if (mRighe.empty())
        return;
    const quint32 a = static_cast<quint32>(mTesto.size());
    mTesto.insert(mTesto.end(), id.begin(), id.end());
    const quint32 b = static_cast<quint32>(mTesto.size());
    mTesto.insert(mTesto.end(), descrizione.begin(), descrizione.end());
    mCollegati.push_back({a, b, static_cast<quint32>(mTesto.size())});
    ++mRighe.back().NumeroCollegati;
}

void PxModelloContenuto::Riserva(size_t righe, size_t testo)
{
    mRighe.reserve(righe);
    mCelle.reserve(righe * static_cast<size_t>(mColonne.size() + 1));
    mTesto.reserve(testo);
    size_t capacita = mIndice.size();
    while (capacita < righe * 2 + 16)
        capacita *= 2;
    if (capacita != mIndice.size() && mOccupati == 0)
        mIndice.assign(capacita, 0);
}

void PxModelloContenuto::FineCaricamento()
{
    if (!mInCaricamento)
        return;
    Riordina();
    mInCaricamento = false;
    endResetModel();
}

void PxModelloContenuto::Svuota()
{
    IniziaCaricamento();
    FineCaricamento();
}

// ---- order and groups

int PxModelloContenuto::ConfrontaColonna(quint32 a, quint32 b, int colonna) const
{
    const std::string_view x = Cella(a, colonna), y = Cella(b, colonna);
    const quint64 px = Prefisso(x, CellaData(a, colonna)), py = Prefisso(y, CellaData(b, colonna));
    if (px != py)
        return px < py ? -1 : 1;
    if ((px >> 62) != 2)
        return 0; // dates are whole in their key
    return ConfrontaTesti(x, y);
}

int PxModelloContenuto::RangoFase(qint16 fase) const
{
    const auto f = mFasi.constFind(fase);
    return f == mFasi.cend() ? 0x10000 + fase : f->first;
}

int PxModelloContenuto::ConfrontaGruppo(quint32 a, quint32 b) const
{
    // Grouped by stage, a group is a stage, whatever its rows' texts say.
    if (PerFase()) {
        const int x = RangoFase(mRighe[a].Fase), y = RangoFase(mRighe[b].Fase);
        return x == y ? 0 : (x < y ? -1 : 1);
    }
    return ConfrontaColonna(a, b, mColonnaGruppo);
}

void PxModelloContenuto::ImpostaColonnaFase(int colonna, QList<Fase> fasi)
{
    mColonnaFase = colonna;
    mFasi.clear();
    for (int i = 0; i < fasi.size(); ++i)
        mFasi.insert(fasi[i].Numero, {i, fasi[i].Titolo});
}

quint32 PxModelloContenuto::RigaDelGruppo(size_t g) const
{
    return mGruppi[g].Numero ? mOrdine[mGruppi[g].Inizio] : mGruppi[g].Campione;
}

QString PxModelloContenuto::TitoloGruppo(size_t g) const
{
    const quint32 riga = RigaDelGruppo(g);
    if (PerFase())
        if (const auto f = mFasi.constFind(mRighe[riga].Fase); f != mFasi.cend() && !f->second.isEmpty())
            return f->second;
    return Utf8(Cella(riga, mColonnaGruppo));
}

QString PxModelloContenuto::ChiaveGruppo(quint32 riga) const
{
    if (PerFase())
        return u'F' + QString::number(mRighe[riga].Fase);
    return u'T' + Utf8(Cella(riga, mColonnaGruppo));
}

int PxModelloContenuto::Confronta(quint32 a, quint32 b) const
{
    if (mColonnaGruppo >= 0)
        if (const int c = ConfrontaGruppo(a, b))
            return c;
    if (mColonnaOrdine >= 0)
        if (const int c = ConfrontaColonna(a, b, mColonnaOrdine))
            return mVerso == Qt::AscendingOrder ? c : -c;
    return a < b ? -1 : (a > b ? 1 : 0);
}

void PxModelloContenuto::Riordina()
{
    // Keys are computed walking the rows as they are stored (the memory in order); the result
    // does not depend on the order before, since ties fall to the row number.
    struct Voce
    {
        quint64 G, S;
        quint32 R;
    };
    std::vector<Voce> voci;
    voci.reserve(static_cast<size_t>(mVive));
    const bool discendente = mVerso == Qt::DescendingOrder;
    // Groups: each distinct (stage, text) gets its rank among them, so that grouping compares
    // numbers. The stage counts only when grouping by the stage column.
    const bool perFase = PerFase();
    std::map<qint16, std::unordered_map<std::string_view, quint32>> perFasi;
    std::vector<std::pair<qint16, std::string_view>> distinti;
    std::string_view ultimo;
    qint16 ultimaFase = 0;
    quint64 ultimoGruppo = 0;
    for (quint32 r = 0; r < mRighe.size(); ++r) {
        if (!mRighe[r].Viva)
            continue;
        quint64 g = 0;
        if (mColonnaGruppo >= 0) {
            // Rows come queue by queue: the stage of a row is mostly the one of the row before.
            const std::string_view t = perFase ? std::string_view() : Cella(r, mColonnaGruppo);
            const qint16 fase = perFase ? mRighe[r].Fase : qint16(0);
            if (distinti.empty() || t != ultimo || fase != ultimaFase) {
                ultimo = t;
                ultimaFase = fase;
                const auto [it, nuovo] = perFasi[fase].try_emplace(t, static_cast<quint32>(distinti.size()));
                if (nuovo)
                    distinti.emplace_back(fase, t);
                ultimoGruppo = it->second;
            }
            g = ultimoGruppo;
        }
        const quint64 s = mColonnaOrdine >= 0 ? Prefisso(Cella(r, mColonnaOrdine), CellaData(r, mColonnaOrdine)) : 0;
        voci.push_back({g, discendente ? ~s : s, r});
    }
    if (mColonnaGruppo >= 0) {
        std::vector<quint32> ordine(distinti.size());
        for (quint32 i = 0; i < ordine.size(); ++i)
            ordine[i] = i;
        std::sort(ordine.begin(), ordine.end(), [this, &distinti](quint32 a, quint32 b) {
            if (distinti[a].first != distinti[b].first)
                return RangoFase(distinti[a].first) < RangoFase(distinti[b].first);
            return ConfrontaTesti(distinti[a].second, distinti[b].second) < 0;
        });
        std::vector<quint32> rango(distinti.size());
        for (quint32 i = 0; i < ordine.size(); ++i)
            rango[ordine[i]] = i;
        for (Voce& v : voci)
            v.G = rango[v.G];
    }
    // The groups come from the ranks: how many rows each has, in rank order.
    std::vector<quint32> quanti(mColonnaGruppo >= 0 ? distinti.size() : 0, 0);
    for (const Voce& v : voci)
        if (mColonnaGruppo >= 0)
            ++quanti[v.G];
    bool contati = false;
    if (mColonnaGruppo >= 0 && mColonnaOrdine < 0) {
        contati = true;
        // Grouped in the server's order: a counting sort by group keeps the row order.
        std::vector<quint32> inizio(distinti.size(), 0);
        for (size_t g = 1; g < inizio.size(); ++g)
            inizio[g] = inizio[g - 1] + quanti[g - 1];
        mOrdine.resize(voci.size());
        for (const Voce& v : voci)
            mOrdine[inizio[v.G]++] = v.R;
        voci.clear();
    } else if (mColonnaGruppo >= 0 || mColonnaOrdine >= 0)
        std::sort(voci.begin(), voci.end(), [this, discendente](const Voce& a, const Voce& b) {
            if (a.G != b.G)
                return a.G < b.G;
            if (a.S != b.S)
                return a.S < b.S;
            // Equal prefixes of two texts: the whole texts decide.
            const quint64 tipo = discendente ? (~a.S >> 62) : (a.S >> 62);
            if (tipo == 2 && mColonnaOrdine >= 0)
                if (const int c = ConfrontaTesti(Cella(a.R, mColonnaOrdine), Cella(b.R, mColonnaOrdine)))
                    return discendente ? c > 0 : c < 0;
            return a.R < b.R;
        });
    if (!contati) {
        mOrdine.resize(voci.size());
        for (size_t i = 0; i < voci.size(); ++i)
            mOrdine[i] = voci[i].R;
    }
    mPosizione.assign(mRighe.size(), 0);
    for (quint32 i = 0; i < mOrdine.size(); ++i)
        mPosizione[mOrdine[i]] = i;
    mGruppi.clear();
    mGruppoDaId.clear();
    quint32 inizio = 0;
    for (const quint32 n : quanti) {
        if (n == 0)
            continue;
        mGruppi.push_back({inizio, n, mProssimoGruppo++, mOrdine[inizio]});
        mGruppoDaId.insert(mGruppi.back().Id, static_cast<quint32>(mGruppi.size() - 1));
        inizio += n;
    }
}

qint32 PxModelloContenuto::GruppoDellaPosizione(quint32 posizione) const
{
    const auto it = std::upper_bound(mGruppi.begin(), mGruppi.end(), posizione,
                                     [](quint32 p, const Gruppo& g) { return p < g.Inizio; });
    return static_cast<qint32>(it - mGruppi.begin()) - 1;
}

QModelIndex PxModelloContenuto::GenitoreDellaPosizione(quint32 posizione, int* rigaNelGenitore) const
{
    if (mColonnaGruppo < 0) {
        *rigaNelGenitore = static_cast<int>(posizione);
        return {};
    }
    const qint32 g = GruppoDellaPosizione(posizione);
    *rigaNelGenitore = static_cast<int>(posizione - mGruppi[static_cast<size_t>(g)].Inizio);
    return createIndex(g, 0, quintptr(0));
}

quint32 PxModelloContenuto::PosizioneNuova(quint32 riga) const
{
    const auto it = std::lower_bound(mOrdine.begin(), mOrdine.end(), riga,
                                     [this](quint32 a, quint32 b) { return Confronta(a, b) < 0; });
    return static_cast<quint32>(it - mOrdine.begin());
}

void PxModelloContenuto::Inserimento(quint32 riga)
{
    const quint32 p = PosizioneNuova(riga);
    if (mPosizione.size() < mRighe.size())
        mPosizione.resize(mRighe.size(), 0);
    const auto inserisci = [&] {
        mOrdine.insert(mOrdine.begin() + p, riga);
        for (quint32 i = p; i < mOrdine.size(); ++i)
            mPosizione[mOrdine[i]] = i;
    };
    if (mColonnaGruppo < 0) {
        beginInsertRows({}, static_cast<int>(p), static_cast<int>(p));
        inserisci();
        endInsertRows();
        return;
    }
    qint32 g = -1;
    if (p > 0 && ConfrontaGruppo(mOrdine[p - 1], riga) == 0)
        g = GruppoDellaPosizione(p - 1);
    else if (p < mOrdine.size() && ConfrontaGruppo(mOrdine[p], riga) == 0)
        g = GruppoDellaPosizione(p);
    if (g < 0) {
        g = p < mOrdine.size() ? GruppoDellaPosizione(p) : static_cast<qint32>(mGruppi.size());
        beginInsertRows({}, g, g);
        mGruppi.insert(mGruppi.begin() + g, {p, 0, mProssimoGruppo++, riga});
        mGruppoDaId.clear();
        for (quint32 i = 0; i < mGruppi.size(); ++i)
            mGruppoDaId.insert(mGruppi[i].Id, i);
        endInsertRows();
    }
    Gruppo& gr = mGruppi[static_cast<size_t>(g)];
    const int dentro = static_cast<int>(p - gr.Inizio);
    beginInsertRows(createIndex(g, 0, quintptr(0)), dentro, dentro);
    inserisci();
    ++gr.Numero;
    for (size_t i = static_cast<size_t>(g) + 1; i < mGruppi.size(); ++i)
        ++mGruppi[i].Inizio;
    endInsertRows();
    const QModelIndex gi = createIndex(g, 0, quintptr(0));
    emit dataChanged(gi, gi, {Qt::DisplayRole});
}

void PxModelloContenuto::Rimozione(quint32 riga)
{
    const quint32 p = mPosizione[riga];
    const auto togli = [&] {
        mOrdine.erase(mOrdine.begin() + p);
        for (quint32 i = p; i < mOrdine.size(); ++i)
            mPosizione[mOrdine[i]] = i;
    };
    if (mColonnaGruppo < 0) {
        beginRemoveRows({}, static_cast<int>(p), static_cast<int>(p));
        togli();
        endRemoveRows();
        return;
    }
    const qint32 g = GruppoDellaPosizione(p);
    Gruppo& gr = mGruppi[static_cast<size_t>(g)];
    const int dentro = static_cast<int>(p - gr.Inizio);
    beginRemoveRows(createIndex(g, 0, quintptr(0)), dentro, dentro);
    togli();
    --gr.Numero;
    for (size_t i = static_cast<size_t>(g) + 1; i < mGruppi.size(); ++i)
        --mGruppi[i].Inizio;
    endRemoveRows();
    if (gr.Numero == 0) {
        beginRemoveRows({}, g, g);
        mGruppoDaId.remove(gr.Id);
        mGruppi.erase(mGruppi.begin() + g);
        for (quint32 i = static_cast<quint32>(g); i < mGruppi.size(); ++i)
            mGruppoDaId.insert(mGruppi[i].Id, i);
        endRemoveRows();
    } else {
        const QModelIndex gi = createIndex(g, 0, quintptr(0));
        emit dataChanged(gi, gi, {Qt::DisplayRole});
    }
}

void PxModelloContenuto::Sposta(quint32 riga)
{
    // Where the row goes among the others, which are still in order: q in the order without it.
    const quint32 p = mPosizione[riga];
    const auto meno = [this, riga](quint32 a) { return Confronta(a, riga) < 0; };
    quint32 q;
    if (p > 0 && Confronta(riga, mOrdine[p - 1]) < 0)
        q = static_cast<quint32>(std::partition_point(mOrdine.begin(), mOrdine.begin() + p, meno) - mOrdine.begin());
    else
        q = static_cast<quint32>(std::partition_point(mOrdine.begin() + p + 1, mOrdine.end(), meno) - mOrdine.begin()) - 1;
    const auto muovi = [&] {
        mOrdine.erase(mOrdine.begin() + p);
        mOrdine.insert(mOrdine.begin() + q, riga);
        for (quint32 i = std::min(p, q); i <= std::max(p, q); ++i)
            mPosizione[mOrdine[i]] = i;
    };
    // Neighbours in the order without the row, by their index in the order with it.
    const auto prima = [&]() -> qint64 { return q == 0 ? qint64(-1) : qint64(q - 1 < p ? q - 1 : q); };
    const auto dopo = [&]() -> qint64 {
        const quint32 i = q < p ? q : q + 1;
        return i < mOrdine.size() ? qint64(i) : -1;
    };
    if (mColonnaGruppo < 0) {
        if (q != p) {
            beginMoveRows({}, static_cast<int>(p), static_cast<int>(p), {}, static_cast<int>(q > p ? q + 1 : q));
            muovi();
            endMoveRows();
        }
        return;
    }
    qint32 gs = GruppoDellaPosizione(p);
    qint32 gt = -1;
    if (const qint64 a = prima(); a >= 0 && ConfrontaGruppo(mOrdine[static_cast<size_t>(a)], riga) == 0)
        gt = GruppoDellaPosizione(static_cast<quint32>(a));
    else if (const qint64 b = dopo(); b >= 0 && ConfrontaGruppo(mOrdine[static_cast<size_t>(b)], riga) == 0)
        gt = GruppoDellaPosizione(static_cast<quint32>(b));
    if (gt == gs) {
        const quint32 base = mGruppi[static_cast<size_t>(gs)].Inizio;
        if (q != p) {
            const QModelIndex gi = createIndex(gs, 0, quintptr(0));
            beginMoveRows(gi, static_cast<int>(p - base), static_cast<int>(p - base), gi,
                          static_cast<int>((q > p ? q + 1 : q) - base));
            muovi();
            endMoveRows();
        }
        return;
    }
    const auto rifaiInizi = [this] {
        quint32 inizio = 0;
        for (quint32 i = 0; i < mGruppi.size(); ++i) {
            mGruppi[i].Inizio = inizio;
            inizio += mGruppi[i].Numero;
            mGruppoDaId.insert(mGruppi[i].Id, i);
        }
    };
    if (gt < 0) {
        const qint64 b = dopo();
        gt = b >= 0 ? GruppoDellaPosizione(static_cast<quint32>(b)) : static_cast<qint32>(mGruppi.size());
        // The row leaving a group of its own for the place right after it: the new group
        // follows the old one.
        if (b >= 0 && gt == gs)
            ++gt;
        beginInsertRows({}, gt, gt);
        mGruppi.insert(mGruppi.begin() + gt, {0, 0, mProssimoGruppo++, riga});
        if (gt <= gs)
            ++gs;
        rifaiInizi();
        endInsertRows();
    }
    const quint32 inizioT = mGruppi[static_cast<size_t>(gt)].Inizio - (gt > gs ? 1 : 0);
    beginMoveRows(createIndex(gs, 0, quintptr(0)), static_cast<int>(p - mGruppi[static_cast<size_t>(gs)].Inizio),
                  static_cast<int>(p - mGruppi[static_cast<size_t>(gs)].Inizio), createIndex(gt, 0, quintptr(0)),
                  static_cast<int>(q - inizioT));
    muovi();
    --mGruppi[static_cast<size_t>(gs)].Numero;
    ++mGruppi[static_cast<size_t>(gt)].Numero;
    rifaiInizi();
    endMoveRows();
    if (mGruppi[static_cast<size_t>(gs)].Numero == 0) {
        beginRemoveRows({}, gs, gs);
        mGruppoDaId.remove(mGruppi[static_cast<size_t>(gs)].Id);
        mGruppi.erase(mGruppi.begin() + gs);
        rifaiInizi();
        endRemoveRows();
    } else {
        const QModelIndex gi = createIndex(gs, 0, quintptr(0));
        emit dataChanged(gi, gi, {Qt::DisplayRole});
    }
    const QModelIndex gi = createIndex(GruppoDellaPosizione(mPosizione[riga]), 0, quintptr(0));
    emit dataChanged(gi, gi, {Qt::DisplayRole});
}

void PxModelloContenuto::sort(int colonna, Qt::SortOrder verso)
{
    if (colonna >= mColonne.size())
        return;
    emit layoutAboutToBeChanged();
    const QModelIndexList vecchi = persistentIndexList();
    QList<std::pair<quint32, quintptr>> chi; // each persistent index's row, or group id
    chi.reserve(vecchi.size());
    for (const QModelIndex& i : vecchi) {
        const quintptr id = i.internalId();
        if (id >= BaseCollegati)
            chi.append({quint32(i.row()), id});
        else if (id == 0 && mColonnaGruppo >= 0)
            chi.append({Tomba, mGruppi[static_cast<size_t>(i.row())].Id});
        else
            chi.append({mOrdine[(id == 0 ? 0 : mGruppi[mGruppoDaId.value(quint32(id))].Inizio) + static_cast<size_t>(i.row())], 0});
    }
    QList<QString> chiaviGruppi; // groups are made anew: keep them by their key
    for (const auto& [r, id] : chi)
        chiaviGruppi.append(r == Tomba ? ChiaveGruppo(RigaDelGruppo(mGruppoDaId.value(quint32(id)))) : QString());
    mColonnaOrdine = colonna;
    mVerso = verso;
    Riordina();
    QModelIndexList nuovi;
    nuovi.reserve(vecchi.size());
    for (qsizetype k = 0; k < vecchi.size(); ++k) {
        const auto [r, id] = chi[k];
        const int c = vecchi[k].column();
        if (id >= BaseCollegati)
            nuovi.append(createIndex(static_cast<int>(r), c, id));
        else if (r == Tomba) {
            const QModelIndex g = IndiceGruppo(chiaviGruppi[k]);
            nuovi.append(g.isValid() ? index(g.row(), c) : QModelIndex());
        } else
            nuovi.append(Indice(static_cast<qint32>(r), c));
    }
    changePersistentIndexList(vecchi, nuovi);
    emit layoutChanged();
}

void PxModelloContenuto::ImpostaRaggruppamento(int colonna)
{
    if (colonna >= mColonne.size())
        colonna = -1;
    if (colonna == mColonnaGruppo)
        return;
    beginResetModel();
    mColonnaGruppo = colonna;
    Riordina();
    endResetModel();
}

QModelIndex PxModelloContenuto::IndiceGruppo(const QString& chiave) const
{
    if (mColonnaGruppo < 0 || mInCaricamento)
        return {};
    for (size_t g = 0; g < mGruppi.size(); ++g)
        if (ChiaveGruppo(RigaDelGruppo(g)) == chiave)
            return createIndex(static_cast<int>(g), 0, quintptr(0));
    return {};
}

// ---- one row

bool PxModelloContenuto::Inserisci(Celle celle, quint32 colore,
                                   std::span<const std::pair<std::string_view, std::string_view>> collegati, qint32 icona,
                                   qint16 fase)
{
    if (mInCaricamento || celle.empty() || mColonne.isEmpty() || Riga(celle[0]) >= 0)
        return false;
    const quint32 riga = static_cast<quint32>(mRighe.size());
    mRighe.push_back({Scrivi(celle), colore, static_cast<quint32>(mCollegati.size()), 0, icona, true, fase});
    for (const auto& [id, descrizione] : collegati)
        AggiungiCollegato(id, descrizione);
    ++mVive;
    Indicizza(riga);
    Inserimento(riga);
    return true;
}

void PxModelloContenuto::Aggiorna(qint32 riga, Celle celle, quint32 colore, qint32 icona, qint16 fase)
{
    if (riga < 0 || static_cast<size_t>(riga) >= mRighe.size() || !mRighe[static_cast<size_t>(riga)].Viva)
        return;
    const quint32 r = static_cast<quint32>(riga);
    const int n = static_cast<int>(mColonne.size());
    // The order may change only through the group or the sort column.
    const auto testo = [&](int k) { return k >= 0 ? Utf8(Cella(r, k)) : QString(); };
    const QString gPrima = testo(mColonnaGruppo), sPrima = testo(mColonnaOrdine);
    // A row's cells are contiguous: the key is copied along with the new cells.
    quint32* o = mCelle.data() + mRighe[r].Celle;
    const quint32 chiaveDa = o[0] & ~BitData, chiaveA = o[1] & ~BitData;
    mTestoMorto += (o[n] & ~BitData) - chiaveDa;
    const std::string chiave(mTesto.data() + chiaveDa, chiaveA - chiaveDa);
    o[0] = static_cast<quint32>(mTesto.size());
    mTesto.insert(mTesto.end(), chiave.begin(), chiave.end());
    for (int k = 1; k < n; ++k) {
        const std::string_view t = k < static_cast<int>(celle.size()) ? celle[static_cast<size_t>(k)] : std::string_view();
        quint32 inizio = static_cast<quint32>(mTesto.size());
        if (t.empty() ? mColonne[k].Data : LeggiData(t) >= 0)
            inizio |= BitData;
        o[k] = inizio;
        mTesto.insert(mTesto.end(), t.begin(), t.end());
    }
    o[n] = static_cast<quint32>(mTesto.size());
    mRighe[r].Colore = colore;
    mRighe[r].Icona = icona;
    const bool altraFase = mRighe[r].Fase != fase && mColonnaGruppo >= 0 && mColonnaGruppo == mColonnaFase;
    mRighe[r].Fase = fase;
    if (mTestoMorto > (1u << 24) && mTestoMorto > mTesto.size() / 2)
        Compatta();
    if (altraFase || testo(mColonnaGruppo) != gPrima || testo(mColonnaOrdine) != sPrima)
        Sposta(r);
    const QModelIndex a = Indice(riga, 0), b = Indice(riga, n - 1);
    emit dataChanged(a, b);
}

void PxModelloContenuto::Rimuovi(qint32 riga)
{
    if (riga < 0 || static_cast<size_t>(riga) >= mRighe.size() || !mRighe[static_cast<size_t>(riga)].Viva)
        return;
    const quint32 r = static_cast<quint32>(riga);
    Rimozione(r);
    Deindicizza(r);
    mRighe[r].Viva = false;
    --mVive;
}

QModelIndex PxModelloContenuto::Indice(qint32 riga, int colonna) const
{
    if (riga < 0 || static_cast<size_t>(riga) >= mRighe.size() || !mRighe[static_cast<size_t>(riga)].Viva || mInCaricamento)
        return {};
    const quint32 p = mPosizione[static_cast<size_t>(riga)];
    if (mColonnaGruppo < 0)
        return createIndex(static_cast<int>(p), colonna, quintptr(0));
    const qint32 g = GruppoDellaPosizione(p);
    return createIndex(static_cast<int>(p - mGruppi[static_cast<size_t>(g)].Inizio), colonna,
                       quintptr(mGruppi[static_cast<size_t>(g)].Id));
}

QString PxModelloContenuto::Testo(qint32 riga, int colonna) const
{
    if (riga < 0 || static_cast<size_t>(riga) >= mRighe.size() || colonna < 0 || colonna >= mColonne.size())
        return {};
    return Utf8(Cella(static_cast<quint32>(riga), colonna));
}

QString PxModelloContenuto::Chiave(const QModelIndex& indice) const
{
    return data(indice.siblingAtColumn(0), RuoloChiave).toString();
}

size_t PxModelloContenuto::MemoriaStrutture() const
{
    return mCelle.capacity() * sizeof(quint32) + mRighe.capacity() * sizeof(RigaDati)
        + mCollegati.capacity() * sizeof(Collegato) + mIndice.capacity() * sizeof(quint64)
        + mOrdine.capacity() * sizeof(quint32) + mPosizione.capacity() * sizeof(quint32)
        + mGruppi.capacity() * sizeof(Gruppo);
}

// ---- QAbstractItemModel
//
// Internal ids: 0 for a top-level row (a group when grouping, else a document); a group's
// stable id for a document inside that group; BaseCollegati + the document's row for a
// linked document.

QModelIndex PxModelloContenuto::index(int row, int column, const QModelIndex& parent) const
{
    if (row < 0 || column < 0 || column >= mColonne.size() || mInCaricamento)
        return {};
    if (!parent.isValid()) {
        const size_t n = mColonnaGruppo >= 0 ? mGruppi.size() : mOrdine.size();
        return static_cast<size_t>(row) < n ? createIndex(row, column, quintptr(0)) : QModelIndex();
    }
    if (parent.internalId() >= BaseCollegati || parent.column() != 0)
        return {};
    if (parent.internalId() == 0 && mColonnaGruppo >= 0) {
        if (static_cast<size_t>(parent.row()) >= mGruppi.size())
            return {};
        const Gruppo& g = mGruppi[static_cast<size_t>(parent.row())];
        return static_cast<quint32>(row) < g.Numero ? createIndex(row, column, quintptr(g.Id)) : QModelIndex();
    }
    const qint32 r = data(parent, RuoloRiga).toInt();
    if (r < 0 || static_cast<quint32>(row) >= mRighe[static_cast<size_t>(r)].NumeroCollegati)
        return {};
    return createIndex(row, column, BaseCollegati + quintptr(r));
}

QModelIndex PxModelloContenuto::parent(const QModelIndex& child) const
{
    if (!child.isValid() || mInCaricamento)
        return {};
    const quintptr id = child.internalId();
    if (id == 0)
        return {};
    if (id < BaseCollegati) {
        const auto g = mGruppoDaId.constFind(static_cast<quint32>(id));
        return g == mGruppoDaId.cend() ? QModelIndex() : createIndex(static_cast<int>(*g), 0, quintptr(0));
    }
    return Indice(static_cast<qint32>(id - BaseCollegati), 0);
}

int PxModelloContenuto::rowCount(const QModelIndex& parent) const
{
    if (mInCaricamento)
        return 0;
    if (!parent.isValid())
        return static_cast<int>(mColonnaGruppo >= 0 ? mGruppi.size() : mOrdine.size());
    if (parent.column() != 0 || parent.internalId() >= BaseCollegati)
        return 0;
    if (parent.internalId() == 0 && mColonnaGruppo >= 0)
        return static_cast<size_t>(parent.row()) < mGruppi.size() ? static_cast<int>(mGruppi[static_cast<size_t>(parent.row())].Numero) : 0;
    const qint32 r = data(parent, RuoloRiga).toInt();
    return r < 0 ? 0 : static_cast<int>(mRighe[static_cast<size_t>(r)].NumeroCollegati);
}

int PxModelloContenuto::columnCount(const QModelIndex&) const { return static_cast<int>(mColonne.size()); }

bool PxModelloContenuto::hasChildren(const QModelIndex& parent) const { return rowCount(parent) > 0; }

Qt::ItemFlags PxModelloContenuto::flags(const QModelIndex& indice) const
{
    if (!indice.isValid())
        return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

QVariant PxModelloContenuto::headerData(int sezione, Qt::Orientation orientamento, int ruolo) const
{
    if (orientamento != Qt::Horizontal || sezione < 0 || sezione >= mColonne.size())
        return {};
    if (ruolo == Qt::DisplayRole || ruolo == Qt::ToolTipRole)
        return mColonne[sezione].Titolo;
    return {};
}

QVariant PxModelloContenuto::data(const QModelIndex& indice, int ruolo) const
{
    if (!indice.isValid() || mInCaricamento)
        return {};
    const quintptr id = indice.internalId();
    const int c = indice.column();
    // A group row.
    if (id == 0 && mColonnaGruppo >= 0) {
        const size_t numero = static_cast<size_t>(indice.row());
        if (numero >= mGruppi.size())
            return {};
        const Gruppo& g = mGruppi[numero];
        switch (ruolo) {
        case Qt::DisplayRole:
            return c == 0 ? TitoloGruppo(numero) + QStringLiteral(" (%1)").arg(g.Numero) : QVariant();
        case Qt::FontRole: {
            QFont f;
            f.setBold(true);
            return f;
        }
        case Qt::ForegroundRole: {
            // A stage's rows share their colour: the group shows it too.
            const quint32 colore = mRighe[RigaDelGruppo(numero)].Colore;
            return colore == 0 ? QVariant() : QVariant(QColor(colore & 0xFF, (colore >> 8) & 0xFF, (colore >> 16) & 0xFF));
        }
        case RuoloGruppo: return true;
        case RuoloOrdinamento: return TitoloGruppo(numero);
        case RuoloChiaveGruppo: return ChiaveGruppo(RigaDelGruppo(numero));
        case RuoloRiga: return -1;
        default: return {};
        }
    }
    // A linked document: its id and description.
    if (id >= BaseCollegati) {
        const RigaDati& r = mRighe[static_cast<size_t>(id - BaseCollegati)];
        const Collegato& l = mCollegati[r.PrimoCollegato + static_cast<quint32>(indice.row())];
        switch (ruolo) {
        case Qt::DisplayRole:
        case Qt::ToolTipRole:
        case RuoloOrdinamento:
            return c == 0 ? Utf8(TestoDi(l.Id, l.Descrizione)) : c == 1 ? Utf8(TestoDi(l.Descrizione, l.Fine)) : QVariant();
        case Qt::DecorationRole: return c == 0 ? QVariant(mIconaCollegato) : QVariant();
        case RuoloRiga: return -1;
        default: return {};
        }
    }
    size_t posizione = static_cast<size_t>(indice.row());
    if (id != 0) {
        const auto g = mGruppoDaId.constFind(static_cast<quint32>(id));
        if (g == mGruppoDaId.cend() || *g >= mGruppi.size())
            return {};
        posizione += mGruppi[*g].Inizio;
    }
    if (posizione >= mOrdine.size())
        return {};
    const quint32 riga = mOrdine[posizione];
    const RigaDati& r = mRighe[riga];
    if (ruolo == RuoloRiga)
        return static_cast<qint32>(riga);
    const std::string_view testo = Cella(riga, c);
    const bool data = CellaData(riga, c);
    switch (ruolo) {
    case Qt::DisplayRole: {
        if (!data)
            return Utf8(testo);
        if (testo.empty())
            return mNonDisponibile;
        size_t ora = 0;
        const qint64 v = LeggiData(testo, &ora);
        const qint64 giorno = v / 1000000;
        const QDate oggi = QDate::currentDate();
        const qint64 g0 = (oggi.year() * 100 + oggi.month()) * 100 + oggi.day();
        const QDate ieri = oggi.addDays(-1);
        const qint64 g1 = (ieri.year() * 100 + ieri.month()) * 100 + ieri.day();
        if ((giorno == g0 || giorno == g1) && ora < testo.size())
            return (giorno == g0 ? mOggi : mIeri) + u' ' + Utf8(testo.substr(ora));
        return Utf8(testo);
    }
    case Qt::ToolTipRole: return c == 0 || data ? Utf8(testo) : QVariant();
    case Qt::DecorationRole:
        if (c != 0)
            return {};
        if (r.Icona == 0 || !mIcona)
            return mIconaDocumento;
        if (!mIcone.contains(r.Icona))
            mIcone.insert(r.Icona, mIcona(r.Icona));
        return mIcone.value(r.Icona);
    case Qt::ForegroundRole:
        // Black is the palette's own text colour, so that a dark theme stays readable.
        return r.Colore == 0 ? QVariant() : QVariant(QColor(r.Colore & 0xFF, (r.Colore >> 8) & 0xFF, (r.Colore >> 16) & 0xFF));
    case Qt::FontRole: {
        if (!data || testo.empty())
            return {};
        const qint64 giorno = LeggiData(testo) / 1000000;
        const QDate oggi = QDate::currentDate(), ieri = oggi.addDays(-1);
        if (giorno != (oggi.year() * 100 + oggi.month()) * 100 + oggi.day()
            && giorno != (ieri.year() * 100 + ieri.month()) * 100 + ieri.day())
            return {};
        QFont f;
        f.setBold(true);
        return f;
    }
    case RuoloOrdinamento: {
        if (!data)
            return Utf8(testo);
        const qint64 v = LeggiData(testo);
        if (v < 0)
            return QDateTime();
        return QDateTime(QDate(int(v / 10000000000), int(v / 100000000 % 100), int(v / 1000000 % 100)),
                         QTime(int(v / 10000 % 100), int(v / 100 % 100), int(v % 100)));
    }
    case RuoloChiave: return Utf8(Cella(riga, 0));
    case RuoloChiaveGruppo: return mColonnaGruppo >= 0 ? QVariant(ChiaveGruppo(riga)) : QVariant();
    case RuoloAvanzamento: {
        if (!mColonne[c].Avanzamento)
            return {};
        const std::string_view t = testo;
        const size_t barra = t.find('/');
        if (barra == std::string_view::npos)
            return {};
        const qint64 fatti = QByteArrayView(t.substr(0, barra)).toLongLong();
        const qint64 totale = QByteArrayView(t.substr(barra + 1)).toLongLong();
        return Percentuale(fatti, totale);
    }
    default: return {};
    }
}
