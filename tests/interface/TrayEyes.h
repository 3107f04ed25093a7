#pragma once

#include <QString>

class QWidget;

/// What a user sees of this process's tray icon and its messages on the screen.
namespace TrayEyes {

/// The icon's window lies in a tray and everything around it is shown, too.
bool iconIsShown();
/// The message on the screen, or null.
QWidget *balloon();
/// Title and text of the message on the screen, each on a line; empty if there is none.
QString balloonText();

} // namespace TrayEyes
