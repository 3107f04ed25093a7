#include "ClientHarness.h"
#include "DeskTest.h"
#include "Files.h"
#include "Stand.h"
#include "commands/UserCommandsManager.h"
#include "connection/WebSocketClient.h"
#include "core/Exception.h"
#include "recognition/AsrManager.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QStandardPaths>

#include <csignal>
#include <sys/resource.h>

using UserCommandNamespace::UserCommandType;
using Files = QMap<QString, QByteArray>;
using Lists = QMap<QString, QStringList>;
Q_DECLARE_METATYPE(Files)
Q_DECLARE_METATYPE(Lists)

namespace {

QString folder() {
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + "/commands/";
}

/// "phrase=text" for a replacement, "phrase>text" for a key.
QJsonObject command(const QString &described) {
    const bool isText = described.contains('=');
    const QStringList parts = described.split(isText ? '=' : '>');
    return {{"Type", isText ? "text" : "key"}, {"Pattern", parts[0]}, {"Text", parts[1]}};
}

QByteArray fileOf(const QString &themeId, const QStringList &described) {
    QJsonArray commands;
    for (const QString &one : described)
        commands.append(command(one));
    return QJsonDocument(QJsonObject{{"ThemeId", themeId},
                                     {"ThemeName", "Словарь " + themeId},
                                     {"Commands", commands}})
        .toJson();
}

UserCommand text(const QString &pattern, const QString &replacement) {
    return UserCommand(command(pattern + '=' + replacement));
}

/// As command() takes them; without those of the system.
QStringList describe(const QList<UserCommand> &commands) {
    QStringList described;
    for (const UserCommand &one : commands) {
        if (!one.IsSystem)
            described << one.Pattern + (one.Type == UserCommandType::Text ? '=' : '>') + one.Text;
    }
    return described;
}

QStringList systemPatterns(const QList<UserCommand> &commands) {
    QStringList patterns;
    for (const UserCommand &one : commands) {
        if (one.IsSystem)
            patterns << one.Pattern;
    }
    return patterns;
}

/// What an action throws, or nothing.
template <typename Action>
QString failureOf(Action action) {
    try {
        action();
        return QString();
    } catch (const Exception &failure) {
        return QString::fromUtf8(failure.what());
    }
}

} // namespace

/// The files of commands, read and written for real.
class TestCommandFiles : public QObject {
    Q_OBJECT

private slots:
    void init();
    void readsOneCommand_data();
    void readsOneCommand();
    void groupsAndMerges_data();
    void groupsAndMerges();
    void givesIdsAtLoading();
    void refusesAFile_data();
    void refusesAFile();
    void savesWhatIsTheUsers();
    void keepsCommandsUnderAnotherName_data();
    void keepsCommandsUnderAnotherName();
    void leavesACopyThatAnotherProgramChanged();
    void putsInForceWhatIsStored();
    void keepsIdsOfServersInTheFolder_data();
    void keepsIdsOfServersInTheFolder();
    void keepsTheOldFile_data();
    void keepsTheOldFile();
    void offersTheThemesOfTheServer();

private:
    WebSocketClient m_client{nullptr};
    AsrManager m_asrManager{&m_client};
    std::unique_ptr<UserCommandsManager> m_manager;
};

void TestCommandFiles::init() {
    QDir(folder()).removeRecursively();
    QVERIFY(QDir().mkpath(folder()));
    m_manager = std::make_unique<UserCommandsManager>();
    m_manager->set_AsrManager(&m_asrManager);
}

void TestCommandFiles::readsOneCommand_data() {
    columns<QString, QString>("json", "read");
    row("only a type", R"({"Type":"text"})", "0||||false");
    row("all keys", R"({"Type":"file","Id":"i","Pattern":" П ","Text":"t","IsPunctuation":true})",
        "5|i| П |t|true");
    row("values of other kinds",
        R"({"Type":"exe","Id":7,"Pattern":null,"Text":[],"IsPunctuation":"true"})", "3||||false");
    row("type in capitals", R"({"Type":"TEXT"})", "Cannot convert");
    row("type as a number", R"({"Type":2})", "Cannot convert");
    row("no type", "{}", "Cannot convert");
}

