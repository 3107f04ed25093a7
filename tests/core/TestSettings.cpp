#include "DeskTest.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/ClientConnectionSettings.h"
#include "core/settings/ClientInfoSettings.h"
#include "core/settings/FeedbackSettings.h"
#include "core/settings/FormApiSettings.h"
#include "core/settings/RecordingDeviceSettings.h"
#include "core/settings/TTSSettings.h"

#include <QDir>
#include <QFile>
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
    void knowsLocalhost_data();
    void knowsLocalhost();
    void usesThePlainFileWithoutAName();

private:
    static QString path() { return Settings(QString()).fileName(); }
    static QByteArray content();
    static void write(const QByteArray &text);
};

void TestSettings::init() {
    QFile::remove(path());
    // Lets QSettings forget what it knew of the file.
    Settings(QString()).sync();
}

QByteArray TestSettings::content() {
    QFile file(path());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestSettings::write(const QByteArray &text) {
    QVERIFY(QDir().mkpath(QFileInfo(path()).path()));
    QFile file(path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), text.size());
}

void TestSettings::writesOnlyWhatIsNew() {
    QCOMPARE(path(), qEnvironmentVariable("XDG_CONFIG_HOME") +
                         QStringLiteral("/Ostrel/Vellumar/settings.ini"));
    {
        RecordingDeviceSettings settings;
        settings.Gain = 100;
        QVERIFY(!settings.changed && !settings.Gain.changed());
        settings.Gain = 70;
        QVERIFY(settings.changed && settings.Gain.changed() && !settings.Name.changed());
        settings.Name = QStringLiteral("микрофон");
    }
    const QByteArray first = content();
    QVERIFY(first.contains("[RecordingDevice]"));
    QVERIFY(first.contains("Gain=70"));
    QVERIFY2(first.contains("Name=микрофон"), first);
    {
        RecordingDeviceSettings settings;
        settings.Gain = 70;
        QVERIFY(!settings.changed);
        QCOMPARE(settings.Name.get(), QStringLiteral("микрофон"));
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
    writer.SelectedTheme = QStringLiteral("therapy");
    writer.sync();
    QCOMPARE(reader.SelectedTheme.get(), QStringLiteral("therapy"));
}

void TestSettings::readsStoredText_data() {
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<bool>("sendingMode");
    QTest::addColumn<int>("gain");
    QTest::addColumn<double>("speed");
    QTest::newRow("no file") << QByteArray() << true << 100 << 1.0;
    QTest::newRow("good values")
        << QByteArray("[ASR]\nSendingMode=false\n[RecordingDevice]\nGain=5\n[TTS]\nSpeed=1.5\n")
        << false << 5 << 1.5;
    QTest::newRow("a bool as text")
        << QByteArray("[ASR]\nSendingMode=\"true\"\n") << true << 100 << 1.0;
    QTest::newRow("no numbers read as zero, not as the default")
        << QByteArray("[RecordingDevice]\nGain=abc\n[TTS]\nSpeed=fast\n") << true << 0 << 0.0;
    QTest::newRow("not an ini file")
        << QByteArrayLiteral("\x7f\x45LF\0\0[[[\n==\n]") << true << 100 << 1.0;
    QTest::newRow("a list where a number belongs")
        << QByteArray("[RecordingDevice]\nGain=1, 2, 3\n") << true << 0 << 1.0;
}

void TestSettings::readsStoredText() {
    QFETCH(QByteArray, stored);
    write(stored);
    QTEST(ASRSettings().SendingMode.get(), "sendingMode");
    QTEST(RecordingDeviceSettings().Gain.get(), "gain");
    QTEST(TTSSettings().Speed.get(), "speed");
}

void TestSettings::readsBase64_data() {
    QTest::addColumn<QByteArray>("stored");
    QTest::addColumn<QString>("clear");
    QTest::newRow("default") << QByteArray() << QStringLiteral("Александр");
    QTest::newRow("stored") << QByteArray("0JXQu9C10L3QsA==") << QStringLiteral("Елена");
    QTest::newRow("cut at a zero byte") << QByteArray("YWIAY2Q=") << QStringLiteral("ab");
    QTest::newRow("not base64 at all") << QByteArray("\xD0\xAF") << QString();
}

void TestSettings::readsBase64() {
    QFETCH(QByteArray, stored);
    if (!stored.isEmpty())
        write("[TTS]\nVoice=" + stored + "\n");
    QTEST(TTSSettings().Voice.get(), "clear");
    {
        FeedbackSettings settings;
        settings.FullName = QStringLiteral("Иванов; \"И\"");
    }
    QVERIFY(content().contains("FullName=0JjQstCw0L3QvtCyOyAi0Jgi"));
    QCOMPARE(FeedbackSettings().FullName.get(), QStringLiteral("Иванов; \"И\""));
}

void TestSettings::takesDefaultsFromTheBuild() {
    QCOMPARE(ASRSettings().PunctuationEnabled.get(), false);
    QCOMPARE(ClientConnectionSettings().Ip.get(), QStringLiteral("localhost"));
    QCOMPARE(FormApiSettings().RestPort.get(), 39256);
    write("[ASR]\nPunctuationEnabled=true\n");
    QCOMPARE(ASRSettings().PunctuationEnabled.get(), true);
}

void TestSettings::makesOneDesktopId() {
    const QString id = ClientInfoSettings().getOrCreateDesktopId();
    const QRegularExpression form(QStringLiteral("^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"));
    QVERIFY2(form.match(id).hasMatch(), qPrintable(id));
    QCOMPARE(ClientInfoSettings().getOrCreateDesktopId(), id);
    QVERIFY(content().contains(id.toUtf8()));
}

void TestSettings::knowsLocalhost_data() {
    QTest::addColumn<QString>("host");
    QTest::addColumn<bool>("isLocal");
    QTest::newRow("blanks around") << QStringLiteral("  localhost ") << true;
    QTest::newRow("by number") << QStringLiteral("127.0.0.1") << true;
    QTest::newRow("capitals") << QStringLiteral("LOCALHOST") << false;
    QTest::newRow("another host") << QStringLiteral("localhost.example") << false;
}

void TestSettings::knowsLocalhost() {
    QFETCH(QString, host);
    ClientConnectionSettings settings;
    settings.Ip = host;
    QTEST(settings.isLocalhost(), "isLocal");
}

void TestSettings::usesThePlainFileWithoutAName() {
    Settings::setFileName(QString());
    const QString plain = path();
    Settings::setFileName(QStringLiteral("settings"));
    QVERIFY2(plain.endsWith(QStringLiteral("/Ostrel/Vellumar.ini")), qPrintable(plain));
}

DESK_CORE_TEST_MAIN(TestSettings)
#include "TestSettings.moc"
