#include "DeskTest.h"
#include "core/PathHelper.h"

#include <QDateTime>
#include <QDir>
#include <QRegularExpression>

/// Named values, their expansion in texts, and the copying of folders.
class TestVariables : public QObject {
    Q_OBJECT

private slots:
    void substitutes_data();
    void substitutes();
    void namesFilesByTheStartTime();
    void laterNameReplacesEarlier();
    void copiesFolders();
};

void TestVariables::substitutes_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    const QString home = QDir::homePath();
    QTest::newRow("nothing to expand") << "plain $HOME {x}"
                                       << "plain $HOME {x}";
    QTest::newRow("unknown name") << "a${nosuch}b"
                                  << "ab";
    QTest::newRow("environment") << "${env:HOME}/x" << home + "/x";
    QTest::newRow("unset environment variable") << "<${env:NO_SUCH_VARIABLE}>"
                                                << "<>";
    QTest::newRow("name in any case") << "${BUILD:Version}"
                                      << "7.2.400";
    QTest::newRow("property in its own case") << "<${build:version}>"
                                              << "<>";
    QTest::newRow("two in a row") << "${build:ShortAppName}${build:SplashTextColor}"
                                  << "Quillan#39DEE2";
    QTest::newRow("folder") << "${HomeLocation}" << home;
    QTest::newRow("folder of the settings")
        << "${SettingsLocation}" << qEnvironmentVariable("XDG_CONFIG_HOME") + "/Ostrel/Vellumar";
    QTest::newRow("option with a colon") << "<${env:A:B}>"
                                         << "<>";
    QTest::newRow("unfinished") << "${env:HOME"
                                << "${env:HOME";
    QTest::newRow("inserted text is not expanded") << "${env:TRICK}"
                                                   << "${env:HOME}";
}

void TestVariables::substitutes() {
    QFETCH(QString, text);
    qputenv("TRICK", "${env:HOME}");
    QTEST(AppVariables::sm_stdVars.substitute(text), "expected");
}

void TestVariables::namesFilesByTheStartTime() {
    const auto at = [](const char *format) {
        return AppVariables::sm_stdVars.get(QStringLiteral("DateTime"),
                                            QString::fromLatin1(format));
    };
    const QString time = at("hh:mm:ss");
    QVERIFY2(QRegularExpression(QStringLiteral("^\\d\\d-\\d\\d-\\d\\d$")).match(time).hasMatch(),
             qPrintable(time));
    QCOMPARE(at("yyyy/MM/dd"), QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd")));
    const QString exact = at("hh:mm:ss.zzz");
    QCOMPARE(at("hh:mm:ss.zzz"), exact);
}

void TestVariables::laterNameReplacesEarlier() {
    const AppVariables variables{
        {QStringLiteral("Name"), [](const QString &option) { return option + QLatin1Char('1'); }},
        {QStringLiteral("NAME"), [](const QString &option) { return option + QLatin1Char('2'); }},
    };
    QCOMPARE(variables.substitute(QStringLiteral("${name:a}")), QStringLiteral("a2"));
}

void TestVariables::copiesFolders() {
    const QDir root(desk().folder());
    QVERIFY(root.mkpath(QStringLiteral("from/inner/empty")));
    const auto write = [&root](const char *name, const char *text) {
        QFile file(root.filePath(QString::fromLatin1(name)));
        return file.open(QIODevice::WriteOnly) && file.write(text) > 0;
    };
    const auto read = [&root](const char *name) {
        QFile file(root.filePath(QString::fromLatin1(name)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("nothing");
    };
    QVERIFY(write("from/a", "new") && write("from/inner/b", "b"));
    QVERIFY(root.mkpath(QStringLiteral("to")) && write("to/a", "old"));

    PathHelper::copyPath(root.filePath(QStringLiteral("from")),
                         root.filePath(QStringLiteral("to")));
    QCOMPARE(read("to/a"), QByteArray("old"));
    QCOMPARE(read("to/inner/b"), QByteArray("b"));
    QVERIFY(root.exists(QStringLiteral("to/inner/empty")));

    PathHelper::copyPath(root.filePath(QStringLiteral("from/a")),
                         root.filePath(QStringLiteral("single")));
    QCOMPARE(read("single"), QByteArray("new"));
    // A folder into itself comes to an end.
    PathHelper::copyPath(root.filePath(QStringLiteral("from")),
                         root.filePath(QStringLiteral("from/inner/self")));
    QCOMPARE(read("from/inner/self/inner/b"), QByteArray("b"));
    QVERIFY(!root.exists(QStringLiteral("from/inner/self/inner/self/inner/self/a")));
}

DESK_CORE_TEST_MAIN(TestVariables)
#include "TestVariables.moc"
