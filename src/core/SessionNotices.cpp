#include "core/SessionNotices.h"

#include "core/StartProblem.h"
#include "core/settings/FormApiSettings.h"
#include "desktop/DesktopSession.h"
#include "desktop/SystemTray.h"

#include <QDebug>
#include <QMessageBox>

SessionNotices::SessionNotices(const DesktopSession &session, SystemTray *tray)
    : m_isWayland(session.isWayland()), m_tray(tray) {
    connect(tray, &SystemTray::missing, this, &SessionNotices::tellMissingTray);
}

SessionNotices::~SessionNotices() = default;

void SessionNotices::tellLimits() {
    if (m_isWayland)
        warn(tr("Сеанс Wayland"), waylandLimits());
}

QString SessionNotices::waylandLimits() {
    return tr("Программа печатает только в окна X11 (XWayland), а клавиши видит, лишь пока такое "
              "окно активно. Чтобы диктовать в любые окна, выберите на экране входа сеанс X11 "
              "(Xorg).");
}

void SessionNotices::tellTakenPort(int port, const QString &key) {
    warn(tr("Веб-формы"),
         tr("Порт %1 занят другой программой или другим пользователем компьютера, и веб-формы не "
            "смогут работать. Освободите его или задайте другой: ключ %2 группы FormApiServer в "
            "файле %3.")
             .arg(QString::number(port), key, FormApiSettings().fileName()));
}

void SessionNotices::tellMissingTray() {
    const QString text =
        tr("В этом сеансе нет области уведомлений (трея), поэтому значка и меню программы не "
           "видно. Диктовка работает. Добавьте область уведомлений на панель рабочего стола; в "
           "GNOME для этого нужно расширение AppIndicator.");
    StartProblem::tellConsole(text);
    qWarning() << "The session has no system tray";
    // Its balloon waits for the tray.
    const QString limits = m_isWayland ? QStringLiteral("\n\n") + waylandLimits() : QString();
    m_trayNotice = std::make_unique<QMessageBox>(
        QMessageBox::Warning, tr("Нет области уведомлений"), text + limits, QMessageBox::Ok);
    // The focus is where the user dictates to.
    m_trayNotice->setAttribute(Qt::WA_ShowWithoutActivating);
    m_trayNotice->setModal(false);
    m_trayNotice->show();
    connect(m_tray, &SystemTray::found, m_trayNotice.get(), &QWidget::close);
}

void SessionNotices::warn(const QString &title, const QString &message) {
    StartProblem::tellConsole(title + QStringLiteral(": ") + message);
    UserNotification notification(NotificationType::Warning, title, message);
    notification.setForce(true);
    emit notifyUser(notification);
}
