#include "viewmodels/feedback/FeedbackViewModel.h"

#include "audio/RecordingDeviceManager.h"
#include "connection/UserInfo.h"
#include "core/AppVariables.h"
#include "core/settings/ClientInfoSettings.h"
#include "core/settings/FeedbackSettings.h"
#include "core/settings/ProfileFile.h"
#include "core/settings/StatisticsSettings.h"
#include "desktop/BusyNotice.h"
#include "viewmodels/StoreProperty.h"
#include "viewmodels/statistics/FullName.h"

#include <QMessageBox>
#include <QRegularExpression>

namespace {

constexpr int longestFeedback = 2000;
/// What the server takes as the name of a microphone.
constexpr int longestDescription = 126;

QString shortened(const QString &description) {
    return description.size() > longestDescription
               ? description.left(longestDescription - 2) + QStringLiteral("...")
               : description;
}

} // namespace

FeedbackViewModel::FeedbackViewModel(AsrManager *asrManager,
                                     RecordingDeviceManager *recordingDevice)
    : m_recordingDevice(recordingDevice),
      m_themeChooser(this),
      m_tooltip(tr("Сообщите, если слово распознается неверно:\n\n") +
                tr("- Проверьте, что используется подходящий словарь.\n") +
                tr("- Напишите правильный вариант предложения, в котором возникает ошибка при "
                   "распознавании.\n") +
                tr("- Нераспознанное слово заключите в двойные **звёздочки**\n") +
                tr("- После ударной гласной вставьте кавы”чку или апостро’ф.\n") +
                tr("- Нажмите «Отправить».\n") +
                tr("- Сообщите вашему системному администратору, что передали обратную связь в "
                   "%1. %2")
                    .arg(AppVariables::buildProperty("ShortAppName"),
                         AppVariables::buildProperty("ThemeUpdateText"))),
      m_tooltipUserConsent(tr("Для отправки обратной связи вы должны согласиться на обработку "
                              "персональных данных")) {
    m_themeChooser.set_AsrManager(asrManager);
    m_feedbackText.setValidator(&FeedbackViewModel::ValidateFeedbackText);
    m_email.setValidator(&FeedbackViewModel::ValidateEmail);
    m_fullName.setValidator(&FullName::Validate);
    ValidatableText *index = m_themeChooser.get_SelectedValidatedThemeIndex();
    for (ValidatableText *field : {&m_feedbackText, &m_email, &m_fullName, index}) {
        connect(field, &ValidatableText::changed_IsValid, this, &FeedbackViewModel::isValidChanged);
    }
}

FeedbackViewModel::~FeedbackViewModel() {
    if (m_isOpen && isChanged())
        SaveSettings();
}

void FeedbackViewModel::ValidateFeedbackText(ValidatableText::ValidationArgs *args) {
    if (args->text.isEmpty())
        args->error = tr("Отзыв не может быть пустым");
    else if (args->text.size() > longestFeedback)
        args->error = tr("Отзыв не может превышать %1 символов").arg(longestFeedback);
}

void FeedbackViewModel::ValidateEmail(ValidatableText::ValidationArgs *args) {
    static const QRegularExpression address(
        QStringLiteral("^[A-Za-z\\d][A-Za-z-–_\\.\\d]{1,62}[A-Za-z\\d]\\@[A-Za-z\\d]"
                       "[A-Za-z-–_\\.\\d]{1,172}[A-Za-z\\d]\\.[A-Za-z]{2,15}$"));
    if (!address.match(args->text).hasMatch()) {
        args->error = tr("Проверьте, что вы ввели правильный адрес электронной почты. Убедитесь, "
                         "что есть символ @ и точка");
    }
}

bool FeedbackViewModel::get_SendEnabled() {
    return m_feedbackText.get_IsValid() && m_email.get_IsValid() && m_fullName.get_IsValid() &&
           m_themeChooser.get_SelectedValidatedThemeIndex()->get_IsValid() &&
           m_userConsentRequested;
}

