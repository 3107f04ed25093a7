#include "core/settings/BaseConnectionSettings.h"

#include "core/AppVariables.h"

BaseConnectionSettings::BaseConnectionSettings(const QString &group, const QString &defaultIp,
                                               int defaultPort, int defaultRestPort,
                                               bool defaultUseTls)
    : Settings(group),
      Ip(this, QStringLiteral("Ip"), defaultIp),
      Port(this, QStringLiteral("Port"), defaultPort),
      RestPort(this, QStringLiteral("RestPort"), defaultRestPort),
      UseTls(this, QStringLiteral("UseTls"), defaultUseTls) {}

QString BaseConnectionSettings::DefaultIpAddress() const {
    return builtInAddress();
}

bool BaseConnectionSettings::DefaultUseTls() const {
    return false;
}

int BaseConnectionSettings::DefaultPort() const {
    return 0;
}

int BaseConnectionSettings::DefaultRestPort() const {
    return 0;
}

bool BaseConnectionSettings::isLocalhost() const {
    const QString host = Ip.get().trimmed();
    return host == QLatin1String("localhost") || host == QLatin1String("127.0.0.1");
}

QString BaseConnectionSettings::builtInAddress() {
    return AppVariables::buildProperty("DefaultServerAddress");
}
