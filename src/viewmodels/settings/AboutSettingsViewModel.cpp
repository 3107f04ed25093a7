#include "viewmodels/settings/AboutSettingsViewModel.h"

#include "core/AppVariables.h"
#include "core/settings/ClientInfoSettings.h"
#include "desktop/BusyNotice.h"
#include "diagnostics/GeneralSystemInformationManager.h"

#include <QFileDialog>
#include <QFileInfo>

AboutSettingsViewModel::AboutSettingsViewModel(QObject *parent)
    : AppSettingsViewModel(tr("О программе"), false, parent),
      m_clientId(tr("ID пользователя: ") + ClientInfoSettings().getOrCreateDesktopId()),
      m_localHelpFile(AppVariables::sm_stdVars.get(QStringLiteral("HelpFile"), QString())),
      m_visibleManual(QFileInfo::exists(m_localHelpFile)) {
    connect(this, &AboutSettingsViewModel::getSystemInfo, this, collectSystemInfo);
}

QString AboutSettingsViewModel::get_Version() const {
    return AppVariables::buildProperty("Version");
}

QString AboutSettingsViewModel::get_AppDescription() const {
    return AppVariables::buildProperty("AppDescription");
}

QString AboutSettingsViewModel::get_SupportLink() const {
    return AppVariables::buildProperty("SupportLink");
}

QString AboutSettingsViewModel::get_AppLink() const {
    return AppVariables::buildProperty("AppLink");
}

int AboutSettingsViewModel::get_BackgroundWidth() const {
    return AppVariables::buildProperty("AboutViewBackgroundWidth").toInt();
}

QString AboutSettingsViewModel::get_BackgroundColor() const {
    return AppVariables::buildProperty("AboutViewBackgroundColor");
}

void AboutSettingsViewModel::collectSystemInfo() {
    const QString path = QFileDialog::getSaveFileName(
        nullptr, tr("Save File"), QStringLiteral("SysInfo.tar.gz"), tr("Archive (*.tar.gz)"));
    if (path.isEmpty())
        return;
    const BusyNotice notice(tr("Сбор данных о системе…"));
    GeneralSystemInformationManager().CollectSystemInformation(path);
}
