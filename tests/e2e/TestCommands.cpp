#include "DeskTest.h"
#include "Editor.h"
#include "Program.h"
#include "Stand.h"
#include "XKeyboard.h"
#include "connection/messages/MessageType.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/ConnectionManagerSettings.h"
#include "core/settings/HotkeySettings.h"
#include "core/settings/LaunchSettings.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QScopeGuard>
#include <QStandardPaths>

#include <algorithm>
#include <csignal>
#include <sys/types.h>

namespace {

const QString doubleCtrl = QStringLiteral("+Control_L -Control_L +Control_L -Control_L");

QJsonObject command(const char *type, const char *pattern, const QString &text,
                    bool isPunctuation = false) {
    return {{"Type", type},
            {"Id", qstrcmp(type, "text") == 0 ? QString() : QString::fromUtf8(pattern)},
            {"Pattern", QString::fromUtf8(pattern)},
            {"Text", text},
            {"IsPunctuation", isPunctuation}};
}

bool save(const QString &path, const QByteArray &content) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QString commandsFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) +
           QStringLiteral("/commands");
}

/// Writes the user's commands of a theme, or with an empty id those of all themes.
void store(const QString &themeId, const QJsonArray &commands) {
    const QJsonObject content{{"ThemeId", themeId}, {"ThemeName", themeId}, {"Commands", commands}};
    const QString name = themeId.isEmpty() ? QStringLiteral("default.json")
                                           : QStringLiteral("theme_%1.json").arg(themeId);
    QDir().mkpath(commandsFolder());
    QVERIFY(save(commandsFolder() + QLatin1Char('/') + name, QJsonDocument(content).toJson()));
}

QStringList patterns(const QJsonObject &message) {
    QStringList result;
    for (const QJsonValue &one : message["data"].toObject()["Commands"].toArray())
        result += one.toObject()["Pattern"].toString();
    return result;
}

} // namespace

/// Commands of the user on a whole desk: their files are there before the program starts, the
/// server says which one was heard.
class TestCommands : public QObject {
    Q_OBJECT

private slots:
    void init();
    void pressesKeysInAnEditor();
    void takesItsOwnCtrlForNoGesture();
    void breaksNoGestureOfTheUser();
    void startsAProgramThatOutlivesIt();
    void typesADocumentAsItIs();
    void swapsCommandsWithTheTheme();
    void leavesPunctuationToTheServer_data();
    void leavesPunctuationToTheServer();

private:
    /// Starts the program and waits until all its opening messages are sent.
    static std::unique_ptr<Program> startProgram(Stand *stand);
    /// Waits until dictation is asked for and sound comes.
    static bool dictates(Stand *stand);
    /// Has the server hear the command of this phrase.
    static void speak(Stand *stand, const char *phrase);
    static int startModes(Stand *stand);
};

void TestCommands::init() {
    QFile::remove(Settings(QString()).fileName());
    Settings(QString()).sync();
    QDir(commandsFolder()).removeRecursively();
}

std::unique_ptr<Program> TestCommands::startProgram(Stand *stand) {
    stand->writeSettings();
    ConnectionManagerSettings().QuietConnectionEnabled = true;
    ASRSettings().SelectedTheme = QStringLiteral("therapy");
    Settings(QString()).sync();
    auto program = std::make_unique<Program>();
    return stand->waitForMessage(MessageType::StartMode, 20000).isEmpty() ? nullptr
                                                                          : std::move(program);
}

bool TestCommands::dictates(Stand *stand) {
    const QJsonObject start = stand->waitForMessage(MessageType::StartMode);
    return !start.isEmpty() && start["data"].toObject()["Type"].isNull() &&
           !stand->waitFor(QStringLiteral("sound")).isEmpty();
}

void TestCommands::speak(Stand *stand, const char *phrase) {
    stand->sayResult(QString::fromUtf8(phrase), true, QString::fromUtf8(phrase));
}

