#include "desktop/BusyNotice.h"

#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace {

/// Long enough for a window manager; the work does not wait for a slower one.
constexpr int showTimeoutMs = 300;

} // namespace

BusyNotice::BusyNotice(const QString &text)
    : m_label(text, nullptr,
              Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                  Qt::WindowDoesNotAcceptFocus) {
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    m_label.setAttribute(Qt::WA_ShowWithoutActivating);
    m_label.setWindowTitle(text);
    m_label.setMargin(24);
    m_label.setStyleSheet(QStringLiteral(
        "background: #fdfdfd; color: #707070; border: 1px solid #C0C0C0; font-size: 10pt;"));
    m_label.adjustSize();
    if (const QScreen *screen = QGuiApplication::primaryScreen()) {
        const QRect area = screen->geometry();
        m_label.move(area.center() - m_label.rect().center());
    }
    m_label.show();
    // What is about to keep the event loop would keep the note from being drawn as well.
    const QDeadlineTimer deadline(showTimeoutMs);
    do {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, 10);
    } while (!deadline.hasExpired() && !m_label.windowHandle()->isExposed());
    m_label.repaint();
}

BusyNotice::~BusyNotice() {
    QGuiApplication::restoreOverrideCursor();
}
