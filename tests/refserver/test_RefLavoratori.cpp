#include "PxIntestazioneHpx.h"
#include "RefCartellaDocumenti.h"
#include "RefIngresso.h"
#include "RefLavoratori.h"
#include "RefServer.h"
#include "modCartelle.h"
#include "modDemo.h"
#include "modDemoErrori.h"
#include "modProprieta.h"

#include "Coerenza.h"
#include "Selezione.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QHash>
#include <QTemporaryDir>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// The queues a document stays in: done, rejected, discarded. Every other queue is a stage.
bool Finale(const modCartelle::Definizione& def, qint32 coda)
{
    return coda == def.CodaRespinti - 1 || coda == def.CodaRespinti || coda == def.CodaScartati;
}

class Lavoratori : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(modDemo::CreaServerDemo(mDir.path(), 300), QString());
        mServer = std::make_unique<RefServer>(mDir.path(), RefServer::Opzioni{false});
        L().ImpostaSeme(11);
    }
    RefLavoratori& L() const { return mServer->Lavoratori(); }
    RefCartellaDocumenti& Fax() const { return *mServer->Cartella(GenereCartella::Fax); }

    // Drops one job into every input folder, fit for any kind, and lets the folders take it.
    void NuoviLavori(int giro)
    {
        for (const modCartelle::Definizione& def : modCartelle::Cartelle()) {
            RefIngresso* ingresso = mServer->Ingresso(QString::fromLatin1(def.Servizio));
            ASSERT_NE(ingresso, nullptr) << def.Servizio;
            PxIntestazioneHpx h;
            h.ScriviIntero({}, u"Tipo"_s, 2);
            h.ScriviTesto(u"PROPRIETA"_s, u"Descrizione"_s, QStringLiteral("Lavoro %1").arg(giro));
            h.ScriviTesto(u"STAMPA"_s, u"Stampante"_s, u"Laser amministrazione"_s);
            h.ScriviTesto(u"EMAIL"_s, u"A"_s, u"ufficio@cliente.it"_s);
            h.ScriviTesto(u"FAX"_s, u"NumeroFax"_s, u"5551234"_s);
            const QString base = ingresso->Cartella() + QStringLiteral("/lavoro-%1").arg(giro);
            {
                QFile f(base + u".bpx"_s);
                ASSERT_TRUE(f.open(QIODevice::WriteOnly));
                f.write("Riga\r\n");
            }
            {
                QFile f(base + u".hpx"_s);
                ASSERT_TRUE(f.open(QIODevice::WriteOnly));
                f.write(h.Serializza());
            }
            ASSERT_EQ(ingresso->Scansiona(), 1) << def.Servizio;
        }
    }

    // "<folder> <queue caption>: <count>" for every stage queue that holds documents.
    QStringList NonVuote() const
    {
        QStringList piene;
        for (const modCartelle::Definizione& def : modCartelle::Cartelle()) {
            const RefCartellaDocumenti& c = *mServer->CartellaRef(QString::fromLatin1(def.Chiave));
            for (qint32 coda = 0; coda < def.NumeroCode; ++coda)
                if (!Finale(def, coda) && c.Conteggio(coda) > 0)
                    piene << QStringLiteral("%1 \"%2\": %3")
                                 .arg(QString::fromLatin1(def.Chiave), modProprieta::DescrizioneCoda(def.Genere, coda))
                                 .arg(c.Conteggio(coda));
        }
        return piene;
    }

    QTemporaryDir mDir;
    std::unique_ptr<RefServer> mServer;
};

} // namespace

TEST_F(Lavoratori, EveryQueueDocumentsEnterDrainsOnceTheInputStops)
{
    L().ImpostaPercentualeRespinti(5);
    L().ImpostaPerPasso(3);
    for (int giro = 0; giro < 12; ++giro) {
        NuoviLavori(giro);
        L().Lavora();
    }
    ASSERT_FALSE(NonVuote().isEmpty());
    // Bounded: at three a tick, the fullest queue and the longest chain of stages, with retries.
    for (int tick = 0; tick < 400 && !NonVuote().isEmpty(); ++tick)
        L().Lavora();
    EXPECT_EQ(NonVuote(), QStringList()) << "queues no worker empties";
    for (const modCartelle::Definizione& def : modCartelle::Cartelle())
        ControllaCoerenza(*mServer->CartellaRef(QString::fromLatin1(def.Chiave)));
}

