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

#include <QDir>
#include <QJsonArray>
#include <QSignalSpy>

#include <thread>

namespace {

/// The stored switches of starting and stopping by voice: activation, its memory for the balancer,
/// and the same of deactivation.
QByteArray voiceKeys() {
    const LaunchSettings settings;
    QByteArray keys;
    for (const bool on :
         {settings.VoiceActivationEnabled.get(), settings.VoiceActivationEnabledBalancer.get(),
          settings.VoiceDeactivationEnabled.get(), settings.VoiceDeactivationEnabledBalancer.get()})
        keys += on ? '1' : '0';
    return keys;
}

void setVoiceKeys(const QByteArray &keys) {
    LaunchSettings settings;
    settings.VoiceActivationEnabled = keys[0] == '1';
    settings.VoiceActivationEnabledBalancer = keys[1] == '1';
    settings.VoiceDeactivationEnabled = keys[2] == '1';
    settings.VoiceDeactivationEnabledBalancer = keys[3] == '1';
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
    columns<bool, QByteArray, QByteArray, QByteArray, bool>("isGlobal", "keys", "calls", "after",
                                                            "isTold");
    // A call: "b1" is the balancer's yes, "b0" its no, "l" an answer without it.
    row("nothing new stops nothing", true, QByteArray("1100"), QByteArray("b1 b1 l"),
        QByteArray("1100"), false);
    row("switched off by the balancer is forgotten", true, QByteArray("1111"), QByteArray("b0 b1"),
        QByteArray("0000"), true);
    row("a local switch-off is for now", false, QByteArray("1111"), QByteArray("l"),
        QByteArray("0101"), true);
    row("and comes back", false, QByteArray("0101"), QByteArray("b1"), QByteArray("1111"), true);
    row("the balancer gives what is off here", false, QByteArray("0000"), QByteArray("b1"),
        QByteArray("0000"), false);
    row("not offered, and nothing was on", false, QByteArray("0000"), QByteArray("l b0"),
        QByteArray("0000"), false);
}

void TestPages::voiceIsSwitched() {
    QFETCH(bool, isGlobal);
    QFETCH(QByteArray, keys);
    QFETCH(QByteArray, calls);
    LaunchSettings().GlobalEnableVAC = isGlobal;
    setVoiceKeys(keys);
    LaunchSettingsViewModel page;
    page.Load();
    const bool before = page.property("IsVoiceActivationEnabled").toBool();
    QSignalSpy told(&page, &LaunchSettingsViewModel::activationChanged);
    QSignalSpy messages(&page, &LaunchSettingsViewModel::vacSettingsVisibleChanged);
    bool isVisible = isGlobal;
    int changes = 0;
    for (const QByteArray &call : calls.split(' ')) {
        page.VACSettingsVisibleChanged(call == "b1", call != "l");
        const bool nowVisible = call == "l" ? isGlobal : call == "b1";
        changes += nowVisible != isVisible && call != "l" ? 1 : 0;
        isVisible = nowVisible;
        QCOMPARE(page.get_IsVACSettingsVisible(), isVisible);
    }
    QTEST(voiceKeys(), "after");
    QTEST(!told.isEmpty(), "isTold");
    QCOMPARE(messages.size(), changes);
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
    QCOMPARE(voiceKeys(), QByteArray("1100"));
    QCOMPARE(activation.size(), 1);
    QCOMPARE(hotKeys.size(), 0);

    page.set_IsPushToTalk(true);
    page.get_Push2TalkKeys()->set_CurrentIndex(1);
    QVERIFY(page.applyCommand());
    QVERIFY(!HotkeySettings().UseHotkey);
    QCOMPARE(HotkeySettings().P2TKey.get(), QString("Pause"));
    QCOMPARE(activation.size(), 2);
    QCOMPARE(hotKeys.size(), 1);

    QVERIFY2(!page.get_IsHotKeysAvaliable(), "there is no display here");
    HotKeyManager::getHotkeyManager()->keyboardHookUnreg();

    HotkeySettings().HotKey = "F13";
    LaunchSettingsViewModel next;
    next.onLoad();
    QCOMPARE(next.get_Push2TalkKeys()->get_CurrentIndex(), 1);
    page.onLoad();
    QVERIFY2(page.property("IsVoiceActivationEnabled").toBool(), "the rest of the page is loaded");
    page.VACSettingsVisibleChanged(false, true);
    page.setProperty("IsVoiceActivationEnabled", true);
    QVERIFY(page.applyCommand());
    QCOMPARE(voiceKeys(), QByteArray("0000"));
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
    row("a name", QString("ASRServerHost"), QString("asr-1.clinic_net.local"), true);
    row("blanks around it", QString("ASRServerHost"), QString("  10.0.0.1 "), true);
    row("a blank inside", QString("ASRServerHost"), QString("asr 1"), false);
    row("no host", QString("ASRServerHost"), QString(), false);
    row("an address of the web", QString("ASRServerHost"), QString("http://asr"), false);
    row("least port", QString("ASRServerRestPort"), QString("1"), true);
    row("greatest port", QString("ASRServerRestPort"), QString("65535"), true);
    row("port 0", QString("ASRServerPort"), QString("0"), false);
    row("too great a port", QString("FormAPIPort"), QString("65536"), false);
    row("no number", QString("RestProxyPort"), QString("12a"), false);
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
    columns<QByteArray, QByteArray>("property", "told");
    row("nothing", QByteArray(), QByteArray());
    row("sending", QByteArray("SendingMode"), QByteArray("settings"));
    row("punctuation", QByteArray("UsePunctuation"), QByteArray("settings"));
    row("own words", QByteArray("CanEditAvocadoWords"), QByteArray("words settings"));
    row("capitals", QByteArray("CapitalLetterAfterStart"), QByteArray());
    row("the start window", QByteArray("IsThemeAutoSelect"), QByteArray());
}

void TestPages::recognitionTellsWhatHasChanged() {
    QFETCH(QByteArray, property);
    RecognitionSettingsViewModel page;
    QByteArrayList told;
    connect(&page, &RecognitionSettingsViewModel::canEditAvocadoChanged, this,
            [&] { told << "words"; });
    connect(&page, &RecognitionSettingsViewModel::recognitionSettingsChanged, this,
            [&] { told << "settings"; });
    connect(&page, &RecognitionSettingsViewModel::selectedThemeChanged, this,
            [&] { told << "theme"; });
    page.Load();
    const bool before = page.property(property.constData()).toBool();
    if (!property.isEmpty())
        QVERIFY(page.setProperty(property.constData(), !before));
    page.Apply();
    QTEST(told.join(' '), "told");
    if (!property.isEmpty())
        QCOMPARE(ASRSettings().value(QString::fromLatin1(property)).toBool(), !before);
}

void TestPages::voiceIsChosen_data() {
    columns<int, QStringList, int, QString>("state", "voices", "index", "stored");
    row("the stored voice", 0, QStringList{"Анна", "Елена"}, 1, QString("Елена"));
    row("it is gone", 0, QStringList{"Анна", "Борис"}, 0, QString("Анна"));
    row("no voices leave it alone", 0, QStringList(), -1, QString("Елена"));
    row("the server cannot speak", 1, QStringList(), -1, QString("Елена"));
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
    QCOMPARE(page.property("IsTtsEnabled").toBool(), state == 0);
    QVERIFY(page.applyCommand());
    QVERIFY2(TTSSettings().IsTtsEnabled, "the server's trouble is no wish of the user's");
    QTEST(TTSSettings().Voice.get(), "stored");
    page.OnTtsStateChanged(ttsState(0, voices));
    QVERIFY(page.property("IsTtsEnabled").toBool());
}

void TestPages::themesAreOffered_data() {
    columns<QString, QString, QString, QString>("offered", "selected", "listed", "chosen");
    row("composed ones only, in order", QString("a0 b0 c2 d1"), QString("x"), QString("d c"),
        QString("d"));
    row("plain ones if there are no others", QString("a0 b0"), QString("b"), QString("a b"),
        QString("b"));
    row("none", QString(), QString("b"), QString(), QString());
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
