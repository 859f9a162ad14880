#include "modApri.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

void Scrivi(const QString& file, const QByteArray& contenuto = "x")
{
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(contenuto);
}

// What the server answers is a path: only a folder, or a file of the expected kind, inside
// the server folder (links resolved) may reach the desktop's handler.
TEST(Apri, OnlyFoldersAndExpectedFilesInsideTheServerFolder)
{
    QTemporaryDir server, fuori;
    const QDir s(server.path());
    ASSERT_TRUE(s.mkpath(u"Documenti/FAX-1"_s));
    Scrivi(s.filePath(u"Documenti/FAX-1/FAX-1.tif"_s));
    Scrivi(s.filePath(u"Documenti/FAX-1/avvia.sh"_s));
    Scrivi(QDir(fuori.path()).filePath(u"altro.tif"_s));
    ASSERT_TRUE(QFile::link(QDir(fuori.path()).filePath(u"altro.tif"_s), s.filePath(u"Documenti/FAX-1/link.tif"_s)));
    ASSERT_TRUE(QFile::link(fuori.path(), s.filePath(u"Documenti/uscita"_s)));
    const QStringList tif{u"tif"_s, u"tiff"_s};
    using namespace modApri;

    EXPECT_EQ(Verifica(s.filePath(u"Documenti/FAX-1"_s), server.path(), true), Consentito);
    EXPECT_EQ(Verifica(s.filePath(u"Documenti/FAX-1/FAX-1.tif"_s), server.path(), false, tif), Consentito);
    EXPECT_EQ(Verifica(s.filePath(u"Documenti/FAX-1/avvia.sh"_s), server.path(), false, tif), TipoImprevisto);
    EXPECT_EQ(Verifica(s.filePath(u"Documenti/FAX-1/link.tif"_s), server.path(), false, tif), FuoriCartella);
    EXPECT_EQ(Verifica(s.filePath(u"Documenti/uscita"_s), server.path(), true), FuoriCartella);
    EXPECT_EQ(Verifica(s.filePath(u"Documenti/FAX-1/../../.."_s), server.path(), true), FuoriCartella);
    EXPECT_EQ(Verifica(s.filePath(u"Documenti/FAX-1"_s), server.path(), false, tif), NonFile);
    EXPECT_EQ(Verifica(s.filePath(u"Documenti/FAX-1/FAX-1.tif"_s), server.path(), true), NonCartella);
    EXPECT_EQ(Verifica(s.filePath(u"Documenti/FAX-2"_s), server.path(), true), NonEsiste);
    // A folder whose name begins like the server's is not inside it.
    QDir(server.path() + u"-bis"_s).mkpath(u"."_s);
    EXPECT_EQ(Verifica(server.path() + u"-bis"_s, server.path(), true), FuoriCartella);
    QDir(server.path() + u"-bis"_s).removeRecursively();
}

// A path a sheet names: a folder opens wherever it is; a file only when it is a document the
// desktop shows, never something it would run, whatever the name, the link or the permissions.
TEST(Apri, SheetPathsOpenFoldersAnywhereAndDocumentsButNeverRunAnything)
{
    QTemporaryDir dir;
    const QDir d(dir.path());
    const auto p = [&](const QString& nome) { return d.filePath(nome); };
    ASSERT_TRUE(d.mkpath(u"Pubblicazione/Pdf"_s));
    Scrivi(p(u"fattura.pdf"_s), "%PDF-1.4\n%%EOF\n");
    Scrivi(p(u"FAX-1.TIF"_s), QByteArray("II*\0", 4));
    Scrivi(p(u"PxSrvFax.log"_s), "2026-11-20 riga\n");
    Scrivi(p(u"avvia.sh"_s), "#!/bin/sh\necho\n");
    Scrivi(p(u"console.desktop"_s), "[Desktop Entry]\nType=Application\nExec=xterm\n");
    Scrivi(p(u"programma"_s), "\x7f" "ELF\x02\x01\x01");
    Scrivi(p(u"eseguibile.pdf"_s), "%PDF-1.4\n");
    QFile::setPermissions(p(u"eseguibile.pdf"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    Scrivi(p(u"travestito.txt"_s), "#!/bin/sh\nrm -rf ~\n");
    Scrivi(p(u"elf.pdf"_s), QByteArray("\x7f" "ELF\x02\x01\x01\0\0\0\0\0\0\0\0\0\x02\0\x3e\0", 20));
    ASSERT_TRUE(QFile::link(p(u"avvia.sh"_s), p(u"collegamento.pdf"_s)));
    ASSERT_TRUE(QFile::link(p(u"fattura.pdf"_s), p(u"collegamento-pdf"_s)));
    ASSERT_TRUE(QFile::link(p(u"sparito.pdf"_s), p(u"rotto.pdf"_s)));
    ASSERT_TRUE(QFile::link(d.filePath(u"Pubblicazione"_s), p(u"cartella-collegata"_s)));
    using namespace modApri;

    const struct
    {
        QString Percorso;
        Motivo Atteso;
    } casi[] = {
        {dir.path(), Consentito},                        // a folder outside any server folder
        {p(u"Pubblicazione/Pdf/"_s), Consentito},
        {p(u"cartella-collegata"_s), Consentito},        // a link to a folder
        {u"/"_s, Consentito},
        {p(u"fattura.pdf"_s), Consentito},
        {p(u"FAX-1.TIF"_s), Consentito},                 // the suffix in any case
        {p(u"PxSrvFax.log"_s), Consentito},
        {p(u"collegamento-pdf"_s), Consentito},          // a link judged by its target, not its name
        {p(u"avvia.sh"_s), TipoImprevisto},
        {p(u"console.desktop"_s), TipoImprevisto},
        {p(u"programma"_s), TipoImprevisto},
        {p(u"eseguibile.pdf"_s), Eseguibile},            // execute permission, whatever the name
        {p(u"travestito.txt"_s), Eseguibile},            // a script by its content
        {p(u"elf.pdf"_s), Eseguibile},                   // a program by its content
        {p(u"collegamento.pdf"_s), TipoImprevisto},      // a link to a script
        {p(u"rotto.pdf"_s), NonEsiste},                  // a link to nothing
        {p(u"manca.pdf"_s), NonEsiste},
        {p(u"Manca/"_s), NonEsiste},
        {u"Pubblicazione/Pdf"_s, NonEsiste},             // relative: it would depend on where the console runs
        {u"   "_s, NonEsiste},
        {u"/dev/null"_s, NonFile},
    };
    for (const auto& c : casi)
        EXPECT_EQ(VerificaPercorso(c.Percorso), c.Atteso) << c.Percorso.toStdString();

    // What is refused never reaches the desktop, and says why.
    EXPECT_EQ(ApriPercorso(p(u"avvia.sh"_s)), TipoImprevisto);
    EXPECT_EQ(ApriPercorso(p(u"manca.pdf"_s)), NonEsiste);
}

} // namespace
