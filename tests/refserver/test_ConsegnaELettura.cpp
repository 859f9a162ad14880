// What a console that does not share the server's files asks of it: a job handed to a service
// by request, written by the server into its input folder and taken from there by the folder's
// own code; and pieces of the server folder's files, nothing outside it.
#include "ServerSenzaFile.h"
#include "PxCollegamento.h"
#include "PxCollegamentoRemoto.h"
#include "PxIntestazioneHpx.h"
#include "PxLetturaFile.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"
#include "RefCartellaDocumenti.h"
#include "RefIngresso.h"
#include "RefServer.h"
#include "RefServizio.h"
#include "modDemo.h"
#include "modPacchettoLavoro.h"
#include "modRemoto.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRemoteObjectHost>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

bool Attendi(const std::function<bool()>& c) { return QTest::qWaitFor(c, 10000); }

// The console's side, as one on another machine.
class ConsegnaELettura : public ServerSenzaFile
{
protected:
    static QByteArray Intestazione()
    {
        PxIntestazioneHpx h;
        h.ScriviIntero({}, u"Tipo"_s, 1);
        h.ScriviTesto(u"PROPRIETA"_s, u"Descrizione"_s, u"Fax consegnato"_s);
        h.ScriviTesto(u"FAX"_s, u"NumeroFax"_s, u"5551234"_s);
        return h.Serializza();
    }

    // The answer to a request made through the console's side.
    PxRisposta Consegna(const QString& servizio, const QString& base, const QByteArray& file)
    {
        PxRisposta risposta{-1, {}, {}};
        mClient->Servizio(servizio)->ConsegnaLavoro(base, file, nullptr, [&](const PxRisposta& r) { risposta = r; });
        EXPECT_TRUE(Attendi([&] { return risposta.Esito != -1; }));
        return risposta;
    }

    PxRisposta Leggi(const QString& percorso, qint64 inizio = 0, qint32 quanti = 1024)
    {
        PxRisposta risposta{-1, {}, {}};
        mClient->LeggiFile(percorso, inizio, quanti, nullptr, [&](const PxRisposta& r) { risposta = r; });
        EXPECT_TRUE(Attendi([&] { return risposta.Esito != -1; }));
        return risposta;
    }

    QString Scrivi(const QString& relativo, const QByteArray& dati) const
    {
        const QString file = QDir(mDir.path()).filePath(relativo);
        QDir().mkpath(QFileInfo(file).path());
        QFile f(file);
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(dati);
        return file;
    }

    QStringList Ingresso(const QString& servizio) const
    {
        return QDir(mServer->Ingresso(servizio)->Cartella()).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    }
};

} // namespace

TEST_F(ConsegnaELettura, AJobHandedOverIsTakenByTheInputFolderFromItsFiles)
{
    const QByteArray corpo = "Prima riga\r\nSeconda riga\r\n";
    const QByteArray pacchetto = modPacchettoLavoro::Componi({{".bpx", corpo}, {".hpx", Intestazione()}});
    QSignalSpy presi(mClient->Servizio(u"PxSrvFax"_s), &PxSrvServizio::LavoroPreso);
    const PxRisposta prima = Consegna(u"PxSrvFax"_s, u"Prova fax"_s, pacchetto);
    ASSERT_EQ(prima.Esito, modContratto::Ok) << qPrintable(prima.Testo);
    EXPECT_EQ(prima.Testo, u"Prova fax"_s);
    // A job of the same name still waits: the second one gets a free name, nothing is replaced.
    const PxRisposta seconda = Consegna(u"PxSrvFax"_s, u"Prova fax"_s, pacchetto);
    ASSERT_EQ(seconda.Esito, modContratto::Ok) << qPrintable(seconda.Testo);
    EXPECT_EQ(seconda.Testo, u"Prova fax (2)"_s);
    EXPECT_EQ(Ingresso(u"PxSrvFax"_s), (QStringList{u"Prova fax (2).bpx"_s, u"Prova fax (2).hpx"_s, u"Prova fax.bpx"_s,
                                                     u"Prova fax.hpx"_s}))
        << "no temporary file left";

    // The folder's own code reads the files the server wrote.
    EXPECT_EQ(mServer->Ingresso(u"PxSrvFax"_s)->Scansiona(), 2);
    ASSERT_TRUE(Attendi([&] { return presi.size() == 2; }));
    QStringList basi{presi[0][0].toString(), presi[1][0].toString()};
    basi.sort();
    EXPECT_EQ(basi, (QStringList{u"Prova fax"_s, u"Prova fax (2)"_s}));
    const RefCartellaDocumenti* fax = mServer->CartellaRef(u"PxSrvDocFax"_s);
    const DatiDocumento* d = fax->Trova(presi[0][1].toString());
    ASSERT_NE(d, nullptr);
    QFile letto(QDir(fax->CartellaDi(*d)).filePath(d->FileCorpo));
    ASSERT_TRUE(letto.open(QIODevice::ReadOnly));
    EXPECT_EQ(letto.readAll(), corpo);
    EXPECT_TRUE(Ingresso(u"PxSrvFax"_s).isEmpty());
}

