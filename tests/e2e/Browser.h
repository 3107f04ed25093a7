#pragma once

#include "DeskProcess.h"

#include <QJsonObject>
#include <QNetworkAccessManager>

/// A Chromium of the test's own on the desk, driven through WebDriver.
class Browser {
public:
    /// @throws std::runtime_error  the browser does not come up
    Browser();
    ~Browser();

    void open(const QUrl &url);
    void reload() { command("refresh"); }
    /// Opens another window, to which all that follows goes; returns its name.
    QString openWindow();
    void switchTo(const QString &window) { command("window", {{"handle", window}}); }
    QString window() { return command("window", {}, "GET").toString(); }
    /// Closes the window; the next command has to be switchTo().
    void closeWindow() { command("window", {}, "DELETE"); }

    /// What an expression of JavaScript gives, as text.
    QString eval(const QString &expression);
    /// Clicks an element with the mouse.
    void click(const QString &selector);

private:
    QJsonValue command(const QString &path, const QJsonObject &body = {},
                       const QByteArray &method = "POST");

    DeskProcess m_driver;
    QNetworkAccessManager m_network;
    QString m_address;
};
