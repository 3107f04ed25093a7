#include "DeskTest.h"
#include "Program.h"
#include "Stand.h"
#include "XKeyboard.h"
#include "connection/messages/MessageType.h"

#include <QRegularExpression>

/// What the whole program tells its user: the messages that reach the session's notification
/// service from the tray.
class TestMessages : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        m_monitor = desk().start(
            "dbus-monitor", {"--session", "interface=org.freedesktop.Notifications,member=Notify"});
        QTRY_VERIFY(m_monitor->bytesAvailable() > 0);
        m_stand = std::make_unique<Stand>();
        m_program = startProgram(m_stand.get());
        QVERIFY(m_program);
        QCOMPARE(nextMessage(), "dialog-information|Голосовая активация|В настройках доступен "
                                "запуск распознавания голосовой командой.|4000");
        QCOMPARE(nextMessage(), "dialog-information|Оповещение|Зарегистрирована горячая клавиша "
                                "включения распознавания: 'Ctrl 2 раза'.|4000");
    }

    void showsWhatTheServerSays_data() {
        columns<int, int, QString>("type", "action", "shown");
        QTest::newRow("information") << 1 << 0 << "dialog-information||слово|4000";
        QTest::newRow("warning") << 2 << 0 << "dialog-warning||слово|4000";
        QTest::newRow("critical") << 3 << 0 << "dialog-error||слово|4000";
        QTest::newRow("no icon for an unknown type") << 7 << 0 << "||слово|4000";
        QTest::newRow("recognition is to stop") << 1 << 2 << "dialog-information||слово|4000";
        QTest::newRow("nothing for an unknown action") << 1 << 9 << "";
    }

    void showsWhatTheServerSays() {
        QFETCH(int, type);
        QFETCH(int, action);
        QFETCH(QString, shown);
        notify(type, action, "слово");
        if (!shown.isEmpty())
            QCOMPARE(nextMessage(), shown);
        notify(2, 0, "следующее");
        QCOMPARE(nextMessage(), "dialog-warning||следующее|4000");
    }

    void reportsTheMissingMicrophone() {
        const QString missing = "dialog-error|Микрофон не обнаружен|Убедитесь что "
                                "устройство подключено правильно|4000";
        desk().unloadModule("module-remap-source");
        QCOMPARE(nextMessage(), missing);
        XKeyboard().play(doubleCtrl);
        QCOMPARE(nextMessage(), missing);
    }

    void reportsALostServer() {
        m_stand.reset();
        QVERIFY(m_program->waitForLog("to 0"));
        const QString failure = nextMessage();
        QVERIFY2(failure.startsWith("dialog-error||"), qPrintable(failure));
        QVERIFY2(failure.section('|', 2, 2).size() > 5, "it says what is wrong");
    }

    void cleanupTestCase() {
        QCOMPARE(m_program->terminate(), 0);
        m_program.reset();
        desk().end(m_monitor);
    }

private:
    /// The next message as "icon|title|text|milliseconds", or an empty text if none comes.
    QString nextMessage() {
        static const QRegularExpression call(
            "member=Notify\\n   string \".*?\"\\n   uint32 \\d+\\n   string "
            "\"(.*?)\"\\n   string \"(.*?)\"\\n   string \"(.*?)\"\\n   array.*?"
            "\\n   int32 (\\d+)\\n",
            QRegularExpression::DotMatchesEverythingOption);
        QRegularExpressionMatch match;
        const bool hasCome = QTest::qWaitFor(
            [&] {
                m_seen += QString::fromUtf8(m_monitor->readAllStandardOutput());
                match = call.match(m_seen);
                return match.hasMatch();
            },
            patienceMs);
        if (!hasCome)
            return QString();
        m_seen.remove(0, match.capturedEnd());
        return match.capturedTexts().mid(1).join('|');
    }

    void notify(int type, int action, const QString &text) {
        m_stand->tell(
            {{"do", "message"},
             {"type", MessageType::Notification},
             {"data", QJsonObject{{"Type", type}, {"Action", action}, {"Message", text}}}});
    }

    QProcess *m_monitor = nullptr;
    QString m_seen;
    std::unique_ptr<Stand> m_stand;
    std::unique_ptr<Program> m_program;
};

DESK_TEST_MAIN(TestMessages, VirtualDesk::Xfce | VirtualDesk::Tray | VirtualDesk::Sound)
#include "TestMessages.moc"
