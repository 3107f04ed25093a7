#pragma once

#include "connection/rest/Method.h"

#include <QObject>

/// The slots of a REST worker: a template cannot have any of its own.
class StubRestWorker : public QObject {
    Q_OBJECT

public:
    StubRestWorker() = default;

public slots:
    virtual void onExecuteFinished() = 0;
    virtual void restExecute(QString url, Method httpMethod, QByteArray data,
                             ParameterDictionary parameters) = 0;
};
