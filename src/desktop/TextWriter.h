#pragma once

#include <QString>

#include <memory>

class QRect;
struct HotKeyInfo;

/// Types into other applications' windows. The static functions are the way in: without a writer
/// they do nothing and return 0 or false. All of them are called on the main thread and block it
/// while they type.
class TextWriter {
public:
    virtual ~TextWriter() = default;

    /// Makes the writer, for the display of this session.
    static void Init();
    static void Cleanup();

    /// Types a text, a line feed or a pilcrow as Shift+Return.
    /// @return false if there is no such window, also if it closes in the meantime
    static bool WriteText(unsigned long window, const QString &text);
    /// Presses and releases a key combination wherever the focus is.
    static bool WriteKey(unsigned long window, const HotKeyInfo &key);
    /// 0 if no window has the input focus.
    static unsigned long GetFocusedWindow();
    /// Asks the server once. True without a writer as well: nothing tells that it is gone.
    static bool WindowExists(unsigned long window);
    /// The rectangle on the screen of the top-level window that holds the given one.
    static bool GetWindowRect(unsigned long window, QRect *rect);

protected:
    TextWriter() = default;
    TextWriter(const TextWriter &) = delete;
    TextWriter &operator=(const TextWriter &) = delete;

    virtual bool writeText(unsigned long window, const QString &text) = 0;
    virtual bool writeKey(unsigned long window, const HotKeyInfo &key) = 0;
    virtual unsigned long getFocusedWindow() = 0;
    virtual bool windowExists(unsigned long window) = 0;
    virtual bool getWindowRect(unsigned long window, QRect *rect) = 0;

    static std::unique_ptr<TextWriter> Writer;
};
