#include "PxServerFiglio.h"

#include "PxBloccoCartella.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QEventLoop>
#include <QStandardPaths>
#include <QTimer>

#include <csignal>
#include <cstdio>
#include <sys/prctl.h>
#include <unistd.h>

PxServerFiglio::PxServerFiglio(QObject* parent) : QObject(parent)
{
    // The child's log goes where ours goes; its end is ours to decide, or the system's.
    mProcesso.setProcessChannelMode(QProcess::ForwardedChannels);
    mProcesso.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
    connect(&mProcesso, &QProcess::finished, this, &PxServerFiglio::AllaFine);
}

void PxServerFiglio::AllaFine(int stato, QProcess::ExitStatus come)
{
    if (mChiusura || !mInServizio || (come == QProcess::NormalExit && (stato == 0 || stato == 3)))
        return;
    std::fprintf(stderr, "plxsrvconsole: the server ended (%s %d); starting it again\n",
                 come == QProcess::CrashExit ? "signal" : "status", stato);
    QTimer::singleShot(500, this, [this] {
        if (!mChiusura && mProcesso.state() == QProcess::NotRunning)
            mProcesso.start(mProcesso.program(), mArgomenti);
    });
}

PxServerFiglio::~PxServerFiglio()
{
    mChiusura = true;
    if (mProcesso.state() == QProcess::NotRunning)
        return;
    mProcesso.terminate();
    // A large folder takes a while to sync; a server that never ends is killed.
    if (!mProcesso.waitForFinished(60000)) {
        mProcesso.kill();
        mProcesso.waitForFinished(5000);
    }
}

QString PxServerFiglio::Programma()
{
    const QString accanto = QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("plxsrvd"));
    if (QFileInfo(accanto).isExecutable())
        return accanto;
    QString trovato = QStandardPaths::findExecutable(QStringLiteral("plxsrvd"));
    if (trovato.isEmpty())
        trovato = QStandardPaths::findExecutable(QStringLiteral("plxsrvd"), {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/local/sbin")});
    return trovato;
}

QString PxServerFiglio::SocketDiSistema() { return QStringLiteral(PLX_SOCKET_SISTEMA); }

QString PxServerFiglio::IndirizzoDiSistema(QString* perche)
{
    const QString socket = SocketDiSistema();
    const QFileInfo info(socket);
    const QFileInfo cartella(info.absolutePath());
    QString motivo;
    if (cartella.exists() && !cartella.isExecutable())
        motivo = QStringLiteral("%1 is the system server's, and only the members of group \"%2\" may use it")
                     .arg(socket, cartella.group());
    else if (!info.exists())
        motivo = QStringLiteral("no system server (%1 does not exist)").arg(socket);
    else if (::access(QFile::encodeName(socket).constData(), R_OK | W_OK) != 0)
        motivo = QStringLiteral("%1 is the system server's, and only the members of group \"%2\" may use it")
                     .arg(socket, info.group());
    if (perche)
        *perche = motivo;
    return motivo.isEmpty() ? QStringLiteral("local:") + socket : QString();
}

QString PxServerFiglio::Preferito(const QStringList& indirizzi)
{
    for (const QString& i : indirizzi)
        if (i.startsWith(u"local:"))
            return i;
    return indirizzi.value(0);
}

QString PxServerFiglio::Trova(const QString& cartella, bool avviaSeManca, int millisecondi)
{
    mErrore.clear();
    QElapsedTimer tempo;
    tempo.start();
    QEventLoop attesa;
    QTimer passo;
    passo.setInterval(50);
    connect(&passo, &QTimer::timeout, &attesa, &QEventLoop::quit);
    passo.start();
    bool avviato = false;
    while (true) {
        const PxBloccoCartella::Detentore chi = PxBloccoCartella::Leggi(cartella);
        if (chi.Vivo && !chi.Indirizzi.isEmpty()) {
            mInServizio = avviato && chi.Pid == mProcesso.processId();
            return Preferito(chi.Indirizzi);
        }
        if (!chi.Vivo && avviaSeManca && !avviato) {
            // Another console may start one at the same moment: then ours refuses the folder
            // (status 3) and the loop finds the other's address.
            const QString programma = Programma();
            if (programma.isEmpty()) {
                mErrore = QStringLiteral("the server program plxsrvd was not found");
                return {};
            }
            // Its log is in the folder; only what goes wrong comes to our terminal.
            mArgomenti = {QStringLiteral("--server-folder"), cartella, QStringLiteral("--quiet")};
            mProcesso.start(programma, mArgomenti);
            if (!mProcesso.waitForStarted(10000)) {
                mErrore = QStringLiteral("%1: %2").arg(programma, mProcesso.errorString());
                return {};
            }
            avviato = true;
        } else if (!chi.Vivo && avviato && mProcesso.state() == QProcess::NotRunning && mProcesso.exitCode() != 3) {
            mErrore = QStringLiteral("the server program ended at its start (status %1)").arg(mProcesso.exitCode());
            return {};
        } else if (!chi.Vivo && !avviaSeManca) {
            mErrore = QStringLiteral("no server serves %1").arg(QDir(cartella).absolutePath());
            return {};
        }
        if (tempo.elapsed() > millisecondi) {
            mErrore = QStringLiteral("the server of %1 does not listen yet").arg(QDir(cartella).absolutePath());
            return {};
        }
        attesa.exec();
    }
}
