#include "DeskTest.h"
#include "Editor.h"
#include "Program.h"
#include "Stand.h"
#include "core/settings/LaunchSettings.h"

/// Dictation without a hand on the keyboard: what is said into the microphone starts and stops it,
/// recognised from the sound.
class TestVoiceActivation : public QObject {
    Q_OBJECT

private slots:
    void startsAndStopsBySoundAlone() {
        const int voiceActivation = 1;
        const QJsonValue dictation(QJsonValue::Null);
        Stand stand({}, {"--engine", "acoustic"});
        LaunchSettings().GlobalEnableVAC = true;
        LaunchSettings().VoiceActivationEnabled = true;
        LaunchSettings().VoiceDeactivationEnabled = true;
        writeSettings(stand);
        Editor editor("spoken.txt");
        Program program;
        QVERIFY(entersMode(&stand, voiceActivation));

        QVERIFY(say("начать распознавание"));
        QVERIFY(entersMode(&stand, dictation));
        QVERIFY(say("общее состояние удовлетворительное"));
        const QString typed = "Общее состояние удовлетворительное";
        QTRY_COMPARE_WITH_TIMEOUT(editor.text(), typed, patienceMs);

        QVERIFY(say("закончить распознавание"));
        QVERIFY(entersMode(&stand, voiceActivation));
        QVERIFY(say("щитовидная железа не увеличена"));
        // Heard behind that sentence, so that the sentence has been dealt with by then.
        QVERIFY(say("начать распознавание"));
        QVERIFY(entersMode(&stand, dictation));
        QCOMPARE(editor.text(), typed);
        QCOMPARE(program.terminate(), 0);
    }

private:
    /// Has a phrase spoken into the microphone, to its end.
    static bool say(const QString &phrase) {
        const QString text = desk().folder() + "/phrase.txt";
        const QString wav = desk().folder() + "/phrase.wav";
        desk().write(text, phrase.toUtf8());
        desk().run("text2wave", {"-eval", "(voice_msu_ru_nsh_clunits)", text, "-o", wav});
        QProcess *speaker = desk().speak(wav);
        const bool hasEnded = QTest::qWaitFor(
            [speaker] { return speaker->state() == QProcess::NotRunning; }, patienceMs);
        desk().end(speaker);
        return hasEnded;
    }

    /// Waits for a request of a mode, and until sound reaches the stand in it.
    static bool entersMode(Stand *stand, const QJsonValue &mode) {
        if (nextMode(stand, patienceMs) != mode)
            return false;
        stand->forget();
        return !stand->waitFor("sound").isEmpty();
    }
};

DESK_TEST_MAIN(TestVoiceActivation, VirtualDesk::Screen | VirtualDesk::Sound)
#include "TestVoiceActivation.moc"