TEST_F(ConsegnaELettura, TheServerRefusesWhatIsNotAJobOrNotAPlainName)
{
    const QByteArray buono = modPacchettoLavoro::Componi({{".bpx", "c"}, {".hpx", Intestazione()}});
    for (const QString& nome : {u"../fuori"_s, u"sotto/cartella"_s, u"a..b"_s, u".nascosto"_s, u"con\\barra"_s, u""_s,
                                u"riga\nnuova"_s, QString(300, u'x')}) {
        const PxRisposta r = Consegna(u"PxSrvFax"_s, nome, buono);
        EXPECT_EQ(r.Esito, modContratto::Rifiutato) << qPrintable(nome);
    }
    EXPECT_EQ(Consegna(u"PxSrvFax"_s, u"rotto"_s, buono.chopped(1)).Esito, modContratto::Rifiutato);
    EXPECT_EQ(Consegna(u"PxSrvFax"_s, u"vuoto"_s, {}).Esito, modContratto::Rifiutato);
    QByteArray estraneo = buono;
    estraneo.replace(".bpx", ".exe");
    EXPECT_TRUE(Consegna(u"PxSrvFax"_s, u"estraneo"_s, estraneo).Testo.contains(u"estensione"_s));
    // Over the limit: the form is right, the size is not.
    QByteArray grande = modPacchettoLavoro::Componi({{".bpx", QByteArray(modContratto::MassimoLavoro - 1, 'x')}, {".hpx", "h"}});
    ASSERT_FALSE(grande.isEmpty());
    grande.replace(grande.size() - 5, 5, QByteArray::fromHex("0000000268") + QByteArray("h"));
    const PxRisposta troppo = Consegna(u"PxSrvFax"_s, u"grande"_s, grande);
    EXPECT_EQ(troppo.Esito, modContratto::Rifiutato);
    EXPECT_TRUE(troppo.Testo.contains(u"massimo"_s)) << qPrintable(troppo.Testo);
    // A worker has no input folder.
    EXPECT_EQ(Consegna(u"PxSrvTifVm"_s, u"lavoro"_s, buono).Esito, modContratto::Rifiutato);
    EXPECT_TRUE(Ingresso(u"PxSrvFax"_s).isEmpty());
    EXPECT_TRUE(QDir(mDir.path()).entryList({u"fuori*"_s}).isEmpty());
}

