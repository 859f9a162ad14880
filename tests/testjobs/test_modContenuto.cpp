#include "PxConsoleResDll.h"
#include "RefCartellaDocumenti.h"
#include "RefIngresso.h"
#include "RefServer.h"
#include "modContenuto.h"
#include "modCp1252.h"
#include "modDemo.h"
#include "DiscoGuasto.h"
#include "modLavoro.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <pugixml.hpp>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

// A Monday: the weekday's accent shows what each layout does with it.
const QDateTime Lunedi(QDate(2026, 11, 23), QTime(9, 5, 7));

QString Stampante(int codice, const QString& nome = u"Laser amministrazione"_s, bool margini = true)
{
    return uR"(<Stampante><NumeroTarquel>4</NumeroTarquel><NomeStampanteWindows>%1</NomeStampanteWindows>
<Modello><Codice>%2</Codice></Modello><InfoStampante><DriverName>HP LaserJet 4250 PCL6</DriverName>
<PortName>IP_192.168.10.41</PortName></InfoStampante>%3</Stampante>)"_s
        .arg(nome.toHtmlEscaped())
        .arg(codice)
        .arg(margini ? u"<Margini><Superiore>5</Superiore><Sinistro>4</Sinistro><Destro>4</Destro><Inferiore>6</Inferiore></Margini>"_s
                     : QString());
}

std::optional<modContenuto::Lavoro> Lavoro(const QString& xml, QString* errore = nullptr)
{
    static const PxConsoleResDll testi;
    pugi::xml_document doc;
    const QByteArray t = xml.toUtf8();
    doc.load_buffer(t.constData(), static_cast<size_t>(t.size()));
    return modContenuto::PaginaDiProva(doc.document_element(), testi, Lunedi, errore);
}

