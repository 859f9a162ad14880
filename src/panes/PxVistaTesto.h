#pragma once

#include "modCorpo.h"

#include <QAbstractScrollArea>

#include <vector>

// A read-only view of a long text in one fixed-pitch font with some stretches in colour. Only
// the lines on screen are drawn, so a MiB of text shows as fast as a page. Control characters
// show as their visible pictures (␌ for a form feed). The caret moves with the arrows, Home,
// End, Page Up/Down and the mouse; Shift or a drag selects; Ctrl+A selects all, Ctrl+C copies.
class PxVistaTesto : public QAbstractScrollArea
{
    Q_OBJECT

public:
    // What the view shows, prepared off the interface thread.
    struct Contenuto
    {
        QString Testo;                    // the lines, without their "\n"; control characters as pictures
        std::vector<qsizetype> Righe;     // where each line starts in Testo
        std::vector<modCorpo::Tratto> Tratti;
        std::vector<QColor> Colori;
        qsizetype Colonne = 0;            // the longest line
    };
    static Contenuto Prepara(const modCorpo::Documento& documento);

    explicit PxVistaTesto(QWidget* parent = nullptr);

    void Imposta(Contenuto contenuto);
    void Pulisci() { Imposta({}); }
    bool Vuoto() const { return mC.Testo.isEmpty(); }

    // The text as shown, lines joined by "\n".
    QString TestoVisibile() const;
    // The colour the character at `riga`, `colonna` is drawn in (invalid: the default).
    QColor ColoreIn(qsizetype riga, qsizetype colonna) const;
    qsizetype Righe() const { return static_cast<qsizetype>(mC.Righe.size()); }
    // The caret, from 0.
    qsizetype Riga() const { return mRiga; }
    qsizetype Colonna() const { return mColonna; }
    void SpostaCursore(qsizetype riga, qsizetype colonna, bool seleziona = false);
    QString Selezione() const;

signals:
    void PosizioneCambiata();

protected:
    void paintEvent(QPaintEvent* evento) override;
    void resizeEvent(QResizeEvent* evento) override;
    void keyPressEvent(QKeyEvent* evento) override;
    void mousePressEvent(QMouseEvent* evento) override;
    void mouseMoveEvent(QMouseEvent* evento) override;
    void focusInEvent(QFocusEvent* evento) override;
    void focusOutEvent(QFocusEvent* evento) override;

private:
    qsizetype LunghezzaRiga(qsizetype riga) const;
    qsizetype Posizione(qsizetype riga, qsizetype colonna) const;
    void PosizioneDa(const QPoint& punto, qsizetype& riga, qsizetype& colonna) const;
    void AggiornaBarre();
    void RendiVisibile();
    int AltezzaRiga() const;
    qreal LarghezzaCarattere() const;
    int RigheVisibili() const;

    Contenuto mC;
    qsizetype mRiga = 0, mColonna = 0;
    qsizetype mAncoraRiga = 0, mAncoraColonna = 0; // the other end of the selection
};
