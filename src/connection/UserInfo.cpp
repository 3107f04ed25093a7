#include "connection/UserInfo.h"

#include "core/AppVariables.h"

#include <QHostInfo>
#include <QMutex>
#include <QMutexLocker>
#include <QSysInfo>

#include <memory>
#include <pwd.h>
#include <vector>

namespace {

QString fullNameOf(const QString &account) {
    constexpr std::size_t bufferSize = 16384;
    std::vector<char> buffer(bufferSize);
    passwd entry{};
    passwd *found = nullptr;
    if (getpwnam_r(account.toLocal8Bit().constData(), &entry, buffer.data(), buffer.size(),
                   &found) != 0 ||
        !found || !found->pw_gecos)
        return QString();
    return QString::fromLocal8Bit(found->pw_gecos).section(QLatin1Char(','), 0, 0);
}

} // namespace

const UserInfo &UserInfo::instance() {
    static QMutex mutex;
    static std::unique_ptr<UserInfo> info;
    const QMutexLocker locker(&mutex);
    if (!info) {
        info.reset(new UserInfo);
        info->Initialize();
    }
    return *info;
}

void UserInfo::Initialize() {
    m_hostName = QHostInfo::localHostName();
    m_userDomain = QHostInfo::localDomainName();
    m_environment = QSysInfo::prettyProductName();
    m_userName =
        fullNameOf(AppVariables::sm_stdVars.get(QStringLiteral("env"), QStringLiteral("USER")));
}
