#pragma once

#include <QtQml>
#include <QtQuickTemplates2/private/qquickapplicationwindow_p.h>

/// Base of the monitor's windows: out of the task bar and the pager, on all desktops.
///
/// Main thread. On another platform than X11 it is an ordinary window.
class FixedWindow : public QQuickApplicationWindow {
    Q_OBJECT
    QML_ATTACHED(QQuickApplicationWindowAttached)

public:
    explicit FixedWindow(QWindow *parent = nullptr);
};