void TestCommandFiles::readsOneCommand() {
    QFETCH(QString, json);
    QString read;
    const QString failure = failureOf([&] {
        const QJsonObject object = QJsonDocument::fromJson(json.toUtf8()).object();
        const UserCommand one(object);
        read = QStringLiteral("%1|%2|%3|%4|%5")
                   .arg(static_cast<int>(one.Type))
                   .arg(one.Id, one.Pattern, one.Text, one.IsPunctuation ? "true" : "false");
        QCOMPARE(one.toJson().toObject().keys(),
                 (QStringList{"Id", "IsPunctuation", "Pattern", "Text", "Type"}));
        QCOMPARE(UserCommand(one.toJson().toObject()).toJson(), one.toJson());
    });
    QTEST(failure.isEmpty() ? read : failure, "read");
}

void TestCommandFiles::groupsAndMerges_data() {
    columns<Files, Lists, QStringList>("files", "lists", "replacedOfTheSystem");
    row("without files", Files(), Lists{{"", {}}}, QStringList());
    row("the id in the file counts, not its name",
        Files{{"x.json", fileOf("42", {"а=1"})}, {"theme_1.json", fileOf("", {"б=2"})}},
        Lists{{"", {"б=2"}}, {"42", {"а=1"}}}, QStringList());
    row("the later file wins, in the place of the earlier",
        Files{{"b.json", fileOf("42", {" А =3", "в=4"})}, {"a.json", fileOf("42", {"а=1", "б=2"})}},
        Lists{{"42", {" А =3", "б=2", "в=4"}}}, QStringList());
    row("a replacement gives way to a key", Files{{"a.json", fileOf("", {"а=1", "А>Return"})}},
        Lists{{"", {"А>Return"}}}, QStringList());
    row("the user's go ahead of the system's, and behind them in the list",
        Files{{"default.json", fileOf("", {"а=1", " Точка =!"})}},
        Lists{{"", {" Точка =!", "а=1"}}}, QStringList{"точка"});
    row("other files are no commands",
        Files{{"a.txt", "text"}, {"b.json~", "text"}, {"c.json", fileOf("", {"а=1"})}},
        Lists{{"", {"а=1"}}}, QStringList());
}

void TestCommandFiles::groupsAndMerges() {
    QFETCH(Files, files);
    QFETCH(Lists, lists);
    QFETCH(QStringList, replacedOfTheSystem);
    m_manager->LoadAll();
    QStringList system = systemPatterns(m_manager->get_ThemeCommands(""));
    QVERIFY(system.contains("точка"));
    for (auto file = files.cbegin(); file != files.cend(); ++file)
        QVERIFY(save(folder() + file.key(), file.value()));
    m_manager->LoadAll();
    for (auto list = lists.cbegin(); list != lists.cend(); ++list)
        QCOMPARE(describe(m_manager->get_ThemeCommands(list.key())), list.value());
    const QList<UserCommand> common = m_manager->get_ThemeCommands("");
    for (const QString &replaced : replacedOfTheSystem)
        system.removeAll(replaced);
    QCOMPARE(systemPatterns(common), system);
    for (int i = 0; i < common.size(); ++i)
        QCOMPARE(common[i].IsSystem, i < system.size());
}

void TestCommandFiles::givesIdsAtLoading() {
    QVERIFY(save(folder() + "a.json", fileOf("42", {"а=1", "б>Return"})));
    m_manager->LoadAll();
    const QString id = m_manager->get_ThemeCommands("42")[1].Id;
    QVERIFY2(QRegularExpression("^\\{[0-9a-f-]{36}\\}$").match(id).hasMatch(), qPrintable(id));
    ClientThemeInfo theme;
    const QList<UserCommand> stored =
        UserCommandsManager::LoadFrom(folder() + "a.json", &theme, false);
    QCOMPARE(stored[0].Id, QString());
    QCOMPARE(stored[1].Id, id);
    QCOMPARE(theme.name(), QString("Словарь 42"));
}

void TestCommandFiles::refusesAFile_data() {
    columns<QString, QString>("text", "failure");
    row("empty", "", ", error 'illegal value'");
    row("an array", "[]", "");
    row("unknown type", R"({"Commands":[{"Type":"text"},{"Type":"none"}]})",
        ", error 'command 2: Cannot convert'");
    row("no object among the commands", R"({"Commands":[1]})",
        ", error 'command 1: Cannot convert'");
    row("nested too deep", QString(100000, '['), ", error 'too deeply nested document'");
    row("larger than any list", QString(65 << 20, ' '), ", error 'file too large'");
}

void TestCommandFiles::refusesAFile() {
    QFETCH(QString, text);
    QFETCH(QString, failure);
    QVERIFY(save(folder() + "a.json", fileOf("", {"а=1"})));
    m_manager->LoadAll();
    const QString path = folder() + "bad.json";
    QVERIFY(save(path, text.toUtf8()));
    const QString start = "UserCommandsManager: Invalid file format, file '%1'";
    QCOMPARE(failureOf([&] { m_manager->LoadAll(); }), start.arg(path) + failure);
    QCOMPARE(bytesOf(path), text.toUtf8());
    QCOMPARE(describe(m_manager->get_ThemeCommands("")), QStringList{"а=1"});
}