QByteArray Leggi(const QString& file)
{
    QFile f(file);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// The expected outputs are files of tests/data/paginadiprova; PLX_AGGIORNA_ORO=1 rewrites them.
void ComeOro(const QByteArray& dati, const char* nome)
{
    const QString file = QStringLiteral(PLX_DATI_TEST "/paginadiprova/") + QLatin1StringView(nome);
    if (qEnvironmentVariableIsSet("PLX_AGGIORNA_ORO")) {
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(dati);
    }
    EXPECT_EQ(dati, Leggi(file)) << nome;
}

TEST(PaginaDiProva, EachPrinterLanguageAsItsGoldenFile)
{
    const auto testo = Lavoro(Stampante(0));
    ASSERT_TRUE(testo);
    ComeOro(testo->Corpo, "testo.bpx");
    ComeOro(testo->Script, "testo.spx");
    ComeOro(testo->Intestazione.Serializza(), "testo.hpx");
    for (const auto& [codice, nome] : {std::pair{1, "dpl.bpx"}, {2, "zpl.bpx"}, {8, "epl2.bpx"}, {10, "tec.bpx"}}) {
        const auto etichetta = Lavoro(Stampante(codice));
        ASSERT_TRUE(etichetta) << nome;
        ComeOro(etichetta->Corpo, nome);
        EXPECT_TRUE(etichetta->Script.isEmpty()) << "labels have no page script";
    }
    // Codes 6, 7 and 12 are text pages too.
    for (const int codice : {6, 7, 12})
        EXPECT_EQ(Lavoro(Stampante(codice))->Corpo, testo->Corpo) << codice;
}

TEST(PaginaDiProva, TheDateKeepsItsAccentOnlyOnTheTextPage)
{
    EXPECT_EQ(modContenuto::TestoData(Lunedi), u"lunedì 23 novembre 2026 09.05.07"_s);
    EXPECT_EQ(modContenuto::MaiuscoleIniziali(modContenuto::TestoData(Lunedi)), u"Lunedì 23 Novembre 2026 09.05.07"_s);
    const QString testo = modCp1252::Decodifica(Lavoro(Stampante(0))->Corpo);
    const QStringList righe = testo.split(u"\r\n"_s);
    EXPECT_EQ(righe.value(1), QString(80 - 32, u' ') + u"Lunedì 23 Novembre 2026 09.05.07"_s);
    EXPECT_EQ(righe.value(1).size(), 80);
    for (const int codice : {1, 2, 8, 10}) {
        const QString etichetta = modCp1252::Decodifica(Lavoro(Stampante(codice))->Corpo);
        EXPECT_TRUE(etichetta.contains(u"lunedi 23 novembre 2026 09.05.07"_s)) << codice;
        EXPECT_FALSE(etichetta.contains(u'ì')) << codice;
    }
    // Every line ends CR LF, the last one too.
    EXPECT_TRUE(testo.endsWith(u"\r\n"_s));
    EXPECT_FALSE(testo.contains(QRegularExpression(u"[^\r]\n"_s)));
}

TEST(PaginaDiProva, AnotherCodeGetsAHeaderAndNothingElseAMissingMarginNoJob)
{
    const auto altro = Lavoro(Stampante(5));
    ASSERT_TRUE(altro);
    EXPECT_TRUE(altro->Corpo.isEmpty());
    EXPECT_TRUE(altro->Script.isEmpty());
    EXPECT_EQ(altro->Intestazione.Testo(u"STAMPA"_s, u"Stampante"_s), u"Laser amministrazione"_s);
    EXPECT_EQ(altro->Intestazione.Testo(u"STAMPA"_s, u"Numero"_s), u"4"_s);

    QString errore;
    EXPECT_FALSE(Lavoro(Stampante(0, u"Laser"_s, false), &errore)) << "the text page stops at the margins";
    EXPECT_FALSE(errore.isEmpty());
    EXPECT_TRUE(Lavoro(Stampante(2, u"Laser"_s, false))) << "a label has no margins to read";
    EXPECT_FALSE(Lavoro(u"<Stampante><NomeStampanteWindows>X</NomeStampanteWindows><Modello><Codice>zero</Codice></Modello></Stampante>"_s));
}

TEST(PaginaDiProva, TheHeaderCarriesBothCataloguesAsTheServiceReadsThem)
{
    const auto lavoro = Lavoro(Stampante(0));
    ASSERT_TRUE(lavoro);
    const PxIntestazioneHpx& h = lavoro->Intestazione;
    EXPECT_EQ(h.Testo(u"CATALOGOORIGINALE"_s, u"GrassettoOn"_s), u"091;037;036;071;082;049;093"_s);
    EXPECT_EQ(h.Testo(u"CATALOGODESTINAZIONE"_s, u"GrassettoOn"_s), u"091;037;036;071;082;049;093;"_s);
    EXPECT_EQ(h.Testo(u"CATALOGOORIGINALE"_s, u"CustomCOff"_s), u"091;037;036;081;085;048;093;"_s);
    EXPECT_EQ(h.Testo(u"CATALOGODESTINAZIONE"_s, u"CustomCOff"_s), u"000;000;000;000;000;000;000;"_s);
    int suddivisioni = 0;
    QStringList sezioni;
    for (const PxIntestazioneHpx::Valore& v : h.Valori()) {
        suddivisioni += v.Nome == u"Suddivisione"_s;
        if (!sezioni.contains(v.Sezione))
            sezioni << v.Sezione;
    }
    EXPECT_EQ(suddivisioni, 2);
    EXPECT_EQ(sezioni, (QStringList{QString(), u"PROPRIETA"_s, u"CATALOGOORIGINALE"_s, u"CATALOGODESTINAZIONE"_s, u"STAMPA"_s}));
    // What the server reads back is what was written.
    PxIntestazioneHpx letta;
    ASSERT_TRUE(letta.Analizza(h.Serializza()));
    EXPECT_EQ(letta.Data(u"PROPRIETA"_s, u"Data"_s), Lunedi);
    EXPECT_EQ(letta.Intero({}, u"Tipo"_s), 2);
}

TEST(Lavoro, NamesAreSanitisedAndNeverLeaveTheFolder)
{
    EXPECT_EQ(modLavoro::Sanifica(u"\\\\srvstampa\\TEC:B-EX4"_s), u"--srvstampa-TEC-B-EX4"_s);
    EXPECT_EQ(modLavoro::Sanifica(u"../../etc/passwd"_s), u"-..-etc-passwd"_s);
    EXPECT_EQ(modLavoro::Sanifica(u".."_s), QString());
    EXPECT_EQ(modLavoro::Sanifica(u"CON"_s), u"_CON"_s);
    EXPECT_EQ(modLavoro::Sanifica(u"nul.txt"_s), u"_nul.txt"_s);
    EXPECT_EQ(modLavoro::Sanifica(u"CONSOLE"_s), u"CONSOLE"_s);
    EXPECT_EQ(modLavoro::Sanifica(u"a*b?c\"d<e>f|g\tline"_s), u"a-b-c-d-e-f-g-line"_s);
    EXPECT_EQ(modLavoro::Sanifica(QString(300, u'x')).size(), 120);
}

TEST(Lavoro, AJobThatStillWaitsKeepsItsNameTheNewOneTakesTheNext)
{
    QTemporaryDir dir;
    const std::vector<modLavoro::File> file{{".bpx", "corpo"}, {".hpx", "testata"}};
    const QString base = u"Pagina di prova di Laser"_s;
    const modLavoro::Esito primo = modLavoro::Consegna(dir.path(), base, file);
    ASSERT_TRUE(primo.Riuscito) << qPrintable(primo.Errore);
    // Only a body waits under the next name: that name is taken too.
    QFile(QDir(dir.path()).filePath(base + u" (2).bpx"_s)).open(QIODevice::WriteOnly);
    const modLavoro::Esito secondo = modLavoro::Consegna(dir.path(), base, file);
    ASSERT_TRUE(secondo.Riuscito);
    EXPECT_EQ(QFileInfo(secondo.Base).fileName(), base + u" (3)"_s);
    EXPECT_EQ(Leggi(primo.Base + u".hpx"_s), "testata");
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden).size(), 5) << "no temporary file stays";
}

