#pragma once

#include <QString>

/// A window of the program, worked with mouse and keyboard.
class ProgramWindow {
public:
    /// The entries of the tray's menu while there is a connection and a list of personal words.
    enum Entry {
        SettingsEntry = 0,
        ReplacesEntry = 1,
        FeedbackEntry = 2,
        WordsEntry = 3,
        SelfTestEntry = 5
    };

    static ProgramWindow openFromTray(Entry entry, const QString &title);

    static bool exists(const QString &title) { return !find(title).isEmpty(); }

    /// Waits for the window and gives it the focus.
    explicit ProgramWindow(const QString &title);

    bool isOpen() const { return !m_id.isEmpty() && geometry().contains("WIDTH"); }
    /// Waits until it is closed.
    bool isGone() const;
    /// The process that shows it.
    QString processId() const;
    /// A place from the left and the top, or from the right and the bottom if negative.
    void click(int x, int y, int times = 1) const;
    /// The button at the right of the lower edge.
    void accept() const { click(-66, -27); }
    static void key(const QString &keys);
    static void type(const QString &text);

private:
    /// The last visible window of this title; empty if there is none.
    static QString find(const QString &title);
    QString geometry() const;

    QString m_id;
};
