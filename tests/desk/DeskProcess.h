#pragma once

#include <QProcess>

/// A child process that is ended with its parent, also when the parent crashes.
///
/// To be started on the main thread: the kernel ties the child's life to the starting thread.
class DeskProcess : public QProcess {
public:
    DeskProcess() = default;
    /// Asks the process to end and kills it after five seconds.
    ~DeskProcess() override;

    /// Asks the process to end and kills it after five seconds; returns once it is gone.
    void end();

protected:
    void setupChildProcess() override;
};
