#include "ClientHarness.h"
#include "DeskTest.h"
#include "Files.h"
#include "Stand.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/BalancerConnectionSettings.h"
#include "core/settings/FormApiSettings.h"
#include "core/settings/HotkeySettings.h"
#include "core/settings/LaunchSettings.h"
#include "core/settings/TTSSettings.h"
#include "desktop/HotKeyManager.h"
#include "recognition/AsrManager.h"
#include "viewmodels/settings/LaunchSettingsViewModel.h"
#include "viewmodels/settings/NetworkSettingsViewModel.h"
#include "viewmodels/settings/RecognitionSettingsViewModel.h"
#include "viewmodels/settings/SynthesisSettingsViewModel.h"

#include <QJsonArray>
#include <QSignalSpy>

#include <thread>

namespace {

/// The stored switches of starting and stopping by voice: activation, its memory for the balancer,
/// and the same of deactivation.
const char *const voiceSwitches[] = {"VoiceActivationEnabled", "VoiceActivationEnabledBalancer",
                                     "VoiceDeactivationEnabled",
                                     "VoiceDeactivationEnabledBalancer"};

QString voiceKeys() {
    const LaunchSettings settings;
    QString keys;
    for (const char *name : voiceSwitches)
        keys += settings.value(name).toBool() ? '1' : '0';
    return keys;
}

void setVoiceKeys(const QString &keys) {
    LaunchSettings settings;
    for (int i = 0; i < keys.size(); ++i)
        settings.setValue(voiceSwitches[i], keys[i] == '1');
}

TtsStateInfo ttsState(int state, const QStringList &voices) {
    QJsonArray list;
    for (const QString &voice : voices)
        list.append(QJsonObject{{"Name", voice}});
    return TtsStateInfo(QJsonObject{{"State", state}, {"VoiceList", list}});
}

} // namespace

/// The pages of the settings: what they read, refuse, store and tell.
class TestPages : public QObject {
    Q_OBJECT

private slots:
    void init() { Settings(QString()).clear(); }

    void voiceIsSwitched_data();
    void voiceIsSwitched();
    void voiceIsSwitchedFromAnotherThread();
    void launchStoresTheChoice();
    void autostartIsLeftToTheHelper();
    void addressIsChecked_data();
    void addressIsChecked();
    void networkTellsWhatHasChanged();
    void recognitionTellsWhatHasChanged_data();
    void recognitionTellsWhatHasChanged();
    void voiceIsChosen_data();
    void voiceIsChosen();
    void themesAreOffered_data();
    void themesAreOffered();
};

void TestPages::voiceIsSwitched_data() {
    columns<bool, QString, QString, QString, bool, int>("isGlobal", "keys", "calls", "after",
                                                        "isTold", "messages");
    // A call: "b1" is the balancer's yes, "b0" its no, "l" an answer without it.
    row("nothing new stops nothing", true, "1100", "b1 b1 l", "1100", false, 0);
    row("switched off by the balancer is forgotten", true, "1111", "b0 b1", "0000", true, 2);
    row("a local switch-off is for now", false, "1111", "l", "0101", true, 0);
    row("and comes back", false, "0101", "b1", "1111", true, 1);
    row("the balancer gives what is off here", false, "0000", "b1", "0000", false, 1);
    row("not offered, and nothing was on", false, "0000", "l b0", "0000", false, 0);
}

void TestPages::voiceIsSwitched() {
    QFETCH(bool, isGlobal);
    QFETCH(QString, keys);
    QFETCH(QString, calls);
    LaunchSettings().GlobalEnableVAC = isGlobal;
    setVoiceKeys(keys);
    LaunchSettingsViewModel page;
    page.Load();
    const bool before = page.property("IsVoiceActivationEnabled").toBool();
    QSignalSpy told(&page, &LaunchSettingsViewModel::activationChanged);
    QSignalSpy messages(&page, &LaunchSettingsViewModel::vacSettingsVisibleChanged);
    for (const QString &call : calls.split(' ')) {
        page.VACSettingsVisibleChanged(call == "b1", call != "l");
        QCOMPARE(page.get_IsVACSettingsVisible(), call == "l" ? isGlobal : call == "b1");
    }
    QTEST(voiceKeys(), "after");
    QTEST(!told.isEmpty(), "isTold");
    QTEST(messages.size(), "messages");
    QCOMPARE(page.property("IsVoiceActivationEnabled").toBool(),
             told.isEmpty() ? before : voiceKeys()[0] == '1');
}

void TestPages::voiceIsSwitchedFromAnotherThread() {
    LaunchSettingsViewModel page;
    QSignalSpy changed(&page, &LaunchSettingsViewModel::changed_IsVACSettingsVisible);
    std::thread([&page] { page.VACSettingsVisibleChanged(true, true); }).join();
    QVERIFY2(!page.get_IsVACSettingsVisible(), "a view model changes on its own thread only");
    QVERIFY(changed.wait(patienceMs));
}

