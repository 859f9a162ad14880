// The server stopped dead at every step of taking a job and of moving a document: a child
// process runs the step and ends itself (_exit, no clean-up) just before the Nth file
// operation; the next start must find every job either taken whole or waiting whole, every
// document in exactly one queue, and nothing half-made.
#include "../refserver/Coerenza.h"
#include "PxIntestazioneHpx.h"
#include "RefCartellaDocumenti.h"
#include "RefIngresso.h"
#include "RefServer.h"
#include "modDemo.h"
#include "modDisco.h"
#include "modProprieta.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <functional>

#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// Ends the process, as a power cut would, when the Nth operation is about to run.
class OperazioniMortali : public modDisco::Operazioni
{
public:
    explicit OperazioniMortali(int muoriAl) : mMuoriAl(muoriAl) {}
    int Apri(const char* p, int f, mode_t m) override { Passo(); return Operazioni::Apri(p, f, m); }
    ssize_t Scrivi(int fd, const char* d, size_t n) override { Passo(); return Operazioni::Scrivi(fd, d, n); }
    int Sincronizza(int fd) override { Passo(); return Operazioni::Sincronizza(fd); }
    int SincronizzaTutto(int fd) override { Passo(); return Operazioni::SincronizzaTutto(fd); }
    int Chiudi(int fd) override { Passo(); return Operazioni::Chiudi(fd); }
    int Rinomina(const char* da, const char* a, bool s) override { Passo(); return Operazioni::Rinomina(da, a, s); }
    int Scambia(const char* a, const char* b) override { Passo(); return Operazioni::Scambia(a, b); }
    int CreaCartella(const char* p, mode_t m) override { Passo(); return Operazioni::CreaCartella(p, m); }

private:
    void Passo()
    {
        if (++mChiamate == mMuoriAl)
            ::_exit(0);
    }
    int mMuoriAl;
    int mChiamate = 0;
};

// Runs `lavoro` in a child that dies at operation `passo`; true when it died there, false
// when the work ended before reaching it.
bool MuoreAl(int passo, const std::function<void()>& lavoro)
{
    const pid_t figlio = ::fork();
    if (figlio == 0) {
        OperazioniMortali mortali(passo);
        modDisco::ImpostaOperazioni(&mortali);
        lavoro();
        ::_exit(1);
    }
    int stato = 0;
    ::waitpid(figlio, &stato, 0);
    EXPECT_TRUE(WIFEXITED(stato)) << "the child crashed on its own at step " << passo;
    return WIFEXITED(stato) && WEXITSTATUS(stato) == 0;
}

QByteArray Leggi(const QString& file)
{
    QFile f(file);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// The queue a document's description on disk names; -1 when it cannot be read.
int CodaDescritta(const RefCartellaDocumenti& cartella, const QString& id)
{
    const QByteArray testo = Leggi(cartella.CartellaDocumentoDi(id) + u'/' + id + u".xml"_s);
    pugi::xml_document doc;
    DatiDocumento letto;
    if (!doc.load_buffer(testo.constData(), static_cast<size_t>(testo.size())) || !modProprieta::Leggi(doc.document_element(), letto))
        return -1;
    return letto.Coda;
}

} // namespace

