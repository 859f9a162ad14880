// The console's command line where there is no display at all: help, the version and a
// mistyped option must answer on the terminal, not abort for want of a windowing system.
#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

struct Esito
{
    int Codice = -1;
    QProcess::ExitStatus Stato = QProcess::CrashExit;
    QString Uscita;
    QString Errori;
};

// Runs the console with `argomenti` in an environment with no display and no platform chosen.
Esito Esegui(const QStringList& argomenti)
{
    QTemporaryDir casa;
    QProcessEnvironment ambiente = QProcessEnvironment::systemEnvironment();
    for (const QString& v : {u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s, u"QT_QPA_PLATFORM"_s})
        ambiente.remove(v);
    ambiente.insert(u"XDG_CONFIG_HOME"_s, casa.path());
    ambiente.insert(u"XDG_RUNTIME_DIR"_s, casa.path());
    QProcess processo;
    processo.setProcessEnvironment(ambiente);
    processo.start(QStringLiteral(PLX_CONSOLE), argomenti);
    Esito e;
    if (!processo.waitForFinished(30000)) {
        processo.kill();
        processo.waitForFinished();
        return e;
    }
    e.Codice = processo.exitCode();
    e.Stato = processo.exitStatus();
    e.Uscita = QString::fromLocal8Bit(processo.readAllStandardOutput());
    e.Errori = QString::fromLocal8Bit(processo.readAllStandardError());
    return e;
}

} // namespace

TEST(RigaComandoSenzaDisplay, HelpListsTheOptions)
{
    for (const QString& aiuto : {u"--help"_s, u"-h"_s}) {
        const Esito e = Esegui({aiuto});
        EXPECT_EQ(e.Stato, QProcess::NormalExit) << qPrintable(aiuto);
        EXPECT_EQ(e.Codice, 0) << qPrintable(aiuto + u": "_s + e.Errori);
        EXPECT_TRUE(e.Uscita.contains(u"--server-folder"_s)) << qPrintable(e.Uscita);
        EXPECT_TRUE(e.Uscita.contains(u"--make-demo"_s)) << qPrintable(e.Uscita);
    }
}

TEST(RigaComandoSenzaDisplay, VersionPrintsTheProgramsVersion)
{
    const Esito e = Esegui({u"--version"_s});
    EXPECT_EQ(e.Stato, QProcess::NormalExit);
    EXPECT_EQ(e.Codice, 0) << qPrintable(e.Errori);
    EXPECT_TRUE(e.Uscita.contains(QStringLiteral(PLX_VERSION))) << qPrintable(e.Uscita);
}

TEST(RigaComandoSenzaDisplay, AnUnknownOptionIsNamedAndRefused)
{
    const Esito e = Esegui({u"--server-fodler"_s, u"/tmp"_s});
    EXPECT_EQ(e.Stato, QProcess::NormalExit) << "no abort for want of a display";
    EXPECT_EQ(e.Codice, 1);
    EXPECT_TRUE(e.Errori.contains(u"server-fodler"_s)) << qPrintable(e.Errori);
}
