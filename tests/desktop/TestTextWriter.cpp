#include "DeskTest.h"
#include "KeyReceiver.h"
#include "XKeyboard.h"
#include "core/settings/TextWriterSettings.h"
#include "desktop/HotKeyInfo.h"
#include "desktop/TextWriter.h"
#include "desktop/XHotKeyConverter.h"

#include <QProcess>
#include <QRegularExpression>
#include <QVBoxLayout>

Q_DECLARE_METATYPE(KeyReceiver::Pings)

/// The writer's key events, as a plain window receives them.
class TestTextWriter : public QObject {
    Q_OBJECT

private slots:
    void init() {
        setDelays(0, 50);
        TextWriter::Init();
    }

    void cleanup() {
        TextWriter::Cleanup();
        m_keyboard.lockGroup(0);
    }

    void typesWhateverTheLayout_data() {
        columns<int, QString>("group", "text");
        const QString letters = "Съешь ещё, Hello World 123!? №";
        const QString signs = "«É»—é°µß😀ÿ";
        QTest::newRow("letters of two layouts while the first is active") << 0 << letters;
        QTest::newRow("letters of two layouts while the second is active") << 1 << letters;
        QTest::newRow("signs of no layout while the first is active") << 0 << signs;
        QTest::newRow("signs of no layout while the second is active") << 1 << signs;
        QTest::newRow("line breaks are Shift+Return") << 1 << "a\n\nб\n";
        QTest::newRow("thousands of letters") << 0 << QString("Привет, мир. ").repeated(400);
    }

    void typesWhateverTheLayout() {
        QFETCH(int, group);
        QFETCH(QString, text);
        KeyReceiver receiver;
        m_keyboard.lockGroup(group);
        const QByteArray map = m_keyboard.map();

        QVERIFY(TextWriter::WriteText(receiver.window(), text));
        QTRY_COMPARE(receiver.text(), text);
        QCOMPARE(m_keyboard.lockedGroup(), group);
        QTRY_COMPARE(m_keyboard.map().toHex(), map.toHex());
    }

    void followsTheLayouts_data() {
        columns<QString, QString, bool>("before", "after", "isDuring");
        for (const bool isDuring : {false, true}) {
            const auto change = [isDuring](const char *name, QString before, QString after) {
                QTest::addRow("%s %s", name, isDuring ? "during a text" : "before a text")
                    << before << after << isDuring;
            };
            change("turned round", "us,ru", "ru,us");
            change("one taken away", "us,ru", "us");
            change("one put between", "us,ru", "us,de,ru");
        }
        // In the middle of a text the change would take the lent keycodes from the receiver.
        row("set after the start", QString("us"), QString("us,ru"), false);
        row("the other one alone", QString("us"), QString("ru"), false);
    }

    void followsTheLayouts() {
        QFETCH(QString, before);
        QFETCH(QString, after);
        QFETCH(bool, isDuring);
        desk().run("setxkbmap", {"-layout", before});
        TextWriter::Init();
        KeyReceiver receiver;
        const QString text =
            isDuring ? QString("Съешь ещё, Hello!\n").repeated(1500) : QString("Ещё Hello «№ é»\n");
        if (isDuring)
            QVERIFY(TextWriter::WriteText(receiver.window(), text));
        QVERIFY(!isDuring || receiver.waitForLength(1, patienceMs));
        desk().run("setxkbmap", {"-layout", after});
        const bool wasInTime = receiver.text().size() < text.size();
        if (!isDuring)
            QVERIFY(TextWriter::WriteText(receiver.window(), text));
        QVERIFY(receiver.waitForLength(text.size(), patienceMs));
        QVERIFY(receiver.text() == text);
        QVERIFY2(wasInTime, "the text was there before the layouts changed");
        TextWriter::Cleanup();
        desk().run("setxkbmap", {"-layout", "us,ru"});
    }

    void capitalIsOnePressWithShift() {
        KeyReceiver receiver;
        QVERIFY(TextWriter::WriteText(receiver.window(), "Ж"));
        QTRY_COMPARE(receiver.count(), 2);
        const QVector<KeyReceiver::Edge> edges = receiver.edges();
        for (const KeyReceiver::Edge &edge : edges) {
            QCOMPARE(edge.keycode, m_keyboard.keycode("semicolon"));
            QCOMPARE(edge.state, 0x2001U); // Shift, second group
            QVERIFY(edge.isSent);
        }
        QVERIFY(edges.first().isPress && !edges.last().isPress);
    }

