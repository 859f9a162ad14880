#include "PxBarraComandi.h"

#include "PxConsoleResDll.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QToolBar>
#include <QToolButton>

#include <pugixml.hpp>

PxBarraComandi::PxBarraComandi(const PxConsoleResDll& testi, QToolBar* barra, QMenu* menu, QObject* parent)
    : QObject(parent), mTesti(testi), mBarra(barra), mMenu(menu)
{
}

void PxBarraComandi::Svuota()
{
    for (QAction* a : std::as_const(mAzioni)) {
        if (mBarra)
            mBarra->removeAction(a);
        if (mMenu)
            mMenu->removeAction(a);
    }
    if (mBarra)
        mBarra->clear();
    if (mMenu)
        mMenu->clear();
    qDeleteAll(mPropri);
    mPropri.clear();
    mAzioni.clear();
    mOrdine.clear();
    AggiungiFisse();
}

void PxBarraComandi::ImpostaFisse(const QList<QAction*>& azioni)
{
    mFisse = azioni;
    Svuota();
}

void PxBarraComandi::AggiungiFisse()
{
    if (mFisse.isEmpty())
        return;
    for (QWidget* w : {static_cast<QWidget*>(mBarra.data()), static_cast<QWidget*>(mMenu.data())}) {
        if (!w)
            continue;
        w->addActions(mFisse);
        auto* separatore = new QAction(this);
        separatore->setSeparator(true);
        mPropri.append(separatore);
        w->addAction(separatore);
    }
}

QList<QAction*> PxBarraComandi::AzioniVista() const { return mOrdine; }

void PxBarraComandi::Separatore()
{
    auto* separatore = new QAction(this);
    separatore->setSeparator(true);
    mPropri.append(separatore);
    mOrdine.append(separatore);
    if (mBarra)
        mBarra->addAction(separatore);
    if (mMenu)
        mMenu->addAction(separatore);
}

namespace {
// Keys for the document commands an operator uses most; the others are in the menu (Alt+C).
QKeySequence Tasto(int id)
{
    switch (id) {
    case 5315: return QKeySequence(Qt::CTRL | Qt::Key_Return);            // view document
    case 5302: return QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_A);     // previews
    case 5303: return QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C);     // send compressed
    case 5305: return QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_O);     // document folder
    case 5306:
    case 5307: return QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_V);     // view pdf / tiff
    default: return {};
    }
}
} // namespace

QAction* PxBarraComandi::Nuova(int id, int testo, int descrizione, QObject* genitore)
{
    auto* a = new QAction(mTesti.LoadDllString(testo), genitore);
    a->setProperty(ProprietaId, id);
    a->setShortcut(Tasto(id));
    if (descrizione) {
        a->setToolTip(mTesti.LoadDllString(testo) + QStringLiteral("\n") + mTesti.LoadDllString(descrizione));
        a->setStatusTip(mTesti.LoadDllString(descrizione));
    }
    connect(a, &QAction::triggered, this, [this, id] { emit Esegui(id); });
    mAzioni.insert(id, a);
    return a;
}

QAction* PxBarraComandi::Pulsante(int id, int testo, int descrizione, bool spuntabile, bool nuovoGruppo)
{
    QAction* a = Nuova(id, testo, descrizione, this);
    mPropri.append(a);
    a->setCheckable(spuntabile);
    if (nuovoGruppo)
        Separatore();
    mOrdine.append(a);
    if (mBarra)
        mBarra->addAction(a);
    if (mMenu)
        mMenu->addAction(a);
    return a;
}

QMenu* PxBarraComandi::Tendina(int id, int testo, int descrizione)
{
    auto* tendina = new QMenu(mTesti.LoadDllString(testo));
    mPropri.append(tendina);
    QAction* a = tendina->menuAction();
    a->setProperty(ProprietaId, id);
    a->setStatusTip(mTesti.LoadDllString(descrizione));
    a->setToolTip(mTesti.LoadDllString(testo) + QStringLiteral("\n") + mTesti.LoadDllString(descrizione));
    mAzioni.insert(id, a);
    mOrdine.append(a);
    if (mBarra) {
        mBarra->addAction(a);
        if (auto* pulsante = qobject_cast<QToolButton*>(mBarra->widgetForAction(a)))
            pulsante->setPopupMode(QToolButton::InstantPopup);
    }
    if (mMenu)
        mMenu->addMenu(tendina);
    return tendina;
}

QAction* PxBarraComandi::Voce(QMenu* tendina, int id, int testo, int descrizione)
{
    QAction* a = Nuova(id, testo, descrizione, tendina);
    tendina->addAction(a);
    return a;
}

void PxBarraComandi::Abilita(int id, bool abilitato)
{
    if (QAction* a = mAzioni.value(id))
        a->setEnabled(abilitato);
}

bool PxBarraComandi::Spuntato(int id) const
{
    const QAction* a = mAzioni.value(id);
    return a && a->isChecked();
}

void PxBarraComandi::SalvaStato(pugi::xml_node nodo) const
{
    if (!nodo)
        return;
    QList<int> id = mAzioni.keys();
    std::sort(id.begin(), id.end());
    for (const int i : id) {
        const QAction* a = mAzioni.value(i);
        if (!a->isCheckable())
            continue;
        pugi::xml_node c = nodo.append_child("Comando");
        c.append_attribute("Id") = i;
        c.append_attribute("Spuntato") = a->isChecked();
    }
}

void PxBarraComandi::CaricaStato(const pugi::xml_node& nodo)
{
    for (const pugi::xml_node c : nodo.children("Comando"))
        if (QAction* a = mAzioni.value(c.attribute("Id").as_int()); a && a->isCheckable())
            a->setChecked(c.attribute("Spuntato").as_bool());
}
