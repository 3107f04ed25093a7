#include "DeskTest.h"
#include "Files.h"
#include "diagnostics/GeneralSystemInformationManager.h"

#include <QDir>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>

/// The archive for support: all that it is to hold, and nothing else.
class TestSystemInformation : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        QDir(logs()).removeRecursively();
        QVERIFY(QDir().mkpath(configs()));
        QVERIFY(save(configs() + "/settings.ini", "[ASR]\nSelectedTheme=therapy\n"));
        // What lies beside the logs and the settings is the user's own.
        const QString words =
            QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/Avocado";
        QVERIFY(QDir().mkpath(words));
        QVERIFY(save(words + "/AvocadoWords.txt", "тайна\n"));
    }

    void holdsWhatSupportNeeds_data() {
        columns<bool, bool>("hasLogs", "isThere");
        row("logs and settings", true, false);
        row("no logs", false, false);
        row("over another file", true, true);
    }

    void holdsWhatSupportNeeds() {
        QFETCH(bool, hasLogs);
        QFETCH(bool, isThere);
        QStringList expected{"./", "./Environment.txt", "./configs/", "./configs/settings.ini"};
        if (hasLogs) {
            QVERIFY(QDir().mkpath(logs()));
            QVERIFY(save(logs() + "/log_1.log", "строка\n"));
            expected << "./logs/"
                     << "./logs/log_1.log";
        }
        if (isThere)
            QVERIFY(save(archive(), "no archive"));
        const QStringList before = QDir(QDir::tempPath()).entryList();
        GeneralSystemInformationManager().CollectSystemInformation(archive());
        QCOMPARE(QDir(QDir::tempPath()).entryList(), before);
        QCOMPARE(QFile::permissions(archive()) & 0x0077, QFile::Permissions());

        QStringList entries =
            desk().run("tar", {"-tzf", archive()}).split('\n', Qt::SkipEmptyParts);
        entries.sort();
        QCOMPARE(entries, expected);
        QCOMPARE(unpacked("./configs/settings.ini"), QString("[ASR]\nSelectedTheme=therapy\n"));

        const QStringList lines = unpacked("./Environment.txt").split("\r\n");
        QCOMPARE(lines[0], QString("version: 7.2.400"));
        QCOMPARE(lines[3], QString("OS: "));
        QCOMPARE(lines[4], "product name: " + QSysInfo::prettyProductName());
        const QString memory =
            desk().ask("awk", {"/MemTotal/ { printf \"%d\", $2 / 1024 }", "/proc/meminfo"});
        QCOMPARE(lines[5], "ram: ; RAM: " + memory + " MB");
        QCOMPARE(lines.mid(6, 2), QStringList({"", "storage:"}));
        const QRegularExpression volume("^.+ - \\w+: \\d+/\\d+MB$");
        QVERIFY2(volume.match(lines[8]).hasMatch(), qPrintable(lines[8]));
    }

    void leavesNothingWithoutTools() {
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", QFile::encodeName(m_folder->path()));
        const QStringList before = QDir(QDir::tempPath()).entryList();
        GeneralSystemInformationManager().CollectSystemInformation(archive());
        qputenv("PATH", path);
        QVERIFY(!QFile::exists(archive()));
        QCOMPARE(QDir(QDir::tempPath()).entryList(), before);
    }

private:
    static QString logs() {
        return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + "/logs";
    }
    static QString configs() {
        return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    }
    QString archive() const { return m_folder->filePath("SysInfo.tar.gz"); }
    QString unpacked(const QString &file) const {
        return desk().run("tar", {"-xzOf", archive(), file});
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

DESK_CORE_TEST_MAIN(TestSystemInformation)
#include "TestSystemInformation.moc"
