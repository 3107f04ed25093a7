#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

struct _XDisplay;

/// The user's hands: presses real keys through the server, and reads the state of the keyboard.
/// Keys are named as X names their symbols.
class XKeyboard {
public:
    XKeyboard();

    void press(const QString &key) { play('+' + key); }
    void release(const QString &key) { play('-' + key); }
    /// Plays edges such as "+Control_L +c -c -Control_L".
    void play(const QString &edges);

    int keycode(const QString &key) const;
    /// Whether the server repeats a held key, and so accepts a second press of it.
    void setRepeating(const QString &key, bool on);

    void lockGroup(int group);
    int lockedGroup() const;
    /// All that the server knows about what the keys mean, for comparison.
    QByteArray map() const;

    /// Takes the keyboard as an open menu does.
    bool grab();
    void ungrab();
    /// Takes the input focus from every window.
    void unfocus();
    /// Asks a window to close, as the button of its frame does.
    void askToClose(unsigned long window);

private:
    std::unique_ptr<_XDisplay, int (*)(_XDisplay *)> m_display;
};
