#include "PxVistaTesto.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>

PxVistaTesto::Contenuto PxVistaTesto::Prepara(const modCorpo::Documento& documento)
{
    Contenuto c;
    c.Colori = documento.Colori;
    c.Tratti = documento.Tratti;
    const QString& t = documento.Testo;
    c.Testo.reserve(t.size());
    // Line ends leave the text (each line's start is kept), so a stretch's offsets move back by
    // the line ends before it.
    c.Righe.push_back(0);
    std::vector<qsizetype> fini; // the original offsets of the removed "\n"
    for (qsizetype i = 0; i < t.size(); ++i) {
        const char16_t u = t[i].unicode();
        if (u == u'\n') {
            c.Colonne = std::max(c.Colonne, c.Testo.size() - c.Righe.back());
            c.Righe.push_back(c.Testo.size());
            fini.push_back(i);
            continue;
        }
        c.Testo += u < 0x20 ? QChar(char16_t(0x2400 + u)) : u == 0x7f ? QChar(char16_t(0x2421)) : t[i];
    }
    c.Colonne = std::max(c.Colonne, c.Testo.size() - c.Righe.back());
    const auto sposta = [&](qsizetype p) {
        return p - static_cast<qsizetype>(std::lower_bound(fini.begin(), fini.end(), p) - fini.begin());
    };
    for (modCorpo::Tratto& tr : c.Tratti) {
        tr.Inizio = sposta(tr.Inizio);
        tr.Fine = sposta(tr.Fine);
    }
    std::erase_if(c.Tratti, [](const modCorpo::Tratto& tr) { return tr.Fine <= tr.Inizio; });
    return c;
}

PxVistaTesto::PxVistaTesto(QWidget* parent) : QAbstractScrollArea(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setBackgroundRole(QPalette::Base);
    viewport()->setAutoFillBackground(true);
}

void PxVistaTesto::Imposta(Contenuto contenuto)
{
    mC = std::move(contenuto);
    if (mC.Righe.empty())
        mC.Righe.push_back(0);
    mRiga = mColonna = mAncoraRiga = mAncoraColonna = 0;
    verticalScrollBar()->setValue(0);
    horizontalScrollBar()->setValue(0);
    AggiornaBarre();
    viewport()->update();
    emit PosizioneCambiata();
}

int PxVistaTesto::AltezzaRiga() const { return fontMetrics().lineSpacing(); }
qreal PxVistaTesto::LarghezzaCarattere() const
{
    // The advance as the font has it, fractions included: rounded, long lines would drift.
    return std::max<qreal>(1, QFontMetricsF(font()).horizontalAdvance(u'M'));
}
int PxVistaTesto::RigheVisibili() const { return std::max(1, viewport()->height() / AltezzaRiga()); }

qsizetype PxVistaTesto::LunghezzaRiga(qsizetype riga) const
{
    const auto r = static_cast<size_t>(riga);
    const qsizetype fine = r + 1 < mC.Righe.size() ? mC.Righe[r + 1] : mC.Testo.size();
    return fine - mC.Righe[r];
}

qsizetype PxVistaTesto::Posizione(qsizetype riga, qsizetype colonna) const
{
    // An empty view (no body loaded yet) still paints its selection: it has no line to index.
    if (riga < 0 || static_cast<size_t>(riga) >= mC.Righe.size())
        return colonna;
    return mC.Righe[static_cast<size_t>(riga)] + colonna;
}

QString PxVistaTesto::TestoVisibile() const
{
    QStringList righe;
    for (qsizetype r = 0; r < Righe(); ++r)
        righe << mC.Testo.mid(mC.Righe[static_cast<size_t>(r)], LunghezzaRiga(r));
    return righe.join(u'\n');
}

QColor PxVistaTesto::ColoreIn(qsizetype riga, qsizetype colonna) const
{
    if (riga < 0 || riga >= Righe() || colonna < 0 || colonna >= LunghezzaRiga(riga))
        return {};
    const qsizetype p = Posizione(riga, colonna);
    const auto t = std::upper_bound(mC.Tratti.begin(), mC.Tratti.end(), p,
                                    [](qsizetype v, const modCorpo::Tratto& tr) { return v < tr.Fine; });
    if (t == mC.Tratti.end() || p < t->Inizio)
        return {};
    return t->Colore > 0 && t->Colore < static_cast<int>(mC.Colori.size()) ? mC.Colori[static_cast<size_t>(t->Colore)] : QColor();
}

