#include "DeskTest.h"
#include "TrayEyes.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/SelfTestSettings.h"
#include "desktop/SystemTray.h"

#include <QDir>
#include <QMenu>
#include <QScreen>
#include <QSignalSpy>

Q_DECLARE_METATYPE(ConnectionState)

/// The icon, its menu and its messages in the tray of a plain desk.
class TestTray : public QObject {
    Q_OBJECT

private slots:
    void init() {
        QFile::remove(ASRSettings().fileName());
        desk().startTray();
    }

    void showsTheState_data() {
        columns<ConnectionState, ConnectionState, bool, bool, QString>("before", "state", "warns",
                                                                       "canConnect", "toolTip");
        const QString ready = "Сервер speech.local";
        const QString apart = "Отключен от сервера";
        const QString busy = "Подключается к speech.local";
        using S = ConnectionState;
        QTest::newRow("ready") << S::Failed << S::Ready << false << false << ready;
        QTest::newRow("disconnected") << S::Ready << S::Disconnected << true << true << apart;
        QTest::newRow("failed") << S::Ready << S::Failed << true << true << apart;
        QTest::newRow("busy after a failure")
            << S::Failed << S::WsConnected << true << false << busy;
        QTest::newRow("busy after ready")
            << S::Ready << S::ThemesRequested << false << false << busy;
    }

    void showsTheState() {
        QFETCH(ConnectionState, before);
        QFETCH(ConnectionState, state);
        QFETCH(bool, warns);
        QFETCH(QString, toolTip);
        SystemTray tray(nullptr);
        QCOMPARE(picture(tray), namedPicture("warning"));
        QCOMPARE(tray.trayIcon()->toolTip(), "Quillan Client");
        tray.onConnectionStateChanged(news(before));
        QAction *const alwaysEnabled[] = {entry(tray, "Настройки"), entry(tray, "Автозамена")};
        for (QAction *action : alwaysEnabled)
            action->setEnabled(false);
        tray.onConnectionStateChanged(news(state));
        QCOMPARE(picture(tray), namedPicture(warns ? "warning" : "default"));
        QCOMPARE(tray.trayIcon()->toolTip(),
                 "Quillan Client\n" + toolTip + "\nБалансер balancer.local");
        for (QAction *action : alwaysEnabled)
            QVERIFY(action->isEnabled());
        const QString head = warns ? "Подключиться к серверу|-|Настройки|" : "Настройки|";
        QVERIFY(visibleEntries(tray).startsWith(head));
        QTEST(entry(tray, "Подключиться к серверу")->isEnabled(), "canConnect");
    }

    void offersWhatThereIs_data() {
        QTest::addColumn<QString>("expected");
        // The manual lies beside the executables.
        QTest::newRow("own words") << "Мои слова|Руководство пользователя|";
        QTest::newRow("neither") << "Руководство пользователя|";
        QTest::newRow("self test") << "Руководство пользователя|Тесты|";
        QTest::newRow("all") << "Мои слова|Руководство пользователя|Тесты|";
    }

    void offersWhatThereIs() {
        QFETCH(QString, expected);
        const bool canEditWords = expected.contains("Мои слова");
        ASRSettings().CanEditAvocadoWords = canEditWords;
        SelfTestSettings().Enabled = expected.contains("Тесты");
        const QDir help(QCoreApplication::applicationDirPath() + "/help");
        SystemTray tray(nullptr);
        QCOMPARE(visibleEntries(tray), "Подключиться к серверу|-|Настройки|Автозамена|-|"
                                       "Обратная связь|" +
                                           expected + "-|Выход|");
        tray.onRecognitionParametersChanged(!canEditWords);
        QCOMPARE(entry(tray, "Мои слова")->isVisible(), !canEditWords);
        QSignalSpy manual(&tray, &SystemTray::signalShowManual);
        entry(tray, "Руководство пользователя")->trigger();
        QCOMPARE(manual, (QList<QVariantList>{{help.filePath("index.html")}}));
    }

    void entriesRaiseTheirSignals() {
        SelfTestSettings().Enabled = true;
        const SystemTray tray(nullptr);
        const std::pair<const char *, QByteArray> entries[] = {
            {"Подключиться к серверу", "signalConnectRequest"},
            {"Настройки", "signalShowSettings"},
            {"Автозамена", "signalShowReplaces"},
            {"Обратная связь", "signalShowFeedback"},
            {"Мои слова", "signalShowAvocado"},
            {"Тесты", "signalSelfTest"},
            {"Выход", "signalQuit"}};
        for (const auto &[text, signal] : entries) {
            QSignalSpy spy(&tray, '2' + signal + "()");
            entry(tray, text)->trigger();
            QVERIFY2(spy.count() == 1, text);
        }
    }

