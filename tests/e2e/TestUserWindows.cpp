#include "Files.h"
#include "ProgramTest.h"
#include "ProgramWindow.h"
#include "connection/messages/MessageType.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/ProfileFile.h"
#include "core/settings/StatisticsSettings.h"
#include "viewmodels/statistics/StatisticsViewModel.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QQmlApplicationEngine>
#include <QQmlContext>
#include <QQuickWindow>

#include <csignal>

/// The windows in which the user tells who he is, what is recognised wrong, and which words are
/// missing; and the one that measures.
class TestUserWindows : public ProgramTest {
    Q_OBJECT

private slots:
    void init() {
        ProgramTest::init();
        ASRSettings().CanEditAvocadoWords = true;
    }

    void profileIsChosen() {
        StatisticsSettings().FillOrganisationUserInfo = true;
        ProfileFile::userInfo().clear();
        // The window itself, over the files that are shipped: those of an installation are its own.
        StatisticsViewModel profile(SOURCE "/reference", nullptr);
        QQmlApplicationEngine engine;
        engine.rootContext()->setContextProperty("statisticsViewModel", &profile);
        engine.load("qrc:/StatisticsWindow.qml");
        QVERIFY(!engine.rootObjects().isEmpty());
        const ProgramWindow window("Данные пользователя");
        QTRY_VERIFY(QGuiApplication::focusWindow());
        const auto press = [](const QString &keys, const std::function<bool()> &isDone) {
            ProgramWindow::key(keys);
            return QTest::qWaitFor(isDone, patienceMs);
        };
        // The sample has no organisation in the first region.
        QVERIFY(press("Down", [&] { return profile.get_SelectedRegionIndex() == 0; }));
        QVERIFY(profile.get_Cities().isEmpty());
        const int moscow = profile.get_Regions().indexOf("[77] Город Москва");
        profile.set_SelectedRegionIndex(moscow);
        QVERIFY(press("Tab Down", [&] { return profile.get_SelectedCityIndex() == 0; }));
        QVERIFY(press("Tab Down", [&] { return profile.get_SelectedCompanyIndex() == 0; }));
        QVERIFY(press("Tab 2 1 Tab", [&] { return profile.get_WorkRoom()->get_Text() == "21"; }));
        QVERIFY(!profile.get_UserFullName()->get_IsValid());
        ProgramWindow::type("Иванов Иван");
        QVERIFY(press("Tab Down", [&] { return profile.get_IsValid(); }));
        // Another region takes back what was chosen in the one before.
        QVERIFY(press("shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab Up",
                      [&] { return profile.get_SelectedRegionIndex() == moscow - 1; }));
        QVERIFY(!profile.get_IsValid());
        QVERIFY(press("Down Tab Down Tab Down", [&] { return profile.get_IsValid(); }));
        QVERIFY(press("Tab Tab Tab Tab Return", [&] { return !profile.get_NeedShow(); }));
        QCOMPARE(ProfileFile::organisation().text("Organisation/AreaName"),
                 QString("г. Зеленоград"));
        QCOMPARE(ProfileFile::userInfo().text("UserInfo/UserName"), QString("Иванов Иван"));
    }

    void profileIsReset() {
        completeProfile();
        start();
        {
            const ProgramWindow settings =
                ProgramWindow::openFromTray(ProgramWindow::SettingsEntry, "Настройки");
            // The last of the tabs.
            settings.click(680, 33);
            const auto reset = [&settings] {
                // Until the page has its place.
                QTRY_VERIFY((settings.click(-80, 378), ProgramWindow::exists("Сброс информации")));
            };
            reset();
            const ProgramWindow question("Сброс информации");
            ProgramWindow::key("Escape");
            QVERIFY(question.isGone());
            QVERIFY(m_program->isRunning());
            reset();
            const ProgramWindow again("Сброс информации");
            ProgramWindow::key("shift+Tab space");
        }
        QCOMPARE(m_program->waitForExit(), 0);
        // Another process takes its place, and asks.
        const ProgramWindow window("Данные пользователя");
        const pid_t successor = window.processId().toInt();
        QVERIFY(successor > 0 && successor != m_program->processId());
        QCOMPARE(ProfileFile::userInfo().text("UserInfo/UserName"), QString());
        ProgramWindow::key("Escape");
        QVERIFY2(QTest::qWaitFor([successor] { return ::kill(successor, 0) != 0; }, patienceMs),
                 "without a profile the program does not go on");
    }

