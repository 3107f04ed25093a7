#include "viewmodels/settings/AboutSettingsViewModel.h"

#include "core/AppVariables.h"
#include "core/settings/ClientInfoSettings.h"
#include "desktop/BusyNotice.h"
#include "diagnostics/GeneralSystemInformationManager.h"

#include <QFileDialog>
#include <QFileInfo>

namespace {

QString buildProperty(const char *name) {
    return AppVariables::sm_stdVars.get(QStringLiteral("build"), QString::fromLatin1(name));
}

} // namespace

AboutSettingsViewModel::AboutSettingsViewModel(QObject *parent)
    : AppSettingsViewModel(tr("О программе"), false, parent),
      m_clientId(tr("ID пользователя: ") + ClientInfoSettings().getOrCreateDesktopId()),
      m_localHelpFile(AppVariables::sm_stdVars.get(QStringLiteral("HelpFile"), QString())),
      m_visibleManual(QFileInfo::exists(m_localHelpFile)) {
    connect(this, &AboutSettingsViewModel::getSystemInfo, this, collectSystemInfo);
}

QString AboutSettingsViewModel::get_Version() const {
    return buildProperty("Version");
}

QString AboutSettingsViewModel::get_AppDescription() const {
    return buildProperty("AppDescription");
}

QString AboutSettingsViewModel::get_SupportLink() const {
    return buildProperty("SupportLink");
}

QString AboutSettingsViewModel::get_AppLink() const {
    return buildProperty("AppLink");
}

int AboutSettingsViewModel::get_BackgroundWidth() const {
    return buildProperty("AboutViewBackgroundWidth").toInt();
}

QString AboutSettingsViewModel::get_BackgroundColor() const {
    return buildProperty("AboutViewBackgroundColor");
}

void AboutSettingsViewModel::collectSystemInfo() {
    const QString path = QFileDialog::getSaveFileName(
        nullptr, tr("Save File"), QStringLiteral("SysInfo.tar.gz"), tr("Archive (*.tar.gz)"));
    if (path.isEmpty())
        return;
    const BusyNotice notice(tr("Сбор данных о системе…"));
    GeneralSystemInformationManager().CollectSystemInformation(path);
}
