#pragma once

#include <QTimer>
#include <QWidget>

class QTextBrowser;

// The signature viewer: an e-mail signature's HTML rendered as Qt's rich text. Nothing runs and
// nothing is fetched: scripts are not part of Qt's rich text, and every resource the page names
// that is not inline data is left out. The page changes on the timer's next tick (100 ms), so a
// burst of selections renders only the last.
class frmVisFirma : public QWidget
{
    Q_OBJECT

public:
    explicit frmVisFirma(QWidget* parent = nullptr);

    // The signature to show ("" for the blank page).
    void Mostra(const QString& html);
    QTextBrowser* Pagina() const { return mwbrFirma; }

signals:
    void Caricato();

private:
    void tmrAggiorna_Timer();

    QTextBrowser* mwbrFirma;
    QTimer mtmrAggiorna;
    QString mHtml;
};
