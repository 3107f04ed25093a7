#include "DeskTest.h"
#include "desktop/XHotKeyConverter.h"

#include <QKeyEvent>

/// Key combinations as text, as values and as events.
class TestHotKeyConverter : public QObject {
    Q_OBJECT

private slots:
    void readsAndWrites_data() {
        columns<QString, unsigned int, QString>("read", "modifiers", "written");
        QTest::newRow("empty") << "" << 0U << "";
        QTest::newRow("plus alone") << "+" << 0U << "";
        QTest::newRow("plain key") << "F5" << 0U << "F5";
        QTest::newRow("fixed order") << "Win+shift+ALT+Ctrl+a" << 77U << "Ctrl+Alt+Shift+Win+a";
        QTest::newRow("capital has the same key") << "Ctrl+A" << 4U << "Ctrl+a";
        QTest::newRow("modifiers only") << "Alt+Ctrl" << 12U << "Ctrl+Alt";
        QTest::newRow("last of two keys") << "a+Shift+b" << 1U << "Shift+b";
        QTest::newRow("unknown key after a known one") << "Ctrl+a+Nonsense" << 4U << "Ctrl";
        QTest::newRow("key names are case-sensitive") << "f5" << 0U << "";
        QTest::newRow("keypad digit") << "Ctrl+KP_1" << 20U << "Ctrl+KP_1";
        QTest::newRow("keypad digit without NumLock") << "KP_End" << 16U << "KP_1";
        QTest::newRow("keypad decimal point") << "KP_Delete" << 0U << "KP_Delete";
    }

    void readsAndWrites() {
        QFETCH(QString, read);
        QFETCH(unsigned int, modifiers);
        const XHotKeyConverter converter;
        const HotKeyInfo info = converter.ConvertFromString(read);
        QCOMPARE(info.modifiers, modifiers);
        QTEST(converter.ConvertToString(info), "written");
    }

    void takesEvents_data() {
        columns<unsigned int, unsigned int, unsigned int>("keysym", "state", "modifiers");
        QTest::newRow("locks and layout are dropped") << 0x61U << 0x2017U << 5U;
        QTest::newRow("Alt and Super") << 0x61U << 72U << 72U;
        QTest::newRow("first of the keypad's navigation") << 0xff95U << 0U << 16U;
        QTest::newRow("keypad digit with NumLock") << 0xffb9U << 16U << 16U;
        QTest::newRow("keypad point with NumLock") << 0xffaeU << 16U << 0U;
        QTest::newRow("keypad key before the navigation") << 0xff8dU << 0U << 0U;
    }

    void takesEvents() {
        QFETCH(unsigned int, keysym);
        QFETCH(unsigned int, state);
        QFETCH(unsigned int, modifiers);
        constexpr unsigned int Keycode = 38;
        const QKeyEvent event(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, Keycode, keysym, state);
        const HotKeyInfo info = XHotKeyConverter().HotKeyFromEvent(&event);
        QCOMPARE(info.code, Keycode);
        QCOMPARE(info.modifiers, modifiers);
    }

    void changesQtModifiers() {
        const XHotKeyConverter converter;
        HotKeyInfo info{38, 16};
        converter.SetQtModifiers(&info, Qt::ControlModifier | Qt::MetaModifier | Qt::KeypadModifier,
                                 true);
        QCOMPARE(info.modifiers, 16U | 4U | 64U);
        converter.SetQtModifiers(&info, Qt::MetaModifier | Qt::ShiftModifier, false);
        QCOMPARE(info.modifiers, 16U | 4U);
        QCOMPARE(converter.GetQtModifiers(&info), Qt::KeyboardModifiers(Qt::ControlModifier));
    }

    void knowsNoKeyWithoutADisplay() {
        const QByteArray display = qgetenv("DISPLAY");
        qunsetenv("DISPLAY");
        const XHotKeyConverter converter;
        qputenv("DISPLAY", display);
        QCOMPARE(converter.ConvertFromString("Ctrl+a").code, 0U);
        QCOMPARE(converter.ConvertToString({38, 4}), QString());
    }
};

DESK_TEST_MAIN(TestHotKeyConverter, VirtualDesk::Screen)
#include "TestHotKeyConverter.moc"
