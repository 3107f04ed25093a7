#pragma once

#include <QJsonValue>

/// Base of every record that crosses the network as JSON. A value type: copied freely, no thread.
/// Each record also has a constructor from QJsonObject that reads with defaults and never fails.
class JsonConvertable {
public:
    JsonConvertable() = default;
    explicit JsonConvertable(const QJsonValue &) {}
    JsonConvertable(const JsonConvertable &) = default;
    JsonConvertable(JsonConvertable &&) = default;
    JsonConvertable &operator=(const JsonConvertable &) = default;
    JsonConvertable &operator=(JsonConvertable &&) = default;

    /// @throws Exception  the record only ever arrives
    virtual QJsonValue toJson() const = 0;

    virtual ~JsonConvertable() = default;
};
