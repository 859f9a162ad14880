#include "FakeServer.h"

#include "PxContratto.h"
#include "modLetturaFile.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <pugixml.hpp>

#include <sstream>

FakeServer::FakeServer(QString cartella, bool caricato)
    : mCartella(std::move(cartella)), mCaricato(caricato)
{
    Bkg = new FakeBkgConsole(this);
}

FakeServer::~FakeServer()
{
    // The console's side goes first: it holds connections to these objects.
    mClient.reset();
}

FakeServizio* FakeServer::Aggiungi(const QString& chiave, const QString& xml)
{
    auto* s = new FakeServizio(xml, this);
    mServizi.insert(chiave, s);
    mChiavi << chiave;
    return s;
}

QString FakeServer::Xml(const QString& chiave, int codice, const QString& extra)
{
    return QStringLiteral("<%1><Stato><Codice>%2</Codice></Stato>%3</%1>").arg(chiave).arg(codice).arg(extra);
}

QObject* FakeServer::Oggetto(const QString& nome) const
{
    if (nome == QLatin1StringView(modContratto::NomeServer))
        return const_cast<FakeServer*>(this);
    if (nome == QLatin1StringView(modContratto::NomeBkgConsole))
        return Bkg;
    for (auto it = mServizi.cbegin(); it != mServizi.cend(); ++it)
        if (nome == modContratto::NomeServizio(it.key()))
            return it.value();
    return nullptr;
}

void FakeServer::LeggiFile(quint64 n, const QString& percorso, qint64 inizio, qint32 quanti)
{
    const PxRisposta r = mCartella.isEmpty() ? PxRisposta{modContratto::Rifiutato, QStringLiteral("nessuna cartella"), {}}
                                             : modLetturaFile::Leggi(mCartella, percorso, inizio, quanti);
    emit Risposta(n, r.Esito, r.Testo, r.Dati);
}

void FakeServer::RichiediDescrizione(quint64 n)
{
    if (!mCaricato) {
        mAttese << n;
        return;
    }
    pugi::xml_document doc;
    pugi::xml_node radice = doc.append_child("Server");
    radice.append_attribute("Stato") = Stato();
    for (const QString& chiave : std::as_const(mChiavi)) {
        pugi::xml_node nodo = radice.append_child("Servizio");
        nodo.append_attribute("Chiave") = chiave.toUtf8().constData();
        nodo.text().set(mServizi.value(chiave)->StatoXml().toUtf8().constData());
    }
    std::ostringstream out;
    doc.save(out, "", pugi::format_raw | pugi::format_no_declaration);
    emit Risposta(n, 0, {}, QByteArray::fromStdString(out.str()));
}

void FakeServer::Carica()
{
    mCaricato = true;
    emit Pronto();
    for (const quint64 n : std::exchange(mAttese, {}))
        RichiediDescrizione(n);
}

PxSrvServer& FakeServer::Client()
{
    if (!mClient) {
        mCollegamento = std::make_unique<PxCollegamentoDiretto>([this](const QString& nome) { return Oggetto(nome); });
        mClient = std::make_unique<PxSrvServer>(mCollegamento.get());
        mClient->Connetti();
        const QDeadlineTimer limite(5000);
        while (mCaricato && !mClient->Caricato() && !limite.hasExpired())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return *mClient;
}