void PxVistaTesto::AggiornaBarre()
{
    verticalScrollBar()->setRange(0, static_cast<int>(std::max<qsizetype>(0, Righe() - RigheVisibili())));
    verticalScrollBar()->setPageStep(RigheVisibili());
    const auto larghezza = static_cast<qsizetype>(static_cast<qreal>(mC.Colonne) * LarghezzaCarattere()) + 8;
    horizontalScrollBar()->setRange(0, static_cast<int>(std::max<qsizetype>(0, larghezza - viewport()->width())));
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setSingleStep(static_cast<int>(LarghezzaCarattere()));
}

void PxVistaTesto::resizeEvent(QResizeEvent* evento)
{
    QAbstractScrollArea::resizeEvent(evento);
    AggiornaBarre();
}

void PxVistaTesto::paintEvent(QPaintEvent*)
{
    QPainter p(viewport());
    p.setFont(font());
    const int h = AltezzaRiga(), ascesa = fontMetrics().ascent();
    const qreal cw = LarghezzaCarattere();
    const qreal x0 = 4 - horizontalScrollBar()->value();
    const qsizetype prima = verticalScrollBar()->value();
    const qsizetype ultima = std::min(Righe(), prima + RigheVisibili() + 1);
    // The selection, in text positions.
    qsizetype selDa = Posizione(mAncoraRiga, mAncoraColonna), selA = Posizione(mRiga, mColonna);
    if (selDa > selA)
        std::swap(selDa, selA);
    const QPalette& pal = palette();
    const QColor normale = pal.color(QPalette::Text);
    // Only the characters that fit across the view are drawn.
    const qsizetype primaColonna = std::max<qsizetype>(0, static_cast<qsizetype>(-x0 / cw));
    const qsizetype colonneVisibili = static_cast<qsizetype>(viewport()->width() / cw) + 2;
    for (qsizetype r = prima; r < ultima; ++r) {
        const int y = static_cast<int>(r - prima) * h;
        const qsizetype inizio = mC.Righe[static_cast<size_t>(r)];
        const qsizetype lunghezza = LunghezzaRiga(r);
        const qsizetype da = std::min(primaColonna, lunghezza), a = std::min(lunghezza, primaColonna + colonneVisibili);
        // Selected columns behind the text.
        const qsizetype sDa = std::clamp(selDa - inizio, da, a), sA = std::clamp(selA - inizio, da, a);
        if (sA > sDa)
            p.fillRect(QRectF(x0 + static_cast<qreal>(sDa) * cw, y, static_cast<qreal>(sA - sDa) * cw, h), pal.color(QPalette::Highlight));
        // The line in stretches of one colour.
        auto t = std::upper_bound(mC.Tratti.begin(), mC.Tratti.end(), inizio + da,
                                  [](qsizetype v, const modCorpo::Tratto& tr) { return v < tr.Fine; });
        qsizetype c = da;
        while (c < a) {
            qsizetype fine = a;
            QColor colore = normale;
            if (t != mC.Tratti.end() && t->Inizio <= inizio + c) {
                fine = std::min(a, t->Fine - inizio);
                if (t->Colore > 0 && t->Colore < static_cast<int>(mC.Colori.size()) && mC.Colori[static_cast<size_t>(t->Colore)].isValid())
                    colore = mC.Colori[static_cast<size_t>(t->Colore)];
                ++t;
            } else if (t != mC.Tratti.end()) {
                fine = std::min(a, t->Inizio - inizio);
            }
            p.setPen(colore);
            p.drawText(QPointF(x0 + static_cast<qreal>(c) * cw, y + ascesa), mC.Testo.mid(inizio + c, fine - c));
            c = fine;
        }
    }
    // The caret.
    if (hasFocus() && mRiga >= prima && mRiga < ultima) {
        p.setPen(normale);
        const qreal x = x0 + static_cast<qreal>(mColonna) * cw;
        const int y = static_cast<int>(mRiga - prima) * h;
        p.drawLine(QPointF(x, y), QPointF(x, y + h - 1));
    }
}

void PxVistaTesto::SpostaCursore(qsizetype riga, qsizetype colonna, bool seleziona)
{
    mRiga = std::clamp<qsizetype>(riga, 0, Righe() - 1);
    mColonna = std::clamp<qsizetype>(colonna, 0, LunghezzaRiga(mRiga));
    if (!seleziona) {
        mAncoraRiga = mRiga;
        mAncoraColonna = mColonna;
    }
    RendiVisibile();
    viewport()->update();
    emit PosizioneCambiata();
}

void PxVistaTesto::RendiVisibile()
{
    QScrollBar* v = verticalScrollBar();
    if (mRiga < v->value())
        v->setValue(static_cast<int>(mRiga));
    else if (mRiga >= v->value() + RigheVisibili())
        v->setValue(static_cast<int>(mRiga - RigheVisibili() + 1));
    QScrollBar* o = horizontalScrollBar();
    const int x = static_cast<int>(static_cast<qreal>(mColonna) * LarghezzaCarattere());
    if (x < o->value())
        o->setValue(x);
    else if (x + 8 > o->value() + viewport()->width())
        o->setValue(x + 8 - viewport()->width());
}

