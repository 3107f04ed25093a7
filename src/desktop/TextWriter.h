#pragma once

#include <QString>

#include <functional>
#include <memory>

class QObject;
class QRect;
struct HotKeyInfo;

/// Whom to tell, on its own thread, that a text was not typed to the end, as its window has closed
/// in the meantime. The receiver outlives the writer.
struct TypingFailure {
    QObject *receiver = nullptr;
    std::function<void()> tell;
};

/// Types into other applications' windows. The static functions are the way in: without a writer
/// they do nothing and return 0 or false. Texts and key combinations are handed over and typed in
/// that order by and by, so that their length holds up nobody. Init(), Cleanup() and the questions
/// belong to the main thread; the rest may be called from any.
class TextWriter {
public:
    virtual ~TextWriter() = default;

    /// Makes the writer, for the display of this session.
    static void Init();
    /// Waits at most two seconds for what has been handed over; the rest is lost and logged. The
    /// typing may take another second and a half to end.
    static void Cleanup();

    /// Types a text, a line feed or a pilcrow as Shift+Return.
    /// @return false if it is not taken over, as for no window
    static bool WriteText(unsigned long window, const QString &text,
                          const TypingFailure &failure = {});
    /// Presses and releases a key combination wherever the focus is by then.
    static bool WriteKey(unsigned long window, const HotKeyInfo &key);
    /// Waits until all that was handed over has been typed.
    /// @return false if it takes longer than this, or without a writer
    static bool WaitForTyped(int timeoutMs);
    /// 0 if no window has the input focus.
    static unsigned long GetFocusedWindow();
    /// Asks the server once. True without a writer as well: nothing tells that it is gone.
    static bool WindowExists(unsigned long window);
    /// Whether a window is an application's: not the root, nor one of the window manager's own that
    /// has the focus while no other window has.
    static bool TakesText(unsigned long window);
    /// The rectangle on the screen of the top-level window that holds the given one.
    static bool GetWindowRect(unsigned long window, QRect *rect);

protected:
    TextWriter() = default;
    TextWriter(const TextWriter &) = delete;
    TextWriter &operator=(const TextWriter &) = delete;

    virtual bool writeText(unsigned long window, const QString &text,
                           const TypingFailure &failure) = 0;
    virtual bool writeKey(unsigned long window, const HotKeyInfo &key) = 0;
    /// Whoever types at once has nothing to wait for.
    virtual bool waitForTyped(int timeoutMs);
    virtual unsigned long getFocusedWindow() = 0;
    virtual bool windowExists(unsigned long window) = 0;
    virtual bool takesText(unsigned long window) = 0;
    virtual bool getWindowRect(unsigned long window, QRect *rect) = 0;

    static std::unique_ptr<TextWriter> Writer;
};
