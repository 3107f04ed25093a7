#pragma once

#include <QSslSocket>

/// Whether a server's certificate has to verify.
enum class SslCertificateVerification { Strict = 0, Insecure = 1 };

/// The peer verify mode that the settings ask for; an unknown value counts as Insecure.
QSslSocket::PeerVerifyMode configuredPeerVerifyMode();
