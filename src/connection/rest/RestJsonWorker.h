#pragma once

#include "connection/rest/BaseRestWorker.h"

#include <QJsonObject>

/// A request whose answer is JSON; an array comes wrapped in an object.
class RestJsonWorker : public BaseRestWorker<QJsonObject> {
public:
    using BaseRestWorker::BaseRestWorker;

protected:
    /// @throws Exception  the answer is no JSON
    QJsonObject createResult(QNetworkReply *reply) override;
    QJsonObject createDefaultErrorResult(const QString &debugText) override;
};
