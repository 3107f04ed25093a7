#include "core/AppVariables.h"

#include "core/settings/Settings.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSettings>
#include <QSharedPointer>
#include <QStandardPaths>

#include <mutex>

namespace {

QDateTime appStartTime;
QSharedPointer<QSettings> BuildProperties;

AppVariables::Getter location(QStandardPaths::StandardLocation type) {
    return [type](const QString &) { return QStandardPaths::writableLocation(type); };
}

QString appBinaryLocation(const QString &) {
    static const QString folder = QFileInfo(QCoreApplication::applicationFilePath()).absolutePath();
    return folder;
}

QString appStartLocation(const QString &) {
    return QCoreApplication::applicationDirPath();
}

QString settingsLocation(const QString &) {
    return QFileInfo(Settings(QString()).fileName()).dir().path();
}

QString helpFile(const QString &) {
    QDir folder(QCoreApplication::applicationDirPath());
    folder.cd(QStringLiteral("help"));
    return folder.filePath(QStringLiteral("index.html"));
}

QString environment(const QString &variable) {
    return qEnvironmentVariable(variable.toLocal8Bit().constData());
}

QString startTime(const QString &format) {
    QString text = format.isEmpty() ? appStartTime.toString() : appStartTime.toString(format);
    // The text is to stand in a file name.
    static const QRegularExpression reserved(QStringLiteral("[\\/:?*]"));
    return text.replace(reserved, QStringLiteral("-"));
}

QString readBuildProperty(const QString &key) {
    return BuildProperties ? BuildProperties->value(key).toString() : QString();
}

} // namespace

const AppVariables AppVariables::sm_stdVars{
    {QStringLiteral("DesktopLocation"), location(QStandardPaths::DesktopLocation)},
    {QStringLiteral("DocumentsLocation"), location(QStandardPaths::DocumentsLocation)},
    {QStringLiteral("FontsLocation"), location(QStandardPaths::FontsLocation)},
    {QStringLiteral("ApplicationsLocation"), location(QStandardPaths::ApplicationsLocation)},
    {QStringLiteral("MusicLocation"), location(QStandardPaths::MusicLocation)},
    {QStringLiteral("MoviesLocation"), location(QStandardPaths::MoviesLocation)},
    {QStringLiteral("PicturesLocation"), location(QStandardPaths::PicturesLocation)},
    {QStringLiteral("TempLocation"), location(QStandardPaths::TempLocation)},
    {QStringLiteral("HomeLocation"), location(QStandardPaths::HomeLocation)},
    {QStringLiteral("DataLocation"), location(QStandardPaths::DataLocation)},
    {QStringLiteral("CacheLocation"), location(QStandardPaths::CacheLocation)},
    {QStringLiteral("GenericDataLocation"), location(QStandardPaths::GenericDataLocation)},
    {QStringLiteral("RuntimeLocation"), location(QStandardPaths::RuntimeLocation)},
    {QStringLiteral("ConfigLocation"), location(QStandardPaths::ConfigLocation)},
    {QStringLiteral("GenericConfigLocation"), location(QStandardPaths::GenericConfigLocation)},
    {QStringLiteral("DownloadLocation"), location(QStandardPaths::DownloadLocation)},
    {QStringLiteral("GenericCacheLocation"), location(QStandardPaths::GenericCacheLocation)},
    {QStringLiteral("AppDataLocation"), location(QStandardPaths::AppDataLocation)},
    {QStringLiteral("AppLocalDataLocation"), location(QStandardPaths::AppLocalDataLocation)},
    {QStringLiteral("AppBinaryLocation"), appBinaryLocation},
    {QStringLiteral("AppStartLocation"), appStartLocation},
    {QStringLiteral("SettingsLocation"), settingsLocation},
    {QStringLiteral("HelpFile"), helpFile},
    {QStringLiteral("env"), environment},
    {QStringLiteral("datetime"), startTime},
    {QStringLiteral("build"), readBuildProperty},
};

AppVariables::AppVariables(std::initializer_list<std::pair<QString, Getter>> variables) {
    for (const auto &variable : variables)
        m_variables.insert(variable.first.toLower(), variable.second);
}

void AppVariables::StaticInitializer() {
    appStartTime = QDateTime::currentDateTime();
    BuildProperties.reset(
        new QSettings(QStringLiteral(":/replaceable/buildsettings.ini"), QSettings::IniFormat));
    BuildProperties->setIniCodec("UTF-8");
}

QString AppVariables::get(const QString &name, const QString &option) const {
    static std::once_flag initialized;
    std::call_once(initialized, StaticInitializer);
    const auto variable = m_variables.constFind(name.toLower());
    return variable == m_variables.constEnd() ? QString() : (*variable)(option);
}

QString AppVariables::substitute(const QString &text) const {
    static const QRegularExpression expression(
        QStringLiteral("(?<expr>\\$\\{(?<var>[^:]*?)(:(?<opt>.*?))?\\})"));
    QString result;
    int position = 0;
    for (auto matches = expression.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        result += text.midRef(position, match.capturedStart() - position);
        result += get(match.captured(QStringLiteral("var")), match.captured(QStringLiteral("opt")));
        position = match.capturedEnd();
    }
    return result + text.midRef(position);
}

QString AppVariables::buildProperty(const char *name) {
    return sm_stdVars.get(QStringLiteral("build"), QString::fromLatin1(name));
}

bool AppVariables::buildFlag(const QString &property) {
    return sm_stdVars.get(QStringLiteral("build"), property).toLower() == QLatin1String("true");
}