    void reportsARowOfFailuresOnce() {
        SystemTray tray(nullptr);
        QTRY_VERIFY(TrayEyes::iconIsShown());
        tray.onConnectionStateChanged(news(ConnectionState::Disconnected, "нет"));
        QVERIFY(!TrayEyes::balloon());
        for (const char *message : {"Сервер не отвечает", "Серверов нет"}) {
            tray.onConnectionStateChanged(news(ConnectionState::Failed, message));
            QCOMPARE(TrayEyes::balloonText(), message);
            QVERIFY(QTest::qWaitForWindowExposed(TrayEyes::balloon(), patienceMs));
            TrayEyes::balloon()->close();
            using S = ConnectionState;
            for (const S state : {S::WsConnected, S::Failed, S::Disconnected})
                tray.onConnectionStateChanged(news(state, "опять"));
            QVERIFY2(!TrayEyes::balloon(), "the user knows already");
            tray.onConnectionStateChanged(news(S::Ready));
        }
    }

    void menuLooksAsTheStyleSaysIt() {
        const SystemTray tray(nullptr);
        QMenu *menu = tray.trayIcon()->contextMenu();
        QVERIFY(menu->windowFlags() & Qt::NoDropShadowWindowHint);
        menu->popup(QPoint(300, 200));
        QVERIFY(QTest::qWaitForWindowExposed(menu, patienceMs));
        const QPoint corner = menu->pos();
        QAction *action = entry(tray, "Настройки");
        const QRect settings = menu->actionGeometry(action).translated(corner);
        const QPoint inside = settings.topLeft() + QPoint(5, 5);
        const QColor background(0xfc, 0xfc, 0xfc);
        QTRY_COMPARE(pixel(corner), QColor(0xC0, 0xC0, 0xC0));
        QCOMPARE(pixel(inside), background);
        QCOMPARE(settings.height(), QFontMetrics(menu->font()).height() + 2 * (13 + 1));

        const QRect line = menu->actionGeometry(menu->actions().at(1)).translated(corner);
        QCOMPARE(line.height(), 3);
        QVERIFY(isNear(pixel(line.center()), QColor(164, 164, 164)));
        QCOMPARE(pixel({line.left() + 1, line.center().y()}), background);
        const QColor end = pixel({line.left() + 5, line.center().y()});
        QVERIFY2(end.lightness() > 190 && end.lightness() < 220, qPrintable(end.name()));

        menu->setActiveAction(action);
        // 0x22 of 255 parts of the colour lie over the menu's own.
        QTRY_VERIFY(isNear(pixel(inside), QColor(0xda, 0xf4, 0xf6)));
        menu->hide();
    }

private:
    static ConnectionStateInfo news(ConnectionState state, const QString &message = QString()) {
        ConnectionStateInfo info;
        info.setState(int(state));
        info.setServerHost("speech.local");
        info.setBalancerHost("balancer.local");
        info.setMessage(message);
        return info;
    }

    static QAction *entry(const SystemTray &tray, const QString &text) {
        for (QAction *action : tray.trayIcon()->contextMenu()->actions()) {
            if (action->text() == text)
                return action;
        }
        return nullptr;
    }

    /// The visible entries, separators as "-", each with "|" behind it.
    static QString visibleEntries(const SystemTray &tray) {
        QString texts;
        for (const QAction *action : tray.trayIcon()->contextMenu()->actions()) {
            if (action->isVisible())
                texts += (action->isSeparator() ? "-" : action->text()) + '|';
        }
        return texts;
    }

    static QImage picture(const SystemTray &tray) {
        return tray.trayIcon()->icon().pixmap(32, 32).toImage();
    }
    static QImage namedPicture(const char *name) {
        return QIcon(QString(":/replaceable/%1_icon.ico").arg(name)).pixmap(32, 32).toImage();
    }

    /// The colour on the screen, where the pointer does not count.
    static QColor pixel(const QPoint &place) {
        const QPixmap screen = QGuiApplication::primaryScreen()->grabWindow(0);
        return screen.toImage().pixelColor(place);
    }

    /// Mixed colours are rounded here and there.
    static bool isNear(const QColor &one, const QColor &other) {
        return qAbs(one.red() - other.red()) <= 2 && qAbs(one.green() - other.green()) <= 2 &&
               qAbs(one.blue() - other.blue()) <= 2;
    }
};

DESK_TEST_MAIN(TestTray, VirtualDesk::Screen | VirtualDesk::Tray)
#include "TestTray.moc"
