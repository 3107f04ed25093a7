#include "DeskTest.h"
#include "TrayEyes.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/SelfTestSettings.h"
#include "desktop/SystemTray.h"

#include <QDir>
#include <QFile>
#include <QIcon>
#include <QMenu>
#include <QScopeGuard>
#include <QScreen>
#include <QSignalSpy>
#include <QSystemTrayIcon>

Q_DECLARE_METATYPE(ConnectionState)

/// The icon, its menu and its messages in the tray of a plain desk.
class TestTray : public QObject {
    Q_OBJECT

private slots:
    void init();
    void warnsUntilThereIsNews();
    void showsTheState_data();
    void showsTheState();
    void enablesWhatAnotherStateTookAway();
    void offersWhatThereIs_data();
    void offersWhatThereIs();
    void entriesRaiseTheirSignals_data();
    void entriesRaiseTheirSignals();
    void reportsARowOfFailuresOnce();
    void reportsAnError();
    void menuLooksAsTheStyleSaysIt();
    void waitsForTheTray();
    void comesBackWithTheTray();
};

namespace {

ConnectionStateInfo news(ConnectionState state, const QString &message = QString()) {
    ConnectionStateInfo info;
    info.setState(static_cast<int>(state));
    info.setServerHost(QStringLiteral("speech.local"));
    info.setBalancerHost(QStringLiteral("balancer.local"));
    info.setMessage(message);
    return info;
}

QAction *entry(const SystemTray &tray, const QString &text) {
    for (QAction *action : tray.trayIcon()->contextMenu()->actions()) {
        if (action->text() == text)
            return action;
    }
    return nullptr;
}

/// The visible entries, separators as "-".
QStringList visibleEntries(const SystemTray &tray) {
    QStringList texts;
    for (const QAction *action : tray.trayIcon()->contextMenu()->actions()) {
        if (action->isVisible())
            texts += action->isSeparator() ? QStringLiteral("-") : action->text();
    }
    return texts;
}

QImage picture(const QIcon &icon) {
    return icon.pixmap(32, 32).toImage();
}

QImage namedPicture(const char *name) {
    return picture(QIcon(QStringLiteral(":/replaceable/%1_icon.ico").arg(QLatin1String(name))));
}

/// The colour on the screen, where the pointer does not count.
QColor pixel(const QPoint &place) {
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, place.x(), place.y(), 1, 1)
        .toImage()
        .pixelColor(0, 0);
}

/// Mixed colours are rounded here and there.
bool isNear(const QColor &one, const QColor &other) {
    return qAbs(one.red() - other.red()) <= 2 && qAbs(one.green() - other.green()) <= 2 &&
           qAbs(one.blue() - other.blue()) <= 2;
}

QString connectText() {
    return QStringLiteral("Подключиться к серверу");
}

QString helpFolder() {
    return QCoreApplication::applicationDirPath() + QStringLiteral("/help");
}

} // namespace

void TestTray::init() {
    QFile::remove(ASRSettings().fileName());
    desk().startTray();
}

void TestTray::warnsUntilThereIsNews() {
    const SystemTray tray(nullptr);
    QTRY_VERIFY(TrayEyes::iconIsShown());
    QVERIFY(!namedPicture("warning").isNull());
    QCOMPARE(picture(tray.trayIcon()->icon()), namedPicture("warning"));
    QCOMPARE(tray.trayIcon()->toolTip(), QStringLiteral("Quillan Client"));
}

void TestTray::showsTheState_data() {
    QTest::addColumn<ConnectionState>("before");
    QTest::addColumn<ConnectionState>("state");
    QTest::addColumn<QByteArray>("pictureName");
    QTest::addColumn<bool>("offersToConnect");
    QTest::addColumn<bool>("canConnect");
    QTest::addColumn<QString>("toolTip");
    const QString ready = QStringLiteral("\nСервер speech.local\nБалансер balancer.local");
    const QString apart = QStringLiteral("\nОтключен от сервера\nБалансер balancer.local");
    const QString busy = QStringLiteral("\nПодключается к speech.local\nБалансер balancer.local");
    using S = ConnectionState;
    QTest::newRow("ready") << S::Failed << S::Ready << QByteArray("default") << false << false
                           << ready;
    QTest::newRow("disconnected after ready")
        << S::Ready << S::Disconnected << QByteArray("warning") << true << true << apart;
    QTest::newRow("failed after ready")
        << S::Ready << S::Failed << QByteArray("warning") << true << true << apart;
    QTest::newRow("connecting after a failure")
        << S::Failed << S::BalancerRequested << QByteArray("warning") << true << false << busy;
    QTest::newRow("socket up after a failure")
        << S::Failed << S::WsConnected << QByteArray("warning") << true << false << busy;
    QTest::newRow("themes asked for after ready")
        << S::Ready << S::ThemesRequested << QByteArray("default") << false << false << busy;
}

