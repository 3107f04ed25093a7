#include "viewmodels/AppSettingsViewModel.h"

AppSettingsViewModel::AppSettingsViewModel(const QString &headerText, bool needsServer,
                                           QObject *parent)
    : SettingsViewModel(parent), m_headerText(headerText), m_needsServer(needsServer) {}

void AppSettingsViewModel::set_HeaderText(const QString &headerText) {
    if (headerText == m_headerText)
        return;
    m_headerText = headerText;
    emit changed_HeaderText();
}
