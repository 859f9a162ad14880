#include "ServerInLinea.h"

#include "frmCorpoDocumento.h"
#include "frmScriptDocumento.h"
#include "frmVisFirma.h"
#include "modCorpo.h"

#include <gtest/gtest.h>

#include <array>

#include <QFile>
#include <QLabel>
#include "PxVistaTesto.h"
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTextBrowser>
#include <QTreeWidget>

#include <pugixml.hpp>

using namespace Qt::StringLiterals;

namespace {

// The print catalogue the demo's documents are written with (ESC/P), as a document carries it.
const char* const CatalogoEscP =
    "<CatalogoSorgente>"
    "<StrAscGrassettoOn>027;069;</StrAscGrassettoOn><StrAscCompressoOn>015;</StrAscCompressoOn>"
    "<StrAscDoppiaAltezzaOn>027;119;049;</StrAscDoppiaAltezzaOn><StrAscRipassaOn>027;071;</StrAscRipassaOn>"
    "<StrAscDodicesimiOn>027;077;</StrAscDodicesimiOn><StrAscLetterQualityOn>027;120;049;</StrAscLetterQualityOn>"
    "<StrAscSottolineatoOn>027;045;049;</StrAscSottolineatoOn><StrAscCustomAOn>027;052;</StrAscCustomAOn>"
    "<StrAscCustomBOn>027;087;049;</StrAscCustomBOn><StrAscCustomCOn>027;112;049;</StrAscCustomCOn>"
    "<StrAscGrassettoOff>027;070;</StrAscGrassettoOff><StrAscCompressoOff>018;</StrAscCompressoOff>"
    "<StrAscDoppiaAltezzaOff>027;119;048;</StrAscDoppiaAltezzaOff><StrAscRipassaOff>027;072;</StrAscRipassaOff>"
    "<StrAscDodicesimiOff>027;080;</StrAscDodicesimiOff><StrAscLetterQualityOff>027;120;048;</StrAscLetterQualityOff>"
    "<StrAscSottolineatoOff>027;045;048;</StrAscSottolineatoOff><StrAscCustomAOff>027;053;</StrAscCustomAOff>"
    "<StrAscCustomBOff>027;087;048;</StrAscCustomBOff><StrAscCustomCOff>027;112;048;</StrAscCustomCOff>"
    "</CatalogoSorgente>";

modCorpo::Catalogo EscP()
{
    pugi::xml_document doc;
    doc.load_string(CatalogoEscP);
    return modCorpo::LeggiCatalogo(doc.document_element());
}

// Compares `rtf` with the golden file `nome`; PLX_AGGIORNA_ORO=1 writes it instead.
void ControllaOro(const char* nome, const QByteArray& rtf)
{
    QFile f(QStringLiteral(PLX_DATI_TEST "/corpo/") + QLatin1StringView(nome));
    if (qEnvironmentVariableIsSet("PLX_AGGIORNA_ORO")) {
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(rtf);
        return;
    }
    ASSERT_TRUE(f.open(QIODevice::ReadOnly)) << nome;
    EXPECT_EQ(f.readAll().toStdString(), rtf.toStdString()) << nome;
}

QString Testo(const modCorpo::Documento& d) { return d.Testo; }

// The text shown in colour 1.
QString Colorato(const modCorpo::Documento& d)
{
    QString t;
    for (const modCorpo::Tratto& r : d.Tratti)
        if (r.Colore == 1)
            t += d.Testo.mid(r.Inizio, r.Fine - r.Inizio);
    return t;
}

} // namespace

TEST(modCorpo, ReservedCharactersAndNulStayLiteral)
{
    const QByteArray corpo("a\0b{c}\\d\r\ne\rf\ng", 15);
    const QByteArray rtf = modCorpo::Rtf(corpo, {});
    ControllaOro("riservati.rtf", rtf);
    const modCorpo::Documento d = modCorpo::Leggi(rtf);
    EXPECT_EQ(Testo(d), u"a\u00F8b{c}\\d\ne\nf\ng"_s);
    EXPECT_EQ(d.Carattere, u"Courier New"_s);
    EXPECT_EQ(d.Punti, 9);
    ASSERT_EQ(d.Colori.size(), 2u);
    EXPECT_EQ(d.Colori[1], QColor(255, 0, 255));
}