TEST_F(ConsegnaELettura, AFileIsReadInPiecesWithItsSizeAndIdentity)
{
    const QString file = Scrivi(u"Log/prova.log"_s, "0123456789");
    PxLetturaFile l;
    ASSERT_TRUE(l.Da(Leggi(u"Log/prova.log"_s, 2, 3)));
    EXPECT_EQ(l.Dati, "234");
    EXPECT_EQ(l.Inizio, 2);
    EXPECT_EQ(l.Dimensione, 10);
    const QString identita = l.Identita;
    // An absolute path as the server names it; the tail; a start past the end.
    ASSERT_TRUE(l.Da(Leggi(file, -4, 100)));
    EXPECT_EQ(l.Dati, "6789");
    EXPECT_EQ(l.Inizio, 6);
    ASSERT_TRUE(l.Da(Leggi(file, 50)));
    EXPECT_TRUE(l.Dati.isEmpty());
    EXPECT_EQ(l.Inizio, 10);
    // Another file under the name is told apart.
    ASSERT_TRUE(QFile::rename(file, file + u".1"_s));
    Scrivi(u"Log/prova.log"_s, "0123456789");
    ASSERT_TRUE(l.Da(Leggi(file)));
    EXPECT_NE(l.Identita, identita);
    // One answer carries at most MassimoLettura bytes.
    Scrivi(u"grande.bin"_s, QByteArray(modContratto::MassimoLettura + 10, 'g'));
    ASSERT_TRUE(l.Da(Leggi(u"grande.bin"_s, 0, std::numeric_limits<qint32>::max())));
    EXPECT_EQ(l.Dati.size(), modContratto::MassimoLettura);
    EXPECT_EQ(l.Dimensione, modContratto::MassimoLettura + 10);
}

TEST_F(ConsegnaELettura, NothingOutsideTheServerFolderNorAnythingButARegularFileIsRead)
{
    QTemporaryDir fuori;
    QFile segreto(QDir(fuori.path()).filePath(u"segreto.txt"_s));
    ASSERT_TRUE(segreto.open(QIODevice::WriteOnly));
    segreto.write("segreto");
    segreto.close();
    Scrivi(u"Log/dentro.log"_s, "dentro");
    ASSERT_TRUE(QFile::link(segreto.fileName(), QDir(mDir.path()).filePath(u"Log/collegamento.log"_s)));
    ASSERT_TRUE(QFile::link(u"/dev/zero"_s, QDir(mDir.path()).filePath(u"Log/zero.log"_s)));
    const QString fifo = QDir(mDir.path()).filePath(u"Log/tubo.log"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);

    const std::vector<QString> rifiutati{
        segreto.fileName(),                      // absolute, outside
        u"../"_s + QFileInfo(mDir.path()).fileName() + u"/Log/dentro.log"_s, // a ".." step, even back inside
        u"Log/../Log/dentro.log"_s,
        u"Log/collegamento.log"_s,               // a link leading out
        u"Log/zero.log"_s,                       // a device behind a link
        u"Log/tubo.log"_s,                       // a pipe: never opened to wait on
        u"Log"_s,                                // a folder
        u"Log/manca.log"_s,
        u""_s,
        u"/etc/passwd"_s,
    };
    for (const QString& p : rifiutati) {
        const PxRisposta r = Leggi(p);
        EXPECT_EQ(r.Esito, modContratto::Rifiutato) << qPrintable(p);
        EXPECT_TRUE(r.Dati.isEmpty()) << qPrintable(p);
    }
    EXPECT_EQ(Leggi(u"Log/dentro.log"_s, 0, -1).Esito, modContratto::Rifiutato) << "a negative length";
    const PxRisposta dentro = Leggi(u"Log/dentro.log"_s);
    EXPECT_EQ(dentro.Esito, modContratto::Ok);
    EXPECT_EQ(dentro.Dati, "dentro");
    // A link that stays inside is followed.
    ASSERT_TRUE(QFile::link(QDir(mDir.path()).filePath(u"Log/dentro.log"_s), QDir(mDir.path()).filePath(u"Log/alias.log"_s)));
    EXPECT_EQ(Leggi(u"Log/alias.log"_s).Dati, "dentro");
}

