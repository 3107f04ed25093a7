#pragma once

#include "viewmodels/AppSettingsViewModel.h"

class ConnectionManager;

/// The settings window: offers the pages that make sense now, and shows one of them.
///
/// Lives on the main thread. Neither the pages nor the manager are owned; the manager outlives this
/// object, a page that is destroyed is no longer offered.
class SettingsContainerViewModel : public SettingsViewModel {
    Q_OBJECT
    Q_PROPERTY(
        int currentIndex READ get_currentIndex WRITE set_currentIndex NOTIFY changed_currentIndex)

public:
    SettingsContainerViewModel(const QList<AppSettingsViewModel *> &pages,
                               ConnectionManager *connectionManager, QObject *parent = nullptr);

    /// Goes to the first page that fails.
    bool Validate() override;
    /// Chooses the pages: those that need a server only while recognition is ready.
    void Load() override;

    /// The shown page's place among the inner pages.
    int get_currentIndex() const { return m_currentIndex; }

public slots:
    void set_currentIndex(int v);

signals:
    void changed_currentIndex(int v);

private:
    void choosePages();

    int m_currentIndex = 0;
    ConnectionManager *m_connectionManager;
    QList<QPointer<AppSettingsViewModel>> m_pages;
};