void TestTray::showsTheState() {
    QFETCH(ConnectionState, before);
    QFETCH(ConnectionState, state);
    QFETCH(QByteArray, pictureName);
    QFETCH(bool, offersToConnect);
    QFETCH(bool, canConnect);
    QFETCH(QString, toolTip);
    SystemTray tray(nullptr);
    tray.onConnectionStateChanged(news(before));
    tray.onConnectionStateChanged(news(state));
    QCOMPARE(picture(tray.trayIcon()->icon()), namedPicture(pictureName.constData()));
    QCOMPARE(tray.trayIcon()->toolTip(), QStringLiteral("Quillan Client") + toolTip);
    const QStringList head{connectText(), QStringLiteral("-"), QStringLiteral("Настройки")};
    QCOMPARE(visibleEntries(tray).mid(0, 3) == head, offersToConnect);
    QCOMPARE(visibleEntries(tray).constFirst() == QStringLiteral("Настройки"), !offersToConnect);
    QCOMPARE(entry(tray, connectText())->isEnabled(), canConnect);
}

void TestTray::enablesWhatAnotherStateTookAway() {
    SystemTray tray(nullptr);
    for (const char *text : {"Настройки", "Автозамена"}) {
        QAction *action = entry(tray, QString::fromUtf8(text));
        action->setEnabled(false);
        tray.onConnectionStateChanged(news(ConnectionState::WsConnected));
        QVERIFY2(action->isEnabled(), text);
    }
}

void TestTray::offersWhatThereIs_data() {
    QTest::addColumn<bool>("canEditWords");
    QTest::addColumn<bool>("hasManual");
    QTest::addColumn<bool>("hasTests");
    QTest::addColumn<QString>("inTheMiddle");
    QTest::newRow("nothing more") << false << false << false << "";
    QTest::newRow("own words") << true << false << false << "Мои слова|";
    QTest::newRow("a manual beside the program")
        << false << true << false << "Руководство пользователя|";
    QTest::newRow("self test enabled") << false << false << true << "Тесты|";
    QTest::newRow("all") << true << true << true << "Мои слова|Руководство пользователя|Тесты|";
}

void TestTray::offersWhatThereIs() {
    QFETCH(bool, canEditWords);
    QFETCH(bool, hasManual);
    QFETCH(bool, hasTests);
    QFETCH(QString, inTheMiddle);
    ASRSettings().CanEditAvocadoWords = canEditWords;
    SelfTestSettings().Enabled = hasTests;
    const auto cleanUp = qScopeGuard([] { QDir(helpFolder()).removeRecursively(); });
    if (hasManual) {
        QVERIFY(QDir().mkpath(helpFolder()));
        QVERIFY(QFile(helpFolder() + "/index.html").open(QIODevice::WriteOnly));
    }
    SystemTray tray(nullptr);
    const QString expected = QStringLiteral("%1|-|Настройки|Автозамена|-|Обратная связь|%2-|Выход")
                                 .arg(connectText(), inTheMiddle);
    QCOMPARE(visibleEntries(tray).join('|'), expected);

    tray.onRecognitionParametersChanged(!canEditWords);
    QCOMPARE(entry(tray, QStringLiteral("Мои слова"))->isVisible(), !canEditWords);
    if (hasManual) {
        QSignalSpy manual(&tray, &SystemTray::signalShowManual);
        entry(tray, QStringLiteral("Руководство пользователя"))->trigger();
        QCOMPARE(manual.value(0).value(0).toString(), helpFolder() + "/index.html");
    }
}

void TestTray::entriesRaiseTheirSignals_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("signal");
    QTest::newRow("connect") << connectText() << QByteArray(SIGNAL(signalConnectRequest()));
    QTest::newRow("settings") << "Настройки" << QByteArray(SIGNAL(signalShowSettings()));
    QTest::newRow("replaces") << "Автозамена" << QByteArray(SIGNAL(signalShowReplaces()));
    QTest::newRow("feedback") << "Обратная связь" << QByteArray(SIGNAL(signalShowFeedback()));
    QTest::newRow("own words") << "Мои слова" << QByteArray(SIGNAL(signalShowAvocado()));
    QTest::newRow("tests") << "Тесты" << QByteArray(SIGNAL(signalSelfTest()));
    QTest::newRow("quit") << "Выход" << QByteArray(SIGNAL(signalQuit()));
}

void TestTray::entriesRaiseTheirSignals() {
    QFETCH(QString, text);
    QFETCH(QByteArray, signal);
    SelfTestSettings().Enabled = true;
    const SystemTray tray(nullptr);
    QSignalSpy spy(&tray, signal.constData());
    QVERIFY(spy.isValid());
    entry(tray, text)->trigger();
    QCOMPARE(spy.count(), 1);
}