TEST(modCorpo, EverySequenceOfTheCatalogueAndEveryServerCommandIsMarked)
{
    const modCorpo::Catalogo c = EscP();
    QByteArray corpo;
    for (size_t i = 0; i < c.On.size(); ++i)
        corpo += c.On[i] + "x" + c.Off[i];
    corpo += "\r\n[%#PLX FORMATO \"F001\"%] fine 100%%\r\n";
    const QByteArray rtf = modCorpo::Rtf(corpo, c);
    ControllaOro("catalogo.rtf", rtf);
    const modCorpo::Documento d = modCorpo::Leggi(rtf);
    const QString atteso = u"[%$GR1]x[%$GR0][%$CM1]x[%$CM0][%$DA1]x[%$DA0][%$DP1]x[%$DP0][%$DO1]x[%$DO0]"
                           "[%$LQ1]x[%$LQ0][%$ST1]x[%$ST0][%$IT1]x[%$IT0][%$BR1]x[%$BR0][%$QU1]x[%$QU0]\n"
                           "[%#PLX FORMATO \"F001\"%] fine 100%\n"_s;
    EXPECT_EQ(Testo(d), atteso);
    // The markers and the command are in magenta, the body's own text is not.
    EXPECT_EQ(Colorato(d), u"[%$GR1][%$GR0][%$CM1][%$CM0][%$DA1][%$DA0][%$DP1][%$DP0][%$DO1][%$DO0][%$LQ1][%$LQ0]"
                           "[%$ST1][%$ST0][%$IT1][%$IT0][%$BR1][%$BR0][%$QU1][%$QU0][%#PLX FORMATO \"F001\"%]"_s);
    EXPECT_FALSE(Testo(d).contains(QChar(27)));
}

TEST(modCorpo, OnlyTheFirstMiBIsShownAndABadCatalogueMarksNothing)
{
    QByteArray corpo(modCorpo::Massimo, 'a');
    corpo += "ZZZ";
    const modCorpo::Documento d = modCorpo::Leggi(modCorpo::Rtf(corpo, {}));
    EXPECT_EQ(Testo(d).size(), modCorpo::Massimo);
    EXPECT_FALSE(Testo(d).contains(u'Z'));

    pugi::xml_document doc;
    doc.load_string("<C><StrAscGrassettoOn>027;999;</StrAscGrassettoOn><StrAscCompressoOn>abc;</StrAscCompressoOn></C>");
    const modCorpo::Catalogo c = modCorpo::LeggiCatalogo(doc.document_element());
    EXPECT_TRUE(c.On[0].isEmpty());
    EXPECT_TRUE(c.On[1].isEmpty());
    EXPECT_EQ(Testo(modCorpo::Leggi(modCorpo::Rtf("\x1b" "E", c))), u"\x1b" "E"_s) << "nothing replaced by an empty sequence";
}

namespace {

// The RTF wrapped around an empty body.
qsizetype Involucro() { return modCorpo::Rtf({}, {}).size(); }

// The longest marker, for a one-byte sequence: "\cf1 \cf1 [%$GR1]\cf0 ".
constexpr qsizetype MassimoPerByte = 22;

} // namespace

