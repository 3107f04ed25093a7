#include "Browser.h"

#include "DeskTest.h"

#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QTcpServer>

#include <stdexcept>

Browser::Browser() {
    QTcpServer free;
    free.listen(QHostAddress::LocalHost);
    const quint16 port = free.serverPort();
    free.close();
    m_driver.start(QStringLiteral("chromedriver"), {QStringLiteral("--port=%1").arg(port)});
    const bool isUp = QTest::qWaitFor(
        [this] { return m_driver.readAllStandardOutput().contains("started successfully"); },
        20000);
    if (!isUp)
        throw std::runtime_error("chromedriver does not start");
    m_address = QStringLiteral("http://127.0.0.1:%1/session").arg(port);
    const QJsonArray arguments{"--no-sandbox",
                               "--disable-gpu",
                               "--no-first-run",
                               "--disable-background-networking",
                               "--disable-component-update",
                               "--disable-sync",
                               "--user-data-dir=" + desk().folder() + "/browser"};
    const QJsonObject session =
        command(QString(),
                {{"capabilities",
                  QJsonObject{{"alwaysMatch", QJsonObject{{"goog:chromeOptions",
                                                           QJsonObject{{"args", arguments}}}}}}}})
            .toObject();
    m_address += '/' + session["sessionId"].toString();
}

Browser::~Browser() {
    try {
        command(QString(), {}, "DELETE");
    } catch (const std::exception &) {
        // The driver ends the browser with itself.
    }
}

QJsonValue Browser::command(const QString &path, const QJsonObject &body,
                            const QByteArray &method) {
    QNetworkRequest request(QUrl(path.isEmpty() ? m_address : m_address + '/' + path));
    request.setHeader(QNetworkRequest::ContentTypeHeader, "application/json");
    const QByteArray data =
        method == "POST" ? QJsonDocument(body).toJson(QJsonDocument::Compact) : QByteArray();
    QNetworkReply *reply = m_network.sendCustomRequest(request, method, data);
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    reply->deleteLater();
    const QJsonValue value = QJsonDocument::fromJson(reply->readAll()).object()["value"];
    if (reply->error() != QNetworkReply::NoError)
        throw std::runtime_error(value.toObject()["message"].toString().toStdString());
    return value;
}

void Browser::open(const QUrl &url) {
    command("url", {{"url", url.toString()}});
}

QString Browser::openWindow() {
    const QString opened =
        command("window/new", {{"type", "window"}}).toObject()["handle"].toString();
    switchTo(opened);
    return opened;
}

QString Browser::eval(const QString &expression) {
    return command("execute/sync",
                   {{"script", "return String(" + expression + ")"}, {"args", QJsonArray()}})
        .toString();
}

void Browser::click(const QString &selector) {
    const QJsonObject element =
        command("element", {{"using", "css selector"}, {"value", selector}}).toObject();
    command("element/" + element.begin()->toString() + "/click");
}