    void unknownCharactersAreSkipped() {
        KeyReceiver receiver;
        QTest::ignoreMessage(QtInfoMsg, "XTextWriter: Unknown char 0");
        QTest::ignoreMessage(QtInfoMsg, "XTextWriter: Unknown char 1");
        QTest::ignoreMessage(QtInfoMsg, "XTextWriter: Unknown char 85");
        const QString text = QString("a%1b%2c%3d").arg(QChar(0), QChar(1), QChar(0x85));
        QVERIFY(TextWriter::WriteText(receiver.window(), text));
        QTRY_COMPARE(receiver.text(), "abcd");
        QCOMPARE(receiver.count(), 8);
    }

    void noWindowNoText() {
        QTest::ignoreMessage(QtInfoMsg, "XTextWriter: No window");
        QVERIFY(!TextWriter::WriteText(0, "a"));
        constexpr unsigned long NeverMade = 0x1fffffff;
        QTest::ignoreMessage(QtWarningMsg, "XTextWriter: Not typed to the end, characters: 1");
        QVERIFY(TextWriter::WriteText(NeverMade, "a"));
        KeyReceiver receiver;
        QVERIFY(TextWriter::WriteText(receiver.window(), QString()));
        QVERIFY(TextWriter::WriteText(receiver.window(), "z"));
        QTRY_COMPARE(receiver.text(), "z");
    }

