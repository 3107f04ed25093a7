#include "DeskTest.h"

#include <QScreen>
#include <QSystemTrayIcon>

Q_DECLARE_METATYPE(VirtualDesk::Edge)

/// The desk of Xfce with two monitors: that windows, a panel and its tray find their places.
class TestSessions : public QObject {
    Q_OBJECT

private slots:
    void monitorsLieSideBySide();
    void panelTakesItsEdge_data();
    void panelTakesItsEdge();
};

void TestSessions::monitorsLieSideBySide() {
    const QList<QScreen *> screens = QGuiApplication::screens();
    QCOMPARE(screens.size(), 2);
    QCOMPARE(QGuiApplication::primaryScreen(), screens.constFirst());
    QCOMPARE(screens[0]->geometry(), QRect(0, 0, 1280, 800));
    QCOMPARE(screens[1]->geometry(), QRect(1280, 0, 1024, 768));
}

void TestSessions::panelTakesItsEdge_data() {
    QTest::addColumn<VirtualDesk::Edge>("edge");
    QTest::addColumn<QPoint>("inside");
    QTest::newRow("top") << VirtualDesk::Edge::Top << QPoint(640, 5);
    QTest::newRow("bottom") << VirtualDesk::Edge::Bottom << QPoint(640, 795);
    QTest::newRow("left") << VirtualDesk::Edge::Left << QPoint(5, 400);
    QTest::newRow("right") << VirtualDesk::Edge::Right << QPoint(1275, 400);
}

void TestSessions::panelTakesItsEdge() {
    QFETCH(VirtualDesk::Edge, edge);
    QFETCH(QPoint, inside);
    const auto panelAtPoint = [&inside] {
        desk().run(QStringLiteral("xdotool"),
                   {QStringLiteral("mousemove"), QString::number(inside.x()),
                    QString::number(inside.y())});
        const QString found =
            desk().run(QStringLiteral("xdotool"),
                       {QStringLiteral("getmouselocation"), QStringLiteral("--shell")});
        const QString window = found.section(QStringLiteral("WINDOW="), 1).trimmed();
        return desk()
            .run(QStringLiteral("xprop"),
                 {QStringLiteral("-id"), window, QStringLiteral("WM_CLASS")})
            .contains(QStringLiteral("xfce4-panel"));
    };
    desk().stopTray();
    QTRY_VERIFY(!panelAtPoint());
    desk().startTray(edge);
    QTRY_VERIFY(panelAtPoint());
    QVERIFY(QSystemTrayIcon::isSystemTrayAvailable());
}

DESK_TEST_MAIN(TestSessions, VirtualDesk::Xfce | VirtualDesk::Tray | VirtualDesk::TwoMonitors)
#include "TestSessions.moc"
