#pragma once

#include <QMutex>
#include <QObject>
#include <QThread>
#include <QVector>
#include <QWaitCondition>

#include <memory>

struct _XDisplay;

/// A plain window of another client: reads its keys on a connection and a thread of its own, as
/// any application does, and keeps what came.
class KeyReceiver : public QObject {
    Q_OBJECT

public:
    struct Edge {
        bool isPress;
        int keycode;
        unsigned int state;
        bool isSent; ///< written by a client, not pressed on the keyboard
    };

    /// Whether the window tells what it has read, as those of most toolkits do.
    enum class Pings { Unheard, Answered };

    /// Returns when the window is on the screen and has the focus.
    /// @param readEveryMs  how late the window reads its events; 0 for at once
    /// @param closeAfter   after how many presses it closes itself; 0 for never
    explicit KeyReceiver(int readEveryMs = 0, int closeAfter = 0, Pings pings = Pings::Unheard);
    ~KeyReceiver() override;

    unsigned long window() const { return m_window; }
    /// What the presses mean to the window, read with the keyboard map of that moment.
    QString text() const;
    QVector<Edge> edges() const;
    int count() const { return edges().size(); }
    /// @return false if the text is still shorter when the time is over
    bool waitForLength(int characters, int timeoutMs) const;
    void clear();

private:
    void openWindow(Pings pings);
    void startReading();
    void readEvents();
    void takeKey(void *event);
    void answerPing(void *event);

    std::unique_ptr<_XDisplay, int (*)(_XDisplay *)> m_display;
    unsigned long m_window = 0;
    const int m_readEveryMs;
    const int m_closeAfter;
    mutable QMutex m_mutex;
    mutable QWaitCondition m_received;
    QString m_text;
    QVector<Edge> m_edges;
    QThread m_thread;
};
