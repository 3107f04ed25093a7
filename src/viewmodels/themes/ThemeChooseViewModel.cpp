#include "viewmodels/themes/ThemeChooseViewModel.h"

#include "recognition/AsrManager.h"

#include <algorithm>

ThemeChooseViewModel::ThemeChooseViewModel(QObject *parent) : SettingsViewModel(parent) {
    m_index.SetValue(-1);
    m_index.setValueValidator([this](ValidatableText::ValidationArgs *args, const int &index) {
        ValidateThemeIndex(args, index);
    });
    connect(&m_index, &ValidatableInt32::changed_Value, this,
            &ThemeChooseViewModel::changed_SelectedTheme);
}

void ThemeChooseViewModel::ValidateThemeIndex(ValidatableText::ValidationArgs *args, int index) {
    m_needShow = true;
    if (m_choices.count() == 0)
        args->error = tr("Отсутствуют словари на сервере");
    else if (index < 0)
        args->error = tr("Необходимо выбрать словарь");
    else
        m_needShow = false;
}

bool ThemeChooseViewModel::Validate() {
    return m_index.CheckAndSetFocus();
}

ThemeInfoViewModel *ThemeChooseViewModel::get_SelectedTheme() const {
    return m_choices.at(m_index.get_IntValue());
}

void ThemeChooseViewModel::Load() {
    m_needShow = true;
    if (!m_asrManager) {
        clearChoices();
        choose(-1);
        return;
    }
    const QString wanted = wantedId();
    // May throw, and then leaves what was offered before.
    const QList<ClientThemeInfo> themes = offeredThemes();
    clearChoices();
    int index = themes.isEmpty() ? -1 : 0;
    for (int i = 0; i < themes.size(); ++i) {
        m_choices.append(new ThemeInfoViewModel(themes[i], this));
        if (themes[i].id() == wanted)
            index = i;
    }
    choose(index);
    SettingsViewModel::Load();
}

QString ThemeChooseViewModel::wantedId() const {
    if (const ThemeInfoViewModel *selected = get_SelectedTheme())
        return selected->get_Id();
    return m_asrManager->getSelectedTheme().id();
}

QList<ClientThemeInfo> ThemeChooseViewModel::offeredThemes() const {
    QList<ClientThemeInfo> themes = m_asrManager->get_Themes(false);
    std::stable_sort(themes.begin(), themes.end(),
                     [](const ClientThemeInfo &left, const ClientThemeInfo &right) {
                         return left.compositionType() < right.compositionType();
                     });
    const auto firstComposed =
        std::find_if(themes.begin(), themes.end(),
                     [](const ClientThemeInfo &theme) { return theme.compositionType() != 0; });
    const auto isPlain = [](const ClientThemeInfo &theme) { return theme.compositionType() == 0; };
    if (firstComposed != themes.end())
        themes.erase(std::remove_if(themes.begin(), themes.end(), isPlain), themes.end());
    return themes;
}

void ThemeChooseViewModel::clearChoices() {
    const QList<QObject *> former = m_choices.items();
    m_choices.clear();
    for (QObject *theme : former)
        theme->deleteLater();
}

void ThemeChooseViewModel::choose(int index) {
    if (m_index.get_IntValue() != index)
        m_index.set_IntValue(index);
    else // the same place may stand for another dictionary now
        emit changed_SelectedTheme();
}
