#pragma once

#include "connection/rest/RestClient.h"
#include "core/Exception.h"
#include "core/settings/BaseConnectionSettings.h"

#include <QJsonArray>
#include <QObject>

#include <functional>
#include <memory>

/// REST requests to one kind of host, each with the cookies that name this client.
///
/// Every call blocks its thread for the bound of RestClient; used from one thread at a time.
class BaseRestAccessPoint : public QObject {
    Q_OBJECT

public:
    BaseRestAccessPoint();

    template <typename T>
    using Converter = std::function<T(const QJsonObject &)>;

    /// Sends a request whose answer is one object.
    /// @throws Exception  the request failed; the text is for the log
    template <typename T>
    T getObject(const QString &path, Method httpMethod, const Converter<T> &converter,
                const ParameterDictionary &parameters, const QByteArray &data) {
        return converter(request(path, httpMethod, parameters, data).toObject());
    }

    /// Sends a request whose answer is an array of objects; their order is kept.
    /// @throws Exception  the request failed; the text is for the log
    template <typename T>
    QList<T> getList(const QString &path, Method httpMethod, const Converter<T> &converter,
                     const ParameterDictionary &parameters, const QByteArray &data) {
        QList<T> result;
        const QJsonArray elements = request(path, httpMethod, parameters, data).toArray();
        for (const QJsonValue &element : elements)
            result.append(converter(element.toObject()));
        return result;
    }

protected:
    /// The settings that address the host, made afresh.
    virtual std::unique_ptr<BaseConnectionSettings> getSettings() const = 0;

private:
    /// The `Data` of the answer.
    QJsonValue request(const QString &path, Method httpMethod,
                       const ParameterDictionary &parameters, const QByteArray &data);

    RestClient m_client;
};
