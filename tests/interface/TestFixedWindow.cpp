#include "DeskTest.h"
#include "desktop/FixedWindow.h"

/// The monitor's window on the desk that the build names: FIXED_WINDOW_DESK.
class TestFixedWindow : public QObject {
    Q_OBJECT

private slots:
    void staysOffTaskBarAndPager() {
        FixedWindow window;
        window.resize(60, 40);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, patienceMs));
        for (const char *state : {"SKIP_TASKBAR", "SKIP_PAGER"})
            QTRY_COMPARE(has(window, state), isManaged);
        // Openbox keeps windows on all desktops by other means than this state.
        QTRY_COMPARE(has(window, "STICKY"), deskHere == VirtualDesk::Xfce);
        // What was written did not spoil the window: it can still be hidden and shown.
        window.hide();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, patienceMs));
    }

    void logsItsState() {
        static QStringList lines;
        const QtMessageHandler previous = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &line) { lines += line; });
        FixedWindow window;
        window.create();
        qInstallMessageHandler(previous);
        const QString head = QString("FixedWindow 'Vellumar' #%1(%2) Properties %3:")
                                 .arg(QString::number(window.winId(), 16))
                                 .arg(window.winId());
        QCOMPARE(lines.value(0), head.arg("BEFORE"));
        const int after = lines.indexOf(head.arg("AFTER"));
        QVERIFY2(after > 0, qPrintable(lines.join('\n')));
        QCOMPARE(lines.value(after + 1), "_NET_WM_STATE:");
        QCOMPARE(lines.constLast(), "_NET_WM_ALLOWED_ACTIONS:");
        QCOMPARE(lines.contains("  _NET_WM_STATE_SKIP_PAGER"), isManaged);
    }

public:
    static constexpr VirtualDesk::Need deskHere = VirtualDesk::FIXED_WINDOW_DESK;

private:
    static constexpr bool isManaged = deskHere != VirtualDesk::Bare;

    /// Whether the X server holds this as a state of the window.
    static bool has(const QWindow &window, const QString &state) {
        return desk()
            .run("xprop", {"-id", QString::number(window.winId()), "_NET_WM_STATE"})
            .contains("_NET_WM_STATE_" + state);
    }
};

DESK_TEST_MAIN(TestFixedWindow, TestFixedWindow::deskHere)
#include "TestFixedWindow.moc"
