#include "viewmodels/SettingsContainerViewModel.h"

#include "connection/ConnectionManager.h"

SettingsContainerViewModel::SettingsContainerViewModel(const QList<AppSettingsViewModel *> &pages,
                                                       ConnectionManager *connectionManager,
                                                       QObject *parent)
    : SettingsViewModel(parent), m_connectionManager(connectionManager) {
    for (AppSettingsViewModel *page : pages)
        m_pages << page;
}

void SettingsContainerViewModel::Load() {
    choosePages();
    SettingsViewModel::Load();
    set_currentIndex(0);
}

void SettingsContainerViewModel::choosePages() {
    const bool isReady = m_connectionManager->state() == ConnectionState::Ready;
    QList<SettingsViewModel *> offered;
    for (const auto &page : qAsConst(m_pages)) {
        if (page && (isReady || !page->needServerConnection()))
            offered << page;
    }
    setPages(offered);
}

bool SettingsContainerViewModel::Validate() {
    const Pages offered = pages();
    for (int i = 0; i < offered.size(); ++i) {
        if (offered[i] && !isValid(offered[i])) {
            set_currentIndex(i);
            return false;
        }
    }
    return true;
}

void SettingsContainerViewModel::set_currentIndex(int v) {
    if (v == m_currentIndex)
        return;
    m_currentIndex = v;
    emit changed_currentIndex(v);
}