TEST(modCorpo, AMarkerIsNeverMarkedAgain)
{
    // Sequences made of the markers' own characters: each byte of the body becomes one marker,
    // and what the markers hold is not looked at again.
    {
        modCorpo::Catalogo c;
        c.On[0] = "%";
        c.On[1] = "$";
        c.On[2] = "[%";
        c.Off[6] = "]";
        const QByteArray rtf = modCorpo::Rtf("%$[%]", c);
        EXPECT_EQ(rtf.mid(Involucro() - 6, rtf.size() - Involucro()).toStdString(),
                  "\\cf1 \\cf1 [%$GR1]\\cf0 \\cf1 \\cf1 [%$CM1]\\cf0 \\cf1 \\cf1 [%$DA1]\\cf0 \\cf0 \\cf1 [%$ST0]\\cf0 ");
        const modCorpo::Documento d = modCorpo::Leggi(rtf);
        EXPECT_EQ(Testo(d), u"[%$GR1][%$CM1][%$DA1][%$ST0]"_s);
        EXPECT_EQ(Colorato(d), Testo(d));
    }
    {
        // Eight sequences "%" and a body of four: four markers, the first sequence's.
        modCorpo::Catalogo c;
        for (size_t i = 0; i < 8; ++i)
            c.On[i] = "%";
        const QByteArray rtf = modCorpo::Rtf("%%%%", c);
        ASSERT_LE(rtf.size(), Involucro() + 4 * MassimoPerByte);
        EXPECT_EQ(Testo(modCorpo::Leggi(rtf)), u"[%$GR1][%$GR1][%$GR1][%$GR1]"_s);
    }
    {
        // Twenty one-byte sequences, all found in the markers, and 80 KiB of them: the RTF grows
        // with the body, one marker a byte.
        const char simboli[] = "\\cf1 [%$#!On]GR0FCMD";
        modCorpo::Catalogo c;
        std::vector<QString> segni;
        for (size_t i = 0; i < 20; ++i) {
            (i < 10 ? c.On[i] : c.Off[i - 10]) = QByteArray(1, simboli[i]);
            segni.push_back(u"[%$"_s + QLatin1StringView(std::array{"GR", "CM", "DA", "DP", "DO", "LQ", "ST", "IT", "BR", "QU"}[i % 10])
                            + (i < 10 ? u"1]"_s : u"0]"_s));
        }
        QByteArray corpo;
        QString atteso;
        for (size_t k = 0; corpo.size() < 80 * 1024; ++k) {
            const size_t j = (k * 7) % 20;
            corpo += simboli[j];
            atteso += segni[j];
        }
        const QByteArray rtf = modCorpo::Rtf(corpo, c);
        EXPECT_LE(rtf.size(), Involucro() + MassimoPerByte * corpo.size());
        const modCorpo::Documento d = modCorpo::Leggi(rtf);
        EXPECT_EQ(Testo(d), atteso);
        EXPECT_EQ(Colorato(d), atteso);
    }
}

TEST(modCorpo, SequencesAreReadLeftToRightAndTheLongestAtOnePlace)
{
    modCorpo::Catalogo c;
    c.On[0] = "\x1bw";   // a shorter sequence first in the catalogue...
    c.On[2] = "\x1bw1";  // ...does not split a longer one at the same place
    c.On[1] = "bc";
    c.On[3] = "ab";      // the one that starts first wins, wherever it is listed
    c.Off[0] = "\x1b" "F";
    c.Off[7] = "\x1b" "F"; // the same bytes twice: the first listed
    c.On[4] = "#";
    EXPECT_EQ(Testo(modCorpo::Leggi(modCorpo::Rtf("\x1bw1x\x1bw2", c))), u"[%$DA1]x[%$GR1]2"_s);
    EXPECT_EQ(Testo(modCorpo::Leggi(modCorpo::Rtf("abc bc", c))), u"[%$DP1]c [%$CM1]"_s);
    EXPECT_EQ(Testo(modCorpo::Leggi(modCorpo::Rtf("\x1b" "F", c))), u"[%$GR0]"_s);
    // A sequence inside a server command is still a sequence; the command is then plain text.
    const modCorpo::Documento d = modCorpo::Leggi(modCorpo::Rtf("[%#PLX a%] b", c));
    EXPECT_EQ(Testo(d), u"[%[%$DO1]PLX a%] b"_s);
    EXPECT_EQ(Colorato(d), u"[%$DO1]"_s);
}

