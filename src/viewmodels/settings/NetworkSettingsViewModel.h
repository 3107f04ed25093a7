#pragma once

#include "connection/ConnectionStateInfo.h"
#include "viewmodels/AppSettingsViewModel.h"
#include "viewmodels/ValidatableInt32.h"

/// The page "Сеть": where the balancer is, and on which ports web forms find this client. Main
/// thread.
class NetworkSettingsViewModel : public AppSettingsViewModel {
    Q_OBJECT
    Q_PROPERTY(ValidatableText *ASRServerHost READ get_ASRServerHost CONSTANT)
    Q_PROPERTY(ValidatableText *ASRServerPort READ get_ASRServerPort CONSTANT)
    Q_PROPERTY(ValidatableText *ASRServerRestPort READ get_ASRServerRestPort CONSTANT)
    Q_PROPERTY(ValidatableText *FormAPIPort READ get_FormAPIPort CONSTANT)
    Q_PROPERTY(ValidatableText *RestProxyPort READ get_RestProxyPort CONSTANT)
    /// Why there is no connection; empty while there is one.
    Q_PROPERTY(
        QString LastConnectionError MEMBER m_lastConnectionError NOTIFY changed_LastConnectionError)
    Q_PROPERTY(bool ClientOnly READ get_ClientOnly CONSTANT)

public:
    explicit NetworkSettingsViewModel(QObject *parent = nullptr);

    bool Validate() override;
    void Load() override;
    void Apply() override;

    ValidatableText *get_ASRServerHost() { return &m_host; }
    ValidatableInt32 *get_ASRServerPort() { return &m_port; }
    ValidatableInt32 *get_ASRServerRestPort() { return &m_restPort; }
    ValidatableInt32 *get_FormAPIPort() { return &m_formApiPort; }
    ValidatableInt32 *get_RestProxyPort() { return &m_restProxyPort; }
    bool get_ClientOnly() const { return true; }

public slots:
    void onConnectionStateChanged(const ConnectionStateInfo &info);

signals:
    void changed_LastConnectionError(const QString &v);
    void ApplyNetworkSettings(bool bASR_changed, bool bFormAPI_changed, bool bRestProxy_changed);

private:
    static void ValidateHost(ValidatableText::ValidationArgs *args);
    static void ValidateIPPort(ValidatableText::ValidationArgs *args, int port);

    ValidatableText m_host{this};
    ValidatableInt32 m_port{this};
    ValidatableInt32 m_restPort{this};
    ValidatableInt32 m_formApiPort{this};
    ValidatableInt32 m_restProxyPort{this};
    QString m_lastConnectionError;
};