TEST_F(Lavoratori, ATransmissionRetriedCountsEachAttemptAndGivesUpAtItsLast)
{
    // Plenty of faxes about to go out, and a line that never works.
    ASSERT_TRUE(Fax().SpostaSelezione(Selezione(Fax().Coda(8)), 2).Riuscita());
    QHash<QString, qint32> tentativi;
    for (const qint32 coda : {2, 3})
        for (const QString& id : Fax().Coda(coda))
            tentativi.insert(id, Fax().Trova(id)->Tentativi);
    ASSERT_GE(tentativi.size(), 40);
    L().ImpostaPercentualeRespinti(100);
    L().ImpostaPerPasso(1000);
    const qint32 massimo = modDemoErrori::TentativiPredefiniti; // the demo's fax line says 3 too
    int ripetuti = 0;
    for (int tick = 0; tick < 60; ++tick) {
        QHash<QString, qint32> inUscita;
        for (auto it = tentativi.cbegin(); it != tentativi.cend(); ++it)
            inUscita.insert(it.key(), Fax().Trova(it.key())->Coda);
        L().Lavora();
        bool attesa = false;
        for (auto it = tentativi.begin(); it != tentativi.end(); ++it) {
            const DatiDocumento& d = *Fax().Trova(it.key());
            // Only a pass through the transmission counts, and it counts once.
            const qint32 atteso = inUscita.value(it.key()) == 3 ? it.value() + 1 : it.value();
            EXPECT_EQ(d.Tentativi, atteso) << qPrintable(d.Id);
            if (d.Coda == 2 && d.Tentativi > it.value()) {
                EXPECT_EQ(d.Stato, RefLavoratori::StatoNuovoTentativo(d.Tentativi, massimo));
                ++ripetuti;
            }
            it.value() = d.Tentativi;
            attesa = attesa || d.Coda == 2 || d.Coda == 3;
        }
        if (!attesa)
            break;
    }
    int conNumero = 0;
    for (auto it = tentativi.cbegin(); it != tentativi.cend(); ++it) {
        const DatiDocumento& d = *Fax().Trova(it.key());
        ASSERT_TRUE(d.Coda == 9 || d.Coda == 10) << qPrintable(d.Id) << " still in queue " << d.Coda;
        EXPECT_GE(d.Tentativi, 1);
        const qint32 nominati = modDemoErrori::TentativiNelTesto(d.Errore);
        if (nominati >= 0) {
            EXPECT_EQ(nominati, d.Tentativi) << qPrintable(d.Errore);
            EXPECT_GE(d.Tentativi, massimo) << "a passing fault rejects only after the last attempt";
            ++conNumero;
        }
        // What the document's description says, too.
        EXPECT_TRUE(Fax().DocumentoXml(d.Id).contains(QStringLiteral("<TentativiEffettuati>%1</TentativiEffettuati>").arg(d.Tentativi)));
    }
    EXPECT_GT(ripetuti, 0) << "some busy lines were tried again";
    EXPECT_GT(conNumero, 0) << "some faxes were rejected after every attempt";
    ControllaCoerenza(Fax());
}

TEST_F(Lavoratori, ASuccessfulTransmissionCountsItsAttempt)
{
    L().ImpostaPercentualeRespinti(0);
    L().ImpostaPerPasso(1000);
    const QStringList inUscita = Fax().Coda(3);
    ASSERT_FALSE(inUscita.isEmpty());
    QHash<QString, qint32> prima;
    for (const QString& id : inUscita)
        prima.insert(id, Fax().Trova(id)->Tentativi);
    L().Lavora();
    for (const QString& id : inUscita) {
        EXPECT_EQ(Fax().Trova(id)->Coda, 12) << qPrintable(id) << " waits for its confirmation";
        EXPECT_EQ(Fax().Trova(id)->Tentativi, prima.value(id) + 1) << qPrintable(id);
    }
}

TEST_F(Lavoratori, AWorkerRejectsWithItsOwnErrors)
{
    L().ImpostaPercentualeRespinti(100);
    L().ImpostaPerPasso(1000);
    // Who holds each document now: the rejecting stage that will take it this tick.
    struct Atteso
    {
        RefCartellaDocumenti* Cartella;
        const modCartelle::Passo* Passo;
    };
    QHash<QString, Atteso> attesi;
    for (const modCartelle::Definizione& def : modCartelle::Cartelle()) {
        RefCartellaDocumenti* c = mServer->CartellaRef(QString::fromLatin1(def.Chiave));
        for (const modCartelle::Passo& p : def.Passi)
            if (p.PuoRespingere)
                for (const QString& id : c->Coda(p.Da))
                    attesi.insert(id, {c, &p});
    }
    ASSERT_GT(attesi.size(), 10);
    L().Lavora();
    int respinti = 0;
    for (auto it = attesi.cbegin(); it != attesi.cend(); ++it) {
        const DatiDocumento& d = *it->Cartella->Trova(it.key());
        const modCartelle::Definizione& def = it->Cartella->Definizione();
        if (d.Coda != def.CodaRespinti && d.Coda != def.CodaScartati)
            continue; // a busy line, to be tried again
        bool suo = false;
        for (const modDemoErrori::Errore& e : modDemoErrori::Di(QString::fromLatin1(it->Passo->Lavoratore)))
            suo = suo || (e.Codice == d.CodiceErrore && modDemoErrori::Testo(e, d.Tentativi) == d.Errore);
        EXPECT_TRUE(suo) << qPrintable(d.Id) << " rejected by " << it->Passo->Lavoratore << " with \"" << qPrintable(d.Errore) << "\"";
        ++respinti;
    }
    EXPECT_GT(respinti, 10);
}
