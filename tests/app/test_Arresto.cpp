// The console as a real process, stopped by a signal of the system: it must close the way
// the server's Arresta closes it, saving what it saves, and end with status 0.
#include "PxBloccoCartella.h"
#include "modDemo.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

namespace {

class Arresto : public ::testing::TestWithParam<int>
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(mDir.isValid());
        ASSERT_EQ(modDemo::CreaServerDemo(mDir.filePath(u"server"_s), 50), QString());
        QDir(mDir.path()).mkpath(u"config"_s);
        QProcessEnvironment ambiente = QProcessEnvironment::systemEnvironment();
        ambiente.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        ambiente.insert(u"XDG_CONFIG_HOME"_s, mDir.filePath(u"config"_s));
        mProcesso.setProcessEnvironment(ambiente);
        mProcesso.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    }

    QString Log() const
    {
        QFile f(mDir.filePath(u"server/Log/PlxSrvConsole.log"_s));
        return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QString();
    }

    // Starts the console and waits until the log shows `riga`.
    bool AvviaFinoA(const QString& riga)
    {
        mProcesso.start(QStringLiteral(PLX_CONSOLE), {u"--server-folder"_s, mDir.filePath(u"server"_s),
                                                      u"--gui-folder"_s, mDir.path()});
        return mProcesso.waitForStarted(10000) && QTest::qWaitFor([&] { return Log().contains(riga); }, 20000);
    }

    QTemporaryDir mDir;
    QProcess mProcesso;
};

} // namespace

TEST_P(Arresto, ASignalStopsTheConsoleAsArrestaDoes)
{
    ASSERT_TRUE(AvviaFinoA(u"Stato console: Avviato"_s)) << qPrintable(Log());
    ASSERT_EQ(::kill(static_cast<pid_t>(mProcesso.processId()), GetParam()), 0);
    ASSERT_TRUE(mProcesso.waitForFinished(20000));
    EXPECT_EQ(mProcesso.exitStatus(), QProcess::NormalExit) << "killed by the signal";
    EXPECT_EQ(mProcesso.exitCode(), 0);
    const QString log = Log();
    EXPECT_TRUE(log.contains(u"Stato console: Arresto in corso..."_s)) << "the closing window's way";
    EXPECT_TRUE(log.contains(u"Server terminato"_s));
    EXPECT_TRUE(QFile::exists(mDir.filePath(u"server/UIConsole.xml"_s)));
    const QSettings registro(mDir.filePath(u"config/PlxSoftware/Pelorix.conf"_s), QSettings::NativeFormat);
    EXPECT_FALSE(registro.value(u"frmConsole/Pannelli"_s).toByteArray().isEmpty()) << "the window's layout is saved";
}

INSTANTIATE_TEST_SUITE_P(Segnali, Arresto, ::testing::Values(SIGTERM, SIGINT, SIGHUP),
                         [](const auto& prova) { return std::string(sigabbrev_np(prova.param)); });

TEST_F(Arresto, ASignalWhileStartingStopsOnceStarted)
{
    ASSERT_TRUE(AvviaFinoA(u"Stato console: Avvio in corso..."_s)) << qPrintable(Log());
    ASSERT_EQ(::kill(static_cast<pid_t>(mProcesso.processId()), SIGTERM), 0);
    ASSERT_TRUE(mProcesso.waitForFinished(20000));
    EXPECT_EQ(mProcesso.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(mProcesso.exitCode(), 0);
    EXPECT_TRUE(Log().contains(u"Server terminato"_s));
}

namespace {

// From a terminal, without a display: the printer's test page handed to the folder's server
// (started for it, and stopped after), done once the printing service took it.
TEST(RigaDiComando, PrintTestPageIsTakenByThePrintingServiceOrSaysWhyNot)
{
    QTemporaryDir dir;
    ASSERT_EQ(modDemo::CreaServerDemo(dir.path(), 0), QString());
    QProcess processo;
    QProcessEnvironment ambiente = QProcessEnvironment::systemEnvironment();
    ambiente.remove(u"DISPLAY"_s);
    ambiente.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s); // a display would be needed, and is not
    processo.setProcessEnvironment(ambiente);
    processo.start(QStringLiteral(PLX_CONSOLE), {u"--server-folder"_s, dir.path(), u"--print-test-page"_s, u"Zebra banco"_s});
    ASSERT_TRUE(processo.waitForFinished(30000));
    EXPECT_EQ(processo.exitCode(), 0) << processo.readAllStandardError().constData();
    const QString detto = QString::fromUtf8(processo.readAllStandardOutput());
    EXPECT_TRUE(detto.startsWith(u"Pagina di prova di Zebra banco: taken as STP-"_s)) << qPrintable(detto);
    const QString id = detto.section(u"taken as "_s, 1).trimmed();
    // A document now, in whichever stage the workers have taken it to.
    bool documento = false;
    for (const QString& coda : QDir(QDir(dir.path()).filePath(u"Documenti/PxSrvDocStampe"_s)).entryList(QDir::Dirs))
        documento = documento || QDir(dir.path()).exists(u"Documenti/PxSrvDocStampe/"_s + coda + u'/' + id);
    EXPECT_TRUE(documento) << qPrintable(id);
    EXPECT_TRUE(QDir(QDir(dir.path()).filePath(u"Ingresso/PxSrvStampe"_s)).entryList(QDir::Files).isEmpty());
    EXPECT_FALSE(PxBloccoCartella::Leggi(dir.path()).Vivo) << "the server started for the page stopped with it";

    processo.start(QStringLiteral(PLX_CONSOLE), {u"--server-folder"_s, dir.path(), u"--print-test-page"_s, u"Nessuna"_s});
    ASSERT_TRUE(processo.waitForFinished(30000));
    EXPECT_EQ(processo.exitCode(), 1);
    const QString errore = QString::fromUtf8(processo.readAllStandardError());
    EXPECT_TRUE(errore.contains(u"Nessuna"_s)) << qPrintable(errore);
}

} // namespace
