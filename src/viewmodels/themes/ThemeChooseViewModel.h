#pragma once

#include "viewmodels/CollectionModel.h"
#include "viewmodels/SettingsViewModel.h"
#include "viewmodels/ValidatableInt32.h"
#include "viewmodels/themes/ThemeInfoViewModel.h"

class AsrManager;

/// The dictionaries that the server offers, one of them chosen. Main thread; Load() may wait for an
/// answer of the server's if its list was never fetched.
class ThemeChooseViewModel : public SettingsViewModel {
    Q_OBJECT
    Q_PROPERTY(QObject *ThemeChoices READ get_ThemeChoices CONSTANT)
    Q_PROPERTY(
        ValidatableInt32 *SelectedValidatedThemeIndex READ get_SelectedValidatedThemeIndex CONSTANT)
    Q_PROPERTY(
        ThemeInfoViewModel *SelectedTheme READ get_SelectedTheme NOTIFY changed_SelectedTheme)
    /// No choice has been accepted yet.
    Q_PROPERTY(bool NeedShow READ get_NeedShow)

public:
    explicit ThemeChooseViewModel(QObject *parent = nullptr);

    /// @param asrManager  not owned, outlives the use of this object
    void set_AsrManager(AsrManager *asrManager) { m_asrManager = asrManager; }

    bool Validate() override;
    /// Fetches the list anew; the choice is kept by its id if it is still offered.
    void Load() override;

    CollectionModel<ThemeInfoViewModel> *get_ThemeChoices() { return &m_choices; }
    ValidatableInt32 *get_SelectedValidatedThemeIndex() { return &m_index; }
    /// Null if nothing is chosen.
    ThemeInfoViewModel *get_SelectedTheme() const;
    bool get_NeedShow() const { return m_needShow; }

signals:
    void changed_SelectedTheme();

private:
    void ValidateThemeIndex(ValidatableText::ValidationArgs *args, int index);
    QString wantedId() const;
    QList<ClientThemeInfo> offeredThemes() const;
    void clearChoices();
    void choose(int index);

    AsrManager *m_asrManager = nullptr;
    CollectionModel<ThemeInfoViewModel> m_choices{this};
    ValidatableInt32 m_index{this};
    bool m_needShow = true;
};
