#include "modPdf.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

// The value after `chiave` in the trailer or a dictionary, as a number.
qsizetype Numero(const QByteArray& pdf, const char* chiave, qsizetype da = 0)
{
    const qsizetype i = pdf.indexOf(chiave, da);
    if (i < 0)
        return -1;
    return pdf.mid(i + qstrlen(chiave)).trimmed().split(' ').value(0).split('\n').value(0).toLongLong();
}

QStringList Righe(int quante)
{
    QStringList righe;
    for (int i = 1; i <= quante; ++i)
        righe << u"Riga %1 del documento"_s.arg(i);
    return righe;
}

} // namespace

TEST(modPdf, CrossReferenceTablePointsAtEveryObject)
{
    const QByteArray pdf = modPdf::Documento(u"Fattura"_s, Righe(120));
    ASSERT_TRUE(pdf.startsWith("%PDF-1.4\n"));
    ASSERT_TRUE(pdf.endsWith("%%EOF\n"));

    const qsizetype xref = pdf.mid(pdf.lastIndexOf("startxref") + 9).trimmed().split('\n').value(0).toLongLong();
    ASSERT_GT(xref, 0);
    ASSERT_EQ(pdf.mid(xref, 5), "xref\n");
    const QList<QByteArray> tabella = pdf.mid(xref).split('\n');
    const qsizetype oggetti = tabella.value(1).split(' ').value(1).toLongLong();
    EXPECT_EQ(Numero(pdf, "/Size", xref), oggetti);
    EXPECT_EQ(tabella.value(2), "0000000000 65535 f ");
    for (qsizetype n = 1; n < oggetti; ++n) {
        const QByteArray voce = tabella.value(2 + n);
        ASSERT_EQ(voce.size(), 19) << "entries are 20 bytes with the line feed";
        ASSERT_TRUE(voce.endsWith(" 00000 n ")) << voce.constData();
        const QByteArray atteso = QByteArray::number(n) + " 0 obj";
        EXPECT_EQ(pdf.mid(voce.left(10).toLongLong(), atteso.size()), atteso) << "object " << n;
    }

    // Every content stream's /Length is what lies between "stream\n" and "\nendstream".
    for (qsizetype i = pdf.indexOf("/Length"); i >= 0; i = pdf.indexOf("/Length", i + 1)) {
        const qsizetype inizio = pdf.indexOf("stream\n", i) + 7;
        EXPECT_EQ(pdf.mid(inizio + Numero(pdf, "/Length", i), 10), "\nendstream");
    }
    EXPECT_TRUE(pdf.contains("/Producer (PlxSrv)"));
    EXPECT_TRUE(pdf.contains("/Title (Fattura)"));
    EXPECT_FALSE(pdf.contains("/CreationDate"));
    EXPECT_EQ(pdf, modPdf::Documento(u"Fattura"_s, Righe(120))) << "same text, same bytes";
}

TEST(modPdf, TextFlowsOntoAsManyPagesAsItNeeds)
{
    const auto pagine = [](const QByteArray& pdf) {
        EXPECT_EQ(pdf.count("/Type /Page "), Numero(pdf, "/Count"));
        return Numero(pdf, "/Count");
    };
    EXPECT_EQ(pagine(modPdf::Documento({}, {})), 1) << "an empty document still has a page";
    EXPECT_EQ(pagine(modPdf::Documento(u"Titolo"_s, Righe(40))), 1);
    const QByteArray lungo = modPdf::Documento(u"Titolo"_s, Righe(200));
    EXPECT_EQ(pagine(lungo), 4);
    EXPECT_TRUE(lungo.contains("(Riga 1 del documento)") && lungo.contains("(Riga 200 del documento)"));
    EXPECT_EQ(lungo.count("Tj"), 201) << "the title and every line, each shown once";
    EXPECT_EQ(lungo.count("/F2 16 Tf"), 1) << "the title only on the first page";

    // A line wider than the page is cut at spaces, nothing lost.
    const QString parole = u"parola "_s.repeated(60).trimmed();
    const QByteArray largo = modPdf::Documento({}, {parole});
    EXPECT_GE(largo.count("Tj"), 4);
    static const QRegularExpression mostrato(u"\\((parola[ a-z]*)\\)Tj"_s);
    QStringList pezzi;
    for (const auto& m : mostrato.globalMatch(QString::fromLatin1(largo)))
        pezzi << m.captured(1);
    EXPECT_EQ(pezzi.join(u' '), parole);
}

TEST(modPdf, TextIsInWinAnsiWithStringsEscaped)
{
    const QByteArray pdf = modPdf::Documento(u"Perché sì"_s, {u"è à ò ù ì é € È"_s, u"f(x) = a\\b)"_s, u"😀 日"_s});
    EXPECT_TRUE(pdf.contains("/BaseFont /Helvetica /Encoding /WinAnsiEncoding"));
    EXPECT_TRUE(pdf.contains("/BaseFont /Helvetica-Bold /Encoding /WinAnsiEncoding"));
    EXPECT_TRUE(pdf.contains("(\xE8 \xE0 \xF2 \xF9 \xEC \xE9 \x80 \xC8)Tj"));
    EXPECT_TRUE(pdf.contains("(Perch\xE9 s\xEC)Tj"));
    EXPECT_TRUE(pdf.contains("(f\\(x\\) = a\\\\b\\))Tj"));
    EXPECT_TRUE(pdf.contains("(? ?)Tj")) << "one '?' per character WinAnsi lacks";
    // The document title goes to the information dictionary as UTF-16.
    EXPECT_TRUE(pdf.contains("/Title <FEFF0050006500720063006800E90020007300EC>"));
    EXPECT_TRUE(modPdf::Documento(u"a (b)"_s, {}).contains("/Title (a \\(b\\))"));
}