void TestCommandFiles::savesWhatIsTheUsers() {
    QVERIFY(save(folder() + "x.json", fileOf("42", {"а=1"})));
    QVERIFY(save(folder() + "default.json", fileOf("", {"б=2"})));
    m_manager->LoadAll();
    QSignalSpy changed(m_manager.get(), &UserCommandsManager::CommandsChanged);
    QList<UserCommand> common = m_manager->get_ThemeCommands("");
    common.removeLast();
    m_manager->set_Commands({{"", common}, {"42", {text("в", "3")}}});
    QCOMPARE(changed.size(), 1);
    QVERIFY2(!QFile::exists(folder() + "default.json"), "only the system's commands were left");
    QCOMPARE(bytesOf(folder() + "x.json"), fileOf("42", {"а=1"}));
    m_manager->LoadAll();
    QCOMPARE(describe(m_manager->get_ThemeCommands("42")), (QStringList{"в=3", "а=1"}));
    QCOMPARE(failureOf([&] {
                 m_manager->set_Commands({{"42", {text("г", "4")}}, {"43", {}}});
             }),
             QString("UserCommandsManager: Theme 43 not found"));
    QCOMPARE(describe(m_manager->get_ThemeCommands("42")), (QStringList{"в=3", "а=1"}));
    QCOMPARE(changed.size(), 1);
}

void TestCommandFiles::keepsCommandsUnderAnotherName_data() {
    columns<QStringList, QStringList>("stored", "after");
    const QString first("а=1");
    row("a dictionary that is not offered", QStringList{""}, QStringList{first, "б=2"});
    row("its commands are deleted at the same time", QStringList{"", "42"}, QStringList{"", "б=2"});
    row("in any order", QStringList{"", "42", "43"}, QStringList{"", ""});
}

void TestCommandFiles::keepsCommandsUnderAnotherName() {
    QFETCH(QStringList, stored);
    QVERIFY(save(folder() + "default.json", fileOf("42", {"а=1"})));
    QVERIFY(save(folder() + "theme_42.json", fileOf("43", {"б=2"})));
    m_manager->LoadAll();
    QMap<QString, QList<UserCommand>> lists;
    for (const QString &id : stored)
        lists.insert(id, id.isEmpty() ? QList<UserCommand>{text("в", "3")} : QList<UserCommand>());
    m_manager->set_Commands(lists);
    UserCommandsManager next;
    next.set_AsrManager(&m_asrManager);
    next.LoadAll();
    QCOMPARE(describe(next.get_ThemeCommands("")), QStringList{"в=3"});
    const QStringList after{describe(next.get_ThemeCommands("42")).join(' '),
                            describe(next.get_ThemeCommands("43")).join(' ')};
    QTEST(after, "after");
}

void TestCommandFiles::leavesACopyThatAnotherProgramChanged() {
    QVERIFY(save(folder() + "default.json", fileOf("42", {"а=1"})));
    QVERIFY(save(folder() + "theme_42.json", fileOf("43", {"б=2"})));
    m_manager->LoadAll();
    m_manager->set_Commands({{"", {text("в", "3")}}});
    const QStringList copies = QDir(folder()).entryList({"default.json.*.json"});
    QCOMPARE(copies.size(), 1);
    const QByteArray edited = fileOf("42", {"г=4"});
    QVERIFY(save(folder() + copies[0], edited));
    m_manager->set_Commands({{"42", {}}});
    QCOMPARE(bytesOf(folder() + copies[0]), edited);
}

void TestCommandFiles::putsInForceWhatIsStored() {
    QVERIFY(save(folder() + "x.json", fileOf("42", {"а=1"})));
    m_manager->LoadAll();
    QVERIFY(QDir(folder()).mkdir("theme_42.json"));
    QSignalSpy changed(m_manager.get(), &UserCommandsManager::CommandsChanged);
    const QString failure = failureOf([&] {
        m_manager->set_Commands({{"", {text("б", "2")}}, {"42", {text("в", "3")}}});
    });
    QVERIFY2(failure.contains("theme_42.json"), qPrintable(failure));
    QCOMPARE(describe(m_manager->get_ThemeCommands("")), QStringList{"б=2"});
    QCOMPARE(describe(m_manager->get_ThemeCommands("42")), QStringList{"а=1"});
    QCOMPARE(changed.size(), 1);
}

