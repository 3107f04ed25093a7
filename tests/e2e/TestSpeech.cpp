#include "DeskTest.h"
#include "Listener.h"
#include "Program.h"
#include "Stand.h"
#include "XKeyboard.h"
#include "connection/messages/MessageType.h"
#include "core/settings/PlaybackDeviceSettings.h"
#include "core/settings/TTSSettings.h"

#include <QFile>

#include <algorithm>
#include <cstdlib>

namespace {
/// The samples of a signal of the program's.
QByteArray samplesOf(const char *name) {
    QFile file(QString(":/Assets/%1.wav").arg(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll().mid(44) : QByteArray();
}

/// How much of a sound is speech of this one byte, resampled perhaps.
int bytesNear(char speech, const QByteArray &sound) {
    const auto *samples = reinterpret_cast<const qint16 *>(sound.constData());
    return 2 * std::count_if(samples, samples + sound.size() / 2, [speech](qint16 sample) {
               return std::abs(sample - 257 * speech) < 300;
           });
}
} // namespace

/// What the program plays, heard at the speaker.
class TestSpeech : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        m_module = plugExactSpeaker(desk(), m_speaker);
        m_stand = std::make_unique<Stand>();
        writeSettings(*m_stand);
        PlaybackDeviceSettings().Name = "exact";
        TTSSettings().saveTtsSettings("Елена", true, 1.5);
        m_program = startProgram(m_stand.get());
        QVERIFY(m_program);
        QVERIFY(m_program->waitForLog("Created audio output"));
    }

    void cleanupTestCase() { QCOMPARE(m_program->terminate(), 0); }

    void signalsStartAndEnd() {
        // Without their beginnings, which the sink forgets when it corrects what it has announced
        // ahead.
        const QByteArray on = samplesOf("SpeechOn").mid(4000, 4000);
        const QByteArray off = samplesOf("SpeechOff").mid(4000, 4000);
        QCOMPARE(on.size() + off.size(), 8000);
        Listener listener(desk(), "exact");
        XKeyboard().play(doubleCtrl);
        QTRY_VERIFY_WITH_TIMEOUT(listener.sound().contains(on), patienceMs);
        QVERIFY(!listener.sound().contains(off));
        XKeyboard().play(doubleCtrl);
        QTRY_VERIFY_WITH_TIMEOUT(listener.sound().contains(off), patienceMs);
        QCOMPARE(listener.sound().count(on), 1);
    }

    void playsSpeechInOrder() {
        Listener listener(desk(), "exact");
        sendSpeech(Listener::leadIn());
        QByteArray sent;
        for (int i = 0; i < 20; ++i) {
            // Each frame by a number of its own.
            const QByteArray frame = QByteArray(1, char('a' + i)).repeated(2 * (3000 + 100 * i));
            sent += frame;
            sendSpeech(frame);
        }
        // The last signal may still be sounding before it.
        QTRY_VERIFY_WITH_TIMEOUT(listener.sound().contains(sent), patienceMs);
    }

    void speaksWithTheUsersVoice() {
        m_stand->rewind();
        const QJsonObject parameters =
            m_stand->waitForMessage(MessageType::SetTtsParams)["data"].toObject();
        QCOMPARE(parameters["speed"].toDouble(), 1.5);
        QCOMPARE(parameters["SelectedVoice"].toObject()["Name"], QJsonValue("Елена"));
        constexpr int secondBytes = 2 * 22050;
        Listener listener(desk(), "exact");
        m_stand->tell({{"do", "speak"}, {"text", "общее состояние удовлетворительное"}});
        QTRY_VERIFY_WITH_TIMEOUT(listener.sound().size() > secondBytes, patienceMs);
        m_stand->forget();
        m_stand->tell("drop");
        QVERIFY2(!m_stand->waitForMessage(MessageType::SetTtsParams, 60000).isEmpty(),
                 "the next connection hears of them, too");
    }

    void goesOnElsewhere_data() {
        columns<QString>("lost");
        QTest::newRow("the speaker is unplugged") << "speaker";
        QTest::newRow("there is no device for a while") << "devices";
        QTest::newRow("PulseAudio is restarted") << "server";
    }

    void goesOnElsewhere() {
        QFETCH(QString, lost);
        constexpr int secondBytes = 2 * 22050;
        {
            Listener first(desk(), m_speaker);
            sendSpeech(QByteArray(12 * secondBytes, 's'));
            QTRY_VERIFY_WITH_TIMEOUT(first.sound().size() > secondBytes, patienceMs);
        }
        if (lost == "speaker") {
            desk().unloadModule(m_module);
        } else {
            desk().stopSound();
            if (lost == "server")
                desk().startSound();
        }
        m_speaker = "speaker";
        if (lost == "devices") {
            sendSpeech(QByteArray(secondBytes, 'n'));
            m_stand->sayResult("слово");
            QVERIFY2(m_program->isRunning(), "speech that nobody hears harms nothing");
            desk().startSound();
        }
        QVERIFY(m_program->waitForLog("Created audio output"));
        // What the lost device had taken is lost with it, the rest is played.
        Listener second(desk(), m_speaker);
        QTRY_VERIFY_WITH_TIMEOUT(bytesNear('s', second.sound()) > 3 * secondBytes, patienceMs);
        sendSpeech(QByteArray(secondBytes, 'z'));
        QTRY_VERIFY_WITH_TIMEOUT(bytesNear('z', second.sound()) > 0.9 * secondBytes, patienceMs);
    }

private:
    void sendSpeech(const QByteArray &frame) {
        m_stand->tell({{"do", "sendBinary"}, {"base64", QString::fromLatin1(frame.toBase64())}});
    }

    QString m_speaker = "exact";
    QString m_module;
    std::unique_ptr<Stand> m_stand;
    std::unique_ptr<Program> m_program;
};

DESK_TEST_MAIN(TestSpeech, VirtualDesk::Screen | VirtualDesk::Sound)
#include "TestSpeech.moc"
