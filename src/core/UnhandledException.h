#pragma once

/// Installs a terminate handler that logs the exception and ends the process with status -1.
void set_unhandled_catcher();