int TestCommands::startModes(Stand *stand) {
    stand->tell("state");
    const QList<QJsonObject> &events = stand->events();
    return static_cast<int>(std::count_if(events.cbegin(), events.cend(), [](const auto &event) {
        return event["event"] == QLatin1String("message") &&
               event["type"] == static_cast<int>(MessageType::StartMode);
    }));
}

void TestCommands::pressesKeysInAnEditor() {
    store(QString(), {command("key", "скопировать", QStringLiteral("Ctrl+C")),
                      command("key", "вставить", QStringLiteral("Ctrl+V")),
                      command("key", "плюс", QStringLiteral("KP_Add")),
                      command("key", "в конец", QStringLiteral("KP_1"))});
    Stand stand;
    Editor editor(QStringLiteral("keys.txt"));
    const auto program = startProgram(&stand);
    QVERIFY(program);
    XKeyboard keyboard;
    keyboard.play(doubleCtrl);
    QVERIFY(dictates(&stand));
    stand.sayResult(QStringLiteral("раз"));
    QTRY_COMPARE(editor.text(), QStringLiteral("Раз"));
    const int before = startModes(&stand);

    keyboard.play(QStringLiteral("+Control_L +a -a -Control_L"));
    speak(&stand, "скопировать");
    speak(&stand, "в конец"); // the keypad's 1 is End without NumLock
    speak(&stand, "вставить");
    QTRY_COMPARE(editor.text(), QStringLiteral("РазРаз"));
    keyboard.press(QStringLiteral("Control_L"));
    speak(&stand, "вставить");
    QTRY_COMPARE(editor.text(), QStringLiteral("РазРазРаз"));
    keyboard.release(QStringLiteral("Control_L"));
    keyboard.play(QStringLiteral("+Home -Home"));
    speak(&stand, "плюс");
    QTRY_COMPARE(editor.text(), QStringLiteral("+РазРазРаз"));
    QCOMPARE(startModes(&stand), before);
    QCOMPARE(program->terminate(), 0);
}

void TestCommands::takesItsOwnCtrlForNoGesture() {
    HotkeySettings().UseHotkey = false;
    HotkeySettings().P2TKey = QStringLiteral("Ctrl");
    LaunchSettings().GlobalEnableVAC = true;
    LaunchSettings().VoiceActivationEnabled = true;
    store(QString(), {command("key", "в начало", QStringLiteral("Ctrl+Home"))});
    Stand stand;
    Editor editor(QStringLiteral("own.txt"));
    const auto program = startProgram(&stand);
    QVERIFY(program);
    stand.rewind();
    const QJsonArray commands =
        stand.waitForMessage(MessageType::SetCommands)["data"].toObject()["Commands"].toArray();
    stand.forget();
    // Started by voice, so that the key is not held.
    stand.sayResult(QString(), true, commands.last().toObject()["Id"].toString());
    QVERIFY(dictates(&stand));
    const int before = startModes(&stand);
    stand.sayResult(QStringLiteral("раз"));
    for (int i = 0; i < 6; ++i)
        speak(&stand, "в начало");
    stand.sayResult(QStringLiteral("два"));
    QTRY_COMPARE(editor.text(), QStringLiteral(" дваРаз"));
    // Sound behind it comes from a dictation that goes on.
    stand.forget();
    QVERIFY(!stand.waitFor(QStringLiteral("sound")).isEmpty());
    QCOMPARE(startModes(&stand), before);

    XKeyboard().play(QStringLiteral("+Control_L -Control_L"));
    QVERIFY(stand.waitForMessage(MessageType::StartMode)["data"].toObject()["Type"].isNull());
    QCOMPARE(stand.waitForMessage(MessageType::StartMode)["data"].toObject()["Type"].toInt(-1), 1);
    QCOMPARE(program->terminate(), 0);
}

