#pragma once

#include <QList>
#include <QMutex>
#include <QNetworkCookie>

#include <memory>

class QThread;

/// Who dictates, on which machine and for which organisation, as cookies of the handshake.
///
/// The fixed part is collected once, on a thread of its own that starts with the object;
/// getCookies() waits for it. Callable from any thread.
class CookiesSource {
public:
    CookiesSource();
    ~CookiesSource();
    CookiesSource(const CookiesSource &) = delete;
    CookiesSource &operator=(const CookiesSource &) = delete;

    /// The fixed cookies, those of a form, and what the profile files hold now. No name is removed
    /// that occurs twice.
    QList<QNetworkCookie> getCookies() const;

    /// Replaces what a form session adds; counts at the next connection.
    void setAdditionalCookies(const QList<QNetworkCookie> &cookies);

    /// A cookie with its value percent-encoded, so that the value cannot end the cookie.
    static QNetworkCookie encodedCookie(const char *name, const QString &value);
    static QByteArray encode(const QString &value);

private:
    void initializeCookies();

    QList<QNetworkCookie> m_cookies;
    QList<QNetworkCookie> m_additionalCookies;
    mutable QMutex m_additionalMutex;
    std::unique_ptr<QThread> m_initThread;
};
