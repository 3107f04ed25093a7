#pragma once

#include <QString>

/// The program's icon in the tray of the desk, and its menu, by mouse.
namespace TrayMenu {

/// Opens the menu.
/// @return false if it does not come up
bool open();
/// Clicks an entry of the open menu, counted from its top, or from its bottom if negative.
void click(int entry);

} // namespace TrayMenu
