// The reference server through the boundary as the console uses it: on its own thread, and
// across Qt Remote Objects (a host node and a replica node on a local socket).
#include "PxCollegamento.h"
#include "PxCollegamentoRemoto.h"
#include "PxSrvCartellaDocumenti.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"
#include "PxXmlCallBack.h"
#include "RefCartellaDocumenti.h"
#include "RefOspite.h"
#include "RefServer.h"
#include "modCatalogo.h"
#include "modDemo.h"
#include "modRemoto.h"

#include "Selezione.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QRemoteObjectHost>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <pugixml.hpp>

using namespace Qt::StringLiterals;

namespace {

// Waits for one answer to a request made by `chiedi`.
PxRisposta Attendi(const std::function<void(PxSrvOggetto::Esito)>& chiedi)
{
    std::optional<PxRisposta> risposta;
    chiedi([&](const PxRisposta& r) { risposta = r; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return risposta.has_value(); }, 10000));
    return risposta.value_or(PxRisposta{-1, u"nessuna risposta"_s, {}});
}

// The ids in queue `coda` of a listing.
QStringList Coda(const QByteArray& elenco, int coda)
{
    pugi::xml_document doc;
    QStringList id;
    if (!doc.load_buffer(elenco.constData(), static_cast<size_t>(elenco.size())))
        return id;
    const std::string nome = "Coda_" + std::to_string(coda);
    for (const pugi::xml_node d : doc.document_element().child(nome.c_str()).children("D"))
        id << QString::fromUtf8(d.first_child().child_value());
    return id;
}

// The checks every transport must pass: a listing, a move with its notice, a state change
// with its notice, and a refused command with its reason.
void ControllaConfine(PxSrvServer& server)
{
    ASSERT_TRUE(QTest::qWaitFor([&] { return server.Caricato(); }, 15000));
    PxSrvCartellaDocumenti* fax = server.CartellaDocumenti(u"PxSrvDocFax"_s);
    PxSrvServizio* servizio = server.Servizio(u"PxSrvFax"_s);
    ASSERT_NE(fax, nullptr);
    ASSERT_NE(servizio, nullptr);
    EXPECT_TRUE(servizio->StatoXml().startsWith(u"<PxSrvFax>"_s));

    PxXmlCallBack callback;
    QSignalSpy elenco(&callback, &PxXmlCallBack::XmlCallBack);
    fax->Elenca(&callback);
    ASSERT_TRUE(elenco.wait(10000));
    const QStringList trasmessi = Coda(elenco[0][0].toByteArray(), 8);
    ASSERT_GE(trasmessi.size(), 2);

    QSignalSpy spostati(servizio, &PxSrvServizio::DocumentoSpostato);
    const PxRisposta mossa = Attendi([&](auto fatto) { fax->SpostaDocumenti(Selezione({trasmessi[0]}), 2, nullptr, fatto); });
    EXPECT_EQ(mossa.Esito, modContratto::Ok) << qPrintable(mossa.Testo);
    ASSERT_TRUE(spostati.size() > 0 || spostati.wait(10000));
    EXPECT_EQ(spostati[0][0].toInt(), 2);
    EXPECT_EQ(spostati[0][1].toString(), trasmessi[0]);
    EXPECT_TRUE(spostati[0][2].toString().startsWith(u"<D><F>"_s + trasmessi[0]));

    const PxRisposta rifiutata = Attendi(
        [&](auto fatto) { fax->SpostaDocumenti(Selezione({trasmessi[1], u"FAX-999999"_s}), 2, nullptr, fatto); });
    EXPECT_EQ(rifiutata.Esito, modContratto::Rifiutato);
    EXPECT_TRUE(rifiutata.Testo.contains(u"FAX-999999"_s)) << qPrintable(rifiutata.Testo);
    const PxRisposta coda = Attendi([&](auto fatto) { fax->SpostaDocumenti(Selezione({trasmessi[1]}), 13, nullptr, fatto); });
    EXPECT_EQ(coda.Esito, modContratto::Rifiutato) << "queue 13 does not exist";

    QSignalSpy stato(servizio, &PxSrvServizio::CambioStato);
    EXPECT_EQ(Attendi([&](auto fatto) { servizio->Sospendi(nullptr, fatto); }).Esito, modContratto::Ok);
    ASSERT_TRUE(stato.size() > 0 || stato.wait(10000));
    EXPECT_TRUE(servizio->StatoXml().contains(u"<Stato><Codice>3</Codice>"_s)) << "the copy is current when the notice arrives";

    const PxRisposta documento = Attendi([&](auto fatto) { fax->Documento(trasmessi[0], nullptr, fatto); });
    EXPECT_TRUE(documento.Testo.contains(u"<Documento"_s));
    const PxRisposta ignoto = Attendi([&](auto fatto) { fax->Documento(u"FAX-999999"_s, nullptr, fatto); });
    EXPECT_EQ(ignoto.Esito, modContratto::Rifiutato);
}

class ConfineServer : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_EQ(modDemo::CreaServerDemo(mDir.path(), 300), QString()); }
    QTemporaryDir mDir;
};

} // namespace

TEST_F(ConfineServer, AcrossTheServersThread)
{
    RefOspite ospite(mDir.path(), RefServer::Opzioni{false, false});
    PxCollegamentoDiretto collegamento([&](const QString& nome) { return ospite.Oggetto(nome); });
    PxSrvServer server(&collegamento);
    QSignalSpy collegato(&server, &PxSrvServer::Collegato);
    server.Connetti();
    EXPECT_EQ(collegato.size(), 1) << "the root is there before the server loads";
    EXPECT_EQ(server.Cartella(), QDir(mDir.path()).absolutePath());
    EXPECT_FALSE(server.Caricato());
    QSignalSpy caricamento(&server, &PxSrvServer::Caricamento);
    ospite.Avvia();
    ControllaConfine(server);
    ASSERT_FALSE(caricamento.isEmpty());
    EXPECT_EQ(caricamento.last()[0].toInt(), caricamento.last()[1].toInt()) << "the loading ends full";
    EXPECT_EQ(caricamento.last()[1].toInt(), 300);
    // Each source object lives on the server's thread, never on this one.
    EXPECT_NE(ospite.Oggetto(u"Cartella/PxSrvDocFax"_s)->thread(), QThread::currentThread());
}

