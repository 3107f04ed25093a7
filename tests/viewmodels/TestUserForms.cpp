#include "ClientHarness.h"
#include "DeskTest.h"
#include "Files.h"
#include "Stand.h"
#include "connection/UserInfo.h"
#include "connection/messages/MessageType.h"
#include "core/settings/ClientInfoSettings.h"
#include "core/settings/FeedbackSettings.h"
#include "core/settings/ProfileFile.h"
#include "core/settings/StatisticsSettings.h"
#include "viewmodels/feedback/AvocadoViewModel.h"
#include "viewmodels/feedback/FeedbackViewModel.h"

#include <QAbstractButton>
#include <QJsonDocument>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTimer>

namespace {

/// Presses a button of the question that comes up next.
void answerNext(QMessageBox::StandardButton button) {
    QTimer::singleShot(0, qApp, [button] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QVERIFY(box);
        box->button(button)->click();
    });
}

} // namespace

/// Feedback and personal words: what is accepted, sent and kept.
class TestUserForms : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void feedbackIsChecked_data();
    void feedbackIsChecked();
    void feedbackIsSent();
    void feedbackIsKept();
    void draftIsAskedFor_data();
    void draftIsAskedFor();
    void themeOfTheDraftIsOffered();
    void wordsAreChecked_data();
    void wordsAreChecked();
    void wordsAreStoredAndSent();
    void closingAsksForChangedWords();

private:
    std::unique_ptr<FeedbackViewModel> openFeedback() const;
    static QByteArray wordsFile();

    std::unique_ptr<Stand> m_stand;
    std::unique_ptr<ClientHarness> m_client;
};

void TestUserForms::init() {
    m_stand = std::make_unique<Stand>();
    m_client = std::make_unique<ClientHarness>(*m_stand);
    StatisticsSettings().FillOrganisationUserInfo = false;
    QVERIFY(m_client->open());
}

void TestUserForms::cleanup() {
    m_client.reset();
    m_stand.reset();
}

std::unique_ptr<FeedbackViewModel> TestUserForms::openFeedback() const {
    auto form = std::make_unique<FeedbackViewModel>(m_client->asr(), &m_client->recording());
    form->onLoad();
    return form;
}

void TestUserForms::feedbackIsChecked_data() {
    columns<QString, QString, bool>("email", "text", "isEnabled");
    const QString good("doctor@clinic.ru");
    row("all is there", good, "слово", true);
    row("a text that was never touched", good, "", true);
    row("no address", "", "слово", false);
    row("no point", "doctor@clinic", "слово", false);
    row("a dash at the end", "doctor-@clinic.ru", "слово", false);
    row("a long one", QString(64, 'a') + "@clinic.ru", "слово", true);
    row("too long", QString(65, 'a') + "@clinic.ru", "слово", false);
    row("2000 characters", good, QString(2000, 'a'), true);
    row("2001 characters", good, QString(2001, 'a'), false);
}

void TestUserForms::feedbackIsChecked() {
    QFETCH(QString, email);
    QFETCH(QString, text);
    const auto form = openFeedback();
    QVERIFY2(!form->get_SendEnabled(), "an empty address is told at once");
    form->get_Email()->set_Text(email);
    if (!text.isEmpty())
        form->get_FeedbackText()->set_Text(text);
    QTEST(form->get_SendEnabled(), "isEnabled");
    form->setProperty("UserConsentRequested", false);
    QVERIFY(!form->get_SendEnabled());
}

void TestUserForms::feedbackIsSent() {
    StatisticsSettings().FillOrganisationUserInfo = true;
    ProfileFile::userInfo().setText("UserInfo/UserName", "Иванов Иван");
    ProfileFile::organisation().setText("Organisation/OrganisationPSRN", "1020100000001");
    ProfileFile::organisation().setText("Organisation/RegionCode", "77");
    const auto form = openFeedback();
    form->get_Email()->set_Text("doctor@clinic.ru");
    form->get_FeedbackText()->set_Text("боль в **эпигастрии**\n„да“");
    QSignalSpy told(form.get(), &FeedbackViewModel::notifyUser);
    form->applyCommand();
    QCOMPARE(told.size(), 1);
    const auto note = told[0][0].value<UserNotification>();
    QVERIFY(note.force());
    QCOMPARE(note.title(), QString("Ваш отзыв был успешно отправлен!"));

    const QJsonObject sent = m_stand->waitFor(
        "rest", [](const QJsonObject &event) { return event["path"] == "/api/Claim"; });
    const QJsonObject claim = QJsonDocument::fromJson(sent["body"].toString().toUtf8()).object();
    const QJsonObject microphone{{"MicDisplayName", ""}, {"MicHwId", ""}, {"MicLevel", 0}};
    const QJsonObject expected{{"ThemeName", "Терапия"},
                               {"Email", "doctor@clinic.ru"},
                               {"RegionCode", "77"},
                               {"OrganisationFullName", ""},
                               {"OrganisationPsrn", "1020100000001"},
                               {"OrganisationOid", ""},
                               {"Room", ""},
                               {"OperatingSystem", UserInfo::instance().environment()},
                               {"ThemeVersion", "1.0"},
                               {"ClientId", ClientInfoSettings().getOrCreateDesktopId()},
                               {"HostName", UserInfo::instance().hostName()},
                               {"Account", qEnvironmentVariable("USER")},
                               {"UserName", "Иванов Иван"},
                               {"Description", "боль в **эпигастрии**\n„да“"},
                               {"MicrophoneInfo", microphone}};
    QCOMPARE(claim, expected);
    QCOMPARE(FeedbackSettings().FeedbackText.get(), QString());
    QCOMPARE(FeedbackSettings().Email.get(), QString("doctor@clinic.ru"));
}

