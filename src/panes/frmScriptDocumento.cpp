#include "frmScriptDocumento.h"

#include "PxContesto.h"
#include "PxRigaLog.h"
#include "PxSrvServer.h"
#include "modCorpo.h"
#include "modTraccia.h"

#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QRegularExpression>
#include <QSaveFile>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <pugixml.hpp>

namespace {

const QColor ColoreElemento(0, 0, 160), ColoreAttributo(160, 0, 0), ColoreTesto(0, 0, 0);

// Written aside and renamed over: a link planted at the name is replaced, never followed.
bool Scrivi(const QString& nome, const QByteArray& dati)
{
    QSaveFile f(QDir(frmScriptDocumento::CartellaLavoro()).filePath(nome));
    return f.open(QIODevice::WriteOnly) && f.write(dati) == dati.size() && f.commit();
}

void Aggiungi(QTreeWidgetItem* padre, const pugi::xml_node& n, int profondita)
{
    for (const pugi::xml_node figlio : n.children()) {
        if (figlio.type() == pugi::node_pcdata || figlio.type() == pugi::node_cdata) {
            // A script's text is code: one line of the tree per line of it.
            static const QRegularExpression righe(QStringLiteral("\\r\\n|\\r|\\n"));
            const QString t = QString::fromUtf8(figlio.value()).trimmed();
            for (const QString& riga : t.split(righe)) {
                if (t.isEmpty())
                    break;
                auto* voce = new QTreeWidgetItem(padre, {riga});
                voce->setForeground(0, ColoreTesto);
            }
            continue;
        }
        if (figlio.type() != pugi::node_element)
            continue;
        QString etichetta = u'<' + QString::fromUtf8(figlio.name());
        for (const pugi::xml_attribute a : figlio.attributes())
            etichetta += u' ' + QString::fromUtf8(a.name()) + QStringLiteral("=\"") + QString::fromUtf8(a.value()) + u'"';
        etichetta += u'>';
        auto* voce = new QTreeWidgetItem(padre, {etichetta});
        voce->setForeground(0, figlio.first_attribute() ? ColoreAttributo : ColoreElemento);
        // A lone one-line text stands on the element's line.
        const pugi::xml_node primo = figlio.first_child();
        if (primo && !primo.next_sibling() && primo.type() == pugi::node_pcdata
            && !QByteArrayView(primo.value()).trimmed().contains('\n') && !QByteArrayView(primo.value()).trimmed().contains('\r')) {
            voce->setText(0, etichetta + QString::fromUtf8(primo.value()).trimmed());
            continue;
        }
        if (profondita < 256)
            Aggiungi(voce, figlio, profondita + 1);
    }
}

} // namespace

QString frmScriptDocumento::CartellaLavoro() { return QDir::tempPath(); }

frmScriptDocumento::frmScriptDocumento(PxContesto& contesto, QWidget* parent)
    : QWidget(parent), mContesto(contesto), mwbrXml(new QTreeWidget(this))
{
    setObjectName(QStringLiteral("frmScriptDocumento"));
    mwbrXml->setObjectName(QStringLiteral("wbrXml"));
    mwbrXml->setHeaderHidden(true);
    mwbrXml->setColumnCount(1);
    mwbrXml->setUniformRowHeights(true);
    mwbrXml->setSelectionMode(QAbstractItemView::ExtendedSelection);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(mwbrXml);
    Scrivi(QStringLiteral("~PlxDocBlank.html"), "<html></html>");
}

void frmScriptDocumento::PulisciScript()
{
    ++mGenerazione;
    mFile.clear();
    mwbrXml->clear();
    emit Caricato();
}

void frmScriptDocumento::CaricaScript(const pugi::xml_node& proprieta)
{
    const QString file = modCorpo::PercorsoFile(proprieta.child("FileScript"), mContesto.Server() ? mContesto.Server()->Cartella() : QString());
    if (file == mFile)
        return;
    mFile = file;
    const quint64 generazione = ++mGenerazione;
    PxSrvServer* server = mContesto.Server();
    if (file.isEmpty() || !server) {
        Mostra({});
        return;
    }
    server->LeggiTutto(file, Massimo, this, [this, generazione](const PxRisposta& r) {
        if (generazione != mGenerazione)
            return;
        if (!r.Riuscita())
            modTraccia::Scrivi(modRigaLog::LivelloAvviso, QStringLiteral("Script non letto: %1").arg(r.Testo));
        modTraccia::Proteggi("CaricaScript", [&] { Mostra(r.Riuscita() ? r.Dati : QByteArray()); });
    });
}

void frmScriptDocumento::Mostra(const QByteArray& xml)
{
    mwbrXml->clear();
    pugi::xml_document doc;
    if (!xml.isEmpty()
        && doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size()), pugi::parse_default | pugi::parse_ws_pcdata)) {
        Scrivi(QStringLiteral("~PlxDoc.xml"), xml);
        Aggiungi(mwbrXml->invisibleRootItem(), doc, 0);
        mwbrXml->expandToDepth(2);
    }
    emit Caricato();
}
