// The server's PDFs, read back by poppler's tools (pdfinfo, pdffonts, pdftotext): never by a
// reader written beside the writer.
#include "modPdf.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

QStringList Righe(int quante)
{
    QStringList righe;
    for (int i = 1; i <= quante; ++i)
        righe << u"Riga %1 del documento"_s.arg(i);
    return righe;
}

// What `strumento` prints about `pdf` (with `argomenti` before the file name).
QString Leggi(const QByteArray& pdf, const QString& strumento, QStringList argomenti = {})
{
    QTemporaryDir dir;
    const QString file = dir.filePath(u"documento.pdf"_s);
    QFile f(file);
    if (!f.open(QIODevice::WriteOnly) || f.write(pdf) != pdf.size())
        return {};
    f.close();
    QProcess p;
    p.start(strumento, argomenti << file << (strumento == u"pdftotext" ? QStringList{u"-"_s} : QStringList{}));
    if (!p.waitForFinished(20000) || p.exitCode() != 0) {
        ADD_FAILURE() << qPrintable(strumento) << " failed: " << p.readAllStandardError().constData();
        return {};
    }
    return QString::fromUtf8(p.readAllStandardOutput());
}

int Pagine(const QByteArray& pdf)
{
    for (const QString& riga : Leggi(pdf, u"pdfinfo"_s).split(u'\n'))
        if (riga.startsWith(u"Pages:"_s))
            return riga.mid(6).trimmed().toInt();
    return -1;
}

} // namespace

TEST(modPdf, EveryItalianAndLatinCharacterIsKeptWithItsFontEmbeddedAsASubset)
{
    const QStringList righe{u"Perché sì: è à ò ù ì é È € 1.234,56"_s, u"Łódź, Őrség, Čeština, Ærø, Straße"_s,
                            u"f(x) = a\\b) (parentesi) <tag> & più"_s};
    const QByteArray pdf = modPdf::Documento(u"Fattura n. 1012 - città"_s, righe);
    ASSERT_TRUE(pdf.startsWith("%PDF-1.5"));
    const QString testo = Leggi(pdf, u"pdftotext"_s, {u"-enc"_s, u"UTF-8"_s});
    EXPECT_TRUE(testo.contains(u"Fattura n. 1012 - città"_s)) << qPrintable(testo);
    for (const QString& riga : righe)
        EXPECT_TRUE(testo.contains(riga)) << qPrintable(riga) << "\n" << qPrintable(testo);
    // pdffonts: name, type, encoding, "emb", "sub", "uni", object, generation.
    const QStringList font = Leggi(pdf, u"pdffonts"_s).split(u'\n', Qt::SkipEmptyParts).mid(2);
    // Regular and bold, and cairo's second subset for what WinAnsi cannot encode.
    ASSERT_GE(font.size(), 2);
    for (const QString& riga : font) {
        const QStringList campi = riga.split(u' ', Qt::SkipEmptyParts);
        ASSERT_GE(campi.size(), 7) << qPrintable(riga);
        EXPECT_TRUE(campi[0].contains(u"DejaVuSans"_s)) << qPrintable(riga);
        EXPECT_TRUE(campi[0].contains(u'+')) << "a subset's name has its tag: " << qPrintable(riga);
        EXPECT_EQ(campi[campi.size() - 5], u"yes"_s) << "embedded: " << qPrintable(riga);
        EXPECT_EQ(campi[campi.size() - 4], u"yes"_s) << "subset: " << qPrintable(riga);
    }
    // Compressed: the text is nowhere in the bytes as it stands.
    EXPECT_TRUE(pdf.contains("/FlateDecode"));
    EXPECT_FALSE(pdf.contains("Fattura"));
}

TEST(modPdf, TextFlowsOntoAsManyPagesAsItNeedsAndLongWordsAreCut)
{
    EXPECT_EQ(Pagine(modPdf::Documento({}, {})), 1) << "an empty document still has a page";
    EXPECT_EQ(Pagine(modPdf::Documento(u"Titolo"_s, Righe(40))), 1);
    const QByteArray lungo = modPdf::Documento(u"Titolo"_s, Righe(200));
    EXPECT_GE(Pagine(lungo), 4);
    const QString testo = Leggi(lungo, u"pdftotext"_s);
    EXPECT_TRUE(testo.contains(u"Riga 1 del documento"_s));
    EXPECT_TRUE(testo.contains(u"Riga 200 del documento"_s)) << "nothing is left out";
    // A word wider than the page is cut, not drawn past the margin.
    const QString parola(400, u'x');
    const QString largo = Leggi(modPdf::Documento({}, {parola}), u"pdftotext"_s);
    EXPECT_EQ(QString(largo).remove(u'\n').remove(u'\f').remove(u' '), parola);
    EXPECT_GE(largo.count(u'\n'), 3);
}

TEST(modPdf, TheSameTextGivesTheSameBytes)
{
    EXPECT_EQ(modPdf::Documento(u"Fattura"_s, Righe(120)), modPdf::Documento(u"Fattura"_s, Righe(120)));
    EXPECT_NE(modPdf::Documento(u"Fattura"_s, Righe(120)), modPdf::Documento(u"Fattura"_s, Righe(121)));
}
