#include "Program.h"

#include "DeskTest.h"
#include "Stand.h"
#include "connection/messages/MessageType.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/ConnectionManagerSettings.h"
#include "core/settings/StatisticsSettings.h"

#include <QCoreApplication>
#include <QFile>

Program::Program(const QString &executable, const QStringList &arguments) {
    // The profile is asked for where a test says so.
    if (!StatisticsSettings().contains("FillOrganisationUserInfo"))
        StatisticsSettings().setValue("FillOrganisationUserInfo", false);
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // With whole stacks a leak of Qt's can be told from one of ours.
    environment.insert("ASAN_OPTIONS",
                       "fast_unwind_on_malloc=0:malloc_context_size=10:exitcode=99");
    environment.insert("LSAN_OPTIONS", "suppressions=" LEAKS_OF_QT ":print_suppressions=0");
    m_process.setProcessEnvironment(environment);
    m_process.start(executable.isEmpty() ? builtExecutable() : executable, arguments);
    m_process.waitForStarted();
}

Program::~Program() {
    if (QTest::currentTestFailed())
        qWarning().noquote() << log().right(4000);
}

QString Program::builtExecutable() {
    return QCoreApplication::applicationDirPath() + "/vellumar";
}

QDir Program::copy() {
    QDir folder(desk().folder() + "/program");
    folder.removeRecursively();
    folder.mkpath(".");
    const QDir built(QCoreApplication::applicationDirPath());
    for (const char *name : {"vellumar", "autoreplaces.json"})
        QFile::copy(built.filePath(QLatin1String(name)), folder.filePath(QLatin1String(name)));
    return folder;
}

QString Program::install(const QString &file) {
    const QDir folder = copy();
    VirtualDesk::write(folder.filePath("log.ini"),
                       "* GLOBAL:\n  FORMAT = \"%level %msg\"\n  FILENAME = \"" +
                           file.toLocal8Bit() +
                           "\"\n  ENABLED = true\n  TO_FILE = true\n"
                           "  TO_STANDARD_OUTPUT = true\n* DEBUG:\n  ENABLED = false\n");
    return folder.filePath("vellumar");
}

QString Program::log() {
    m_log += QString::fromUtf8(m_process.readAll());
    return m_log;
}

bool Program::waitForLog(const QString &text, int timeoutMs) {
    int found = -1;
    const bool hasCome = QTest::qWaitFor(
        [&] {
            found = log().indexOf(text, m_position);
            return found >= 0;
        },
        timeoutMs);
    if (hasCome)
        m_position = found + text.size();
    else
        qWarning().noquote() << "not in the log:" << text << "\n" << m_log.right(4000);
    return hasCome;
}

int Program::waitForExit(int timeoutMs) {
    const bool hasEnded = QTest::qWaitFor(
        [this] {
            log();
            return m_process.state() == QProcess::NotRunning;
        },
        timeoutMs);
    if (!hasEnded)
        return -2;
    if (m_process.exitCode() != 0)
        qWarning().noquote() << log().right(4000);
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -3;
}

int Program::terminate(int timeoutMs) {
    m_process.terminate();
    return waitForExit(timeoutMs);
}

void Program::kill() {
    m_process.kill();
    waitForExit();
}

void clearSettings() {
    QFile::remove(Settings(QString()).fileName());
    Settings(QString()).sync();
}

void writeSettings(const Stand &stand) {
    stand.writeSettings();
    ConnectionManagerSettings().QuietConnectionEnabled = true;
    ASRSettings().SelectedTheme = "therapy";
    Settings(QString()).sync();
}

std::unique_ptr<Program> startProgram(Stand *stand, const QString &executable) {
    writeSettings(*stand);
    auto program = std::make_unique<Program>(executable);
    return nextMode(stand, patienceMs).isUndefined() ? nullptr : std::move(program);
}

QJsonValue nextMode(Stand *stand, int timeoutMs) {
    // A request that is not const would answer for what it lacks with null.
    const QJsonObject request = stand->waitForMessage(MessageType::StartMode, timeoutMs);
    const QJsonObject data = request["data"].toObject();
    return data["Type"];
}
