#include "frmCorpoDocumento.h"

#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxRigaLog.h"
#include "PxSrvServer.h"
#include "modTraccia.h"

#include <QDir>
#include <QFontDatabase>
#include <QLabel>
#include <QStatusBar>
#include <QVBoxLayout>
#include <QtConcurrent>

#include <pugixml.hpp>

#include <sstream>

frmCorpoDocumento::frmCorpoDocumento(PxContesto& contesto, QWidget* parent)
    : QWidget(parent), mContesto(contesto), mrtfCopo(new PxVistaTesto(this)), mRiga(new QLabel(this)),
      mColonna(new QLabel(this))
{
    setObjectName(QStringLiteral("frmCorpoDocumento"));
    mrtfCopo->setObjectName(QStringLiteral("rtfCopo"));
    QFont fisso(QStringLiteral("Courier New"));
    fisso.setStyleHint(QFont::TypeWriter);
    fisso.setFixedPitch(true);
    fisso.setPointSize(9);
    if (!QFontInfo(fisso).fixedPitch()) {
        fisso = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        fisso.setPointSize(9);
    }
    mrtfCopo->setFont(fisso);
    auto* stato = new QStatusBar(this);
    stato->setObjectName(QStringLiteral("staStato"));
    stato->setSizeGripEnabled(false);
    stato->addWidget(mRiga);
    stato->addWidget(mColonna);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(mrtfCopo);
    layout->addWidget(stato);
    connect(mrtfCopo, &PxVistaTesto::PosizioneCambiata, this, &frmCorpoDocumento::AggiornaPosizione);
    AggiornaPosizione();
}

frmCorpoDocumento::~frmCorpoDocumento() = default;

void frmCorpoDocumento::AggiornaPosizione()
{
    const PxConsoleResDll& testi = mContesto.Testi();
    mRiga->setText(testi.LoadDllString(115) + u' ' + QString::number(mrtfCopo->Riga() + 1));
    mColonna->setText(testi.LoadDllString(116) + u' ' + QString::number(mrtfCopo->Colonna() + 1));
}

void frmCorpoDocumento::PulisciCorpo()
{
    ++mGenerazione;
    mFile.clear();
    mCatalogo.clear();
    if (!mrtfCopo->Vuoto())
        mrtfCopo->Pulisci();
    emit Caricato();
}

void frmCorpoDocumento::CaricaCorpo(const pugi::xml_node& proprieta)
{
    const QString file = modCorpo::PercorsoFile(proprieta.child("FileCorpo"), mContesto.Server() ? mContesto.Server()->Cartella() : QString());
    std::ostringstream catalogoXml;
    proprieta.child("CatalogoSorgente").print(catalogoXml);
    const QByteArray catalogo = QByteArray::fromStdString(catalogoXml.str());
    // The pane refreshes its document often: the same body is not read again.
    if (file == mFile && catalogo == mCatalogo)
        return;
    if (file.isEmpty()) {
        PulisciCorpo();
        return;
    }
    mFile = file;
    mCatalogo = catalogo;
    const modCorpo::Catalogo sequenze = modCorpo::LeggiCatalogo(proprieta.child("CatalogoSorgente"));
    const quint64 generazione = ++mGenerazione;
    PxSrvServer* server = mContesto.Server();
    if (!server) {
        Mostra({});
        return;
    }
    // Its first MiB, through the server: the server reads only a regular file of its own folder.
    server->LeggiFile(file, 0, static_cast<qint32>(modCorpo::Massimo), this, [this, generazione, sequenze](const PxRisposta& r) {
        if (generazione != mGenerazione)
            return; // another document came since
        if (!r.Riuscita()) {
            modTraccia::Scrivi(modRigaLog::LivelloAvviso, QStringLiteral("Corpo non letto: %1").arg(r.Testo));
            Mostra({});
            return;
        }
        // The conversion off the interface thread.
        auto* osservatore = new QFutureWatcher<PxVistaTesto::Contenuto>(this);
        connect(osservatore, &QFutureWatcherBase::finished, this, [this, osservatore, generazione] {
            osservatore->deleteLater();
            if (generazione != mGenerazione)
                return;
            modTraccia::Proteggi("CaricaCorpo", [&] { Mostra(osservatore->result()); });
        });
        osservatore->setFuture(QtConcurrent::run([dati = r.Dati, sequenze] {
            return PxVistaTesto::Prepara(modCorpo::Leggi(modCorpo::Rtf(dati, sequenze)));
        }));
    });
}

void frmCorpoDocumento::Mostra(PxVistaTesto::Contenuto contenuto)
{
    mrtfCopo->Imposta(std::move(contenuto));
    emit Caricato();
}
