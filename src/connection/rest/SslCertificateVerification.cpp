#include "connection/rest/SslCertificateVerification.h"

#include "core/Enum.h"
#include "core/settings/SslSettings.h"

template <>
const Enum<SslCertificateVerification>::Container Enum<SslCertificateVerification>::Values{
    {SslCertificateVerification::Strict, "Strict", "Strict"},
    {SslCertificateVerification::Insecure, "Insecure", "Insecure"},
};

QSslSocket::PeerVerifyMode configuredPeerVerifyMode() {
    try {
        const QString name = SslSettings().SslCertificateVerification;
        const auto mode = Enum<SslCertificateVerification>::FromInvariantString(name);
        return mode == SslCertificateVerification::Strict ? QSslSocket::VerifyPeer
                                                          : QSslSocket::QueryPeer;
    } catch (const ConveterException &) {
        return QSslSocket::QueryPeer;
    }
}