void TestCommandFiles::keepsIdsOfServersInTheFolder_data() {
    QTest::addColumn<QString>("id");
    row("a way out", "../../../out");
    row("a line feed and a zero", "a\nb" + QString(QChar(0)) + "c");
    row("blanks and percents", "%1 %2");
}

void TestCommandFiles::keepsIdsOfServersInTheFolder() {
    QFETCH(QString, id);
    ClientThemeInfo theme;
    theme.setId(id);
    m_manager->LoadAll();
    m_manager->Save(theme, {text("а", "1")});
    QCOMPARE(QDir(folder()).entryList(QDir::Files).size(), 1);
    m_manager->LoadAll();
    QCOMPARE(describe(m_manager->get_ThemeCommands(id)), QStringList{"а=1"});

    // Another id that the first one's file name could be taken for.
    theme.setId(QString(id).replace('/', "%2f"));
    if (theme.id() != id) {
        m_manager->Save(theme, {text("б", "2")});
        m_manager->LoadAll();
        QCOMPARE(describe(m_manager->get_ThemeCommands(id)), QStringList{"а=1"});
    }
}

void TestCommandFiles::keepsTheOldFile_data() {
    columns<QString, QString>("obstacle", "failure");
    row("full disk", "full",
        "UserCommandsManager: Cannot write file '%1', error 'written in part only'");
    row("a folder in its place", "folder",
        "UserCommandsManager: Cannot open file '%1' for writing");
    row("id too long for a name", "long",
        "UserCommandsManager: Cannot write file '%1', error 'File name too long'");
}

void TestCommandFiles::keepsTheOldFile() {
    QFETCH(QString, obstacle);
    QFETCH(QString, failure);
    ClientThemeInfo theme;
    theme.setId(obstacle == "long" ? QString(300, 'x') : "42");
    const QString path = folder() + "theme_" + theme.id() + ".json";
    if (obstacle == "folder")
        QVERIFY(QDir().mkdir(path));
    else if (obstacle == "full")
        QVERIFY(save(path, fileOf("42", {"а=1"})));
    // A process that may write no more than this sees a disk that is full.
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit small{4096, limit.rlim_max};
    const auto restore = qScopeGuard([&limit] { setrlimit(RLIMIT_FSIZE, &limit); });
    std::signal(SIGXFSZ, SIG_IGN);
    if (obstacle == "full")
        setrlimit(RLIMIT_FSIZE, &small);
    const QString thrown =
        failureOf([&] { m_manager->Save(theme, {text("б", QString(9000, 'x'))}); });
    QVERIFY2(thrown.startsWith(failure.arg(path)), qPrintable(thrown));
    if (obstacle == "full")
        QCOMPARE(bytesOf(path), fileOf("42", {"а=1"}));
    QVERIFY(QDir(folder()).entryList(QDir::Files).size() <= 1);
}

void TestCommandFiles::offersTheThemesOfTheServer() {
    QVERIFY(save(folder() + "a.json", fileOf("42", {"а=1"})));
    Stand stand;
    ClientHarness client(stand);
    UserCommandsManager &manager = client.userCommands();
    manager.LoadAll();
    const auto names = [&manager] {
        QStringList result;
        for (const ClientThemeInfo &theme : manager.get_Themes())
            result << theme.name();
        return result;
    };
    QCOMPARE(names(), QStringList{"Для всех словарей"});
    QVERIFY(client.open());
    manager.UpdateThemesFromAsr();
    QVERIFY2(names().size() > 1, "the server's are there");
    QCOMPARE(names().first(), QString("Для всех словарей"));
    QVERIFY(!names().contains("Словарь 42"));
    manager.set_Commands({{"therapy", {text("б", "2")}}});
    QCOMPARE(describe(manager.getCommandList()).last(), QString("б=2"));

    stand.tell({{"do", "themes"}, {"mode", "empty"}});
    QVERIFY(client.asr()->get_Themes(true).isEmpty());
    stand.tell({{"do", "themes"}, {"mode", "fail"}});
    manager.UpdateThemesFromAsr();
    QCOMPARE(names(), QStringList{"Для всех словарей"});
    QCOMPARE(describe(manager.get_ThemeCommands("42")), QStringList{"а=1"});
    QCOMPARE(describe(manager.get_ThemeCommands("therapy")), QStringList{"б=2"});
}

DESK_CORE_TEST_MAIN(TestCommandFiles)
#include "TestCommandFiles.moc"
