#pragma once

#include <QLabel>

/// Tells the user that work goes on which keeps the program from answering: a note in the middle of
/// the screen, without the focus, and the pointer of waiting. On the screen from the end of the
/// constructor until this object goes. Main thread.
class BusyNotice {
public:
    explicit BusyNotice(const QString &text);
    ~BusyNotice();
    BusyNotice(const BusyNotice &) = delete;
    BusyNotice &operator=(const BusyNotice &) = delete;

private:
    QLabel m_label;
};
