#pragma once

#include <QtQml>
#include <QtQuickTemplates2/private/qquickapplicationwindow_p.h>

/// Base of the monitor's windows: out of the task bar and the pager, on all desktops.
///
/// The state is written when the native window is made, which is to be when all properties are set:
/// Qt makes one anew, without that state, that is put on top later, and a place or a colour that is
/// set later may be lost. Main thread. On another platform than X11 it is an ordinary window.
class FixedWindow : public QQuickApplicationWindow {
    Q_OBJECT
    QML_ATTACHED(QQuickApplicationWindowAttached)

public:
    explicit FixedWindow(QWindow *parent = nullptr);

protected:
    bool event(QEvent *event) override;

private:
    void appendState();
};