void TestUserForms::feedbackIsKept() {
    m_stand->tell({{"do", "claim"}, {"mode", "fail"}});
    auto form = openFeedback();
    form->get_ThemeChooseViewModel()->get_SelectedValidatedThemeIndex()->set_IntValue(1);
    form->get_FeedbackText()->set_Text("слово");
    QSignalSpy told(form.get(), &FeedbackViewModel::notifyUser);
    form->applyCommand();
    QCOMPARE(told[0][0].value<UserNotification>().title(), QString("Не удалось отправить отзыв"));
    form = openFeedback();
    QCOMPARE(form->get_FeedbackText()->get_Text(), QString("слово"));
    QCOMPARE(form->get_ThemeChooseViewModel()->get_SelectedTheme()->get_Id(),
             QString("cardiology"));

    // Nothing to ask, nothing to lose: the program ends with the form open.
    QVERIFY(form->cancelCommand());
    form->onLoad();
    form->get_FeedbackText()->set_Text("слово и ещё одно");
    form.reset();
    QCOMPARE(openFeedback()->get_FeedbackText()->get_Text(), QString("слово и ещё одно"));
}

void TestUserForms::draftIsAskedFor_data() {
    columns<int, bool, QString>("button", "mayClose", "draft");
    row("yes", int(QMessageBox::Yes), true, "новое");
    row("no", int(QMessageBox::No), true, "старое");
    row("cancel", int(QMessageBox::Cancel), false, "старое");
}

void TestUserForms::draftIsAskedFor() {
    QFETCH(int, button);
    FeedbackSettings().FeedbackText = "старое";
    const auto form = openFeedback();
    form->get_FeedbackText()->set_Text("новое");
    form->get_FullName()->set_Text("Иванов Иван");
    answerNext(static_cast<QMessageBox::StandardButton>(button));
    QTEST(form->cancelCommand(), "mayClose");
    QTEST(FeedbackSettings().FeedbackText.get(), "draft");
    QCOMPARE(FeedbackSettings().FullName.get(), QString("Иванов Иван"));
}

void TestUserForms::themeOfTheDraftIsOffered() {
    FeedbackSettings settings;
    settings.FeedbackText = "слово";
    settings.Id = "gone";
    settings.ThemeId = "gone";
    settings.ThemeName = "Урология";
    settings.ThemeVersion = "0.9";
    settings.sync();
    const auto form = openFeedback();
    const ThemeInfoViewModel *theme = form->get_ThemeChooseViewModel()->get_SelectedTheme();
    QVERIFY(theme);
    QCOMPARE(theme->get_Name() + theme->get_Version(), QString("Урология0.9"));
    QCOMPARE(form->get_ThemeChooseViewModel()->get_SelectedValidatedThemeIndex()->get_IntValue(),
             form->get_ThemeChooseViewModel()->get_ThemeChoices()->count() - 1);
}

void TestUserForms::wordsAreChecked_data() {
    columns<QString, bool>("text", "isValid");
    row("nothing", "", true);
    row("all separators", "альфа, бета.\tЁж\r\nгамма", true);
    row("Latin", "альфа beta", false);
    row("digits", "б12", false);
    row("a hyphen", "кое-что", false);
}

void TestUserForms::wordsAreChecked() {
    QFETCH(QString, text);
    AvocadoViewModel window(m_client->asr(), m_client->worker()->localAvocadoManager());
    window.onLoad();
    window.get_AvocadoWords()->set_Text(text);
    QTEST(window.get_CanSave(), "isValid");
}

QByteArray TestUserForms::wordsFile() {
    return bytesOf(AppVariables::sm_stdVars.get("AppLocalDataLocation", {}) +
                   "/Avocado/AvocadoWords.txt");
}

void TestUserForms::wordsAreStoredAndSent() {
    AvocadoViewModel window(m_client->asr(), m_client->worker()->localAvocadoManager());
    QSignalSpy told(&window, &AvocadoViewModel::notifyUser);
    window.onLoad();
    window.get_AvocadoWords()->set_Text("альфа, бета.гамма");
    QVERIFY(m_client->dictate());
    m_stand->forget();
    window.applyCommand();
    QCOMPARE(wordsFile(), QByteArray("альфа\nбета\nгамма\n"));
    QVERIFY2(!m_stand->waitForMessage(MessageType::StartMode).isEmpty(), "dictation is stopped");
    QCOMPARE(told.size(), 1);

    window.onLoad();
    QCOMPARE(window.get_AvocadoWords()->get_Text(), QString("альфа\nбета\nгамма"));
    window.get_AvocadoWords()->set_Text("другое");
    window.get_AvocadoWords()->set_Text("альфа\nбета\nгамма");
    window.applyCommand();
    QCOMPARE(told.size(), 1);
    window.get_AvocadoWords()->set_Text(QString());
    window.applyCommand();
    QCOMPARE(wordsFile(), QByteArray());
}

void TestUserForms::closingAsksForChangedWords() {
    AvocadoViewModel window(m_client->asr(), m_client->worker()->localAvocadoManager());
    window.onLoad();
    QVERIFY(window.cancelCommand());
    window.get_AvocadoWords()->set_Text("слово");
    answerNext(QMessageBox::Cancel);
    QVERIFY(!window.cancelCommand());
    answerNext(QMessageBox::Ok);
    QVERIFY(window.cancelCommand());
}

DESK_TEST_MAIN(TestUserForms, VirtualDesk::Screen)
#include "TestUserForms.moc"
