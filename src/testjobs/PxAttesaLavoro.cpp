#include "PxAttesaLavoro.h"

#include "PxSrvServizio.h"
#include "modTraccia.h"

#include <QFileInfo>

PxAttesaLavoro::PxAttesaLavoro(PxSrvServizio* servizio, QObject* parent)
    : QObject(parent), mServizio(servizio), mScadenza(this)
{
    mScadenza.setSingleShot(true);
    connect(&mScadenza, &QTimer::timeout, this, [this] {
        if (mConcluso)
            return;
        mConcluso = true;
        emit Scaduto(mBase);
    });
    if (!servizio)
        return;
    connect(servizio, &PxSrvServizio::LavoroPreso, this,
            [this](const QString& nome, const QString& id) { AlNotizia(nome, {true, id}); });
    connect(servizio, &PxSrvServizio::LavoroRespinto, this,
            [this](const QString& nome, const QString& motivo) { AlNotizia(nome, {false, motivo}); });
}

void PxAttesaLavoro::Attendi(const QString& base, int millisecondi)
{
    modTraccia::Proteggi("PxAttesaLavoro_Attendi", [&] {
        mBase = base;
        mNome = QFileInfo(base).fileName();
        const auto arrivata = mArrivate.constFind(mNome);
        if (arrivata != mArrivate.cend()) {
            const Sorte sorte = *arrivata;
            QMetaObject::invokeMethod(this, [this, sorte] { Concludi(sorte); }, Qt::QueuedConnection);
        } else {
            mScadenza.start(std::max(0, millisecondi));
        }
        mArrivate.clear();
    });
}

void PxAttesaLavoro::AlNotizia(const QString& nome, const Sorte& sorte)
{
    if (mConcluso)
        return;
    if (mNome.isEmpty()) {
        // Not known yet which job is ours: every job's fate is kept until it is.
        mArrivate.insert(nome, sorte);
        return;
    }
    if (nome == mNome)
        Concludi(sorte);
}

void PxAttesaLavoro::Concludi(const Sorte& sorte)
{
    if (mConcluso)
        return;
    mConcluso = true;
    mScadenza.stop();
    if (sorte.Preso)
        emit Preso(mBase, sorte.Testo);
    else
        emit Respinto(mBase, sorte.Testo);
}
