#include "desktop/SystemTray.h"

#include "core/AppVariables.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/SelfTestSettings.h"

#include <QDebug>
#include <QFile>
#include <QIcon>
#include <QMenu>

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

SystemTray::SystemTray(QObject *parent)
    : QObject(parent), m_appName(AppVariables::buildProperty("AppName")) {
    CreateMenu();
    m_trayIcon = std::make_unique<QSystemTrayIcon>();
    m_trayIcon->setContextMenu(m_menu.get());
    m_trayIcon->setIcon(QIcon(m_warningIconPath));
    m_trayIcon->setToolTip(m_appName);
    m_delay.setInterval(1000ms);
    m_delay.setSingleShot(true);
    connect(&m_delay, &QTimer::timeout, this, &SystemTray::DelayShow);
    m_keptDelay.setSingleShot(true);
    connect(&m_keptDelay, &QTimer::timeout, this, &SystemTray::showNextKept);
    DelayShow();
}

SystemTray::~SystemTray() {
    m_trayIcon.reset();
    // A menu that dies with its entries leaves behind what Qt made of them for the session bus.
    m_menu->clear();
}

void SystemTray::DelayShow() {
    if (QSystemTrayIcon::isSystemTrayAvailable()) {
        m_trayIcon->setVisible(true);
        emit found();
        // The tray takes the icon in its own time, and a message points at it.
        m_keptDelay.start(1000ms);
        return;
    }
    if (m_waits == 0)
        qDebug() << "System tray Unavaliable, wait...";
    if (++m_waits == m_patience)
        emit missing();
    m_delay.start();
}

void SystemTray::CreateMenu() {
    m_menu = std::make_unique<QMenu>();
    ApplyMenuStyle(m_menu.get());
    addConnectEntries();
    addSettingsEntries();
    m_menu->addSeparator();
    addOtherEntries();
    m_menu->addSeparator();
    m_quitAction = m_menu->addAction(tr("Выход"), this, &SystemTray::signalQuit);
}

void SystemTray::ApplyMenuStyle(QMenu *menu) const {
    QFile file(m_menuStyleSheet);
    if (file.open(QIODevice::ReadOnly | QIODevice::Text))
        menu->setStyleSheet(QString::fromUtf8(file.readAll()));
    else
        qWarning() << "The menu's style sheet cannot be read:" << file.errorString();
    menu->setWindowFlags(menu->windowFlags() | Qt::NoDropShadowWindowHint);
}

void SystemTray::addConnectEntries() {
    m_connectAction =
        m_menu->addAction(tr("Подключиться к серверу"), this, &SystemTray::signalConnectRequest);
    m_connectSeparator = m_menu->addSeparator();
}

void SystemTray::addSettingsEntries() {
    m_settingsAction = m_menu->addAction(tr("Настройки"), this, &SystemTray::signalShowSettings);
    m_replacesAction = m_menu->addAction(tr("Автозамена"), this, &SystemTray::signalShowReplaces);
}

void SystemTray::addOtherEntries() {
    m_feedbackAction =
        m_menu->addAction(tr("Обратная связь"), this, &SystemTray::signalShowFeedback);
    m_avocadoAction = m_menu->addAction(tr("Мои слова"), this, &SystemTray::signalShowAvocado);
    m_avocadoAction->setVisible(ASRSettings().CanEditAvocadoWords);
    const QString helpFile = AppVariables::sm_stdVars.get(QStringLiteral("HelpFile"), QString());
    if (QFile::exists(helpFile)) {
        m_manualAction = m_menu->addAction(tr("Руководство пользователя"), this,
                                           [this, helpFile] { emit signalShowManual(helpFile); });
    }
    if (SelfTestSettings().Enabled)
        m_selfTestAction = m_menu->addAction(tr("Тесты"), this, &SystemTray::signalSelfTest);
}

void SystemTray::showMessage(const QString &title, const QString &text,
                             QSystemTrayIcon::MessageIcon icon) {
    showOrKeep({title, text, icon, false});
}

void SystemTray::showError(QString &error) {
    showMessage(QStringLiteral("error"), error, QSystemTrayIcon::Warning);
}

void SystemTray::onRecognitionParametersChanged(bool canEditAvocado) {
    m_avocadoAction->setVisible(canEditAvocado);
}

void SystemTray::onConnectionStateChanged(const ConnectionStateInfo &stateInfo) {
    m_settingsAction->setEnabled(true);
    m_replacesAction->setEnabled(true);
    const bool isReady = stateInfo.is(ConnectionState::Ready);
    const bool isFailed = stateInfo.is(ConnectionState::Failed);
    const bool isApart = isFailed || stateInfo.is(ConnectionState::Disconnected);
    m_connectAction->setEnabled(isApart);
    if (isReady || isApart) {
        showConnectEntry(isApart);
        m_trayIcon->setIcon(QIcon(isReady ? m_defaultIconPath : m_warningIconPath));
    }
    if (isReady) {
        m_trayIcon->setToolTip(
            tr("%1\nСервер %2\nБалансер %3")
                .arg(m_appName, stateInfo.serverHost(), stateInfo.balancerHost()));
        m_errorShown = false;
        dropKeptFailure();
    } else if (isApart) {
        m_trayIcon->setToolTip(
            tr("%1\nОтключен от сервера\nБалансер %2").arg(m_appName, stateInfo.balancerHost()));
    } else {
        m_trayIcon->setToolTip(
            tr("%1\nПодключается к %2\nБалансер %3")
                .arg(m_appName, stateInfo.serverHost(), stateInfo.balancerHost()));
    }
    if (isFailed)
        showFailure(stateInfo.message());
}

void SystemTray::showConnectEntry(bool isVisible) {
    m_connectAction->setVisible(isVisible);
    m_connectSeparator->setVisible(isVisible);
}

void SystemTray::showFailure(const QString &message) {
    if (m_errorShown)
        return;
    // Of a row of failures the last one tells how things are.
    dropKeptFailure();
    showOrKeep({QString(), message, QSystemTrayIcon::Critical, true});
}

void SystemTray::showOrKeep(const Message &message) {
    // The icon of a tray that has gone away still counts as visible; its message would point to a
    // corner of the screen.
    const bool hasTray = QSystemTrayIcon::isSystemTrayAvailable();
    if (hasTray && m_kept.isEmpty()) {
        show(message);
        return;
    }
    m_kept.append(message);
    if (m_kept.size() > m_maximumKept)
        m_kept.removeFirst();
    if (!hasTray)
        m_delay.start();
}

void SystemTray::show(const Message &message) {
    m_trayIcon->showMessage(message.title, message.text, message.icon, m_messageDuration);
    m_errorShown = m_errorShown || message.isFailure;
}

void SystemTray::showNextKept() {
    if (m_kept.isEmpty())
        return;
    if (!QSystemTrayIcon::isSystemTrayAvailable()) {
        m_delay.start();
        return;
    }
    show(m_kept.takeFirst());
    // A message takes the place of the one before it.
    m_keptDelay.start(m_messageDuration);
}

void SystemTray::dropKeptFailure() {
    const auto isFailure = [](const Message &message) { return message.isFailure; };
    m_kept.erase(std::remove_if(m_kept.begin(), m_kept.end(), isFailure), m_kept.end());
}