TEST(Lavoro, AFailureAtAnyStepLeavesNothingUnderAFinalName)
{
    const auto lavoro = Lavoro(Stampante(0));
    ASSERT_TRUE(lavoro);
    const auto prova = [&](int n, QStringList* file) {
        QTemporaryDir dir;
        OperazioniGuaste guasto(n);
        const modLavoro::Esito esito = modContenuto::ScriviPaginaDiProva(*lavoro, dir.path());
        const int chiamate = guasto.Chiamate();
        *file = QDir(dir.path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
        if (esito.Riuscito && Leggi(esito.Base + u".bpx"_s) != lavoro->Corpo)
            return -1;
        return esito.Riuscito ? chiamate : 0;
    };
    QStringList file;
    const int operazioni = prova(0, &file);
    // Three files, each opened, written, synced, closed and renamed, and the folder synced.
    ASSERT_GE(operazioni, 15);
    ASSERT_EQ(file.size(), 3);
    int falliti = 0;
    for (int n = 1; n <= operazioni; ++n) {
        const int esito = prova(n, &file);
        ASSERT_GE(esito, 0) << "step " << n << ": a published file differs";
        if (esito == 0) {
            ++falliti;
            EXPECT_TRUE(file.isEmpty()) << "step " << n << ": " << qPrintable(file.join(u", "_s));
        } else {
            EXPECT_EQ(file.size(), 3) << "step " << n << ": a harmless fault, the job is whole";
        }
    }
    EXPECT_GE(falliti, operazioni - 2) << "only closing the folder after its sync may fail harmlessly";
}

TEST(Lavoro, TheReferenceServerTakesATestPageAsADocumentToPrint)
{
    QTemporaryDir dir;
    ASSERT_EQ(modDemo::CreaServerDemo(dir.path(), 0), QString());
    RefServer server(dir.path(), RefServer::Opzioni{false, true});
    pugi::xml_document stato;
    ASSERT_TRUE(stato.load_file(QFile::encodeName(QDir(dir.path()).filePath(u"Servizi/PxSrvStampe.xml"_s)).constData()));
    static const PxConsoleResDll testi;
    const auto lavoro = modContenuto::PaginaDiProva(modContenuto::TrovaStampante(stato.document_element(), u"Zebra spedizioni"_s),
                                                    testi, Lunedi);
    ASSERT_TRUE(lavoro);
    RefIngresso* ingresso = server.Ingresso(u"PxSrvStampe"_s);
    ASSERT_NE(ingresso, nullptr);
    ASSERT_TRUE(modContenuto::ScriviPaginaDiProva(*lavoro, ingresso->Cartella()).Riuscito);
    EXPECT_EQ(ingresso->Scansiona(), 1);
    RefCartellaDocumenti& stampe = *server.Cartella(GenereCartella::Stampa);
    ASSERT_EQ(stampe.Coda(0).size(), 1) << "Da stampare";
    const DatiDocumento* d = stampe.Trova(stampe.Coda(0).first());
    ASSERT_NE(d, nullptr);
    EXPECT_EQ(d->Stampante, u"Zebra spedizioni"_s);
    EXPECT_EQ(d->Descrizione, u"Stampa pagina di prova di Zebra spedizioni"_s);
    EXPECT_TRUE(QDir(ingresso->Cartella()).entryList(QDir::Files).isEmpty());
}

} // namespace
