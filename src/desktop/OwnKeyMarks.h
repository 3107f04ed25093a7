#pragma once

struct _XDisplay;
union _XEvent;

/// Marks the keys that the program presses itself, for the listener that looks for the user's
/// gestures.
///
/// While an object exists, what its connection presses is the program's own: one message goes to
/// the listener's window before those keys and one behind them, through the X server, so that their
/// order among the keys is certain. To be used with the server grabbed: no other client can press
/// keys in between then. Without a listener there are no marks.
class OwnKeyMarks {
public:
    enum class Mark { Nothing, Begin, End };

    /// @param display  not owned, outlives the object; errors of a window that has gone meanwhile
    ///                 are the caller's to catch
    explicit OwnKeyMarks(_XDisplay *display);
    ~OwnKeyMarks();
    OwnKeyMarks(const OwnKeyMarks &) = delete;
    OwnKeyMarks &operator=(const OwnKeyMarks &) = delete;

    /// Makes a window of the listener the one that gets the marks. From any thread; to be called
    /// before the listener hears of keys, so that none comes unmarked.
    static void setReceiver(unsigned long window);
    /// No marks go to this window any more; another one that has followed it stays.
    static void dropReceiver(unsigned long window);

    /// What an event of the listener's connection says.
    static Mark read(_XDisplay *display, const _XEvent &event);

private:
    void send(Mark mark);

    _XDisplay *m_display;
    const unsigned long m_receiver;
};
