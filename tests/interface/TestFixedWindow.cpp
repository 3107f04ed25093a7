#include "DeskTest.h"
#include "desktop/FixedWindow.h"

/// The monitor's window on the desk that the build names: FIXED_WINDOW_DESK.
class TestFixedWindow : public QObject {
    Q_OBJECT

private slots:
    void staysOffTaskBarAndPager();
    void logsItsState();
};

namespace {

constexpr VirtualDesk::Need deskHere = VirtualDesk::FIXED_WINDOW_DESK;
constexpr bool isManaged = deskHere != VirtualDesk::Bare;
// Openbox keeps windows on all desktops by other means than this state.
constexpr bool knowsSticky = deskHere == VirtualDesk::Xfce;

/// What the X server holds as the state of the window.
QString stateOf(const QWindow &window) {
    return desk().run(
        QStringLiteral("xprop"),
        {QStringLiteral("-id"), QString::number(window.winId()), QStringLiteral("_NET_WM_STATE")});
}

} // namespace

void TestFixedWindow::staysOffTaskBarAndPager() {
    FixedWindow window;
    window.setTitle(QStringLiteral("fixed"));
    window.resize(60, 40);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    for (const char *state : {"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"})
        QTRY_COMPARE(stateOf(window).contains(QLatin1String(state)), isManaged);
    QTRY_COMPARE(stateOf(window).contains(QStringLiteral("_NET_WM_STATE_STICKY")), knowsSticky);
    // What was written did not spoil the window: it can still be hidden and shown.
    window.hide();
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
}

void TestFixedWindow::logsItsState() {
    static QStringList lines;
    lines.clear();
    const QtMessageHandler previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &line) { lines += line; });
    FixedWindow window;
    window.create();
    qInstallMessageHandler(previous);
    const QString head = QStringLiteral("FixedWindow 'Vellumar' #%1(%2) Properties %3:");
    const QString hex = QString::number(window.winId(), 16);
    const QString decimal = QString::number(window.winId());
    QCOMPARE(lines.value(0), head.arg(hex, decimal, QStringLiteral("BEFORE")));
    const int after = lines.indexOf(head.arg(hex, decimal, QStringLiteral("AFTER")));
    QVERIFY2(after > 0, qPrintable(lines.join('\n')));
    QCOMPARE(lines.value(after + 1), QStringLiteral("_NET_WM_STATE:"));
    QCOMPARE(lines.constLast(), QStringLiteral("_NET_WM_ALLOWED_ACTIONS:"));
    QCOMPARE(lines.contains(QStringLiteral("  _NET_WM_STATE_SKIP_PAGER")), isManaged);
}

DESK_TEST_MAIN(TestFixedWindow, deskHere)
#include "TestFixedWindow.moc"
