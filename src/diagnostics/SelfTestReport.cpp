#include "diagnostics/SelfTestReport.h"

#include "core/AppVariables.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>

namespace {

std::unique_ptr<QFile> opened(const QString &path, QIODevice::OpenMode mode) {
    auto file = std::make_unique<QFile>(path);
    if (!file->open(mode))
        qWarning().noquote() << "The report cannot be written:" << path << file->errorString();
    return file;
}

} // namespace

void SelfTestReport::open() {
    const QDir data(AppVariables::sm_stdVars.get(QStringLiteral("AppDataLocation"), QString()));
    data.mkpath(QStringLiteral("reports"));
    const QString base =
        data.filePath(QStringLiteral("reports/report_") +
                      QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH-mm-ss")));
    m_log = opened(base + QStringLiteral(".txt"), QIODevice::WriteOnly | QIODevice::Append);
    m_table = opened(base + QStringLiteral(".csv"), QIODevice::WriteOnly | QIODevice::Truncate);
}

void SelfTestReport::close() {
    m_log.reset();
    m_table.reset();
}

void SelfTestReport::write(const std::unique_ptr<QFile> &file, const QString &text) {
    if (file && file->isOpen())
        file->write(text.toUtf8());
}
