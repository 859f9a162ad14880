#include "frmVisFirma.h"

#include "frmScriptDocumento.h"

#include <QDir>
#include <QSaveFile>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

namespace {

// Renders what it is given and fetches nothing: links are not followed, images and style sheets
// named by address are not loaded.
class PxPaginaChiusa : public QTextBrowser
{
public:
    using QTextBrowser::QTextBrowser;

    QVariant loadResource(int tipo, const QUrl& nome) override
    {
        if (nome.scheme() == u"data")
            return QTextBrowser::loadResource(tipo, nome);
        return {};
    }
};

} // namespace

frmVisFirma::frmVisFirma(QWidget* parent) : QWidget(parent), mwbrFirma(new PxPaginaChiusa(this))
{
    setObjectName(QStringLiteral("frmVisFirma"));
    mwbrFirma->setObjectName(QStringLiteral("wbrFirma"));
    mwbrFirma->setOpenLinks(false);
    mwbrFirma->setOpenExternalLinks(false);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(mwbrFirma);
    QSaveFile bianca(QDir(frmScriptDocumento::CartellaLavoro()).filePath(QStringLiteral("~PlxFirmaBlank.html")));
    if (bianca.open(QIODevice::WriteOnly) && bianca.write("<html></html>") == 13)
        bianca.commit();
    mtmrAggiorna.setInterval(100);
    mtmrAggiorna.setSingleShot(true);
    connect(&mtmrAggiorna, &QTimer::timeout, this, &frmVisFirma::tmrAggiorna_Timer);
}

void frmVisFirma::Mostra(const QString& html)
{
    if (html == mHtml && !mtmrAggiorna.isActive())
        return;
    mHtml = html;
    mtmrAggiorna.start();
}

void frmVisFirma::tmrAggiorna_Timer()
{
    mtmrAggiorna.stop();
    mwbrFirma->setHtml(mHtml);
    emit Caricato();
}
