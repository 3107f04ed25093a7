#pragma once

#include "core/settings/Setting.h"

/// The address of one endpoint: host, WebSocket port, REST port, TLS on both.
class BaseConnectionSettings : public Settings {
public:
    BaseConnectionSettings(const QString &group, const QString &defaultIp, int defaultPort,
                           int defaultRestPort, bool defaultUseTls);

    virtual QString DefaultIpAddress() const;
    virtual bool DefaultUseTls() const;
    virtual int DefaultPort() const;
    virtual int DefaultRestPort() const;

    /// True for "localhost" and "127.0.0.1", blanks around them aside.
    bool isLocalhost() const;

    Setting<QString> Ip;
    Setting<int> Port;
    Setting<int> RestPort;
    Setting<bool> UseTls;

protected:
    /// The server address that this build was made for.
    static QString builtInAddress();
};