TEST(modCorpo, PercentSignsAndCommandsReadAsTheyAlwaysHave)
{
    // "%%" is one "%", and a "%" before "]" closes a command (so "%%]" shows both signs).
    EXPECT_EQ(Testo(modCorpo::Leggi(modCorpo::Rtf("100%% %%% %%]x", {}))), u"100% %% %%]x"_s);
    const modCorpo::Documento d = modCorpo::Leggi(modCorpo::Rtf("a [%#PLX F 50%%]b [%%#PLX c%] [%%$#!On]on[%%$#!Off]", {}));
    EXPECT_EQ(Testo(d), u"a [%#PLX F 50%%]b [%#PLX c%] on"_s);
    EXPECT_EQ(Colorato(d), u"[%#PLX F 50%%]on"_s);
}

TEST(modCorpo, NulsAreShownAsOSlashAndAreNeverASequence)
{
    const QByteArray nul(7, '\0');
    const QByteArray oslash(7, '\xF8');
    pugi::xml_document doc;
    doc.load_string("<C><StrAscLetterQualityOn>000;000;000;000;000;000;000;</StrAscLetterQualityOn>"
                    "<StrAscLetterQualityOff>248;248;248;248;248;248;248;</StrAscLetterQualityOff>"
                    "<StrAscGrassettoOn>027;120;000;</StrAscGrassettoOn></C>");
    const modCorpo::Catalogo c = modCorpo::LeggiCatalogo(doc.document_element());
    ASSERT_EQ(c.On[5], nul);
    ASSERT_EQ(c.Off[5], oslash);
    // Seven NULs are seven ø, whether the catalogue lists seven NULs or seven ø.
    const modCorpo::Documento d = modCorpo::Leggi(modCorpo::Rtf("a" + nul + "b", c));
    EXPECT_EQ(Testo(d), u"a\u00F8\u00F8\u00F8\u00F8\u00F8\u00F8\u00F8b"_s);
    EXPECT_TRUE(d.Tratti.empty());
    EXPECT_EQ(Testo(modCorpo::Leggi(modCorpo::Rtf("\x1bx" + QByteArray(1, '\0'), c))), u"\x1bx\u00F8"_s);
    // A body's own ø is what a sequence of ø stands for.
    EXPECT_EQ(Testo(modCorpo::Leggi(modCorpo::Rtf(oslash, c))), u"[%$LQ0]"_s);
}

namespace {

// As a console on another machine: the files come through the server.
class Visualizzatori : public SuiteConServer<0, false>
{
protected:
    QString Scrivi(const QString& nome, const QByteArray& dati)
    {
        QFile f(mDir.filePath(nome));
        EXPECT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(dati);
        return f.fileName();
    }

    // A document's properties naming `corpo` and `script` in the test's folder.
    pugi::xml_document Proprieta(const QString& corpo, const QString& script = {})
    {
        pugi::xml_document doc;
        const QString xml = u"<Proprieta><FileCorpo><Percorso>%1</Percorso><Nome>%2</Nome></FileCorpo>"
                            "<FileScript><Percorso>%1</Percorso><Nome>%3</Nome></FileScript>%4</Proprieta>"_s.arg(
                                mDir.path(), corpo, script, QString::fromLatin1(CatalogoEscP));
        doc.load_string(xml.toUtf8().constData());
        return doc;
    }

    // Inside the server folder: the server reads nothing outside it.
    QTemporaryDir mDir{QDir(sServer->Dir.path()).filePath(u"viste-XXXXXX"_s)};
};

} // namespace

