#pragma once

#include "connection/rest/BaseRestWorker.h"

/// A request whose answer is handed on as the text of a whole HTTP response.
class RestHttpWorker : public BaseRestWorker<QString> {
public:
    using BaseRestWorker::BaseRestWorker;

protected:
    QString createResult(QNetworkReply *reply) override;
    QString createDefaultErrorResult(const QString &debugText) override;

private:
    static QString serializeReply(QNetworkReply *reply);
};
