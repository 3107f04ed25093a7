#pragma once

#include "core/settings/Setting.h"

/// The one TLS setting of the program.
class SslSettings : public Settings {
public:
    SslSettings() : Settings(QStringLiteral("SSL")) {}

    Setting<QString> SslCertificateVerification{this, QStringLiteral("SslCertificateVerification"),
                                                QStringLiteral("Insecure")};
};
