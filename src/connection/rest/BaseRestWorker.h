#pragma once

#include "connection/rest/ConnectionHelper.h"
#include "connection/rest/RestRequest.h"
#include "connection/rest/StubRestWorker.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSslConfiguration>
#include <QThread>

#include <algorithm>
#include <exception>
#include <memory>

/// Does one REST request on a thread of its own, named "RestWorker".
///
/// Made, waited for and destroyed by the caller's thread; everything that touches the network runs
/// on the worker's thread. A result always exists once waitForResult() has returned.
template <typename T>
class BaseRestWorker : public StubRestWorker {
public:
    /// @param sslConfiguration  of the client, outlives this object; null for the default
    BaseRestWorker(const QSslConfiguration *sslConfiguration,
                   const QMap<QByteArray, QByteArray> &headers)
        : m_sslConfiguration(sslConfiguration), m_headers(headers) {
        m_thread.setObjectName(QStringLiteral("RestWorker"));
        m_thread.start(QThread::InheritPriority);
        moveToThread(&m_thread);
    }

    ~BaseRestWorker() override {
        m_thread.quit();
        m_thread.wait();
    }

    /// Blocks until the request is done. A request that outlasts the time limit, or whose caller's
    /// thread is asked to end, is aborted and gives the error result.
    T waitForResult(int timeoutMs) {
        constexpr unsigned long pollMs = 50;
        QElapsedTimer timer;
        timer.start();
        bool isAborted = false;
        while (!m_thread.wait(pollMs)) {
            if (isAborted || (timer.elapsed() < timeoutMs &&
                              !QThread::currentThread()->isInterruptionRequested()))
                continue;
            isAborted = true;
            // A reply may only be touched on the thread that it lives on.
            QMetaObject::invokeMethod(
                this, [this] { abortReply(); }, Qt::QueuedConnection);
        }
        return m_result;
    }

    void restExecute(QString url, Method httpMethod, QByteArray data,
                     ParameterDictionary parameters) override {
        try {
            logSslLibrary();
            const QUrl fullUrl = buildUrl(url, parameters);
            m_accessManager.reset(new QNetworkAccessManager);
            connect(m_accessManager.get(), &QNetworkAccessManager::sslErrors, this,
                    [](QNetworkReply *, const QList<QSslError> &errors) { onSsslError(errors); });
            m_accessManager->setProxy(ConnectionHelper::configuredProxy(fullUrl));
            m_reply =
                sendRequest(m_accessManager.get(),
                            buildRequest(fullUrl, m_sslConfiguration, m_headers), httpMethod, data);
            connect(m_reply, &QNetworkReply::finished, this, &StubRestWorker::onExecuteFinished);
            connect(m_reply, &QNetworkReply::readyRead, this, [this] { limitSize(); });
        } catch (...) {
            finishWithError();
        }
    }

    void onExecuteFinished() override {
        QNetworkReply *reply = m_reply;
        m_reply = nullptr;
        try {
            m_result = createResult(reply);
        } catch (...) {
            finishWithError();
        }
        reply->deleteLater();
        m_accessManager.reset();
        m_thread.quit();
    }

protected:
    virtual T createResult(QNetworkReply *reply) = 0;
    virtual T createDefaultErrorResult(const QString &debugText) = 0;

private:
    struct DeleteLater {
        void operator()(QObject *object) const { object->deleteLater(); }
    };

    /// Called from a handler of an exception.
    void finishWithError() {
        QString text;
        try {
            throw;
        } catch (const std::exception &error) {
            text = QString::fromUtf8(error.what());
            qWarning().noquote().nospace() << "Request error: " << text;
        } catch (...) {
            qWarning() << "Unknown request error!";
        }
        m_result = createDefaultErrorResult(text);
        m_accessManager.reset();
        m_thread.quit();
    }

    void abortReply() {
        if (m_reply)
            m_reply->abort();
    }

    /// No answer that the program knows comes near this size; memory is not to grow with a bad one.
    void limitSize() {
        constexpr qint64 maximum = 64 * 1024 * 1024;
        const auto declared = m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
        if (std::max(declared, m_reply->bytesAvailable()) > maximum)
            abortReply();
    }

    const QSslConfiguration *m_sslConfiguration;
    QMap<QByteArray, QByteArray> m_headers;
    T m_result;
    QNetworkReply *m_reply = nullptr;
    std::unique_ptr<QNetworkAccessManager, DeleteLater> m_accessManager;
    QThread m_thread;
};
