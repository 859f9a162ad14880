#pragma once

#include "PxSrvBkgConsole.h"
#include "PxSrvEventiServer.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"

#include <QHash>
#include <QPointer>

// A service whose state XML the test sets.
class FakeServizio : public PxSrvServizio
{
    Q_OBJECT
public:
    FakeServizio(QString chiave, QString xml, QObject* parent) : PxSrvServizio(parent), mChiave(std::move(chiave)), mXml(std::move(xml)) {}
    QString Chiave() const override { return mChiave; }
    QString StatoXml() const override { return mXml; }
    void ImpostaXml(const QString& xml) { mXml = xml; emit StatoXmlCambiato(); }
    int Letture = 0;
public slots:
    void Avvia() override {}
    void Sospendi() override {}
private:
    QString mChiave;
    QString mXml;
};

// A background worker the test drives by hand.
class FakeBkgConsole : public PxSrvBkgConsole
{
    Q_OBJECT
public:
    using PxSrvBkgConsole::PxSrvBkgConsole;
    void Avvia(const QString& cartella, const QString& identificativo, const QString& gui) override
    {
        Cartella = cartella; Identificativo = identificativo; Gui = gui; Avviato = true;
    }
    void Termina() override { Terminato = true; }
    void EmettiInizio() { emit Inizio(); }
    void EmettiFine() { emit Fine(); }
    void EmettiErrore(qint32 n, const QString& s, const QString& d) { emit Errore(n, s, d); }
    QString Cartella, Identificativo, Gui;
    bool Avviato = false, Terminato = false;
};

// A server with the services the test adds, and counters of what was asked of it.
class FakeServer : public PxSrvServer
{
    Q_OBJECT
public:
    explicit FakeServer(QString cartella = {}) : mCartella(std::move(cartella)), mEventi(new PxSrvEventiServer(this)) {}
    QString Cartella() const override { return mCartella; }
    QString Identificativo() const override { return QStringLiteral("Server di prova"); }
    qint32 Stato() const override { return mStato; }
    PxSrvServizio* Servizio(const QString& chiave) const override;
    PxSrvCartellaDocumenti* CartellaDocumenti(const QString&) const override { return nullptr; }
    PxSrvCatalogo* Catalogo(const QString&) const override { return nullptr; }
    QStringList Chiavi() const override { return mServizi.keys(); }
    PxSrvEventiServer* Eventi() const override { return mEventi; }
    PxSrvBkgConsole* CreaBkgConsole() override { Bkg = new FakeBkgConsole; return Bkg; }
    PxSrvUsoSistema* UsoSistema() const override { return nullptr; }

    FakeServizio* Aggiungi(const QString& chiave, const QString& xml);
    // "<Chiave><Stato><Codice>codice</Codice></Stato>extra</Chiave>"
    static QString Xml(const QString& chiave, int codice, const QString& extra = {});

    mutable QStringList Richieste; // every key asked for, in order
    QPointer<FakeBkgConsole> Bkg;
    qint32 mStato = 4;

private:
    QString mCartella;
    PxSrvEventiServer* mEventi;
    QHash<QString, FakeServizio*> mServizi;
};