void TestPages::launchStoresTheChoice() {
    LaunchSettings().GlobalEnableVAC = true;
    LaunchSettingsViewModel page;
    page.Load();
    QSignalSpy activation(&page, &LaunchSettingsViewModel::activationChanged);
    QSignalSpy hotKeys(&page, &LaunchSettingsViewModel::hotKeysChanged);
    QVERIFY(page.applyCommand());
    QCOMPARE(activation.size() + hotKeys.size(), 0);

    page.setProperty("VoiceActivationCommand", QString("  Начать, распознавание!"));
    page.setProperty("IsVoiceActivationEnabled", true);
    QVERIFY(page.applyCommand());
    QCOMPARE(LaunchSettings().VoiceActivationCommand.get(), QString("Начать распознавание"));
    QCOMPARE(voiceKeys(), "1100");
    QCOMPARE(activation.size(), 1);
    QCOMPARE(hotKeys.size(), 0);

    QVERIFY2(!page.get_IsHotKeysAvaliable(), "there is no display here");
    HotKeyManager::getHotkeyManager()->keyboardHookUnreg();

    HotkeySettings().HotKey = "F13";
    page.onLoad();
    QVERIFY2(page.property("IsVoiceActivationEnabled").toBool(), "the rest of the page is loaded");
    page.VACSettingsVisibleChanged(false, true);
    page.setProperty("IsVoiceActivationEnabled", true);
    QVERIFY(page.applyCommand());
    QCOMPARE(voiceKeys(), "0000");
}

void TestPages::autostartIsLeftToTheHelper() {
    const QString entry = qEnvironmentVariable("XDG_CONFIG_HOME") + "/autostart/vellumar.desktop";
    for (const bool isOn : {true, false}) {
        LaunchSettingsViewModel page;
        page.Load();
        QVERIFY(page.get_IsAutoStartEnabled());
        QCOMPARE(page.property("IsAutoStart").toBool(), !isOn);
        page.setProperty("IsAutoStart", isOn);
        QVERIFY(page.applyCommand());
        QCOMPARE(QFile::exists(entry), isOn);
        if (isOn) {
            const QByteArray program = QCoreApplication::applicationDirPath().toUtf8();
            QVERIFY(bytesOf(entry).contains("Exec=\"" + program + "/vellumar\"\n"));
        }
    }
}

void TestPages::addressIsChecked_data() {
    columns<QString, QString, bool>("field", "text", "isValid");
    row("a name", "ASRServerHost", "asr-1.clinic_net.local", true);
    row("blanks around it", "ASRServerHost", "  10.0.0.1 ", true);
    row("a blank inside", "ASRServerHost", "asr 1", false);
    row("no host", "ASRServerHost", "", false);
    row("an address of the web", "ASRServerHost", "http://asr", false);
    row("least port", "ASRServerRestPort", "1", true);
    row("greatest port", "ASRServerRestPort", "65535", true);
    row("port 0", "ASRServerPort", "0", false);
    row("too great a port", "FormAPIPort", "65536", false);
    row("no number", "RestProxyPort", "12a", false);
}

void TestPages::addressIsChecked() {
    QFETCH(QString, field);
    QFETCH(QString, text);
    QFETCH(bool, isValid);
    NetworkSettingsViewModel page;
    page.Load();
    auto *edited = page.property(field.toUtf8().constData()).value<ValidatableText *>();
    QSignalSpy focused(edited, &ValidatableText::validateFailed);
    edited->set_Text(text);
    QCOMPARE(page.applyCommand(), isValid);
    QCOMPARE(focused.size(), isValid ? 0 : 1);
    QCOMPARE(edited->get_Error().isEmpty(), isValid);
    if (isValid && field == "ASRServerHost")
        QCOMPARE(BalancerConnectionSettings().Ip.get(), text);
}

void TestPages::networkTellsWhatHasChanged() {
    NetworkSettingsViewModel page;
    page.Load();
    QSignalSpy told(&page, &NetworkSettingsViewModel::ApplyNetworkSettings);
    QVERIFY(page.applyCommand());
    QCOMPARE(told.size(), 0);
    page.get_RestProxyPort()->set_Text("4321");
    QVERIFY(page.applyCommand());
    QCOMPARE(told.takeFirst(), (QVariantList{false, false, true}));
    page.get_ASRServerRestPort()->set_Text("4322");
    page.get_FormAPIPort()->set_Text("4323");
    QVERIFY(page.applyCommand());
    QCOMPARE(told.takeFirst(), (QVariantList{true, true, false}));
    QCOMPARE(FormApiSettings().Port.get(), 4323);

    ConnectionStateInfo info;
    info.setMessage("нет связи");
    page.onConnectionStateChanged(info);
    info.setMessage(QString());
    page.onConnectionStateChanged(info);
    QCOMPARE(page.property("LastConnectionError"), QVariant("нет связи"));
    info.setState(static_cast<int>(ConnectionState::Ready));
    page.onConnectionStateChanged(info);
    QCOMPARE(page.property("LastConnectionError"), QVariant(QString()));
}

void TestPages::recognitionTellsWhatHasChanged_data() {
    columns<QString, QString>("property", "told");
    row("nothing", "", "");
    row("sending", "SendingMode", "settings");
    row("punctuation", "UsePunctuation", "settings");
    row("own words", "CanEditAvocadoWords", "words settings");
    row("capitals", "CapitalLetterAfterStart", "");
    row("the start window", "IsThemeAutoSelect", "");
}

