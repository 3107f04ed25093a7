#include "viewmodels/statistics/ReferenceFile.h"

#include <QDebug>
#include <QFile>
#include <QJsonDocument>

#include <optional>

namespace {

/// @return nothing if the file cannot be opened, which is logged
std::optional<QByteArray> contentOf(const QString &path) {
    QFile file(path);
    if (!file.exists()) {
        qCritical().noquote() << "json file was not found" << path;
        return std::nullopt;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        qCritical().noquote() << "Failed to open json file, maybe its used by another process!"
                              << path;
        return std::nullopt;
    }
    return file.readAll();
}

} // namespace

QJsonArray ReferenceFile::LoadJsonArray(const QString &path) {
    const std::optional<QByteArray> content = contentOf(path);
    if (!content)
        return QJsonArray();
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(*content, &error);
    if (error.error != QJsonParseError::NoError) {
        qCritical().noquote().nospace()
            << "Failed to parse json file " << path << "   " << error.errorString();
        return QJsonArray();
    }
    const QJsonValue records = document.object()[QStringLiteral("records")];
    if (!records.isArray()) {
        qCritical().noquote() << "json file has incorrect format, root expected to be 'records' "
                                 "element with list inside of it"
                              << path;
    }
    return records.toArray();
}

QJsonObject ReferenceFile::dataOf(const QJsonValue &record) {
    return record.toObject()[QStringLiteral("data")].toObject();
}