void TestTray::reportsARowOfFailuresOnce() {
    SystemTray tray(nullptr);
    QTRY_VERIFY(TrayEyes::iconIsShown());
    tray.onConnectionStateChanged(news(ConnectionState::Disconnected, QStringLiteral("нет")));
    QVERIFY(!TrayEyes::balloon());
    for (const char *round : {"Сервер не отвечает", "Серверов нет"}) {
        const QString message = QString::fromUtf8(round);
        tray.onConnectionStateChanged(news(ConnectionState::Failed, message));
        QCOMPARE(TrayEyes::balloonText(), message);
        QVERIFY(QTest::qWaitForWindowExposed(TrayEyes::balloon()));
        TrayEyes::balloon()->close();
        tray.onConnectionStateChanged(news(ConnectionState::WsConnected));
        tray.onConnectionStateChanged(news(ConnectionState::Failed, QStringLiteral("опять")));
        tray.onConnectionStateChanged(news(ConnectionState::Disconnected));
        QVERIFY2(!TrayEyes::balloon(), "the user knows already");
        tray.onConnectionStateChanged(news(ConnectionState::Ready));
    }
}

void TestTray::reportsAnError() {
    SystemTray tray(nullptr);
    QTRY_VERIFY(TrayEyes::iconIsShown());
    QString error = QStringLiteral("Нет соединения");
    tray.showError(error);
    QCOMPARE(TrayEyes::balloonText(), QStringLiteral("error\nНет соединения"));
    TrayEyes::balloon()->close();
}

void TestTray::menuLooksAsTheStyleSaysIt() {
    SystemTray tray(nullptr);
    QMenu *menu = tray.trayIcon()->contextMenu();
    QVERIFY(menu->windowFlags() & Qt::NoDropShadowWindowHint);
    menu->popup(QPoint(300, 200));
    QVERIFY(QTest::qWaitForWindowExposed(menu));
    const QRect shown = menu->geometry();
    const auto entryAt = [&](QAction *action) {
        return menu->actionGeometry(action).translated(shown.topLeft());
    };
    const QRect settings = entryAt(entry(tray, QStringLiteral("Настройки")));
    QTRY_COMPARE(pixel(shown.topLeft()), QColor(0xC0, 0xC0, 0xC0));
    QCOMPARE(pixel(shown.bottomRight()), QColor(0xC0, 0xC0, 0xC0));
    QCOMPARE(pixel(settings.topLeft() + QPoint(5, 5)), QColor(0xfc, 0xfc, 0xfc));
    QCOMPARE(settings.height(), QFontMetrics(menu->font()).height() + 2 * (13 + 1));

    const QRect line = entryAt(menu->actions().at(1));
    QCOMPARE(line.height(), 3);
    QVERIFY(isNear(pixel(line.center()), QColor(164, 164, 164)));
    QCOMPARE(pixel(QPoint(line.left() + 1, line.center().y())), QColor(0xfc, 0xfc, 0xfc));
    const QColor end = pixel(QPoint(line.left() + 5, line.center().y()));
    QVERIFY2(end.lightness() > 190 && end.lightness() < 220, qPrintable(end.name()));

    menu->setActiveAction(entry(tray, QStringLiteral("Настройки")));
    // 0x22 of 255 parts of the colour lie over the menu's own.
    QTRY_VERIFY(isNear(pixel(settings.topLeft() + QPoint(5, 5)), QColor(0xda, 0xf4, 0xf6)));
    menu->hide();
}

void TestTray::waitsForTheTray() {
    desk().stopTray();
    QTRY_VERIFY(!QSystemTrayIcon::isSystemTrayAvailable());
    QTest::ignoreMessage(QtDebugMsg, "System tray Unavaliable, wait...");
    SystemTray tray(nullptr);
    QVERIFY(!tray.trayIcon()->isVisible());
    QString error = QStringLiteral("unseen");
    tray.showError(error);
    QVERIFY(!TrayEyes::balloon());
    desk().startTray();
    QTRY_VERIFY(TrayEyes::iconIsShown());
}

void TestTray::comesBackWithTheTray() {
    SystemTray tray(nullptr);
    QTRY_VERIFY(TrayEyes::iconIsShown());
    for (VirtualDesk::Edge edge : {VirtualDesk::Edge::Bottom, VirtualDesk::Edge::Left}) {
        desk().stopTray();
        QTRY_VERIFY(!TrayEyes::iconIsShown());
        QTRY_VERIFY(!QSystemTrayIcon::isSystemTrayAvailable());
        QString error = QStringLiteral("unseen");
        tray.showError(error);
        QVERIFY(!TrayEyes::balloon());
        desk().startTray(edge);
        QTRY_VERIFY(TrayEyes::iconIsShown());
    }
    desk().stopTray();
}

DESK_TEST_MAIN(TestTray, VirtualDesk::Screen | VirtualDesk::Tray)
#include "TestTray.moc"
