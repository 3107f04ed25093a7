#include "DeskTest.h"
#include "Files.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/ClientConnectionSettings.h"
#include "core/settings/ClientInfoSettings.h"
#include "core/settings/FeedbackSettings.h"
#include "core/settings/FormApiSettings.h"
#include "core/settings/RecordingDeviceSettings.h"
#include "core/settings/TTSSettings.h"

#include <QDir>
#include <QRegularExpression>

/// The settings file: what is written, when, and what a bad file reads as.
class TestSettings : public QObject {
    Q_OBJECT

private slots:
    void init();
    void writesOnlyWhatIsNew();
    void keepsOtherObjectsInStep();
    void readsStoredText_data();
    void readsStoredText();
    void readsBase64_data();
    void readsBase64();
    void takesDefaultsFromTheBuild();
    void makesOneDesktopId();
    void knowsLocalhost();
    void usesThePlainFileWithoutAName();

private:
    static QString path() { return Settings(QString()).fileName(); }
    static QByteArray content() { return bytesOf(path()); }
    static bool write(const QByteArray &text) {
        return QDir().mkpath(QFileInfo(path()).path()) && save(path(), text);
    }
};

void TestSettings::init() {
    QFile::remove(path());
    // Lets QSettings forget what it knew of the file.
    Settings(QString()).sync();
}

void TestSettings::writesOnlyWhatIsNew() {
    QCOMPARE(path(), qEnvironmentVariable("XDG_CONFIG_HOME") + "/Ostrel/Vellumar/settings.ini");
    {
        RecordingDeviceSettings settings;
        settings.Gain = 100;
        QVERIFY(!settings.changed && !settings.Gain.changed());
        settings.Gain = 70;
        QVERIFY(settings.changed && settings.Gain.changed() && !settings.Name.changed());
        settings.Name = "микрофон";
    }
    const QByteArray first = content();
    QVERIFY(first.contains("[RecordingDevice]"));
    QVERIFY(first.contains("Gain=70"));
    QVERIFY2(first.contains("Name=микрофон"), first);
    {
        RecordingDeviceSettings settings;
        settings.Gain = 70;
        QVERIFY(!settings.changed);
        QCOMPARE(settings.Name.get(), "микрофон");
    }
    QCOMPARE(content(), first);
    {
        RecordingDeviceSettings settings;
        settings.Gain = 100;
    }
    QVERIFY2(content().contains("Gain=100"), "a default counts once another value was stored");
}

void TestSettings::keepsOtherObjectsInStep() {
    ASRSettings writer;
    const ASRSettings reader;
    QCOMPARE(reader.SelectedTheme.get(), QString());
    writer.SelectedTheme = "therapy";
    writer.sync();
    QCOMPARE(reader.SelectedTheme.get(), "therapy");
}

void TestSettings::readsStoredText_data() {
    columns<QByteArray, bool, int, double>("stored", "sendingMode", "gain", "speed");
    row("no file", QByteArray(), true, 100, 1.0);
    row("good values",
        QByteArray("[ASR]\nSendingMode=false\n[RecordingDevice]\nGain=5\n[TTS]\nSpeed=1.5\n"),
        false, 5, 1.5);
    row("a bool as text", QByteArray("[ASR]\nSendingMode=\"true\"\n"), true, 100, 1.0);
    row("no numbers read as zero, not as the default",
        QByteArray("[RecordingDevice]\nGain=abc\n[TTS]\nSpeed=fast\n"), true, 0, 0.0);
    row("not an ini file", QByteArrayLiteral("\x7f\x45LF\0\0[[[\n==\n]"), true, 100, 1.0);
    row("a list where a number belongs", QByteArray("[RecordingDevice]\nGain=1, 2, 3\n"), true, 0,
        1.0);
}

void TestSettings::readsStoredText() {
    QFETCH(QByteArray, stored);
    QVERIFY(write(stored));
    QTEST(ASRSettings().SendingMode.get(), "sendingMode");
    QTEST(RecordingDeviceSettings().Gain.get(), "gain");
    QTEST(TTSSettings().Speed.get(), "speed");
}

void TestSettings::readsBase64_data() {
    columns<QByteArray, QString>("stored", "clear");
    row("default", QByteArray(), "Александр");
    row("stored", QByteArray("0JXQu9C10L3QsA=="), "Елена");
    row("cut at a zero byte", QByteArray("YWIAY2Q="), "ab");
    row("not base64 at all", QByteArray("\xD0\xAF"), "");
}

void TestSettings::readsBase64() {
    QFETCH(QByteArray, stored);
    QVERIFY(stored.isEmpty() || write("[TTS]\nVoice=" + stored + "\n"));
    QTEST(TTSSettings().Voice.get(), "clear");
    {
        FeedbackSettings settings;
        settings.FullName = "Иванов; \"И\"";
    }
    QVERIFY(content().contains("FullName=0JjQstCw0L3QvtCyOyAi0Jgi"));
    QCOMPARE(FeedbackSettings().FullName.get(), "Иванов; \"И\"");
}

void TestSettings::takesDefaultsFromTheBuild() {
    QCOMPARE(ASRSettings().PunctuationEnabled.get(), false);
    QCOMPARE(ClientConnectionSettings().Ip.get(), "localhost");
    QCOMPARE(FormApiSettings().RestPort.get(), 39256);
    QVERIFY(write("[ASR]\nPunctuationEnabled=true\n"));
    QCOMPARE(ASRSettings().PunctuationEnabled.get(), true);
}

void TestSettings::makesOneDesktopId() {
    const QString id = ClientInfoSettings().getOrCreateDesktopId();
    const QRegularExpression form("^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$");
    QVERIFY2(form.match(id).hasMatch(), qPrintable(id));
    QCOMPARE(ClientInfoSettings().getOrCreateDesktopId(), id);
    QVERIFY(content().contains(id.toUtf8()));
}

void TestSettings::knowsLocalhost() {
    ClientConnectionSettings settings;
    const std::pair<const char *, bool> hosts[] = {{"  localhost ", true},
                                                   {"127.0.0.1", true},
                                                   {"LOCALHOST", false},
                                                   {"localhost.example", false}};
    for (const auto &[host, isLocal] : hosts) {
        settings.Ip = host;
        QVERIFY2(settings.isLocalhost() == isLocal, host);
    }
}

void TestSettings::usesThePlainFileWithoutAName() {
    Settings::setFileName(QString());
    const QString plain = path();
    Settings::setFileName("settings");
    QVERIFY2(plain.endsWith("/Ostrel/Vellumar.ini"), qPrintable(plain));
}

DESK_CORE_TEST_MAIN(TestSettings)
#include "TestSettings.moc"
