#include "viewmodels/settings/NetworkSettingsViewModel.h"

#include "core/settings/BalancerConnectionSettings.h"
#include "core/settings/FormApiSettings.h"
#include "viewmodels/StoreProperty.h"

#include <QRegExp>

NetworkSettingsViewModel::NetworkSettingsViewModel(QObject *parent)
    : AppSettingsViewModel(tr("Сеть"), false, parent) {
    m_host.setValidator(ValidateHost);
    for (ValidatableInt32 *port : {&m_port, &m_restPort, &m_formApiPort, &m_restProxyPort}) {
        port->setValueValidator(ValidateIPPort);
        port->setConversionError(tr("Порт должен быть в диапазоне от 1 до 65535"));
    }
}

void NetworkSettingsViewModel::ValidateHost(ValidatableText::ValidationArgs *args) {
    const QRegExp host(QStringLiteral("^ *(\\w|\\.|-|_)+ *$"));
    if (!host.exactMatch(args->text))
        args->error = tr("Некорректное имя хоста. Введите IP адрес или имя сервера");
}

void NetworkSettingsViewModel::ValidateIPPort(ValidatableText::ValidationArgs *args, int port) {
    constexpr int largestPort = 65535;
    if (port < 1 || port > largestPort)
        args->error = tr("Порт должен быть в диапазоне от 1 до 65535");
}

bool NetworkSettingsViewModel::Validate() {
    return m_host.CheckAndSetFocus() && m_port.CheckAndSetFocus() &&
           m_restPort.CheckAndSetFocus() && m_formApiPort.CheckAndSetFocus() &&
           m_restProxyPort.CheckAndSetFocus();
}

void NetworkSettingsViewModel::Load() {
    AppSettingsViewModel::Load();
    const BalancerConnectionSettings balancer;
    m_host.SetText(balancer.Ip);
    m_port.SetValue(balancer.Port);
    m_restPort.SetValue(balancer.RestPort);
    const FormApiSettings formApi;
    m_formApiPort.SetValue(formApi.Port);
    m_restProxyPort.SetValue(formApi.RestPort);
}

void NetworkSettingsViewModel::Apply() {
    AppSettingsViewModel::Apply();
    BalancerConnectionSettings balancer;
    balancer.Ip = m_host.get_Text();
    balancer.Port = m_port.GetValue();
    balancer.RestPort = m_restPort.GetValue();
    FormApiSettings formApi;
    formApi.Port = m_formApiPort.GetValue();
    formApi.RestPort = m_restProxyPort.GetValue();
    if (balancer.changed)
        balancer.sync();
    if (formApi.changed)
        formApi.sync();
    if (balancer.changed || formApi.changed) {
        emit ApplyNetworkSettings(balancer.changed, formApi.Port.changed(),
                                  formApi.RestPort.changed());
    }
}

void NetworkSettingsViewModel::onConnectionStateChanged(const ConnectionStateInfo &info) {
    const bool isReady = info.is(ConnectionState::Ready);
    if (isReady || !info.message().isEmpty()) {
        storeProperty(this, &m_lastConnectionError, isReady ? QString() : info.message(),
                      &NetworkSettingsViewModel::changed_LastConnectionError);
    }
}
