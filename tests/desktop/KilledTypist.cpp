#include "desktop/TextWriter.h"

#include <QCoreApplication>

#include <csignal>

/// Types the second argument into the window that the first one numbers, and is killed then and
/// there.
int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    constexpr int TimeoutMs = 60000;
    TextWriter::Init();
    TextWriter::WriteText(QCoreApplication::arguments().at(1).toULong(),
                          QCoreApplication::arguments().at(2));
    TextWriter::WaitForTyped(TimeoutMs);
    return raise(SIGKILL);
}
