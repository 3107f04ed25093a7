#include "DeskTest.h"
#include "XKeyboard.h"
#include "desktop/TextWriter.h"
#include "desktop/XHotKeyConverter.h"

#include <QDir>
#include <QFile>
#include <QUrl>

#include <stdexcept>

/// Typing into programs made with several toolkits, each read back in its own way.
class TestTyping : public QObject {
    Q_OBJECT

private slots:
    void textArrives_data();
    void textArrives();
};

namespace {

QString filePath() {
    return desk().folder() + QStringLiteral("/typed.txt");
}

QString fileText() {
    QFile file(filePath());
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The name of the window that has the input focus, empty if there is none.
QString focusedTitle() {
    try {
        return desk()
            .run(QStringLiteral("xdotool"),
                 {QStringLiteral("getwindowfocus"), QStringLiteral("getwindowname")})
            .trimmed();
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
    return {QCoreApplication::applicationDirPath() + QStringLiteral("/editor_window"),
            {filePath()},
            filePath(),
            fileText};
}

Receiver gtkEditor() {
    const auto saveAndRead = [] {
        const XHotKeyConverter converter;
        TextWriter::WriteKey(0, converter.ConvertFromString(QStringLiteral("Ctrl+s")));
        return fileText();
    };
    return {QStringLiteral("mousepad"),
            {QStringLiteral("--disable-server"), filePath()},
            QStringLiteral("typed.txt"),
            saveAndRead};
}

Receiver terminal() {
    return {QStringLiteral("xterm"),
            {QStringLiteral("-xrm"), QStringLiteral("XTerm*allowSendEvents: true"),
             QStringLiteral("-u8"), QStringLiteral("-T"), QStringLiteral("typed"),
             QStringLiteral("-e"), QStringLiteral("cat > ") + filePath()},
            QStringLiteral("typed"),
            fileText};
}

Receiver browser() {
    const QString page = desk().folder() + QStringLiteral("/page.html");
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
        const int begin = title.indexOf(QLatin1Char('[')) + 1;
        const int end = title.lastIndexOf(QLatin1Char(']'));
        return QUrl::fromPercentEncoding(title.mid(begin, end - begin).toUtf8());
    };
    return {QStringLiteral("chromium"),
            {QStringLiteral("--no-sandbox"), QStringLiteral("--disable-gpu"),
             QStringLiteral("--no-first-run"), QStringLiteral("--disable-background-networking"),
             QStringLiteral("--disable-component-update"), QStringLiteral("--disable-sync"),
             QStringLiteral("--user-data-dir=") + desk().folder() + QStringLiteral("/browser"),
             QStringLiteral("--app=") + QUrl::fromLocalFile(page).toString()},
            QStringLiteral("[]"),
            readTitle};
}

} // namespace

Q_DECLARE_METATYPE(ReceiverMaker)

void TestTyping::textArrives_data() {
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

void TestTyping::textArrives() {
    QFETCH(ReceiverMaker, receiver);
    QFETCH(int, group);
    constexpr int StartTimeoutMs = 60000;
    const QString text = QStringLiteral("Жалобы: боль, 38.5°; \"Hello\" World!\n"
                                        "«Да» — № 7 (5 µ) É 😀 ещё\n");
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

DESK_TEST_MAIN(TestTyping, VirtualDesk::Screen)
#include "TestTyping.moc"