TEST_F(Visualizzatori, TheBodyShowsItsTextAndTheCaretsPlace)
{
    frmCorpoDocumento corpo(*sServer->Contesto);
    QSignalSpy caricati(&corpo, &frmCorpoDocumento::Caricato);
    Scrivi(u"D1.bpx"_s, "\x1b" "EFattura\x1b" "F\r\nRiga due\r\n");
    corpo.CaricaCorpo(Proprieta(u"D1.bpx"_s).document_element());
    ASSERT_TRUE(QTest::qWaitFor([&] { return caricati.count() == 1; }, 5000));
    PxVistaTesto* testo = corpo.Testo();
    EXPECT_EQ(testo->TestoVisibile(), u"[%$GR1]Fattura[%$GR0]\nRiga due\n"_s);
    EXPECT_EQ(testo->ColoreIn(0, 0), QColor(255, 0, 255));
    EXPECT_EQ(testo->ColoreIn(0, 6), QColor(255, 0, 255));
    EXPECT_FALSE(testo->ColoreIn(0, 7).isValid()) << "the body's own text is in the default colour";
    EXPECT_EQ(testo->ColoreIn(0, 14), QColor(255, 0, 255));
    EXPECT_EQ(QFontInfo(testo->font()).pointSize(), 9);
    QTest::keyClick(testo, Qt::Key_Down);
    QTest::keyClick(testo, Qt::Key_Right);
    QStringList stato;
    for (const QLabel* l : corpo.findChildren<QLabel*>())
        stato << l->text();
    EXPECT_TRUE(stato.contains(u"Riga: 2"_s)) << stato.join(u", "_s).toStdString();
    EXPECT_TRUE(stato.contains(u"Colonna: 2"_s)) << stato.join(u", "_s).toStdString();
    QTest::keyClick(testo, Qt::Key_End, Qt::ShiftModifier);
    EXPECT_EQ(testo->Selezione(), u"iga due"_s);

    // The same document again reads nothing; a missing file, a device behind a link, no file: empty.
    corpo.CaricaCorpo(Proprieta(u"D1.bpx"_s).document_element());
    QTest::qWait(50);
    EXPECT_EQ(caricati.count(), 1);
    corpo.CaricaCorpo(Proprieta(u"manca.bpx"_s).document_element());
    ASSERT_TRUE(QTest::qWaitFor([&] { return caricati.count() == 2; }, 5000));
    EXPECT_TRUE(testo->Vuoto());
    ASSERT_TRUE(QFile::link(u"/dev/zero"_s, mDir.filePath(u"zero.bpx"_s)));
    corpo.CaricaCorpo(Proprieta(u"zero.bpx"_s).document_element());
    ASSERT_TRUE(QTest::qWaitFor([&] { return caricati.count() == 3; }, 5000));
    EXPECT_TRUE(testo->Vuoto());
    corpo.CaricaCorpo(Proprieta({}).document_element());
    EXPECT_EQ(caricati.count(), 4);
    // A body outside the server folder, directly or behind a link, is not read.
    QTemporaryDir fuori;
    QFile esterno(QDir(fuori.path()).filePath(u"D9.bpx"_s));
    ASSERT_TRUE(esterno.open(QIODevice::WriteOnly));
    esterno.write("segreto\r\n");
    esterno.close();
    ASSERT_TRUE(QFile::link(esterno.fileName(), mDir.filePath(u"D9.bpx"_s)));
    corpo.CaricaCorpo(Proprieta(u"D9.bpx"_s).document_element());
    ASSERT_TRUE(QTest::qWaitFor([&] { return caricati.count() == 5; }, 5000));
    EXPECT_TRUE(testo->Vuoto());
}

TEST_F(Visualizzatori, TheScriptIsATreeAndNoScriptIsTheBlankPage)
{
    frmScriptDocumento script(*sServer->Contesto);
    QSignalSpy caricati(&script, &frmScriptDocumento::Caricato);
    EXPECT_TRUE(QFile::exists(QDir(frmScriptDocumento::CartellaLavoro()).filePath(u"~PlxDocBlank.html"_s)));
    Scrivi(u"D1.spx"_s, "<?xml version=\"1.0\"?><PLX><Pagina Numero=\"0001\"><Rigo>Sub Main()</Rigo></Pagina></PLX>");
    script.CaricaScript(Proprieta({}, u"D1.spx"_s).document_element());
    ASSERT_TRUE(QTest::qWaitFor([&] { return caricati.count() == 1; }, 5000));
    QTreeWidget* albero = script.Albero();
    ASSERT_EQ(albero->topLevelItemCount(), 1);
    EXPECT_EQ(albero->topLevelItem(0)->text(0), u"<PLX>"_s);
    EXPECT_EQ(albero->topLevelItem(0)->child(0)->text(0), u"<Pagina Numero=\"0001\">"_s);
    EXPECT_EQ(albero->topLevelItem(0)->child(0)->child(0)->text(0), u"<Rigo>Sub Main()"_s);
    QFile copia(QDir(frmScriptDocumento::CartellaLavoro()).filePath(u"~PlxDoc.xml"_s));
    ASSERT_TRUE(copia.open(QIODevice::ReadOnly));
    EXPECT_TRUE(copia.readAll().contains("<Rigo>Sub Main()</Rigo>"));

    script.CaricaScript(Proprieta({}, u"manca.spx"_s).document_element());
    ASSERT_TRUE(QTest::qWaitFor([&] { return caricati.count() == 2; }, 5000));
    EXPECT_EQ(albero->topLevelItemCount(), 0);
}

