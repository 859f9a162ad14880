#include "modApri.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

void Scrivi(const QString& file)
{
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("x");
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

} // namespace