    void feedbackReachesTheServer() {
        completeProfile();
        start();
        {
            const ProgramWindow form =
                ProgramWindow::openFromTray(ProgramWindow::FeedbackEntry, "Обратная связь");
            ProgramWindow::key("Tab");
            ProgramWindow::type("doctor@clinic.ru");
            ProgramWindow::key("Tab Tab");
            ProgramWindow::type("боль в **эпигастрии**");
            ProgramWindow::key("Tab Tab Return");
            QVERIFY(form.isGone());
        }
        const QJsonObject sent = m_stand->waitFor(
            "rest", [](const QJsonObject &event) { return event["path"] == "/api/Claim"; });
        const QJsonObject claim =
            QJsonDocument::fromJson(sent["body"].toString().toUtf8()).object();
        QCOMPARE(claim["Description"], QJsonValue("боль в **эпигастрии**"));
        QCOMPARE(claim["UserName"], QJsonValue("Иванов Иван"));
        QCOMPARE(claim["OrganisationPsrn"], QJsonValue("77"));
        const QJsonObject microphone = claim["MicrophoneInfo"].toObject();
        QCOMPARE(microphone["MicHwId"], QJsonValue("mic"));
        QCOMPARE(microphone["MicDisplayName"], QJsonValue("Microphone"));
        QVERIFY(m_program->waitForLog("Notification: Мы постараемся улучшить"));

        // The draft that a user keeps.
        {
            const ProgramWindow form =
                ProgramWindow::openFromTray(ProgramWindow::FeedbackEntry, "Обратная связь");
            ProgramWindow::key("Tab Tab Tab");
            ProgramWindow::type("позже");
            ProgramWindow::key("Escape");
            QTRY_VERIFY(
                desk().ask("xdotool", {"search", "--name", "^Обратная связь$"}).contains('\n'));
            ProgramWindow::key("Left Left Return");
            QVERIFY(form.isGone());
        }
        QTRY_COMPARE(
            QByteArray::fromBase64(Settings("Feedback").value("FeedbackText").toByteArray()),
            QByteArray("позже"));

        // Sent at last, to a server that keeps silent: the program stands still, and says so.
        m_stand->tell({{"do", "claim"}, {"mode", "silent"}});
        const ProgramWindow form =
            ProgramWindow::openFromTray(ProgramWindow::FeedbackEntry, "Обратная связь");
        ProgramWindow::key("Tab Tab Tab Tab Tab Return");
        QTRY_VERIFY(ProgramWindow::exists("Отправка отзыва…"));
        QElapsedTimer wait;
        wait.start();
        QVERIFY(m_program->waitForLog("Notification: К сожалению"));
        qInfo("an answer that does not come is waited for %lld ms", wait.elapsed());
        QTRY_VERIFY(!ProgramWindow::exists("Отправка отзыва…"));
        QCOMPARE(QByteArray::fromBase64(Settings("Feedback").value("FeedbackText").toByteArray()),
                 QByteArray("позже"));
    }

    void wordsReachTheServer() {
        start();
        const ProgramWindow window =
            ProgramWindow::openFromTray(ProgramWindow::WordsEntry, "Мои слова");
        ProgramWindow::type("альфа, бетаz");
        m_stand->forget();
        // The button of a wrong list does nothing.
        window.click(-70, -35);
        QVERIFY(window.isOpen());
        window.click(100, 100);
        ProgramWindow::key("End BackSpace Tab Tab Return");
        QVERIFY(window.isGone());
        const QJsonObject message = m_stand->waitForMessage(MessageType::SetPersonalWords);
        QCOMPARE(message["data"].toObject()["Words"].toArray(), (QJsonArray{"альфа", "бета"}));
    }

    void installationIsMeasured() {
        // The example as it is shipped, before a recogniser that hears its words.
        m_stand = std::make_unique<Stand>(QJsonObject(), QStringList{"--engine", "acoustic"});
        writeSettings(*m_stand);
        const QSettings example(SOURCE "/examples/selftest/settings.ini", QSettings::IniFormat);
        Settings settings{QString()};
        for (const QString &key : example.allKeys())
            settings.setValue(key, example.value(key));
        settings.setValue("SelfTest/PingCount", 1);
        qputenv("VELLUMAR_SELFTEST", SOURCE "/examples/selftest");
        // It takes no microphone.
        desk().unloadModule("module-remap-source");
        start();
        qunsetenv("VELLUMAR_SELFTEST");
        const ProgramWindow window =
            ProgramWindow::openFromTray(ProgramWindow::SelfTestEntry, "Тесты");
        window.click(-180, -35);
        const QDir reports(AppVariables::sm_stdVars.get("AppDataLocation", {}) + "/reports");
        const auto report = [&reports] {
            const QStringList names = reports.entryList({"*.txt"});
            return names.isEmpty() ? QString()
                                   : QString::fromUtf8(bytesOf(reports.filePath(names[0])));
        };
        QVERIFY2(QTest::qWaitFor([&] { return report().endsWith("\nStopped"); }, 60000),
                 qPrintable(report()));
        const int files = example.value("SelfTest/Files/size").toInt();
        QCOMPARE(report().count("All 1 results received"), files);
        for (const char *said :
             {"общее состояние удовлетворительное", "сто двадцать", "температура"})
            QVERIFY2(report().contains(said), qPrintable(report()));
        ProgramWindow::key("Escape");
        QVERIFY(window.isGone());
    }

private:
    void start() {
        Settings(QString()).sync();
        m_program = std::make_unique<Program>();
        QVERIFY(!nextMode(m_stand.get(), patienceMs).isUndefined());
    }

    void completeProfile() {
        // Also where it is the default, so that it is in the file.
        StatisticsSettings().setValue("FillOrganisationUserInfo", true);
        ProfileFile organisation = ProfileFile::organisation();
        for (const char *key : {"RegionCode", "RegionName", "AreaName", "OrganisationName",
                                "OrganisationFullName", "OrganisationPSRN"})
            organisation.setText(qPrintable(QString("Organisation/") + key), "77");
        ProfileFile user = ProfileFile::userInfo();
        user.setText("UserInfo/UserName", "Иванов Иван");
        user.setText("UserInfo/Specialisation", "Терапия");
    }
};

DESK_TEST_MAIN(TestUserWindows, VirtualDesk::Screen | VirtualDesk::Tray | VirtualDesk::Sound)
#include "TestUserWindows.moc"