TEST_F(Visualizzatori, TheSignatureRendersOnlyTheLastOfABurstAndFetchesNothing)
{
    frmVisFirma firma;
    QSignalSpy caricati(&firma, &frmVisFirma::Caricato);
    firma.Mostra(u"<p>Prima</p>"_s);
    firma.Mostra(u"<p><b>Mario Rossi</b><br>Ufficio vendite</p><img src=\"http://esempio.it/logo.png\"><script>x()</script>"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return caricati.count() == 1; }, 5000));
    QTest::qWait(150);
    EXPECT_EQ(caricati.count(), 1);
    EXPECT_TRUE(firma.Pagina()->toPlainText().startsWith(u"Mario Rossi\nUfficio vendite"_s)) << firma.Pagina()->toPlainText().toStdString();
    EXPECT_FALSE(firma.Pagina()->loadResource(QTextDocument::ImageResource, QUrl(u"http://esempio.it/logo.png"_s)).isValid());
    EXPECT_FALSE(firma.Pagina()->loadResource(QTextDocument::ImageResource, QUrl(u"file:///etc/passwd"_s)).isValid());
}

TEST(modCorpo, TheViewShowsControlCharactersAndKeepsTheColoursOnTheirCharacters)
{
    // A form feed, a tab and a coloured command on the second line.
    const modCorpo::Documento d = modCorpo::Leggi(modCorpo::Rtf("a\x0c\tb\r\nxy[%#PLX C%]z", {}));
    const PxVistaTesto::Contenuto c = PxVistaTesto::Prepara(d);
    ASSERT_EQ(c.Righe.size(), 2u);
    EXPECT_EQ(c.Testo, u"a\u240C\u2409bxy[%#PLX C%]z"_s);
    ASSERT_EQ(c.Tratti.size(), 1u);
    EXPECT_EQ(c.Testo.mid(c.Tratti[0].Inizio, c.Tratti[0].Fine - c.Tratti[0].Inizio), u"[%#PLX C%]"_s);
    EXPECT_EQ(c.Colonne, 13);
}

TEST(modCorpo, AReaderWeDidNotWriteSeesTheSameTextAndColours)
{
    // GNU UnRTF reads the golden file: the text, and what it puts in magenta.
    const QString file = QStringLiteral(PLX_DATI_TEST "/corpo/catalogo.rtf");
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const modCorpo::Documento d = modCorpo::Leggi(f.readAll());
    const auto leggi = [&](const char* modo) {
        QProcess p;
        p.start(u"unrtf"_s, {QString::fromLatin1(modo), file});
        EXPECT_TRUE(p.waitForFinished(10000));
        EXPECT_EQ(p.exitCode(), 0);
        return QString::fromUtf8(p.readAllStandardOutput());
    };
    QString testo = leggi("--text");
    testo = testo.mid(testo.indexOf(u"-----------------\n"_s) + 18);
    EXPECT_EQ(testo.trimmed(), Testo(d).trimmed());
    const QString html = leggi("--html");
    QString magenta;
    static const QRegularExpression fonte(u"<font color=\"#ff00ff\">([^<]*)"_s);
    for (auto it = fonte.globalMatch(html); it.hasNext();)
        magenta += it.next().captured(1).trimmed();
    magenta.replace(u"&quot;"_s, u"\""_s);
    EXPECT_EQ(magenta, Colorato(d));
}
