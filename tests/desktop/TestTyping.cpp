#include "DeskTest.h"
#include "XKeyboard.h"
#include "desktop/TextWriter.h"
#include "desktop/XHotKeyConverter.h"

#include <QDir>
#include <QFile>
#include <QUrl>

namespace {

QString filePath() {
    return desk().folder() + "/typed.txt";
}

QString fileText() {
    return desk().read(filePath());
}

/// The name of the window that has the input focus, empty if there is none.
QString focusedTitle() {
    return desk().ask("xdotool", {"getwindowfocus", "getwindowname"});
}

struct Receiver {
    QString program;
    QStringList arguments;
    /// Part of the window's title once the window can take keys.
    QString title;
    QString (*read)();
};

using ReceiverMaker = Receiver (*)();

Receiver qtEditor() {
    return {QCoreApplication::applicationDirPath() + "/editor_window",
            {filePath()},
            filePath(),
            fileText};
}

Receiver gtkEditor() {
    const auto saveAndRead = [] {
        const XHotKeyConverter converter;
        TextWriter::WriteKey(0, converter.ConvertFromString("Ctrl+s"));
        TextWriter::WaitForTyped(patienceMs);
        return fileText();
    };
    return {"mousepad", {"--disable-server", filePath()}, "typed.txt", saveAndRead};
}

Receiver terminal() {
    return {
        "xterm",
        {"-xrm", "XTerm*allowSendEvents: true", "-u8", "-T", "typed", "-e", "cat > " + filePath()},
        "typed",
        fileText};
}

/// A page whose title tells what its field holds.
QString browserPage() {
    const QString page = desk().folder() + "/page.html";
    desk().write(page,
                 "<!DOCTYPE html><meta charset='utf-8'><title>loading</title>"
                 "<textarea autofocus id='field'></textarea><script>"
                 "const show = () => document.title = '[' + field.value.replace(/\\n/g, '|') + ']';"
                 "field.oninput = show; field.onfocus = show; window.onfocus = show;"
                 "if (document.hasFocus()) show();</script>");
    return QUrl::fromLocalFile(page).toString();
}

QString browserText() {
    const QString title = focusedTitle();
    const int begin = title.indexOf('[') + 1;
    const int end = title.lastIndexOf(']');
    return title.mid(begin, end - begin).replace('|', '\n');
}

Receiver chromium() {
    return {"chromium",
            {"--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-background-networking",
             "--disable-component-update", "--disable-sync",
             "--user-data-dir=" + desk().folder() + "/browser", "--app=" + browserPage()},
            "[]",
            browserText};
}

Receiver firefox() {
    const QString profile = desk().folder() + "/firefox";
    QDir().mkpath(profile);
    desk().write(profile + "/user.js", "user_pref('browser.aboutwelcome.enabled', false);"
                                       "user_pref('browser.shell.checkDefaultBrowser', false);"
                                       "user_pref('datareporting.policy.dataSubmissionEnabled', "
                                       "false);");
    return {"firefox-esr", {"--no-remote", "--profile", profile, browserPage()}, "[]", browserText};
}

} // namespace

Q_DECLARE_METATYPE(ReceiverMaker)

/// Typing into programs made with several toolkits, each read back in its own way.
class TestTyping : public QObject {
    Q_OBJECT

private slots:
    void textArrives_data() {
        QTest::addColumn<ReceiverMaker>("receiver");
        const std::pair<const char *, ReceiverMaker> receivers[] = {{"Qt", &qtEditor},
                                                                    {"GTK", &gtkEditor},
                                                                    {"terminal", &terminal},
                                                                    {"Chromium", &chromium},
                                                                    {"Firefox", &firefox}};
        for (const auto &[name, receiver] : receivers)
            QTest::newRow(name) << receiver;
    }

    void textArrives() {
        QFETCH(ReceiverMaker, receiver);
        constexpr int StartTimeoutMs = 60000;
        const QString text = "Жалобы: боль, 38.5°; \"Hello\" World!\n"
                             "«Да» — № 7 (5 µ) É 😀 ещё\n";
        XKeyboard keyboard;
        const QByteArray map = keyboard.map();
        QFile::remove(filePath());
        const Receiver target = receiver();
        QProcess *process = desk().start(target.program, target.arguments);
        QTRY_VERIFY_WITH_TIMEOUT(focusedTitle().contains(target.title), StartTimeoutMs);
        TextWriter::Init();

        struct Condition {
            const char *name;
            int group;
            const char *before;
            const char *after;
        };
        // No more than the title of a browser can hold.
        constexpr Condition conditions[] = {
            {"us layout", 0, "", ""},
            {"ru layout, Caps Lock on", 1, "+Caps_Lock -Caps_Lock", "+Caps_Lock -Caps_Lock"},
            {"Ctrl held", 0, "+Control_L", "-Control_L"},
            {"Shift held", 1, "+Shift_L", "-Shift_L"},
        };
        QString expected;
        for (const Condition &condition : conditions) {
            keyboard.lockGroup(condition.group);
            keyboard.play(condition.before);
            QVERIFY(TextWriter::WriteText(TextWriter::GetFocusedWindow(), text));
            QVERIFY(TextWriter::WaitForTyped(patienceMs));
            keyboard.play(condition.after);
            expected += text;
            QTRY_VERIFY2(target.read() == expected,
                         qPrintable(condition.name + QString(": ") + target.read()));
            QCOMPARE(keyboard.lockedGroup(), condition.group);
        }
        QTRY_COMPARE(keyboard.map().toHex(), map.toHex());

        TextWriter::Cleanup();
        desk().end(process);
        keyboard.lockGroup(0);
    }
};

DESK_TEST_MAIN(TestTyping, VirtualDesk::Screen)
#include "TestTyping.moc"
