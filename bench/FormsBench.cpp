#include "DeskTest.h"
#include "Figures.h"
#include "KeyReceiver.h"
#include "Listener.h"
#include "MainThreadProbe.h"
#include "Program.h"
#include "Stand.h"
#include "XKeyboard.h"
#include "audio/PlaybackDeviceManager.h"
#include "audio/PulseAudioManager.h"
#include "connection/DataMessageProcessor.h"
#include "connection/messages/MessageType.h"
#include "core/settings/FormApiSettings.h"
#include "core/settings/PlaybackDeviceSettings.h"
#include "tts/TtsManager.h"

#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTcpServer>
#include <QThread>
#include <QTimer>
#include <QWebSocket>

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <vector>

// What a web form costs: the time that its messages need, and what the program feels of a form
// that behaves badly. The built program is driven from outside.

namespace {

constexpr int messages = 1000;
constexpr int messagePeriodMs = 10;

/// A form with a socket and a thread of its own, so that it can flood the program.
class Form {
public:
    explicit Form(int port) {
        m_thread.start();
        m_context.moveToThread(&m_thread);
        call([this, port] {
            m_socket = std::make_unique<QWebSocket>();
            m_socket->open(QUrl(QStringLiteral("ws://127.0.0.1:%1/").arg(port)));
        });
        if (!QTest::qWaitFor([this] { return isOpen(); }))
            throw std::runtime_error("a form could not connect");
    }
    ~Form() {
        call([this] { m_socket.reset(); });
        m_thread.quit();
        m_thread.wait();
    }
    Form(const Form &) = delete;
    Form &operator=(const Form &) = delete;

    bool isOpen() {
        bool result = false;
        call([&] { result = m_socket->state() == QAbstractSocket::ConnectedState; });
        return result;
    }
    /// Returns when the frame is on its way.
    void send(const QString &frame) {
        call([&] { m_socket->sendTextMessage(frame); });
    }
    /// Sends that many frames a second; returns at once.
    void flood(const QString &frame, int perSecond, int seconds) {
        QMetaObject::invokeMethod(&m_context, [this, frame, perSecond, seconds] {
            QElapsedTimer clock;
            clock.start();
            for (qint64 sent = 0; sent < qint64(perSecond) * seconds && m_socket->isValid();) {
                for (; sent < clock.elapsed() * perSecond / 1000; ++sent)
                    m_socket->sendTextMessage(frame);
                m_socket->flush();
                QThread::msleep(1);
            }
        });
    }
    template <typename Action>
    void onFrame(const Action &action) {
        call([&] {
            QObject::connect(m_socket.get(), &QWebSocket::textMessageReceived, &m_context, action);
        });
    }

private:
    template <typename Action>
    void call(const Action &action) {
        QMetaObject::invokeMethod(&m_context, action, Qt::BlockingQueuedConnection);
    }

