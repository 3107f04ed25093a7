#pragma once

#include <QMutex>
#include <QThread>

#include <atomic>

struct _XDisplay;

/// Asks a window of another program every few milliseconds whether it is alive, as window managers
/// do. The program answers on its main thread, so that a late answer tells how long that thread was
/// busy. Runs on a thread and an X connection of its own.
class MainThreadProbe : public QThread {
public:
    /// @param processId  of a program with a window that answers
    /// @throws std::runtime_error  there is none
    explicit MainThreadProbe(qint64 processId);
    ~MainThreadProbe() override;

    /// The longest time, in milliseconds, that an answer took since the last call.
    double takeLongestBlockMs();

protected:
    void run() override;

private:
    void ask(_XDisplay *display, unsigned long stamp);
    void readAnswers(_XDisplay *display);

    unsigned long m_window = 0;
    std::atomic<bool> m_isEnding{false};
    QMutex m_mutex;
    double m_longestMs = 0;
    /// When the question that waits for its answer was asked; 0 if none does.
    double m_askedMs = 0;
};
