#pragma once

#include "desktop/TextWriter.h"
#include "desktop/XDisplay.h"

#include <memory>

class QThread;
class XTypist;

/// The writer of an X session: asks about windows on the main thread, and hands what is to be typed
/// to a typist on a thread of its own. Without a display every operation does nothing and reports
/// failure.
class XTextWriter final : public TextWriter {
public:
    XTextWriter();
    ~XTextWriter() override;

    bool writeText(unsigned long window, const QString &text,
                   const TypingFailure &failure) override;
    bool writeKey(unsigned long window, const HotKeyInfo &key) override;
    bool waitForTyped(int timeoutMs) override;
    unsigned long getFocusedWindow() override;
    bool getWindowRect(unsigned long window, QRect *rect) override;
    bool windowExists(unsigned long window) override;
    bool takesText(unsigned long window) override;

private:
    void endTyping();

    XDisplayPointer m_display;
    std::unique_ptr<QThread> m_thread;
    /// Ends with its thread; null without a display.
    XTypist *m_typist = nullptr;
};
