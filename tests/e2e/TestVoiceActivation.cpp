#include "DeskTest.h"
#include "Editor.h"
#include "Program.h"
#include "Stand.h"
#include "connection/messages/MessageType.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/ConnectionManagerSettings.h"
#include "core/settings/LaunchSettings.h"

#include <QFile>

/// Dictation without a hand on the keyboard: what is said into the microphone starts and stops it,
/// recognised from the sound.
class TestVoiceActivation : public QObject {
    Q_OBJECT

private slots:
    void startsAndStopsBySoundAlone();

private:
    /// Has a phrase spoken into the microphone, to its end.
    static bool say(const QString &phrase);
    /// Waits for a request of a mode, and until sound reaches the stand in it.
    static bool entersMode(Stand *stand, const QJsonValue &mode);
};

bool TestVoiceActivation::say(const QString &phrase) {
    const QString text = desk().folder() + QStringLiteral("/phrase.txt");
    const QString wav = desk().folder() + QStringLiteral("/phrase.wav");
    QFile file(text);
    if (!file.open(QIODevice::WriteOnly) || file.write(phrase.toUtf8()) < 0)
        return false;
    file.close();
    desk().run(QStringLiteral("text2wave"),
               {QStringLiteral("-eval"), QStringLiteral("(voice_msu_ru_nsh_clunits)"), text,
                QStringLiteral("-o"), wav});
    QProcess *speaker = desk().speak(wav);
    const bool hasEnded =
        QTest::qWaitFor([speaker] { return speaker->state() == QProcess::NotRunning; }, 20000);
    desk().end(speaker);
    return hasEnded;
}

bool TestVoiceActivation::entersMode(Stand *stand, const QJsonValue &mode) {
    const QJsonObject start = stand->waitForMessage(MessageType::StartMode, 20000);
    if (start.isEmpty() || start["data"].toObject()["Type"] != mode)
        return false;
    stand->forget();
    return !stand->waitFor(QStringLiteral("sound")).isEmpty();
}

void TestVoiceActivation::startsAndStopsBySoundAlone() {
    const int voiceActivation = 1;
    const QJsonValue dictation(QJsonValue::Null);
    Stand stand({}, {QStringLiteral("--engine"), QStringLiteral("acoustic")});
    stand.writeSettings();
    {
        ConnectionManagerSettings().QuietConnectionEnabled = true;
        ASRSettings().SelectedTheme = QStringLiteral("therapy");
        LaunchSettings launch;
        launch.GlobalEnableVAC = true;
        launch.VoiceActivationEnabled = true;
        launch.VoiceDeactivationEnabled = true;
    }
    Settings(QString()).sync();
    Editor editor(QStringLiteral("spoken.txt"));
    Program program;
    QVERIFY(entersMode(&stand, voiceActivation));

    QVERIFY(say(QStringLiteral("начать распознавание")));
    QVERIFY(entersMode(&stand, dictation));
    QVERIFY(say(QStringLiteral("общее состояние удовлетворительное")));
    const QString typed = QStringLiteral("Общее состояние удовлетворительное");
    QTRY_COMPARE_WITH_TIMEOUT(editor.text(), typed, 20000);

    QVERIFY(say(QStringLiteral("закончить распознавание")));
    QVERIFY(entersMode(&stand, voiceActivation));
    QVERIFY(say(QStringLiteral("щитовидная железа не увеличена")));
    // Heard behind that sentence, so that the sentence has been dealt with by then.
    QVERIFY(say(QStringLiteral("начать распознавание")));
    QVERIFY(entersMode(&stand, dictation));
    QCOMPARE(editor.text(), typed);
    QCOMPARE(program.terminate(), 0);
}

DESK_TEST_MAIN(TestVoiceActivation, VirtualDesk::Screen | VirtualDesk::Sound)
#include "TestVoiceActivation.moc"
