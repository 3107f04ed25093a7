#include "DeskTest.h"
#include "Files.h"
#include "core/PathHelper.h"

#include <QDateTime>
#include <QDir>

/// Named values, their expansion in texts, and the copying of folders.
class TestVariables : public QObject {
    Q_OBJECT

private slots:
    void substitutes_data();
    void substitutes();
    void namesFilesByTheStartTime();
    void copiesFolders();
};

void TestVariables::substitutes_data() {
    columns<QString, QString>("text", "expected");
    const QString home = QDir::homePath();
    row("nothing to expand", "plain $HOME {x}", "plain $HOME {x}");
    row("unknown name", "a${nosuch}b", "ab");
    row("environment", "${env:HOME}/x", home + "/x");
    row("unset environment variable", "<${env:NO_SUCH_VARIABLE}>", "<>");
    row("name in any case", "${BUILD:Version}", "7.2.400");
    row("property in its own case", "<${build:version}>", "<>");
    row("two in a row", "${build:ShortAppName}${build:SplashTextColor}", "Quillan#39DEE2");
    row("folder", "${HomeLocation}", home);
    row("folder of the settings", "${SettingsLocation}",
        qEnvironmentVariable("XDG_CONFIG_HOME") + "/Ostrel/Vellumar");
    row("option with a colon", "<${env:A:B}>", "<>");
    row("unfinished", "${env:HOME", "${env:HOME");
    row("inserted text is not expanded", "${env:TRICK}", "${env:HOME}");
}

void TestVariables::substitutes() {
    QFETCH(QString, text);
    qputenv("TRICK", "${env:HOME}");
    QTEST(AppVariables::sm_stdVars.substitute(text), "expected");
}

void TestVariables::namesFilesByTheStartTime() {
    const auto at = [](const char *format) {
        return AppVariables::sm_stdVars.get("DateTime", format);
    };
    QCOMPARE(at("yyyy/MM/dd"), QDateTime::currentDateTime().toString("yyyy-MM-dd"));
    const QString exact = at("hh:mm:ss.zzz");
    QCOMPARE(at("hh:mm:ss.zzz"), exact);
}

void TestVariables::copiesFolders() {
    const QDir root(desk().folder());
    QVERIFY(root.mkpath("from/inner/empty"));
    const auto write = [&root](const char *name, const char *text) {
        return save(root.filePath(name), text);
    };
    const auto read = [&root](const char *name) { return bytesOf(root.filePath(name)); };
    QVERIFY(write("from/a", "new") && write("from/inner/b", "b"));
    QVERIFY(root.mkpath("to") && write("to/a", "old"));

    PathHelper::copyPath(root.filePath("from"), root.filePath("to"));
    QCOMPARE(read("to/a"), QByteArray("old"));
    QCOMPARE(read("to/inner/b"), QByteArray("b"));
    QVERIFY(root.exists("to/inner/empty"));

    // A folder into itself comes to an end.
    PathHelper::copyPath(root.filePath("from"), root.filePath("from/inner/self"));
    QCOMPARE(read("from/inner/self/inner/b"), QByteArray("b"));
    QVERIFY(!root.exists("from/inner/self/inner/self/inner/self/a"));
}

DESK_CORE_TEST_MAIN(TestVariables)
#include "TestVariables.moc"
