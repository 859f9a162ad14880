#pragma once

#include "PxContratto.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>

// The console-side half of one published server object: it binds to the object a transport
// hands out (PxCollegamento) by the contract's signatures, sends requests and routes their
// answers. Every request is numbered; its answer arrives later, from the event loop, through
// the function given with it. A request whose requester is destroyed first is forgotten with
// everything it held, and its answer, if one ever comes, is dropped; so is an answer that
// nobody here asked for (the server answers every console of its own).
class PxSrvOggetto : public QObject
{
    Q_OBJECT

public:
    using Esito = std::function<void(const PxRisposta&)>;

    explicit PxSrvOggetto(QString nome, QObject* parent = nullptr);
    ~PxSrvOggetto() override;

    // The published name ("Servizio/PxSrvFax").
    QString Nome() const { return mNome; }
    bool Collegato() const { return !mSorgente.isNull(); }
    // Requests sent and not answered yet.
    qsizetype RichiesteInAttesa() const { return mAttese.size(); }

    // Binds to `sorgente`, the object the transport found (nullptr: none; requests then fail
    // with NonDisponibile).
    void Collega(QObject* sorgente);
    // The connection is gone: every pending request fails with `motivo`, later ones too.
    void Interrompi(const QString& motivo);

protected:
    // Connects the source's signal of normalised signature `segnale` to `ricevente` here, a
    // SIGNAL() or SLOT() string. False when the source lacks the signal (logged by Qt).
    bool Inoltra(const char* segnale, const char* ricevente) { return Inoltra(segnale, this, ricevente); }
    bool Inoltra(const char* segnale, QObject* oggetto, const char* ricevente);
    // Subclasses connect their notices here.
    virtual void AlCollegamento(QObject* sorgente) { Q_UNUSED(sorgente); }

    // Sends request `metodo` (a slot name of the contract) with `argomenti` after its number.
    // `fatto` runs with the answer while `richiedente` lives (nullptr: while this lives).
    template <typename... A>
    void Chiama(const char* metodo, QObject* richiedente, Esito fatto, const A&... argomenti);

private slots:
    void AlRisposta(quint64 richiesta, qint32 esito, const QString& testo, const QByteArray& dati);

private:
    template <typename T> static const char* NomeTipo();
    void Scollega();
    quint64 Registra(QObject* richiedente, Esito fatto);
    bool Invia(const char* metodo, QGenericArgument a0, QGenericArgument a1 = {}, QGenericArgument a2 = {},
               QGenericArgument a3 = {});
    void RispondiPiuTardi(quint64 richiesta, PxRisposta risposta);

    struct Attesa
    {
        Esito Fatto;
        QMetaObject::Connection Distruzione;
    };

    QString mNome;
    QPointer<QObject> mSorgente;
    QList<QMetaObject::Connection> mConnessioni;
    QString mInterruzione;
    QHash<quint64, Attesa> mAttese;
    quint64 mProssima;
};

template <> inline const char* PxSrvOggetto::NomeTipo<QString>() { return "QString"; }
template <> inline const char* PxSrvOggetto::NomeTipo<qint32>() { return "qint32"; }
template <> inline const char* PxSrvOggetto::NomeTipo<bool>() { return "bool"; }
template <> inline const char* PxSrvOggetto::NomeTipo<qint64>() { return "qint64"; }
template <> inline const char* PxSrvOggetto::NomeTipo<QByteArray>() { return "QByteArray"; }

template <typename... A>
void PxSrvOggetto::Chiama(const char* metodo, QObject* richiedente, Esito fatto, const A&... argomenti)
{
    static_assert(sizeof...(A) <= 3, "the contract's requests take at most three arguments");
    const quint64 richiesta = Registra(richiedente, std::move(fatto));
    if (!mSorgente) {
        RispondiPiuTardi(richiesta, {modContratto::NonDisponibile, mInterruzione, {}});
        return;
    }
    // The type names are spelt as the contract declares them, so the look-up matches the
    // slot both on a local object and on a replica.
    if (!Invia(metodo, QArgument<quint64>("quint64", richiesta), QArgument<A>(NomeTipo<A>(), argomenti)...))
        RispondiPiuTardi(richiesta, {modContratto::Sconosciuto, QString::fromLatin1(metodo), {}});
}
