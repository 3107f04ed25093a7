#include "core/settings/Settings.h"

#include <QCoreApplication>

QString Settings::OrganizationName;
QString Settings::ApplicationName;
QString Settings::FileName;
QByteArray Settings::IniCodec = QByteArrayLiteral("UTF-8");
QSettings::Format Settings::DefaultFormat = QSettings::IniFormat;
QSettings::Scope Settings::Scope = QSettings::UserScope;

QString Settings::organization() {
    return OrganizationName.isEmpty() ? QCoreApplication::organizationName() : OrganizationName;
}

QString Settings::application() {
    const QString app =
        ApplicationName.isEmpty() ? QCoreApplication::applicationName() : ApplicationName;
    return app.isEmpty() || FileName.isEmpty() ? app : app + QLatin1Char('/') + FileName;
}

Settings::Settings(const QString &group)
    : QSettings(DefaultFormat, Scope, organization(), application()) {
    QSettings::setIniCodec(IniCodec.constData());
    beginGroup(group);
}
