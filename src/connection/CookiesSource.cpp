#include "connection/CookiesSource.h"

#include "connection/UserInfo.h"
#include "core/AppVariables.h"
#include "core/settings/ClientInfoSettings.h"
#include "core/settings/ProfileFile.h"

#include <QDebug>
#include <QMutexLocker>
#include <QThread>
#include <QUrl>

namespace {

struct ProfileCookie {
    const char *name;
    const char *key;
};

void appendProfile(QList<QNetworkCookie> *cookies, const ProfileFile &file,
                   std::initializer_list<ProfileCookie> rows) {
    for (const ProfileCookie &row : rows)
        cookies->append(CookiesSource::encodedCookie(row.name, file.text(row.key)));
}

} // namespace

CookiesSource::CookiesSource() : m_initThread(QThread::create([this] { initializeCookies(); })) {
    m_initThread->start(QThread::InheritPriority);
}

CookiesSource::~CookiesSource() {
    m_initThread->wait();
}

QByteArray CookiesSource::encode(const QString &value) {
    return QUrl::toPercentEncoding(value, "({[ ]})", ";");
}

QNetworkCookie CookiesSource::encodedCookie(const char *name, const QString &value) {
    return QNetworkCookie(name, encode(value));
}

void CookiesSource::initializeCookies() {
    if (!m_cookies.isEmpty())
        return;
    const QString account =
        AppVariables::sm_stdVars.get(QStringLiteral("env"), QStringLiteral("USER"));
    qInfo().noquote().nospace() << "Connection: user " << account;
    const UserInfo &user = UserInfo::instance();
    m_cookies = {
        encodedCookie("CLIENT_APP_VERSION", AppVariables::buildProperty("Version")),
        encodedCookie("CLIENT_APP_NAME", AppVariables::buildProperty("ClientAppName")),
        encodedCookie("DESKTOP_ID", ClientInfoSettings().getOrCreateDesktopId()),
        encodedCookie("ENVIRONMENT", user.environment()),
        encodedCookie("ACCOUNT", account),
        encodedCookie("HOSTNAME", user.hostName()),
        encodedCookie("USER_DOMAIN", user.userDomain()),
        encodedCookie("USER_NAME", user.userName()),
    };
}

QList<QNetworkCookie> CookiesSource::getCookies() const {
    m_initThread->wait();
    QList<QNetworkCookie> cookies = m_cookies;
    {
        const QMutexLocker locker(&m_additionalMutex);
        cookies += m_additionalCookies;
    }
    appendProfile(&cookies, ProfileFile::organisation(),
                  {{"REGION_CODE", "Organisation/RegionCode"},
                   {"ORG_FULL_NAME", "Organisation/OrganisationFullName"},
                   {"ORG_PSRN", "Organisation/OrganisationPSRN"},
                   {"ORG_OID", "Organisation/OrganisationOid"},
                   {"ROOM", "Organisation/Room"}});
    appendProfile(&cookies, ProfileFile::userInfo(),
                  {{"USER", "UserInfo/UserName"},
                   {"USER_SPEC", "UserInfo/Specialisation"},
                   {"USER_IIAN", "UserInfo/UserIian"}});
    cookies << encodedCookie("TIMEZONE", QString()) << encodedCookie("MIS_TYPE", QString())
            << encodedCookie("MIS_USER", ClientInfoSettings().getOrCreateDesktopId())
            << encodedCookie("MIS_ID", QString()) << encodedCookie("MIS_VERSION", QString());
    return cookies;
}

void CookiesSource::setAdditionalCookies(const QList<QNetworkCookie> &cookies) {
    const QMutexLocker locker(&m_additionalMutex);
    m_additionalCookies = cookies;
}
