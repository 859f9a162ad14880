// Test entry point: a QApplication on the offscreen platform, with the user's settings and
// data redirected to a temporary folder so that tests never touch the real ones.
#include <gmock/gmock.h>

#include <QApplication>
#include <QStandardPaths>
#include <QTemporaryDir>

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir casa;
    qputenv("XDG_CONFIG_HOME", casa.filePath(QStringLiteral("config")).toUtf8());
    qputenv("XDG_DATA_HOME", casa.filePath(QStringLiteral("data")).toUtf8());
    // The machine's settings too: tests run as root in CI, where /etc/xdg is writable.
    qputenv("XDG_CONFIG_DIRS", casa.filePath(QStringLiteral("macchina")).toUtf8());
    // In test mode Qt keeps the user's settings under $HOME/.qttest, which every test process
    // would share: home is this process's own too.
    qputenv("HOME", casa.path().toUtf8());
    QStandardPaths::setTestModeEnabled(true);
    ::testing::InitGoogleMock(&argc, argv);
    QApplication app(argc, argv);
    app.setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