void TestCommands::breaksNoGestureOfTheUser() {
    store(QString(), {command("key", "в начало", QStringLiteral("Ctrl+Home"))});
    Stand stand;
    Editor editor(QStringLiteral("gesture.txt"));
    const auto program = startProgram(&stand);
    QVERIFY(program);
    XKeyboard keyboard;
    keyboard.play(doubleCtrl);
    QVERIFY(dictates(&stand));
    stand.sayResult(QStringLiteral("раз"));
    keyboard.press(QStringLiteral("Control_L"));
    speak(&stand, "в начало");
    stand.sayResult(QStringLiteral("два"));
    QTRY_COMPARE(editor.text(), QStringLiteral(" дваРаз"));
    stand.forget();
    keyboard.play(QStringLiteral("-Control_L +Control_L -Control_L"));
    QCOMPARE(stand.waitForMessage(MessageType::StartMode)["data"].toObject()["Type"].toInt(-1), 0);
    QCOMPARE(program->terminate(), 0);
}

void TestCommands::startsAProgramThatOutlivesIt() {
    const QString script = desk().folder() + QStringLiteral("/a program.sh");
    const QString idFile = desk().folder() + QStringLiteral("/program.id");
    QVERIFY(
        save(script, "#!/bin/sh\necho $$ > \"" + idFile.toUtf8() + "\"\nexec tail -f /dev/null\n"));
    QVERIFY(QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    store(QString(), {command("exe", "открыть программу", script)});
    Stand stand;
    const auto program = startProgram(&stand);
    QVERIFY(program);
    XKeyboard().play(doubleCtrl);
    QVERIFY(dictates(&stand));
    speak(&stand, "открыть программу");
    pid_t id = 0;
    const auto readId = [&] {
        QFile file(idFile);
        if (file.open(QIODevice::ReadOnly))
            id = file.readAll().trimmed().toInt();
        return id > 0;
    };
    QTRY_VERIFY(readId());
    const auto end = qScopeGuard([&id] { ::kill(id, SIGTERM); });
    QCOMPARE(program->terminate(), 0);
    QCOMPARE(::kill(id, 0), 0);
}

void TestCommands::typesADocumentAsItIs() {
    const QString document = desk().folder() + QStringLiteral("/document.txt");
    QVERIFY(save(document, QByteArray("запятая ,\r\nдва\nтри\rчетыре")));
    store(QString(),
          {command("file", "вставить шаблон", document),
           command("file", "вставить выписку", QStringLiteral(DOCUMENTS "/discharge.odt")),
           command("text", "запятая", QStringLiteral("заменено"))});
    Stand stand;
    Editor editor(QStringLiteral("document-typed.txt"));
    const auto program = startProgram(&stand);
    QVERIFY(program);
    XKeyboard().play(doubleCtrl);
    QVERIFY(dictates(&stand));
    speak(&stand, "вставить шаблон");
    const QString typed = QStringLiteral(" запятая ,\nдва\nтри\nчетыре");
    QTRY_COMPARE(editor.text(), typed);
    stand.sayResult(QStringLiteral("запятая"));
    QTRY_COMPARE(editor.text(), typed + QStringLiteral("Заменено"));
    speak(&stand, "вставить выписку");
    QTRY_VERIFY(editor.text().endsWith(
        QStringLiteral("Заменено Выписной эпикриз\nПациент Ёлкин Пётр, 54 года.\nДиагноз\n"
                       "Гипертоническая болезнь II  стадии\nриск 3\n\nСтол № 10\n"
                       "Эналаприл 5 мг\nутром\nГемоглобин\n140 г/л\nСОЭ\n8 мм/ч\n"
                       "Подпись:\t_____\t<врач> & зав. отделением\n")));
    QCOMPARE(program->terminate(), 0);
}

void TestCommands::swapsCommandsWithTheTheme() {
    const QString copy = QStringLiteral("Ctrl+C");
    store(QString(), {command("key", "скопировать", copy),
                      command("text", "подпись", QStringLiteral("Врач"))});
    store(QStringLiteral("therapy"), {command("key", "терапевт", copy),
                                      command("text", "подпись", QStringLiteral("Терапевт"))});
    store(QStringLiteral("cardiology"), {command("key", "кардиолог", copy)});
    Stand stand;
    const QJsonObject second = stand.tell("open");
    const QString secondString =
        QStringLiteral("127.0.0.1;%1;%2").arg(second["port"].toInt()).arg(second["rest"].toInt());
    stand.tell({{"do", "servers"},
                {"mode", "normal"},
                {"list", QJsonArray{QJsonObject{{"ServerId", "first"},
                                                {"ConnectionString", stand.connectionString()}},
                                    QJsonObject{{"ServerId", "second"},
                                                {"ConnectionString", secondString}}}}});
    Editor editor(QStringLiteral("themes.txt"));
    const auto program = startProgram(&stand);
    QVERIFY(program);
    stand.rewind();
    QCOMPARE(patterns(stand.waitForMessage(MessageType::SetCommands)),
             QStringList({QStringLiteral("скопировать"), QStringLiteral("терапевт")}));
    XKeyboard().play(doubleCtrl);
    QVERIFY(!stand.waitForMessage(MessageType::StartMode).isEmpty());
    QVERIFY(dictates(&stand));
    stand.sayResult(QStringLiteral("подпись"));
    QTRY_COMPARE(editor.text(), QStringLiteral("Терапевт"));

    XKeyboard().play(doubleCtrl);
    QVERIFY(!stand.waitForMessage(MessageType::StartMode).isEmpty());
    ASRSettings().SelectedTheme = QStringLiteral("cardiology");
    Settings(QString()).sync();
    stand.forget();
    stand.tell("drop");
    QCOMPARE(
        stand.waitForMessage(MessageType::SelectTheme, 20000)["data"].toObject()["Id"].toString(),
        QStringLiteral("cardiology"));
    QCOMPARE(patterns(stand.waitForMessage(MessageType::SetCommands)),
             QStringList({QStringLiteral("скопировать"), QStringLiteral("кардиолог")}));
    QVERIFY(!stand.waitForMessage(MessageType::StartMode).isEmpty());
    XKeyboard().play(doubleCtrl);
    QVERIFY(dictates(&stand));
    stand.sayResult(QStringLiteral("подпись"));
    QTRY_COMPARE(editor.text(), QStringLiteral("ТерапевтВрач"));
    QCOMPARE(program->terminate(), 0);
}

void TestCommands::leavesPunctuationToTheServer_data() {
    QTest::addColumn<bool>("usePunctuation");
    QTest::addColumn<QString>("typed");
    QTest::newRow("the server sets marks") << true << "Звёздочка и слово";
    QTest::newRow("the client sets marks") << false << "Знак и слово";
}

void TestCommands::leavesPunctuationToTheServer() {
    QFETCH(bool, usePunctuation);
    ASRSettings().PunctuationEnabled = true;
    ASRSettings().UsePunctuation = usePunctuation;
    store(QString(), {command("text", "звёздочка", QStringLiteral("знак"), true),
                      command("text", "термин", QStringLiteral("слово"))});
    Stand stand;
    Editor editor(QStringLiteral("marks%1.txt").arg(usePunctuation));
    const auto program = startProgram(&stand);
    QVERIFY(program);
    XKeyboard().play(doubleCtrl);
    QVERIFY(dictates(&stand));
    stand.sayResult(QStringLiteral("звёздочка и термин"));
    QTRY_VERIFY(!editor.text().isEmpty());
    QTEST(editor.text(), "typed");
    QCOMPARE(program->terminate(), 0);
}

DESK_TEST_MAIN(TestCommands, VirtualDesk::Screen | VirtualDesk::Sound)
#include "TestCommands.moc"
