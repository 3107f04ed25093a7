#pragma once

/// Makes the native types of the views known to QML: `QLN 1.0` and `OstrelStyle 1.0`. To be called
/// on the main thread before a view is loaded; more than once does no harm.
void registerQmlTypes();
