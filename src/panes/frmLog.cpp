#include "frmLog.h"

#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxLogConsole.h"
#include "PxModelloLog.h"
#include "modTraccia.h"

#include <QAction>
#include <QFileSystemWatcher>
#include <QFutureWatcher>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>
#include <QtConcurrent>

#include <sys/stat.h>

namespace {

// The file's inode and size; {0, -1} when it is not there.
std::pair<quint64, qint64> Stato(const QString& file)
{
    struct stat s{};
    if (::stat(QFile::encodeName(file).constData(), &s) != 0)
        return {0, -1};
    return {static_cast<quint64>(s.st_ino), static_cast<qint64>(s.st_size)};
}

constexpr qint32 TestiLivelli[4] = {8041, 8042, 8043, 8044};

} // namespace

frmLog::frmLog(PxContesto& contesto, QWidget* parent)
    : QWidget(parent), mContesto(contesto), mbndLog(new QToolBar), mxrpLog(new QTreeView),
      mModello(new PxModelloLog(contesto.Testi().LoadDllString(1400), contesto.Testi().LoadDllString(1401), this)),
      mCerca(new QLineEdit), mOsservatore(new QFileSystemWatcher(this))
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

    // Growth is noticed by the watcher where it can, and by a look every second where not.
    connect(mOsservatore, &QFileSystemWatcher::fileChanged, this, [this] { Controlla(); });
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
        if (!mFile.isEmpty())
            mOsservatore->removePath(mFile);
        mFile = file;
        AggiornaTitolo();
        mControllo.stop();
        ++mGenerazione; // what was being read for the previous file is dropped
        mInLettura = false;
        if (mFile.isEmpty() || !QFileInfo::exists(mFile)) {
            mModello->Svuota();
            emit Letto();
            return;
        }
        mOsservatore->addPath(mFile);
        mControllo.start();
        Leggi(true);
    });
}

void frmLog::AggiungiRigoLog(qint32 icona, qint32 secondi, const QString& testo)
{
    mModello->Aggiungi({{static_cast<qint8>(icona - 100), secondi, testo}});
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
    const qint64 da = daCapo ? 0 : mFine;
    const auto [identita, dimensione] = Stato(mFile);
    (void)dimensione;
    auto* osservatore = new QFutureWatcher<modLog::Lettura>(this);
    connect(osservatore, &QFutureWatcherBase::finished, this, [this, osservatore, generazione, daCapo, id = identita] {
        osservatore->deleteLater();
        if (generazione != mGenerazione)
            return;
        mInLettura = false;
        modLog::Lettura l = osservatore->result();
        if (l.Letta) {
            QScrollBar* barra = mxrpLog->verticalScrollBar();
            const bool inFondo = daCapo || barra->value() >= barra->maximum();
            if (daCapo)
                mModello->Sostituisci(std::move(l.Righe));
            else
                mModello->Aggiungi(std::move(l.Righe));
            mFine = l.Fine;
            mIdentita = id;
            if (inFondo)
                mxrpLog->scrollToBottom();
        }
        emit Letto();
        if (std::exchange(mDaRileggere, false))
            Leggi(true);
        else
            Controlla();
    });
    osservatore->setFuture(QtConcurrent::run(modLog::Leggi, mFile, da, Livelli()));
}

void frmLog::Controlla()
{
    if (mFile.isEmpty() || mInLettura)
        return;
    // The watcher loses a file replaced by a rotation: it is watched again.
    if (!mOsservatore->files().contains(mFile) && QFileInfo::exists(mFile))
        mOsservatore->addPath(mFile);
    const auto [identita, dimensione] = Stato(mFile);
    if (dimensione < 0)
        return;
    if (identita != mIdentita || dimensione < mFine)
        Leggi(true); // rotated or truncated: from the start
    else if (dimensione > mFine)
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