    QThread m_thread;
    QObject m_context;
    std::unique_ptr<QWebSocket> m_socket;
};

/// Runs the event loop, which QTest's wait does only every ten milliseconds.
void spin(int ms) {
    QEventLoop loop;
    QTimer::singleShot(ms, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

QString frame(int code, const QString &data) {
    return QStringLiteral(R"({"MessageType":%1,"Data":"%2"})").arg(code).arg(data);
}

/// The running program, connected, with a receiving window in front.
struct Scene {
    Stand stand;
    std::unique_ptr<KeyReceiver> receiver;
    std::unique_ptr<Program> program;
    int port = 0;
    int restPort = 0;
};

void startScene(Scene *scene) {
    {
        QTcpServer one;
        QTcpServer two;
        one.listen(QHostAddress::LocalHost);
        two.listen(QHostAddress::LocalHost);
        scene->port = one.serverPort();
        scene->restPort = two.serverPort();
    }
    writeSettings(scene->stand);
    FormApiSettings().Port = scene->port;
    FormApiSettings().RestPort = scene->restPort;
    scene->receiver = std::make_unique<KeyReceiver>();
    scene->program = startProgram(&scene->stand);
    if (!scene->program)
        throw std::runtime_error("the program does not become ready");
}

void measureMessages(Scene *scene) {
    Form form(scene->port);
    scene->stand.waitForMessage(115);
    Samples toServer;
    for (int i = 0; i < messages; ++i) {
        spin(messagePeriodMs);
        const double sent = nowMs();
        form.send(frame(3, QString::number(i)));
        const QJsonObject event = scene->stand.waitForMessage(103);
        toServer.push_back(event["us"].toDouble() / 1000 - sent);
    }
    print("form to server (aim: 2)", toServer);

    std::atomic<double> arrived{0};
    form.onFrame([&arrived](const QString &) { arrived = nowMs(); });
    Samples toForm;
    for (int i = 0; i < messages; ++i) {
        spin(messagePeriodMs);
        arrived = 0;
        const double asked = nowMs();
        scene->stand.tell({{"do", "message"}, {"type", 203}, {"data", i}});
        if (!QTest::qWaitFor([&arrived] { return arrived > 0; }))
            throw std::runtime_error("a message did not come to the form");
        toForm.push_back(arrived - asked);
    }
    print("server to form, request to it included (2)", toForm);
}

double askMs(QNetworkAccessManager *network, int port) {
    const double asked = nowMs();
    const std::unique_ptr<QNetworkReply> reply(network->get(
        QNetworkRequest(QUrl(QStringLiteral("http://127.0.0.1:%1/api/Theme").arg(port)))));
    QSignalSpy(reply.get(), &QNetworkReply::finished).wait();
    if (reply->error() != QNetworkReply::NoError)
        throw std::runtime_error(qPrintable(reply->errorString()));
    return nowMs() - asked;
}

void measureProxy(Scene *scene) {
    QNetworkAccessManager network;
    Samples direct;
    Samples throughProxy;
    for (int i = 0; i < 300; ++i) {
        direct.push_back(askMs(&network, scene->stand.restPort()));
        throughProxy.push_back(askMs(&network, scene->restPort));
    }
    print("list of dictionaries from the server", direct);
    print("... through the proxy", throughProxy);
}

/// One kind of load, beside dictation or not: what it costs the program, and what of the dictated
/// is missing.
class Load {
public:
    Load(Scene *scene, bool isDictating)
        : m_scene(scene), m_isDictating(isDictating), m_probe(scene->program->processId()) {
        m_before = residentKiB(pid());
        QFile file(QStringLiteral("/proc/%1/clear_refs").arg(pid()));
        if (file.open(QIODevice::WriteOnly))
            file.write("5"); // sets the peak back
        m_scene->receiver->clear();
        QObject::connect(&m_speech, &QTimer::timeout, &m_speech, [this] {
            const QString word = QStringLiteral("слово%1").arg(m_words++);
            m_said += word;
            m_scene->stand.sayResult(word);
        });
        if (m_isDictating) {
            m_scene->stand.forget();
            XKeyboard().play(doubleCtrl);
            m_scene->stand.waitForMessage(MessageType::StartMode);
            m_speech.start(100);
        }
    }

    void printAfter(const char *what) {
        m_speech.stop();
        const auto typed = [this] { return m_scene->receiver->text().remove(' ').toLower(); };
        const bool isAllTyped =
            !m_isDictating || QTest::qWaitFor([&] { return typed() == m_said; }, 20000);
        std::printf("%-46s block %5.0f ms, memory %3ld + %4ld MB at most, then %3ld", what,
                    m_probe.takeLongestBlockMs(), m_before / 1024, (peakKiB() - m_before) / 1024,
                    residentKiB(pid()) / 1024);
        if (m_isDictating)
            std::printf("; %d words dictated, %s", m_words,
                        isAllTyped ? "all typed" : "NOT ALL TYPED");
        const bool isConnected = m_scene->stand.count("disconnected") == 0;
        std::printf("; %s\n", isConnected ? "connected" : "NOT CONNECTED");
        std::fflush(stdout);
        if (m_isDictating)
            XKeyboard().play(doubleCtrl);
    }

private:
    qint64 pid() const { return m_scene->program->processId(); }
    long peakKiB() const {
        QFile file(QStringLiteral("/proc/%1/status").arg(pid()));
        file.open(QIODevice::ReadOnly);
        const QByteArray status = file.readAll();
        return status.mid(status.indexOf("VmHWM:") + 6).trimmed().split(' ')[0].toLong();
    }

    Scene *m_scene;
    const bool m_isDictating;
    MainThreadProbe m_probe;
    long m_before = 0;
    QTimer m_speech;
    QString m_said;
    int m_words = 0;
};

void loadMessages(Scene *scene) {
    Form form(scene->port);
    scene->stand.waitForMessage(115);
    {
        Load load(scene, true);
        QTest::qWait(10000);
        load.printAfter("a form that says nothing");
    }
    {
        Load load(scene, true);
        form.flood(frame(3, QStringLiteral("x")), 10000, 10);
        for (int i = 0; i < 100000; ++i) {
            if (scene->stand.waitForMessage(103, 30000).isEmpty())
                throw std::runtime_error("frames of the flood are missing");
        }
        load.printAfter("10,000 frames a second for ten seconds");
    }
    {
        Load load(scene, true);
        for (int i = 0; i < 5; ++i) {
            form.send(frame(3, QString(10 << 20, 'x')));
            if (scene->stand.waitForMessage(103, 30000).isEmpty())
                throw std::runtime_error("a large frame is missing");
        }
        load.printAfter("five frames of 10 MB");
    }
}

void loadConnections(Scene *scene) {
    Load load(scene, false);
    for (int i = 0; i < 500; ++i)
        Form form(scene->port);
    load.printAfter("500 forms that come and go");
}

void loadDeaf(Scene *scene) {
    Load load(scene, false);
    QTcpSocket deaf;
    deaf.setReadBufferSize(1);
    scene->stand.forget();
    deaf.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(scene->port));
    deaf.write("GET / HTTP/1.1\r\nHost: localhost\r\nUpgrade: websocket\r\n"
               "Connection: Upgrade\r\nSec-WebSocket-Key: MDEyMzQ1Njc4OWFiY2RlZg==\r\n"
               "Sec-WebSocket-Version: 13\r\n\r\n");
    scene->stand.waitForMessage(115);
    const QString much = frame(218, QString(1 << 20, 'x'));
    for (int i = 0; i < 60; ++i)
        scene->stand.tell({{"do", "send"}, {"text", much}});
    if (scene->stand.waitForMessage(116).isEmpty())
        throw std::runtime_error("the form that does not read is still there");
    load.printAfter("60 MB for a form that does not read");
}

void runForms() {
    Scene scene;
    startScene(&scene);
    measureMessages(&scene);
    measureProxy(&scene);
    loadMessages(&scene);
    loadConnections(&scene);
    loadDeaf(&scene);
    if (scene.program->terminate() != 0)
        throw std::runtime_error("the program did not end well");
}

/// From a frame of speech on the socket's thread to its bytes in the device.
void runSpeech() {
    plugExactSpeaker(desk(), QStringLiteral("exact"));
    PlaybackDeviceSettings().Name = QStringLiteral("exact");
    PulseAudioManager audio;
    TtsManager tts;
    QThread thread;
    thread.start();
    DataMessageProcessor processor(nullptr);
    processor.moveToThread(&thread);
    QObject::connect(&processor, &DataMessageProcessor::ttsSound, &tts,
                     &TtsManager::onSoundRecived);
    QObject::connect(&tts, &TtsManager::playSound, audio.PlaybackDevice(),
                     &PlaybackDeviceManager::playSound, Qt::QueuedConnection);
    std::atomic<double> arrived{0};
    Samples samples;
    QObject::connect(
        &tts, &TtsManager::playSound, audio.PlaybackDevice(),
        [&] { samples.push_back(nowMs() - arrived); }, Qt::QueuedConnection);
    QSignalSpy selected(audio.PlaybackDevice(), &PlaybackDeviceManager::SelectedIndexChanged);
    audio.Start();
    if (!selected.wait())
        throw std::runtime_error("no speaker");
    const QByteArray speech(882, '\x11');
    for (int i = 0; i < 500; ++i) {
        spin(20);
        QMetaObject::invokeMethod(&processor, [&] {
            arrived = nowMs();
            processor.onBinaryMessageReceived(speech);
        });
    }
    if (!QTest::qWaitFor([&samples] { return samples.size() == 500; }))
        throw std::runtime_error("frames of speech are missing");
    thread.quit();
    thread.wait();
    print("speech frame to the device", samples);
}

} // namespace

int main(int argc, char **argv) {
    benchOnDesk(argc, argv, VirtualDesk::Screen | VirtualDesk::Sound, [] {
        runSpeech();
        runForms();
    });
}
