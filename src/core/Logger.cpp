#include "core/Logger.h"

#include "core/AppVariables.h"
#include "core/LogFiles.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QStandardPaths>
#include <QStringList>

#include <easylogging++.h>
#include <sys/stat.h>

INITIALIZE_EASYLOGGINGPP

namespace {

const char *const fallbackConfiguration =
    "* GLOBAL:\n"
    "  FORMAT = \"%datetime %level: [%logger] %msg\"\n"
    "  FILENAME = \"${AppDataLocation}/logs/log_${DateTime:yyyy-MM-dd HH-mm-ss}.log\"\n"
    "  ENABLED = true\n"
    "  TO_FILE = true\n"
    "  TO_STANDARD_OUTPUT = true\n"
    "  SUBSECOND_PRECISION = 1\n"
    "  PERFORMANCE_TRACKING = false\n"
    "  MAX_LOG_FILE_SIZE = 1024000\n";

el::Level levelOf(QtMsgType type) {
    switch (type) {
    case QtDebugMsg:
        return el::Level::Debug;
    case QtInfoMsg:
        return el::Level::Info;
    case QtWarningMsg:
        return el::Level::Warning;
    case QtCriticalMsg:
        return el::Level::Error;
    case QtFatalMsg:
        return el::Level::Fatal;
    }
    return el::Level::Unknown;
}

/// Opens the logger that a message goes to.
class MessageWriter : public el::base::Writer {
public:
    using Writer::Writer;
    bool hasLogger() const { return m_logger != nullptr; }
};

/// The parser reports on the last line of a text only, so each line has to be the last once.
bool isWellFormed(const QString &text) {
    std::string prefix;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        prefix += line.toStdString() + '\n';
        el::Configurations configurations;
        if (!configurations.parseFromText(prefix))
            return false;
    }
    return true;
}

bool applyConfiguration(const QString &text) {
    el::Configurations configurations;
    if (!isWellFormed(text) || !configurations.parseFromText(text.toStdString()))
        return false;
    // The folders and files that this makes. No thread of ours runs yet that could make others.
    const mode_t mask = ::umask(S_IRWXG | S_IRWXO);
    const auto restore = qScopeGuard([mask] { ::umask(mask); });
    el::Loggers::setDefaultConfigurations(configurations, true);
    return true;
}

/// The files that a logger writes to: a configuration can give each level its own, or none.
QStringList filesOf(el::Logger *logger) {
    if (!logger->configurations()->hasConfiguration(el::ConfigurationType::Filename))
        return {};
    QStringList files;
    el::base::type::EnumType level = el::LevelHelper::kMinValid;
    el::LevelHelper::forEachLevel(&level, [&] {
        files << QString::fromStdString(
            logger->typedConfigurations()->filename(el::LevelHelper::castFromInt(level)));
        return false;
    });
    files.removeDuplicates();
    return files;
}

/// A file can be older than this program's care for it, and a logger made later can have one of its
/// own: its name may hold the time.
void keepFilesPrivate(el::Logger *logger) {
    const QStringList files = filesOf(logger);
    for (const QString &file : files)
        LogFiles::keepPrivate(file);
}

void tidyLogFolders() {
    const QString own =
        QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/logs");
    if (QFileInfo(own).isDir())
        QFile::setPermissions(own, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QStringList folders{own};
    const QStringList files = filesOf(el::Loggers::getLogger("default"));
    for (const QString &file : files)
        folders << QFileInfo(file).absolutePath();
    folders.removeDuplicates();
    for (const QString &folder : qAsConst(folders))
        LogFiles::tidy(folder);
}

/// The text of "log.ini" beside the executable, expanded; empty, with a problem noted, if there
/// is none to use.
QString readConfigurationFile(const QString &path, QStringList *problems) {
    QFile file(path);
    if (!file.exists()) {
        *problems << QStringLiteral("File %1 not found").arg(path);
        return {};
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        *problems << QStringLiteral("Cannot open logger configuration %1\n Error: %2")
                         .arg(path, file.errorString());
        return {};
    }
    const QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        *problems << QStringLiteral("Cannot read logger configuration %1\n Error: %2")
                         .arg(path, file.errorString());
        return {};
    }
    const QString text = AppVariables::sm_stdVars.substitute(QString::fromUtf8(content));
    if (text.trimmed().isEmpty()) {
        *problems << QStringLiteral("Logger configuration %1 is empty").arg(path);
        return {};
    }
    return text;
}

bool configureFromFile(QStringList *problems) {
    const QString folder =
        AppVariables::sm_stdVars.get(QStringLiteral("AppStartLocation"), QString());
    const QString path = QDir(folder).filePath(QStringLiteral("log.ini"));
    const QString text = readConfigurationFile(path, problems);
    if (text.isEmpty())
        return false;
    if (applyConfiguration(text))
        return true;
    *problems << QStringLiteral("Cannot parse logger configuration %1").arg(path);
    return false;
}

void logStart(const QStringList &problems) {
    const AppVariables &variables = AppVariables::sm_stdVars;
    qInfo().noquote().nospace()
        << "Logger started at "
        << variables.get(QStringLiteral("datetime"), QStringLiteral("yyyy-MM-dd HH:mm:ss"))
        << " Version: " << variables.get(QStringLiteral("build"), QStringLiteral("Version"));
    for (const QString &problem : problems)
        qWarning().noquote() << problem;
}

} // namespace

void InitLogger(int argc, char **argv) {
    // Nothing can be logged before a configuration stands, so what goes wrong is kept for later.
    QStringList problems;
    el::Loggers::addFlag(el::LoggingFlag::CreateLoggerAutomatically);
    qInstallMessageHandler(vmLogHandler);

    const bool usesFile = configureFromFile(&problems);
    const QString fallback =
        usesFile ? QString()
                 : AppVariables::sm_stdVars.substitute(QString::fromUtf8(fallbackConfiguration));
    if (!usesFile && !applyConfiguration(fallback))
        problems << QStringLiteral("Failed to configure logger, only console log is used.");
    keepFilesPrivate(el::Loggers::getLogger("default"));
    tidyLogFolders();

    el::Helpers::setArgs(argc, argv);
    logStart(problems);
    if (!usesFile)
        qWarning().noquote().nospace() << "Logger have used fallback configuration\n" << fallback;
}

void vmLogHandler(QtMsgType type, const QMessageLogContext &context, const QString &message) {
    const char *const category = context.category ? context.category : "default";
    if (!el::Loggers::hasLogger(category))
        keepFilesPrivate(el::Loggers::getLogger(category));
    MessageWriter writer(levelOf(type), context.file ? context.file : "",
                         static_cast<el::base::type::LineNumber>(context.line),
                         context.function ? context.function : "");
    writer.construct(1, category);
    if (writer.hasLogger())
        writer << message.toUtf8().constData();
}