void FeedbackViewModel::isValidChanged(bool) {
    isValid();
}

void FeedbackViewModel::isValid() {
    emit changed_SendEnabled(get_SendEnabled());
}

void FeedbackViewModel::onLoad() {
    m_isOpen = true;
    m_themeChooser.onLoad();
    m_themeChooser.Validate();
    storeProperty(this, &m_userConsentVisible,
                  AppVariables::buildFlag(QStringLiteral("UserConsent")),
                  &FeedbackViewModel::changed_UserConsentVisible);
    LoadSettings();
    isValid();
}

void FeedbackViewModel::LoadSettings() {
    const FeedbackSettings settings;
    loadProfile();
    m_email.set_Text(settings.Email);
    storeProperty(this, &m_userConsentRequested, settings.ConsentRequested.get(),
                  &FeedbackViewModel::changed_UserConsentRequested);
    m_fullName.SetText(StatisticsSettings().FillOrganisationUserInfo
                           ? ProfileFile::userInfo().text("UserInfo/UserName")
                           : settings.FullName.get());
    m_feedbackText.SetText(settings.FeedbackText);
    loadTheme();
}

void FeedbackViewModel::loadProfile() {
    using Self = FeedbackViewModel;
    const ProfileFile file = ProfileFile::organisation();
    storeProperty(this, &m_regionCode, file.text("Organisation/RegionCode"),
                  &Self::changed_RegionCode);
    storeProperty(this, &m_organisationFullName, file.text("Organisation/OrganisationFullName"),
                  &Self::changed_OrganisationFullName);
    storeProperty(this, &m_organisationFullOgrn, file.text("Organisation/OrganisationPSRN"),
                  &Self::changed_OrganisationFullOgrn);
    storeProperty(this, &m_organisationFullOid, file.text("Organisation/OrganisationOid"),
                  &Self::changed_OrganisationFullOid);
    storeProperty(this, &m_room, file.text("Organisation/Room"), &Self::changed_Room);
}

void FeedbackViewModel::loadTheme() {
    const FeedbackSettings settings;
    if (settings.ThemeId.get().isEmpty())
        return;
    const QString id = settings.Id;
    CollectionModel<ThemeInfoViewModel> *choices = m_themeChooser.get_ThemeChoices();
    int index = 0;
    while (index < choices->count() && choices->at(index)->get_Id() != id)
        ++index;
    if (index == choices->count()) {
        // The server has it no more, but the draft is about it.
        ClientThemeInfo theme;
        theme.setId(id);
        theme.setThemeId(settings.ThemeId);
        theme.setVersion(settings.ThemeVersion);
        theme.setName(settings.ThemeName);
        choices->append(new ThemeInfoViewModel(theme, &m_themeChooser));
    }
    m_themeChooser.get_SelectedValidatedThemeIndex()->set_IntValue(index);
}

void FeedbackViewModel::SaveSettings() {
    FeedbackSettings settings;
    if (const ThemeInfoViewModel *theme = m_themeChooser.get_SelectedTheme()) {
        settings.Id = theme->get_Id();
        settings.ThemeId = theme->get_ThemeId();
        settings.ThemeVersion = theme->get_Version();
        settings.ThemeName = theme->get_Name();
    }
    settings.FeedbackText = m_feedbackText.get_Text();
    settings.sync();
}

void FeedbackViewModel::ClearSettings() {
    FeedbackSettings settings;
    settings.FeedbackText = QString();
    settings.Id = QString();
    settings.ThemeId = QString();
    settings.ThemeVersion = QString();
    settings.ThemeName = QString();
    settings.sync();
}

bool FeedbackViewModel::isChanged() const {
    return m_feedbackText.get_Text() != FeedbackSettings().FeedbackText.get();
}