void TestPages::recognitionTellsWhatHasChanged() {
    QFETCH(QString, property);
    RecognitionSettingsViewModel page;
    QStringList told;
    connect(&page, &RecognitionSettingsViewModel::canEditAvocadoChanged, this,
            [&] { told << "words"; });
    connect(&page, &RecognitionSettingsViewModel::recognitionSettingsChanged, this,
            [&] { told << "settings"; });
    connect(&page, &RecognitionSettingsViewModel::selectedThemeChanged, this,
            [&] { told << "theme"; });
    page.Load();
    const bool before = page.property(qPrintable(property)).toBool();
    if (!property.isEmpty())
        QVERIFY(page.setProperty(qPrintable(property), !before));
    page.Apply();
    QTEST(told.join(' '), "told");
    if (!property.isEmpty())
        QCOMPARE(ASRSettings().value(property).toBool(), !before);
}

void TestPages::voiceIsChosen_data() {
    columns<int, QStringList, int, QString>("state", "voices", "index", "stored");
    row("the stored voice", 0, QStringList{"Анна", "Елена"}, 1, "Елена");
    row("it is gone", 0, QStringList{"Анна", "Борис"}, 0, "Анна");
    row("no voices leave it alone", 0, QStringList(), -1, "Елена");
    row("the server cannot speak", 1, QStringList(), -1, "Елена");
}

void TestPages::voiceIsChosen() {
    QFETCH(int, state);
    QFETCH(QStringList, voices);
    TTSSettings().saveTtsSettings("Елена", true, 1.5);
    SynthesisSettingsViewModel page;
    page.Load();
    page.OnTtsStateChanged(ttsState(state, voices));
    QCOMPARE(page.property("TTSSpeed").toDouble(), 1.5);
    QTEST(page.property("SelectedVoiceIndex").toInt(), "index");
    QCOMPARE(page.property("ErrorMessage").toString(),
             QString(state == 1 ? "Ошибка инициализации TTS" : ""));
    const QSignalSpy changed(&page, &SynthesisSettingsViewModel::changed_IsTtsEnabled);
    QVERIFY(page.setProperty("IsTtsEnabled", true));
    QCOMPARE(changed.isEmpty(), state == 0);
    QCOMPARE(page.property("IsTtsEnabled").toBool(), state == 0);
    QVERIFY(page.applyCommand());
    QVERIFY2(TTSSettings().IsTtsEnabled, "the server's trouble is no wish of the user's");
    QTEST(TTSSettings().Voice.get(), "stored");
    page.OnTtsStateChanged(ttsState(0, voices));
    QVERIFY(page.property("IsTtsEnabled").toBool());
}

void TestPages::themesAreOffered_data() {
    columns<QString, QString, QString, QString>("offered", "selected", "listed", "chosen");
    row("composed ones only, in order", "a0 b0 c2 d1", "x", "d c", "d");
    row("plain ones if there are no others", "a0 b0", "b", "a b", "b");
    row("none", "", "b", "", "");
}

void TestPages::themesAreOffered() {
    QFETCH(QString, offered);
    QFETCH(QString, selected);
    Stand stand;
    QJsonArray themes;
    for (const QString &theme : offered.split(' ', Qt::SkipEmptyParts)) {
        themes.append(QJsonObject{{"Id", theme.left(1)},
                                  {"Name", "Словарь " + theme.left(1)},
                                  {"CompositionType", theme.mid(1).toInt()}});
    }
    stand.tell({{"do", "themes"}, {"list", themes}});
    ClientHarness client(stand);
    ASRSettings().SelectedTheme = selected;
    QVERIFY(client.open());
    ThemeChooseViewModel chooser;
    chooser.set_AsrManager(client.asr());
    // A second look keeps the choice.
    for (int i = 0; i < 2; ++i) {
        chooser.Load();
        QStringList listed;
        for (int k = 0; k < chooser.get_ThemeChoices()->count(); ++k)
            listed << chooser.get_ThemeChoices()->at(k)->get_Id();
        QTEST(listed.join(' '), "listed");
        const ThemeInfoViewModel *chosen = chooser.get_SelectedTheme();
        QTEST(chosen ? chosen->get_Id() : QString(), "chosen");
        QVERIFY(chooser.get_NeedShow());
        QCOMPARE(chooser.Validate(), !listed.isEmpty());
        QCOMPARE(chooser.get_NeedShow(), listed.isEmpty());
    }
    if (offered.isEmpty()) {
        QCOMPARE(chooser.get_SelectedValidatedThemeIndex()->get_Error(),
                 QString("Отсутствуют словари на сервере"));
    } else {
        chooser.get_SelectedValidatedThemeIndex()->set_IntValue(-1);
        QVERIFY(!chooser.Validate());
        QCOMPARE(chooser.get_SelectedValidatedThemeIndex()->get_Error(),
                 QString("Необходимо выбрать словарь"));
    }
}

DESK_CORE_TEST_MAIN(TestPages)
#include "TestPages.moc"
