#include "DeskTest.h"
#include "XKeyboard.h"
#include "desktop/TextWriter.h"
#include "desktop/XHotKeyConverter.h"

#include <QDir>
#include <QFile>
#include <QUrl>

#include <stdexcept>

namespace {

QString filePath() {
    return desk().folder() + "/typed.txt";
}

QString fileText() {
    QFile file(filePath());
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The name of the window that has the input focus, empty if there is none.
QString focusedTitle() {
    try {
        return desk().run("xdotool", {"getwindowfocus", "getwindowname"}).trimmed();
    } catch (const std::runtime_error &) {
        return QString();
    }
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

Receiver browser() {
    const QString page = desk().folder() + "/page.html";
    QFile file(page);
    if (file.open(QIODevice::WriteOnly))
        file.write(
            "<!DOCTYPE html><meta charset='utf-8'><title>loading</title>"
            "<textarea autofocus id='field'></textarea><script>"
            "const show = () => document.title = '[' + encodeURIComponent(field.value) + ']';"
            "field.oninput = show; field.onfocus = show; window.onfocus = show;"
            "if (document.hasFocus()) show();</script>");
    file.close();
    const auto readTitle = [] {
        const QString title = focusedTitle();
        const int begin = title.indexOf('[') + 1;
        const int end = title.lastIndexOf(']');
        return QUrl::fromPercentEncoding(title.mid(begin, end - begin).toUtf8());
    };
    return {"chromium",
            {"--no-sandbox", "--disable-gpu", "--no-first-run", "--disable-background-networking",
             "--disable-component-update", "--disable-sync",
             "--user-data-dir=" + desk().folder() + "/browser",
             "--app=" + QUrl::fromLocalFile(page).toString()},
            "[]",
            readTitle};
}

} // namespace

Q_DECLARE_METATYPE(ReceiverMaker)

/// Typing into programs made with several toolkits, each read back in its own way.
class TestTyping : public QObject {
    Q_OBJECT

private slots:
    void textArrives_data() {
        QTest::addColumn<ReceiverMaker>("receiver");
        QTest::addColumn<int>("group");
        QTest::newRow("Qt, us layout") << &qtEditor << 0;
        QTest::newRow("Qt, ru layout") << &qtEditor << 1;
        QTest::newRow("GTK, us layout") << &gtkEditor << 0;
        QTest::newRow("GTK, ru layout") << &gtkEditor << 1;
        QTest::newRow("terminal, us layout") << &terminal << 0;
        QTest::newRow("terminal, ru layout") << &terminal << 1;
        QTest::newRow("browser, us layout") << &browser << 0;
        QTest::newRow("browser, ru layout") << &browser << 1;
    }

    void textArrives() {
        QFETCH(ReceiverMaker, receiver);
        QFETCH(int, group);
        constexpr int StartTimeoutMs = 60000;
        const QString text = "Жалобы: боль, 38.5°; \"Hello\" World!\n"
                             "«Да» — № 7 (5 µ) É 😀 ещё\n";
        XKeyboard keyboard;
        const QByteArray map = keyboard.map();
        keyboard.lockGroup(group);
        QFile::remove(filePath());
        const Receiver target = receiver();
        QProcess *process = desk().start(target.program, target.arguments);
        QTRY_VERIFY_WITH_TIMEOUT(focusedTitle().contains(target.title), StartTimeoutMs);
        TextWriter::Init();

        QVERIFY(TextWriter::WriteText(TextWriter::GetFocusedWindow(), text));
        QTRY_COMPARE(target.read(), text);
        QCOMPARE(keyboard.lockedGroup(), group);
        QCOMPARE(keyboard.map().toHex(), map.toHex());

        TextWriter::Cleanup();
        desk().end(process);
        keyboard.lockGroup(0);
    }
};

DESK_TEST_MAIN(TestTyping, VirtualDesk::Screen)
#include "TestTyping.moc"
