#include "DeskTest.h"
#include "Listener.h"
#include "Program.h"
#include "Stand.h"
#include "XKeyboard.h"
#include "connection/messages/MessageType.h"
#include "core/settings/PlaybackDeviceSettings.h"
#include "core/settings/TTSSettings.h"

#include <QFile>

namespace {
/// The samples of a signal of the program's.
QByteArray samplesOf(const char *name) {
    QFile file(QString(":/Assets/%1.wav").arg(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll().mid(44) : QByteArray();
}
} // namespace

/// What the program plays, heard at the speaker.
class TestSpeech : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        plugExactSpeaker(desk(), "exact");
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
        m_stand->forget();
        m_stand->tell("drop");
        QVERIFY2(!m_stand->waitForMessage(MessageType::SetTtsParams, 60000).isEmpty(),
                 "the next connection hears of them, too");
    }

private:
    void sendSpeech(const QByteArray &frame) {
        m_stand->tell({{"do", "sendBinary"}, {"base64", QString::fromLatin1(frame.toBase64())}});
    }

    std::unique_ptr<Stand> m_stand;
    std::unique_ptr<Program> m_program;
};

DESK_TEST_MAIN(TestSpeech, VirtualDesk::Screen | VirtualDesk::Sound)
#include "TestSpeech.moc"