TEST_F(ConfineServer, AcrossQtRemoteObjects)
{
    RefServer sorgente(mDir.path(), RefServer::Opzioni{false, true});
    const QUrl indirizzo(u"local:plx-confine-"_s + QString::number(QCoreApplication::applicationPid()));
    QRemoteObjectHost host(indirizzo);
    EXPECT_EQ(modRemoto::Pubblica(host, sorgente), sorgente.Nomi().size());
    PxCollegamentoRemoto collegamento(indirizzo);
    EXPECT_TRUE(collegamento.FileLocali()) << "a local socket: same machine";
    PxSrvServer server(&collegamento);
    QSignalSpy collegato(&server, &PxSrvServer::Collegato);
    server.Connetti();
    ASSERT_TRUE(collegato.wait(10000));
    EXPECT_EQ(server.Cartella(), sorgente.Cartella());
    EXPECT_EQ(server.Identificativo(), sorgente.Identificativo());
    ControllaConfine(server);
}

TEST_F(ConfineServer, EverySourceCarriesTheContractsSignalsAndSlots)
{
    RefServer server(mDir.path(), RefServer::Opzioni{false, true});
    using modContratto::Genere;
    const auto genere = [](const QString& nome) {
        if (nome == QLatin1StringView(modContratto::NomeServer)) return Genere::Server;
        if (nome == QLatin1StringView(modContratto::NomeBkgConsole)) return Genere::BkgConsole;
        if (nome == QLatin1StringView(modContratto::NomeUsoSistema)) return Genere::UsoSistema;
        if (nome.startsWith(u"Servizio/"_s)) return Genere::Servizio;
        if (nome.startsWith(u"Cartella/"_s)) return Genere::Cartella;
        return Genere::Catalogo;
    };
    int controllati = 0;
    for (const QString& nome : server.Nomi()) {
        const QMetaObject* meta = server.Oggetto(nome)->metaObject();
        const modContratto::Firme firme = modContratto::FirmeDi(genere(nome));
        for (const char* segnale : firme.Segnali)
            EXPECT_GE(meta->indexOfSignal(QMetaObject::normalizedSignature(segnale).constData()), 0) << qPrintable(nome) << " " << segnale;
        for (const char* slot : firme.Slot)
            EXPECT_GE(meta->indexOfSlot(QMetaObject::normalizedSignature(slot).constData()), 0) << qPrintable(nome) << " " << slot;
        ++controllati;
    }
    // The root, the worker, the sampler, every service, seven folders, two catalogues.
    EXPECT_EQ(controllati, 3 + static_cast<int>(modCatalogo::Voci().size()) + 7 + 2);
}

// The moves of a batch cross as one notice; bytes that do not read whole give nothing, so a
// console never applies half a batch or believes a count the bytes cannot hold.
TEST(Contratto, APackOfMovesReadsBackWholeOrNotAtAll)
{
    const std::vector<modContratto::Spostamento> mosse{
        {2, u"FAX-000001"_s, u"<D><F>FAX-000001</F><F>Fattura n° 7 — àèì</F></D>"_s}, {11, u"FAX-000002"_s, {}}};
    const QByteArray lotto = modContratto::ImpacchettaSpostamenti(mosse);
    const std::vector<modContratto::Spostamento> letti = modContratto::SpacchettaSpostamenti(lotto);
    ASSERT_EQ(letti.size(), 2u);
    for (size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(letti[i].Coda, mosse[i].Coda);
        EXPECT_EQ(letti[i].Id, mosse[i].Id);
        EXPECT_EQ(letti[i].Nodo, mosse[i].Nodo);
    }
    EXPECT_TRUE(modContratto::SpacchettaSpostamenti(lotto.chopped(1)).empty());
    EXPECT_TRUE(modContratto::SpacchettaSpostamenti(lotto + 'x').empty());
    EXPECT_TRUE(modContratto::SpacchettaSpostamenti({}).empty());
    QByteArray bugiardo = lotto;
    bugiardo[0] = '\x7f'; // a count of some two thousand million
    EXPECT_TRUE(modContratto::SpacchettaSpostamenti(bugiardo).empty());
}

TEST_F(ConfineServer, TheOutputFileAsBytesForAConsoleThatCannotReadThePath)
{
    RefServer server(mDir.path(), RefServer::Opzioni{false, true});
    RefCartellaDocumenti& fax = *server.Cartella(GenereCartella::Fax);
    const QString id = fax.Coda(8).value(0);
    QSignalSpy risposte(&fax, &RefCartellaDocumenti::Risposta);
    fax.FileOutput(1, id, false);
    fax.FileOutput(2, id, true);
    fax.FileOutput(3, u"FAX-999999"_s, true);
    ASSERT_EQ(risposte.size(), 3);
    EXPECT_EQ(risposte[0][2].toString(), fax.FileOutputDi(id));
    EXPECT_TRUE(risposte[0][3].toByteArray().isEmpty());
    QFile file(fax.FileOutputDi(id));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(risposte[1][3].toByteArray(), file.readAll());
    EXPECT_EQ(risposte[2][1].toInt(), modContratto::Rifiutato);
}