void FeedbackViewModel::savePersonalData() {
    FeedbackSettings settings;
    settings.FullName = m_fullName.get_Text();
    settings.Email = m_email.get_Text();
    settings.ConsentRequested = m_userConsentRequested;
    settings.sync();
}

void FeedbackViewModel::applyCommand() {
    m_isOpen = false;
    savePersonalData();
    UserNotification notification;
    notification.setForce(true);
    if (!m_themeChooser.get_SelectedTheme()) {
        SaveSettings();
        notification.setTitle(tr("Не удалось отправить отзыв"));
        notification.setMessage(tr("Не выбран словарь. Дождитесь подключения к серверу, выберите "
                                   "словарь и отправьте отзыв снова."));
        notification.setType(NotificationType::Critical);
    } else if (sendClaim()) {
        ClearSettings();
        notification.setTitle(tr("Ваш отзыв был успешно отправлен!"));
        notification.setMessage(tr("Мы постараемся улучшить качество работы программы на основе "
                                   "вашего отзыва!\nСпасибо за то, что вы с нами!"));
        notification.setType(NotificationType::Information);
    } else {
        notification.setTitle(tr("Не удалось отправить отзыв"));
        notification.setMessage(tr("К сожалению, что-то пошло не так. Попробуйте снова через "
                                   "некоторое время или обратитесь к системному администратору."));
        notification.setType(NotificationType::Critical);
    }
    emit notifyUser(notification);
}

bool FeedbackViewModel::sendClaim() {
    const ClientClaim claim = makeClaim();
    // Before the answer, as the program may be ended while it waits.
    SaveSettings();
    const BusyNotice notice(tr("Отправка отзыва…"));
    return m_restAccessPoint.sendClaim(claim);
}

ClientClaim FeedbackViewModel::makeClaim() const {
    const ThemeInfoViewModel *theme = m_themeChooser.get_SelectedTheme();
    ClientClaim claim;
    claim.setThemeName(theme->get_Name());
    claim.setEmail(m_email.get_Text());
    claim.setRegionCode(m_regionCode);
    claim.setOrganisationFullName(m_organisationFullName);
    claim.setOrganisationFullOgrn(m_organisationFullOgrn);
    claim.setOrganisationFullOid(m_organisationFullOid);
    claim.setRoom(m_room);
    claim.setOperatingSystem(UserInfo::instance().environment());
    claim.setThemeVersion(theme->get_Version());
    claim.setClientId(ClientInfoSettings().getOrCreateDesktopId());
    claim.setHostName(UserInfo::instance().hostName());
    claim.setAccount(AppVariables::sm_stdVars.get(QStringLiteral("env"), QStringLiteral("USER")));
    claim.setUserName(m_fullName.get_Text());
    claim.setDescription(m_feedbackText.get_Text());
    claim.setMicrophoneInfo(describeMicrophone());
    return claim;
}

MicrophoneInfo FeedbackViewModel::describeMicrophone() const {
    const ExtAudioDeviceInfo device = m_recordingDevice->CurrentDevice();
    MicrophoneInfo microphone;
    microphone.setMicHwId(device.deviceName());
    microphone.setMicDisplayName(shortened(device.Description().simplified()));
    microphone.setMicLevel(m_recordingDevice->Gain());
    return microphone;
}

bool FeedbackViewModel::cancelCommand() {
    savePersonalData();
    if (!isChanged()) {
        m_isOpen = false;
        return true;
    }
    const auto answer = QMessageBox::question(
        nullptr, tr("Обратная связь"),
        tr("Сохранить как черновик? Сохранённый черновик будет автоматически восстановлен при "
           "следующем открытии окна обратной связи."),
        QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Cancel);
    // Without a button the end of the program has taken the question away, and the draft is kept.
    if (answer == QMessageBox::Cancel || answer == QMessageBox::NoButton)
        return false;
    m_isOpen = false;
    if (answer == QMessageBox::Yes)
        SaveSettings();
    return true;
}