    void stopsWhenTheWindowCloses_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("letters") << QString("я").repeated(5000);
        QTest::newRow("signs through the spare keycode") << QString("É").repeated(70);
    }

    void stopsWhenTheWindowCloses() {
        QFETCH(QString, text);
        setDelays(1, 50);
        TextWriter::Init();
        KeyReceiver receiver(0, 3);
        const QByteArray map = m_keyboard.map();

        QTest::ignoreMessage(QtInfoMsg, QRegularExpression("X error \\d+ while typing$"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Not typed to the end"));
        QVERIFY(TextWriter::WriteText(receiver.window(), text));
        QVERIFY2(TextWriter::WaitForTyped(5000), "it is typed on after the window has closed");
        QTRY_COMPARE(m_keyboard.map().toHex(), map.toHex());
    }

    void slowReceiverReadsTheSame_data() {
        columns<int, KeyReceiver::Pings, QString>("enterDelay", "pings", "text");
        row("that cannot tell", 200, KeyReceiver::Pings::Unheard,
            QString("«Ой, да»\n— É").repeated(2));
        // More signs than there are spare keycodes, so that each has to serve several.
        QString signs;
        for (ushort sign = 0x2200; sign < 0x2300; ++sign)
            signs += QChar(sign);
        row("that tells what it has read", 0, KeyReceiver::Pings::Answered, signs);
    }

    void slowReceiverReadsTheSame() {
        QFETCH(int, enterDelay);
        QFETCH(KeyReceiver::Pings, pings);
        QFETCH(QString, text);
        setDelays(0, enterDelay);
        TextWriter::Init();
        // Another window that had a spare keycode and has closed since takes nothing from it.
        const KeyReceiver closed(0, 1, KeyReceiver::Pings::Answered);
        QVERIFY(TextWriter::WriteText(closed.window(), "≠") && closed.waitForLength(1, patienceMs));
        KeyReceiver receiver(150, 0, pings);
        QVERIFY(TextWriter::WriteText(receiver.window(), text));
        QTRY_COMPARE(receiver.text(), text);
    }

    void takesBackWhatAKilledProcessLeft() {
        TextWriter::Cleanup();
        KeyReceiver receiver;
        const QByteArray map = m_keyboard.map();
        QProcess::execute(QCoreApplication::applicationDirPath() + "/killed_typist",
                          {QString::number(receiver.window()), "«É»"});
        QTRY_COMPARE(receiver.text(), "«É»");
        QVERIFY(m_keyboard.map() != map);
        TextWriter::Init();
        QCOMPARE(m_keyboard.map().toHex(), map.toHex());
    }

    void pressesKeysOfNoLayout() {
        desk().run("setxkbmap", {"-layout", "ru"});
        desk().run("xmodmap", {"-e", "keycode 36 ="});
        KeyReceiver receiver;
        const XHotKeyConverter converter;
        const auto press = [&](const char *key) {
            return TextWriter::WriteKey(0, converter.ConvertFromString(key));
        };
        const QString unknown = "XTextWriter: No key for a combination, nothing is pressed";
        QTest::ignoreMessage(QtWarningMsg, qPrintable(unknown));
        // In the order of the calls, whatever is handed over.
        QVERIFY(TextWriter::WriteText(receiver.window(), "«b") && press("Ctrl+c") &&
                press("Ctrl+Nonsense") && TextWriter::WriteText(receiver.window(), "\nd»\n"));
        QTRY_COMPARE(receiver.text(), "«bc\nd»\n");
        QTRY_COMPARE(receiver.count(), 16);
        QCOMPARE(receiver.edges().at(4).keycode, m_keyboard.keycode("Control_L"));
        desk().run("setxkbmap", {"-layout", "us,ru"});
    }

    void pressesWhatIsNotHeld_data() {
        columns<QString, QString, int, QString>("held", "key", "modifiers", "seen");
        const auto row = [](const char *name, const char *held, const char *key, int modifiers,
                            const char *keys) {
            QTest::newRow(name) << held << key << modifiers << keys;
        };
        row("a plain key", "", "F5", 0, "+F5 -F5");
        row("nothing held", "", "c", 4, "+Control_L +c -c -Control_L");
        row("left Ctrl held", "Control_L", "c", 4, "+c -c");
        row("right Ctrl held", "Control_R", "c", 4, "+c -c");
        row("all modifiers, one held", "Alt_R", "F9", 1 | 4 | 8 | 64,
            "+Shift_L +Control_L +Super_L +F9 -F9 -Super_L -Control_L -Shift_L");
        row("modifiers alone", "", "", 1, "+Shift_L -Shift_L");
    }

    void pressesWhatIsNotHeld() {
        QFETCH(QString, held);
        QFETCH(QString, key);
        QFETCH(int, modifiers);
        QFETCH(QString, seen);
        KeyReceiver receiver;
        if (!held.isEmpty())
            m_keyboard.press(held);
        QTRY_COMPARE(receiver.count(), held.isEmpty() ? 0 : 1);

        const HotKeyInfo info{static_cast<unsigned int>(m_keyboard.keycode(key)),
                              static_cast<unsigned int>(modifiers)};
        const bool isPressed =
            TextWriter::WriteKey(receiver.window(), info) && TextWriter::WaitForTyped(patienceMs);
        if (!held.isEmpty())
            m_keyboard.release(held);
        QVERIFY(isPressed);

        const QStringList expected = seen.split(' ');
        const int first = held.isEmpty() ? 0 : 1;
        QTRY_COMPARE(receiver.count(), expected.size() + 2 * first);
        const QVector<KeyReceiver::Edge> edges = receiver.edges().mid(first, expected.size());
        for (int i = 0; i < edges.size(); ++i) {
            QCOMPARE(edges[i].isPress, expected[i].startsWith('+'));
            QCOMPARE(edges[i].keycode, m_keyboard.keycode(expected[i].mid(1)));
            QVERIFY(!edges[i].isSent);
        }
    }

    void doesNothingWithoutADisplay() {
        const QByteArray display = qgetenv("DISPLAY");
        qunsetenv("DISPLAY");
        TextWriter::Init();
        qputenv("DISPLAY", display);
        const KeyReceiver receiver;
        QRect rect;
        QVERIFY(!TextWriter::WriteText(receiver.window(), "a"));
        QVERIFY(!TextWriter::WriteKey(receiver.window(), {38, 0}));
        QVERIFY(!TextWriter::GetWindowRect(receiver.window(), &rect));
        QCOMPARE(TextWriter::GetFocusedWindow(), 0UL);
    }

    void tellsTheFocusedWindowAndItsFrame() {
        QWidget window;
        QVBoxLayout layout(&window);
        QWidget inner;
        inner.setAttribute(Qt::WA_NativeWindow);
        layout.addWidget(&inner);
        window.setGeometry(100, 120, 320, 200);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window, patienceMs));
        QCOMPARE(TextWriter::GetFocusedWindow(), static_cast<unsigned long>(window.winId()));
        QTRY_VERIFY(window.frameGeometry() != window.geometry());

        QRect rect;
        QVERIFY(TextWriter::GetWindowRect(inner.winId(), &rect));
        QCOMPARE(rect, window.frameGeometry());
        QVERIFY(!TextWriter::GetWindowRect(0, &rect));
        // It would give the focus to the window again.
        desk().stopWindowManager();
        m_keyboard.unfocus();
        QCOMPARE(TextWriter::GetFocusedWindow(), 0UL);
    }

private:
    static void setDelays(int symbolDelay, int enterDelay) {
        TextWriterSettings settings;
        settings.SymbolDelay = symbolDelay;
        settings.EnterDelay = enterDelay;
    }

    XKeyboard m_keyboard;
};

DESK_TEST_MAIN(TestTextWriter, VirtualDesk::Screen)
#include "TestTextWriter.moc"
