#include "desktop/DesktopSession.h"

#include "desktop/XDisplay.h"

#include <algorithm>

namespace {

constexpr const char *platformVariable = "QT_QPA_PLATFORM";

bool hasPlatformOption(int argc, char **argv) {
    const auto isOption = [](const char *argument) {
        return qstrcmp(argument, "-platform") == 0 || qstrcmp(argument, "--platform") == 0;
    };
    return std::any_of(argv, argv + argc, isOption);
}

} // namespace

DesktopSession::DesktopSession(int argc, char **argv)
    : m_isWayland(qgetenv("XDG_SESSION_TYPE") == "wayland"),
      m_formerPlatform(qgetenv(platformVariable)) {
    const bool isForWayland = m_formerPlatform.startsWith("wayland");
    // Whoever has chosen a platform without a screen, a test perhaps, knows why. A desktop that
    // wants its programs to run on Wayland does not know this one.
    if (hasPlatformOption(argc, argv) ||
        (!m_formerPlatform.isEmpty() && !isForWayland && !m_formerPlatform.startsWith("xcb")))
        return;
    if (isForWayland || (m_isWayland && m_formerPlatform.isEmpty())) {
        qputenv(platformVariable, "xcb");
        m_hasSetPlatform = true;
    }
    if (!openDisplay())
        m_problem = findProblem();
}

QString DesktopSession::findProblem() const {
    const QString display = qEnvironmentVariable("DISPLAY");
    if (m_isWayland) {
        return tr("Программа не работает в сеансе Wayland без XWayland. Выйдите из сеанса и "
                  "выберите на экране входа сеанс X11 (Xorg) или включите XWayland.");
    }
    if (display.isEmpty()) {
        return tr("Нет графического экрана: переменная DISPLAY не задана. Запустите программу из "
                  "графического сеанса X11.");
    }
    return tr("Не удалось подключиться к экрану «%1», который задан в переменной DISPLAY. "
              "Проверьте, что этот X-сервер работает и что доступ к нему разрешён "
              "(переменная XAUTHORITY), или запустите программу из графического сеанса.")
        .arg(display);
}

void DesktopSession::leaveEnvironment() const {
    if (!m_hasSetPlatform)
        return;
    if (m_formerPlatform.isNull())
        qunsetenv(platformVariable);
    else
        qputenv(platformVariable, m_formerPlatform);
}
