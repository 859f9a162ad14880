#include "frmLog.h"

#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxLetturaFile.h"
#include "PxLogConsole.h"
#include "PxModelloLog.h"
#include "PxRigaLog.h"
#include "PxSrvServer.h"
#include "modLetturaFile.h"
#include "modTraccia.h"

#include <QAction>
#include <QFutureWatcher>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>
#include <QtConcurrent>

namespace {

constexpr qint32 TestiLivelli[4] = {8041, 8042, 8043, 8044};

} // namespace

frmLog::frmLog(PxContesto& contesto, QWidget* parent)
    : QWidget(parent), mContesto(contesto), mbndLog(new QToolBar), mxrpLog(new QTreeView),
      mModello(new PxModelloLog(contesto.Testi().LoadDllString(1400), contesto.Testi().LoadDllString(1401), this)),
      mCerca(new QLineEdit)
{
    setObjectName(QStringLiteral("frmLog"));
    const PxConsoleResDll& testi = mContesto.Testi();
    mbndLog->setObjectName(QStringLiteral("bndLog"));
    mbndLog->setToolButtonStyle(Qt::ToolButtonTextOnly);
    for (int livello = 0; livello < 4; ++livello) {
        QAction* a = mbndLog->addAction(testi.LoadDllString(TestiLivelli[livello]));
        a->setProperty("IdComando", 100 + livello);
        a->setCheckable(true);
        a->setChecked(true);
        connect(a, &QAction::toggled, this, [this] { Leggi(true); });
    }
    mbndLog->addSeparator();
    mCerca->setPlaceholderText(testi.LoadDllString(8045));
    mCerca->setClearButtonEnabled(true);
    mCerca->setMaximumWidth(240);
    mbndLog->addWidget(mCerca);
    connect(mCerca, &QLineEdit::returnPressed, this, [this] { Cerca(mCerca->text(), true); });
    QAction* avanti = mbndLog->addAction(QStringLiteral("▼"), this, [this] { Cerca(mCerca->text(), true); });
    avanti->setShortcut(QKeySequence::FindNext);
    avanti->setToolTip(testi.LoadDllString(8045));
    QAction* indietro = mbndLog->addAction(QStringLiteral("▲"), this, [this] { Cerca(mCerca->text(), false); });
    indietro->setShortcut(QKeySequence::FindPrevious);
    indietro->setToolTip(testi.LoadDllString(8045));
    mbndLog->addSeparator();
    mbndLog->addAction(testi.LoadDllString(8046), this, [this] { CaricaLog(mContesto.Log().File()); });

    mxrpLog->setObjectName(QStringLiteral("mxrpLog"));
    mxrpLog->setModel(mModello);
    mxrpLog->setRootIsDecorated(false);
    mxrpLog->setUniformRowHeights(true);
    mxrpLog->setAlternatingRowColors(true);
    mxrpLog->setSelectionBehavior(QAbstractItemView::SelectRows);
    mxrpLog->header()->setStretchLastSection(true);
    // The columns' captions (1400, 1401) are texts the string table never gives out: a header
    // of blank captions would only take room, so there is none.
    mxrpLog->setHeaderHidden(true);
    mxrpLog->header()->resizeSection(0, 90);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(mbndLog);
    layout->addWidget(mxrpLog);

    // Growth is noticed by asking for what follows once a second: the same for a log on this
    // machine and one on the server's.
    mControllo.setInterval(1000);
    connect(&mControllo, &QTimer::timeout, this, &frmLog::Controlla);
    mTitolo = testi.LoadDllString(7004);
}

frmLog::~frmLog() = default;

void frmLog::AggiornaTitolo()
{
    const PxConsoleResDll& testi = mContesto.Testi();
    QString nome;
    if (mFile.isEmpty()) {
        nome.clear();
    } else if (QFileInfo(mFile) == QFileInfo(mContesto.Log().File())) {
        nome = testi.LoadDllString(8046);
    } else {
        const QString file = QFileInfo(mFile).fileName();
        const QString chi = mNomi ? mNomi(mFile) : QString();
        nome = chi.isEmpty() ? file : chi + QStringLiteral(" (") + file + u')';
    }
    const QString titolo = nome.isEmpty() ? testi.LoadDllString(7004) : testi.LoadDllString(7004) + QStringLiteral(" - ") + nome;
    if (titolo == mTitolo)
        return;
    mTitolo = titolo;
    emit TitoloCambiato(mTitolo);
}

QAction* frmLog::Livello(int livello) const
{
    for (QAction* a : mbndLog->actions())
        if (a->property("IdComando").toInt() == 100 + livello)
            return a;
    return nullptr;
}

modLog::Livelli frmLog::Livelli() const
{
    modLog::Livelli l{};
    for (int i = 0; i < 4; ++i)
        l[static_cast<size_t>(i)] = Livello(i)->isChecked();
    return l;
}