TEST_F(ConsegnaELettura, TheInstallationsSettingsComeThroughTheServer)
{
    Scrivi(u"PlxConfigurazione.ini"_s, "[Console]\r\nEstenzioneFileZip=.zip\r\n");
    PxSrvServer altro(mCollegamento.get());
    altro.Connetti();
    ASSERT_TRUE(Attendi([&] { return altro.Caricato(); }));
    EXPECT_EQ(altro.Configurazione().Stringa(u"Console"_s, u"EstenzioneFileZip"_s, {}, 100), u".zip"_s);
}

TEST_F(ConsegnaELettura, BothRequestsCrossQtRemoteObjects)
{
    const QUrl indirizzo(u"local:plx-consegna-"_s + QString::number(QCoreApplication::applicationPid()));
    QRemoteObjectHost host(indirizzo);
    ASSERT_EQ(modRemoto::Pubblica(host, *mServer), mServer->Nomi().size());
    PxCollegamentoRemoto remoto(indirizzo);
    PxSrvServer console(&remoto);
    console.Connetti();
    ASSERT_TRUE(Attendi([&] { return console.Caricato(); }));

    // A body of every byte value and a 64-bit offset arrive as they were sent.
    QByteArray corpo;
    for (int i = 0; i < 256; ++i)
        corpo += static_cast<char>(i);
    const QString file = Scrivi(u"Log/binario.bin"_s, corpo);
    PxRisposta letta{-1, {}, {}};
    console.LeggiFile(file, 200, 1000, nullptr, [&](const PxRisposta& r) { letta = r; });
    ASSERT_TRUE(Attendi([&] { return letta.Esito != -1; }));
    PxLetturaFile pezzo;
    ASSERT_TRUE(pezzo.Da(letta)) << qPrintable(letta.Testo);
    EXPECT_EQ(pezzo.Dati, corpo.mid(200));
    EXPECT_EQ(pezzo.Dimensione, 256);

    QSignalSpy presi(console.Servizio(u"PxSrvFax"_s), &PxSrvServizio::LavoroPreso);
    PxRisposta consegnata{-1, {}, {}};
    console.Servizio(u"PxSrvFax"_s)
        ->ConsegnaLavoro(u"Da lontano"_s, modPacchettoLavoro::Componi({{".bpx", corpo}, {".hpx", Intestazione()}}), nullptr,
                         [&](const PxRisposta& r) { consegnata = r; });
    ASSERT_TRUE(Attendi([&] { return consegnata.Esito != -1; }));
    ASSERT_EQ(consegnata.Esito, modContratto::Ok) << qPrintable(consegnata.Testo);
    EXPECT_EQ(mServer->Ingresso(u"PxSrvFax"_s)->Scansiona(), 1);
    ASSERT_TRUE(Attendi([&] { return !presi.isEmpty(); }));
    EXPECT_EQ(presi[0][0].toString(), u"Da lontano"_s);
}

TEST_F(ConsegnaELettura, AWholeFileComesInPiecesUpToItsLimit)
{
    QByteArray dati(modContratto::MassimoLettura * 2 + 123, Qt::Uninitialized);
    for (qsizetype i = 0; i < dati.size(); ++i)
        dati[i] = static_cast<char>(i * 7);
    Scrivi(u"Documenti/grande.pdf"_s, dati);
    const auto tutto = [&](qint64 massimo) {
        PxRisposta risposta{-1, {}, {}};
        mClient->LeggiTutto(u"Documenti/grande.pdf"_s, massimo, nullptr, [&](const PxRisposta& r) { risposta = r; });
        EXPECT_TRUE(Attendi([&] { return risposta.Esito != -1; }));
        return risposta;
    };
    const PxRisposta intero = tutto(dati.size());
    ASSERT_EQ(intero.Esito, modContratto::Ok) << qPrintable(intero.Testo);
    EXPECT_TRUE(intero.Dati == dati);
    const PxRisposta oltre = tutto(dati.size() - 1);
    EXPECT_EQ(oltre.Esito, modContratto::Rifiutato);
    EXPECT_TRUE(oltre.Dati.isEmpty());
}