QString PxVistaTesto::Selezione() const
{
    qsizetype r1 = mAncoraRiga, c1 = mAncoraColonna, r2 = mRiga, c2 = mColonna;
    if (r1 > r2 || (r1 == r2 && c1 > c2)) {
        std::swap(r1, r2);
        std::swap(c1, c2);
    }
    if (r1 == r2)
        return mC.Testo.mid(Posizione(r1, c1), c2 - c1);
    // The line breaks come back between the lines the selection spans.
    QString testo = mC.Testo.mid(Posizione(r1, c1), LunghezzaRiga(r1) - c1);
    for (qsizetype r = r1 + 1; r < r2; ++r)
        testo += u'\n' + mC.Testo.mid(Posizione(r, 0), LunghezzaRiga(r));
    return testo + u'\n' + mC.Testo.mid(Posizione(r2, 0), c2);
}

void PxVistaTesto::keyPressEvent(QKeyEvent* evento)
{
    const bool sel = evento->modifiers() & Qt::ShiftModifier;
    const bool ctrl = evento->modifiers() & Qt::ControlModifier;
    if (evento->matches(QKeySequence::Copy)) {
        if (const QString s = Selezione(); !s.isEmpty())
            QApplication::clipboard()->setText(s);
        return;
    }
    if (evento->matches(QKeySequence::SelectAll)) {
        SpostaCursore(0, 0);
        SpostaCursore(Righe() - 1, LunghezzaRiga(Righe() - 1), true);
        return;
    }
    switch (evento->key()) {
    case Qt::Key_Up: SpostaCursore(mRiga - 1, mColonna, sel); break;
    case Qt::Key_Down: SpostaCursore(mRiga + 1, mColonna, sel); break;
    case Qt::Key_Left:
        if (mColonna > 0)
            SpostaCursore(mRiga, mColonna - 1, sel);
        else if (mRiga > 0)
            SpostaCursore(mRiga - 1, LunghezzaRiga(mRiga - 1), sel);
        break;
    case Qt::Key_Right:
        if (mColonna < LunghezzaRiga(mRiga))
            SpostaCursore(mRiga, mColonna + 1, sel);
        else if (mRiga + 1 < Righe())
            SpostaCursore(mRiga + 1, 0, sel);
        break;
    case Qt::Key_Home: SpostaCursore(ctrl ? 0 : mRiga, 0, sel); break;
    case Qt::Key_End: ctrl ? SpostaCursore(Righe() - 1, LunghezzaRiga(Righe() - 1), sel) : SpostaCursore(mRiga, LunghezzaRiga(mRiga), sel); break;
    case Qt::Key_PageUp: SpostaCursore(mRiga - RigheVisibili(), mColonna, sel); break;
    case Qt::Key_PageDown: SpostaCursore(mRiga + RigheVisibili(), mColonna, sel); break;
    default: QAbstractScrollArea::keyPressEvent(evento);
    }
}

void PxVistaTesto::PosizioneDa(const QPoint& punto, qsizetype& riga, qsizetype& colonna) const
{
    const qreal cw = LarghezzaCarattere();
    riga = verticalScrollBar()->value() + punto.y() / AltezzaRiga();
    colonna = static_cast<qsizetype>((punto.x() - 4 + horizontalScrollBar()->value() + cw / 2) / cw);
}

void PxVistaTesto::mousePressEvent(QMouseEvent* evento)
{
    if (evento->button() != Qt::LeftButton)
        return QAbstractScrollArea::mousePressEvent(evento);
    qsizetype riga = 0, colonna = 0;
    PosizioneDa(evento->position().toPoint(), riga, colonna);
    SpostaCursore(riga, colonna, evento->modifiers() & Qt::ShiftModifier);
}

void PxVistaTesto::mouseMoveEvent(QMouseEvent* evento)
{
    if (!(evento->buttons() & Qt::LeftButton))
        return;
    qsizetype riga = 0, colonna = 0;
    PosizioneDa(evento->position().toPoint(), riga, colonna);
    SpostaCursore(riga, colonna, true);
}

void PxVistaTesto::focusInEvent(QFocusEvent* evento)
{
    QAbstractScrollArea::focusInEvent(evento);
    viewport()->update();
}

void PxVistaTesto::focusOutEvent(QFocusEvent* evento)
{
    QAbstractScrollArea::focusOutEvent(evento);
    viewport()->update();
}