void frmLog::CaricaLog(const QString& file)
{
    modTraccia::Proteggi("CaricaLog", [&] {
        mFile = file;
        AggiornaTitolo();
        mControllo.stop();
        ++mGenerazione; // what was being read for the previous file is dropped
        mInLettura = false;
        mDaRileggere = false;
        mFine = 0;
        mIdentita.clear();
        // The previous file's lines never show under the new file's title.
        mModello->Svuota();
        if (mFile.isEmpty()) {
            emit Letto();
            return;
        }
        mControllo.start();
        Leggi(true);
    });
}

void frmLog::AggiungiRigoLog(qint32 icona, qint32 secondi, const QString& testo)
{
    mModello->Aggiungi({{static_cast<qint8>(icona - 100), secondi, testo}});
}

bool frmLog::Locale() const
{
    // The console's own log is this machine's file; every other log is the server's.
    return !mContesto.Server() || QFileInfo(mFile) == QFileInfo(mContesto.Log().File());
}

void frmLog::Chiedi(qint64 inizio, qint32 quanti, std::function<void(const PxRisposta&)> fatto)
{
    if (!Locale()) {
        mContesto.Server()->LeggiFile(mFile, inizio, quanti, this, std::move(fatto));
        return;
    }
    auto* osservatore = new QFutureWatcher<PxRisposta>(this);
    connect(osservatore, &QFutureWatcherBase::finished, this, [osservatore, fatto = std::move(fatto)] {
        osservatore->deleteLater();
        fatto(osservatore->result());
    });
    osservatore->setFuture(QtConcurrent::run(modLetturaFile::LeggiRegolare, mFile, inizio, quanti));
}

void frmLog::Leggi(bool daCapo)
{
    if (mFile.isEmpty())
        return;
    if (mInLettura) {
        // One read at a time; a whole reload asked meanwhile wins over an append.
        mDaRileggere = mDaRileggere || daCapo;
        return;
    }
    mInLettura = true;
    const quint64 generazione = ++mGenerazione;
    const modLog::Livelli livelli = Livelli();
    // From the start: the tail (the last MiB); then what follows the last whole line read.
    const qint64 inizio = daCapo ? -modLog::MassimoCoda : mFine;
    const qint32 quanti = daCapo ? static_cast<qint32>(modLog::MassimoCoda) : modContratto::MassimoLettura;
    Chiedi(inizio, quanti, [this, generazione, daCapo, livelli](const PxRisposta& r) {
        if (generazione != mGenerazione)
            return;
        PxLetturaFile pezzo;
        if (!pezzo.Da(r)) {
            mInLettura = false;
            if (daCapo) {
                // Not there (or not a log): the list stays empty and nothing is asked again.
                modTraccia::Scrivi(modRigaLog::LivelloAvviso, QStringLiteral("Log non letto: %1").arg(r.Testo));
                mControllo.stop();
                emit Letto();
            }
            return;
        }
        if (!daCapo && (pezzo.Identita != mIdentita || pezzo.Dimensione < mFine)) {
            mInLettura = false;
            Leggi(true); // rotated or truncated: from the start
            return;
        }
        // The lines are split off the interface thread.
        auto* osservatore = new QFutureWatcher<modLog::Lettura>(this);
        connect(osservatore, &QFutureWatcherBase::finished, this, [this, osservatore, generazione, daCapo] {
            osservatore->deleteLater();
            if (generazione != mGenerazione)
                return;
            Applica(daCapo, osservatore->result());
        });
        osservatore->setFuture(QtConcurrent::run(modLog::DaPezzo, pezzo, daCapo, livelli));
        mIdentita = pezzo.Identita;
    });
}

void frmLog::Applica(bool daCapo, modLog::Lettura letta)
{
    mInLettura = false;
    QScrollBar* barra = mxrpLog->verticalScrollBar();
    const bool inFondo = daCapo || barra->value() >= barra->maximum();
    const bool nuovo = letta.Fine > mFine || daCapo;
    if (daCapo)
        mModello->Sostituisci(std::move(letta.Righe));
    else if (!letta.Righe.empty())
        mModello->Aggiungi(std::move(letta.Righe));
    else if (!nuovo && !mDaRileggere)
        return; // nothing new
    mFine = letta.Fine;
    if (inFondo)
        mxrpLog->scrollToBottom();
    emit Letto();
    if (std::exchange(mDaRileggere, false))
        Leggi(true);
    else if (mFine < letta.Dimensione && nuovo)
        Leggi(false); // more than one answer carries
}

void frmLog::Controlla()
{
    if (!mFile.isEmpty() && !mInLettura)
        Leggi(false);
}

bool frmLog::Cerca(const QString& testo, bool avanti)
{
    const int n = mModello->rowCount();
    if (testo.isEmpty() || n == 0)
        return false;
    const int corrente = mxrpLog->currentIndex().isValid() ? mxrpLog->currentIndex().row() : (avanti ? -1 : n);
    for (int passo = 1; passo <= n; ++passo) {
        const int r = ((corrente + (avanti ? passo : -passo)) % n + n) % n;
        if (mModello->Righe()[static_cast<size_t>(r)].Testo.contains(testo, Qt::CaseInsensitive)) {
            const QModelIndex i = mModello->index(r, 1);
            mxrpLog->setCurrentIndex(i);
            mxrpLog->scrollTo(i);
            return true;
        }
    }
    return false;
}
