#pragma once

#include "PxCollegamento.h"
#include "PxSrvServer.h"

#include <QHash>
#include <QObject>
#include <QPointer>

#include <memory>

// The published objects of a server the test makes by hand, with the contract's signals and
// slots; Client() is the console's side of them, over the same transport the embedded
// server uses.

// A service whose state XML the test sets.
class FakeServizio : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString StatoXml READ StatoXml NOTIFY StatoXmlCambiato)
public:
    FakeServizio(QString xml, QObject* parent) : QObject(parent), mXml(std::move(xml)) {}
    QString StatoXml() const { return mXml; }
    void ImpostaXml(const QString& xml) { mXml = xml; emit StatoXmlCambiato(mXml); }
public slots:
    void RichiediStato(quint64 n) { emit Risposta(n, 0, mXml, {}); }
    void Avvia(quint64 n) { emit Risposta(n, 0, {}, {}); }
    void Sospendi(quint64 n) { emit Risposta(n, 0, {}, {}); }
    void ConsegnaLavoro(quint64 n, const QString& base, const QByteArray&) { emit Risposta(n, 0, base, {}); }
signals:
    void StatoXmlCambiato(const QString& xml);
    void CambioStato();
    void CambioAttivita();
    void NotificaErrore(qint32 codice, const QString& descrizione);
    void Avanzamento(const QString& attivita, qint32 fatti, qint32 totale);
    void DocumentiSpostati(const QByteArray& lotto);
    void LavoroPreso(const QString& base, const QString& id);
    void LavoroRespinto(const QString& base, const QString& motivo);
    void Risposta(quint64 richiesta, qint32 esito, const QString& testo, const QByteArray& dati);
private:
    QString mXml;
};

// A background worker the test drives by hand.
class FakeBkgConsole : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    void EmettiInizio() { emit Inizio(); }
    void EmettiFine() { emit Fine(); }
    void EmettiErrore(qint32 n, const QString& s, const QString& d) { emit Errore(n, s, d); }
    QString Cartella, Identificativo, Gui;
    bool Avviato = false, Terminato = false;
public slots:
    void Avvia(quint64 n, const QString& cartella, const QString& identificativo, const QString& gui)
    {
        Cartella = cartella; Identificativo = identificativo; Gui = gui; Avviato = true;
        emit Risposta(n, 0, {}, {});
    }
    void Termina(quint64 n) { Terminato = true; emit Risposta(n, 0, {}, {}); }
signals:
    void Inizio();
    void Fine();
    void Errore(qint32 numero, const QString& sorgente, const QString& descrizione);
    void Risposta(quint64 richiesta, qint32 esito, const QString& testo, const QByteArray& dati);
};

// The root: the services the test adds, described when asked (at once, or when the test
// calls Carica() if it made the server with `caricato` false).
class FakeServer : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString Cartella READ Cartella CONSTANT)
    Q_PROPERTY(QString Identificativo READ Identificativo CONSTANT)
    Q_PROPERTY(qint32 Stato READ Stato NOTIFY CambioStatoServer)
public:
    explicit FakeServer(QString cartella = {}, bool caricato = true);
    ~FakeServer() override;
    QString Cartella() const { return mCartella; }
    QString Identificativo() const { return QStringLiteral("Server di prova"); }
    qint32 Stato() const { return 4; }

    FakeServizio* Aggiungi(const QString& chiave, const QString& xml);
    // "<Chiave><Stato><Codice>codice</Codice></Stato>extra</Chiave>"
    static QString Xml(const QString& chiave, int codice, const QString& extra = {});
    QObject* Oggetto(const QString& nome) const;
    // Ends the loading: the description goes to whoever asked.
    void Carica();
    void EmettiCaricamento(qint32 fatti, qint32 totale, const QString& testo) { emit Caricamento(fatti, totale, testo); }
    // The transport loses the server.
    void Interrompi(const QString& motivo) { emit mCollegamento->Interrotto(motivo); }

    // The console's side, connected; with the server loaded, it has its parts once
    // the event loop has turned (Client() waits for that).
    PxSrvServer& Client();

    QPointer<FakeBkgConsole> Bkg;

    // What RichiediRuolo answers.
    QString Ruolo = QStringLiteral("operatore");

public slots:
    void RichiediDescrizione(quint64 n);
    void RichiediRuolo(quint64 n) { emit Risposta(n, 0, Ruolo, QByteArrayLiteral("prova")); }
    // Reads a file of its folder as the reference server does.
    void LeggiFile(quint64 n, const QString& percorso, qint64 inizio, qint32 quanti);

signals:
    void Caricamento(qint32 fatti, qint32 totale, const QString& testo);
    void Pronto();
    void CambioStatoServer(qint32 codice);
    void UtenteConnesso(const QString& nodoXml);
    void UtenteDisconnesso(const QString& keyUtente);
    void StampanteAggiunta(const QString& nodoXml);
    void StampanteRimossa(const QString& chiave);
    void FtpClienteConnesso(const QString& nodoXml);
    void FtpClienteDisconnesso(const QString& chiave);
    void Risposta(quint64 richiesta, qint32 esito, const QString& testo, const QByteArray& dati);

private:
    QString mCartella;
    bool mCaricato;
    QList<quint64> mAttese;
    QStringList mChiavi;
    QHash<QString, FakeServizio*> mServizi;
    std::unique_ptr<PxCollegamentoDiretto> mCollegamento;
    std::unique_ptr<PxSrvServer> mClient;
};
