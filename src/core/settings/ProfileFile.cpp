#include "core/settings/ProfileFile.h"

#include "core/AppVariables.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>

namespace {

QString pathOf(const QString &name) {
    return QStringList{AppVariables::sm_stdVars.get(QStringLiteral("ConfigLocation"), QString()),
                       QCoreApplication::organizationName(), QCoreApplication::applicationName(),
                       name}
        .join(QDir::separator());
}

} // namespace

ProfileFile::ProfileFile(const QString &name) : QSettings(pathOf(name), QSettings::IniFormat) {
    setIniCodec("UTF-8");
}

void ProfileFile::save() {
    sync();
    if (status() != QSettings::NoError)
        qWarning().noquote() << "The profile cannot be written:" << fileName();
}
