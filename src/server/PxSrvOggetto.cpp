#include "PxSrvOggetto.h"

#include <QRandomGenerator>

PxSrvOggetto::PxSrvOggetto(QString nome, QObject* parent)
    : QObject(parent),
      mNome(std::move(nome)),
      mInterruzione(QStringLiteral("server non collegato")),
      // Answers reach every console of a server: a random high half keeps the numbers of
      // this one apart from the others'.
      mProssima(static_cast<quint64>(QRandomGenerator::global()->generate()) << 32 | 1u)
{
}

PxSrvOggetto::~PxSrvOggetto()
{
    Scollega();
    for (const Attesa& a : std::as_const(mAttese))
        disconnect(a.Distruzione);
}

void PxSrvOggetto::Scollega()
{
    for (const QMetaObject::Connection& c : std::as_const(mConnessioni))
        disconnect(c);
    mConnessioni.clear();
    mSorgente = nullptr;
}

void PxSrvOggetto::Collega(QObject* sorgente)
{
    Scollega();
    mSorgente = sorgente;
    if (!sorgente)
        return;
    Inoltra(modContratto::SegnaleRisposta, SLOT(AlRisposta(quint64,qint32,QString,QByteArray)));
    AlCollegamento(sorgente);
}

void PxSrvOggetto::Interrompi(const QString& motivo)
{
    Scollega();
    mInterruzione = motivo;
    const QList<quint64> attese = mAttese.keys();
    for (const quint64 richiesta : attese)
        AlRisposta(richiesta, modContratto::NonDisponibile, motivo, {});
}

bool PxSrvOggetto::Inoltra(const char* segnale, QObject* oggetto, const char* ricevente)
{
    if (!mSorgente)
        return false;
    const QByteArray firma = '2' + QByteArray(segnale);
    QMetaObject::Connection c = connect(mSorgente, firma.constData(), oggetto, ricevente);
    if (!c)
        return false;
    mConnessioni.push_back(c);
    return true;
}

quint64 PxSrvOggetto::Registra(QObject* richiedente, Esito fatto)
{
    const quint64 richiesta = mProssima++;
    Attesa attesa{std::move(fatto), {}};
    if (richiedente && richiedente != this)
        attesa.Distruzione = connect(richiedente, &QObject::destroyed, this, [this, richiesta] { mAttese.remove(richiesta); });
    mAttese.insert(richiesta, std::move(attesa));
    return richiesta;
}

bool PxSrvOggetto::Invia(const char* metodo, QGenericArgument a0, QGenericArgument a1, QGenericArgument a2,
                         QGenericArgument a3)
{
    // Queued even to an object of this thread: an answer never arrives inside the call.
    return QMetaObject::invokeMethod(mSorgente, metodo, Qt::QueuedConnection, a0, a1, a2, a3);
}

void PxSrvOggetto::RispondiPiuTardi(quint64 richiesta, PxRisposta risposta)
{
    QMetaObject::invokeMethod(
        this, [this, richiesta, r = std::move(risposta)] { AlRisposta(richiesta, r.Esito, r.Testo, r.Dati); },
        Qt::QueuedConnection);
}

void PxSrvOggetto::AlRisposta(quint64 richiesta, qint32 esito, const QString& testo, const QByteArray& dati)
{
    const auto it = mAttese.find(richiesta);
    if (it == mAttese.end())
        return; // another console's, or its requester is gone
    Attesa attesa = std::move(*it);
    mAttese.erase(it);
    disconnect(attesa.Distruzione);
    if (attesa.Fatto)
        attesa.Fatto(PxRisposta{esito, testo, dati});
}
