#pragma once

#include <QString>
#include <QtGlobal>

/// Routes Qt's messages into log files. Called once, on the main thread, when the application
/// object exists. Never fails: without any usable configuration the log goes to the console.
void InitLogger(int argc, char **argv);

/// The message handler that InitLogger installs; may be called on any thread.
void vmLogHandler(QtMsgType type, const QMessageLogContext &context, const QString &message);