TEST(ArrestiImprovvisi, AJobIsTakenWholeOrWaitsWholeWhereverTheServerStops)
{
    PxIntestazioneHpx h;
    h.ScriviIntero({}, u"Tipo"_s, 2);
    h.ScriviTesto(u"PROPRIETA"_s, u"Descrizione"_s, u"Fax interrotto"_s);
    h.ScriviTesto(u"FAX"_s, u"NumeroFax"_s, u"5551234"_s);
    int passo = 1;
    for (bool morto = true; morto; ++passo) {
        QTemporaryDir dir;
        ASSERT_EQ(modDemo::CreaServerDemo(dir.path(), 0), QString());
        ASSERT_TRUE(QDir().mkpath(dir.filePath(u"Ingresso/PxSrvFax"_s)));
        const QString base = dir.filePath(u"Ingresso/PxSrvFax/lavoro"_s);
        for (const auto& [estensione, dati] : {std::pair{u".spx"_s, QByteArray("<PLX/>")}, std::pair{u".bpx"_s, QByteArray("corpo")},
                                               std::pair{u".hpx"_s, h.Serializza()}}) {
            QFile f(base + estensione);
            ASSERT_TRUE(f.open(QIODevice::WriteOnly));
            f.write(dati);
        }
        morto = MuoreAl(passo, [&] {
            RefServer server(dir.path(), RefServer::Opzioni{false, true});
            server.Ingresso(u"PxSrvFax"_s)->Scansiona();
        });
        // The next start, and one more look at the input folder.
        RefServer server(dir.path(), RefServer::Opzioni{false, true});
        server.Ingresso(u"PxSrvFax"_s)->Scansiona();
        RefCartellaDocumenti& fax = *server.Cartella(GenereCartella::Fax);
        ASSERT_EQ(fax.Totale(), 1) << "step " << passo;
        const QString id = fax.Coda(0).value(0);
        EXPECT_EQ(Leggi(fax.CartellaDocumentoDi(id) + u'/' + id + u".bpx"_s), QByteArray("corpo")) << "step " << passo;
        EXPECT_TRUE(QDir(dir.filePath(u"Ingresso/PxSrvFax"_s)).isEmpty()) << "step " << passo;
        EXPECT_TRUE(QDir(dir.filePath(u"LavoriRespinti/PxSrvFax"_s)).isEmpty()) << "step " << passo << ": split or set aside";
        ControllaCoerenza(fax);
    }
    EXPECT_GT(passo, 12) << "every operation of taking a job was a stopping point";
}

namespace {

// Moves `quanti` fax documents from queue 8 to queue 2 with `sposta`, in a child that dies at
// step 1, 2, ... until the moves run through; after each death, each document must be in one
// of the two queues, with a description that agrees (never a half-written one). The number of
// steps the child died at.
int ArrestiDuranteGliSpostamenti(int quanti, const std::function<void(RefCartellaDocumenti&, const QStringList&)>& sposta)
{
    QTemporaryDir dir;
    EXPECT_EQ(modDemo::CreaServerDemo(dir.path(), 200), QString());
    int passo = 1;
    for (bool morto = true; morto; ++passo) {
        QStringList id;
        {
            RefServer server(dir.path(), RefServer::Opzioni{false, true});
            RefCartellaDocumenti& fax = *server.Cartella(GenereCartella::Fax);
            for (const QString& i : fax.Coda(2)) // back where they started, for this step
                fax.Sposta(i, 8);
            id = fax.Coda(8, quanti);
        }
        if (id.size() != quanti) {
            ADD_FAILURE() << "the demo has too few documents in queue 8";
            return 0;
        }
        morto = MuoreAl(passo, [&] {
            RefServer server(dir.path(), RefServer::Opzioni{false, true});
            sposta(*server.Cartella(GenereCartella::Fax), id);
        });
        RefServer server(dir.path(), RefServer::Opzioni{false, true});
        RefCartellaDocumenti& fax = *server.Cartella(GenereCartella::Fax);
        ControllaCoerenza(fax);
        for (const QString& i : id) {
            const DatiDocumento* d = fax.Trova(i);
            if (!d) {
                ADD_FAILURE() << "step " << passo << ": " << qPrintable(i) << " lost";
                continue;
            }
            EXPECT_TRUE(d->Coda == 8 || d->Coda == 2) << "step " << passo;
            EXPECT_EQ(CodaDescritta(fax, i), d->Coda) << "step " << passo << ": the description agrees with the queue";
        }
    }
    return passo;
}

} // namespace

TEST(ArrestiImprovvisi, ADocumentIsInExactlyOneQueueWhereverAMoveStops)
{
    const int passi = ArrestiDuranteGliSpostamenti(1, [](RefCartellaDocumenti& fax, const QStringList& id) {
        fax.SpostaSelezione(u"<Root><ID>"_s + id[0] + u"</ID></Root>"_s, 2);
    });
    EXPECT_GT(passi, 4);
}

// The same for moves consoles ask together, which share their syncs and write each new
// description into a spare.
TEST(ArrestiImprovvisi, MovesAskedTogetherLeaveEachDocumentInOneQueueWhereverTheBatchStops)
{
    const int passi = ArrestiDuranteGliSpostamenti(3, [](RefCartellaDocumenti& fax, const QStringList& id) {
        for (int i = 0; i < 3; ++i)
            fax.SpostaDocumenti(static_cast<quint64>(i), u"<Root><ID>"_s + id[i] + u"</ID></Root>"_s, 2);
        QCoreApplication::processEvents();
    });
    EXPECT_GT(passi, 8) << "every operation of the batch was a stopping point";
}
