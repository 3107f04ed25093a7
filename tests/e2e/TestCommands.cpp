#include "Editor.h"
#include "ProgramTest.h"
#include "connection/messages/MessageType.h"
#include "core/settings/ASRSettings.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QScopeGuard>
#include <QStandardPaths>

#include <csignal>
#include <sys/types.h>

namespace {

QJsonObject command(const char *type, const char *pattern, const QString &text,
                    bool isPunctuation = false) {
    return {{"Type", type},
            {"Id", qstrcmp(type, "text") == 0 ? QString() : QString::fromUtf8(pattern)},
            {"Pattern", QString::fromUtf8(pattern)},
            {"Text", text},
            {"IsPunctuation", isPunctuation}};
}

QString commandsFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + "/commands";
}

/// Writes the user's commands of a theme, or with an empty id those of all themes.
void store(const QString &themeId, const QJsonArray &commands) {
    const QJsonObject content{{"ThemeId", themeId}, {"ThemeName", themeId}, {"Commands", commands}};
    const QString name = themeId.isEmpty() ? "default.json" : QString("theme_%1.json").arg(themeId);
    QDir().mkpath(commandsFolder());
    desk().write(commandsFolder() + '/' + name, QJsonDocument(content).toJson());
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
class TestCommands : public ProgramTest {
    Q_OBJECT

private slots:
    void init() {
        ProgramTest::init();
        QDir(commandsFolder()).removeRecursively();
    }

    void pressesKeysInAnEditor() {
        store(QString(),
              {command("key", "скопировать", "Ctrl+C"), command("key", "вставить", "Ctrl+V"),
               command("key", "плюс", "KP_Add"), command("key", "в конец", "KP_1")});
        Editor editor("keys.txt");
        QVERIFY(start() && startDictation());
        XKeyboard keyboard;
        m_stand->sayResult("раз");
        QTRY_COMPARE(editor.text(), "Раз");
        const int before = startModes();

        keyboard.play("+Control_L +a -a -Control_L");
        speak("скопировать");
        speak("в конец"); // the keypad's 1 is End without NumLock
        speak("вставить");
        QTRY_COMPARE(editor.text(), "РазРаз");
        keyboard.press("Control_L");
        speak("вставить");
        QTRY_COMPARE(editor.text(), "РазРазРаз");
        keyboard.release("Control_L");
        keyboard.play("+Home -Home");
        speak("плюс");
        QTRY_COMPARE(editor.text(), "+РазРазРаз");
        QCOMPARE(startModes(), before);
    }

    void startsAProgramThatOutlivesIt() {
        const QString script = desk().folder() + "/a program.sh";
        const QString idFile = desk().folder() + "/program.id";
        desk().write(script,
                     "#!/bin/sh\necho $$ > \"" + idFile.toUtf8() + "\"\nexec tail -f /dev/null\n");
        QVERIFY(
            QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        store(QString(), {command("exe", "открыть программу", script)});
        QVERIFY(start() && startDictation());
        speak("открыть программу");
        pid_t id = 0;
        const auto readId = [&] {
            id = desk().read(idFile).toInt();
            return id > 0;
        };
        QTRY_VERIFY(readId());
        const auto end = qScopeGuard([&id] { ::kill(id, SIGTERM); });
        QCOMPARE(m_program->terminate(), 0);
        QCOMPARE(::kill(id, 0), 0);
    }

    void typesADocumentAsItIs() {
        const QString document = desk().folder() + "/document.txt";
        desk().write(document, "запятая ,\r\nдва\nтри\rчетыре");
        store(QString(), {command("file", "вставить шаблон", document),
                          command("file", "вставить выписку", DOCUMENTS "/discharge.odt"),
                          command("text", "запятая", "заменено")});
        Editor editor("document-typed.txt");
        QVERIFY(start() && startDictation());
        speak("вставить шаблон");
        const QString typed = " запятая ,\nдва\nтри\nчетыре";
        QTRY_COMPARE(editor.text(), typed);
        m_stand->sayResult("запятая");
        QTRY_COMPARE(editor.text(), typed + "Заменено");
        speak("вставить выписку");
        QTRY_VERIFY(editor.text().endsWith(
            "Заменено Выписной эпикриз\nПациент Ёлкин Пётр, 54 года.\nДиагноз\n"
            "Гипертоническая болезнь II  стадии\nриск 3\n\nСтол № 10\nЭналаприл 5 мг\nутром\n"
            "Гемоглобин\n140 г/л\nСОЭ\n8 мм/ч\nПодпись:\t_____\t<врач> & зав. отделением\n"));
    }

    void swapsCommandsWithTheTheme() {
        const QString copy = "Ctrl+C";
        store(QString(), {command("key", "скопировать", copy), command("text", "подпись", "Врач")});
        store("therapy",
              {command("key", "терапевт", copy), command("text", "подпись", "Терапевт")});
        store("cardiology", {command("key", "кардиолог", copy)});
        m_stand->offerServers(2);
        Editor editor("themes.txt");
        QVERIFY(start());
        m_stand->rewind();
        QCOMPARE(patterns(m_stand->waitForMessage(MessageType::SetCommands)),
                 QStringList({"скопировать", "терапевт"}));
        QVERIFY(startDictation());
        m_stand->sayResult("подпись");
        QTRY_COMPARE(editor.text(), "Терапевт");

        XKeyboard().play(doubleCtrl);
        QVERIFY(!nextMode(m_stand.get()).isUndefined());
        ASRSettings().SelectedTheme = "cardiology";
        Settings(QString()).sync();
        m_stand->forget();
        m_stand->tell("drop");
        QCOMPARE(m_stand->waitForMessage(MessageType::SelectTheme, patienceMs)["data"]
                     .toObject()["Id"]
                     .toString(),
                 "cardiology");
        QCOMPARE(patterns(m_stand->waitForMessage(MessageType::SetCommands)),
                 QStringList({"скопировать", "кардиолог"}));
        QVERIFY(!nextMode(m_stand.get()).isUndefined());
        QVERIFY(startDictation());
        m_stand->sayResult("подпись");
        QTRY_COMPARE(editor.text(), "ТерапевтВрач");
    }

    void keepsWordsOutOfAnInstalledLog_data() {
        columns<bool>("isInstalled");
        row("installed", true);
        row("in the build tree, where debug lines tell", false);
    }

    void keepsWordsOutOfAnInstalledLog() {
        QFETCH(bool, isInstalled);
        const QString document = desk().folder() + "/secret.txt";
        desk().write(document, "документ");
        const QString script = desk().folder() + "/talkative.sh";
        const QString output = desk().folder() + "/printed";
        desk().write(script, "#!/bin/sh\necho вывод | tee " + output.toUtf8() + "\n");
        QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        store(QString(),
              {command("exe", "запустить", script), command("file", "вставить", document),
               command("key", "нажать", "Ctrl+C"), command("text", "сокращение", "развёрнутое")});
        QDir(commandsFolder()).mkpath("../Avocado");
        desk().write(commandsFolder() + "/../Avocado/AvocadoWords.txt", "личное");
        Editor editor(QString("log%1.txt").arg(isInstalled));
        const QString file = desk().folder() + "/installed.log";
        m_program = startProgram(m_stand.get(), isInstalled ? Program::install(file) : QString());
        QVERIFY(m_program && startDictation());
        m_stand->sayResult("сказанное", false);
        m_stand->sayResult("сказанное сокращение");
        for (const char *phrase : {"запустить", "нажать", "вставить"})
            speak(phrase);
        QTRY_VERIFY(editor.text().endsWith("Сказанное развёрнутое документ"));
        QTRY_VERIFY(QFile::exists(output));
        QCOMPARE(m_program->terminate(), 0);
        const QString log = isInstalled ? desk().read(file) : m_program->log();
        QVERIFY(log.contains("Quit app"));
        QCOMPARE(log.contains("сказанное"), !isInstalled);
        for (const char *word : {"сокращение", "развёрнутое", "документ", "запустить", "нажать",
                                 "вставить", "вывод", "личное"})
            QVERIFY2(!isInstalled || !log.contains(QString::fromUtf8(word)), word);
        QFile::remove(output);
    }

private:
    /// Has the server hear the command of this phrase.
    void speak(const char *phrase) {
        m_stand->sayResult(QString::fromUtf8(phrase), true, QString::fromUtf8(phrase));
    }

    int startModes() {
        m_stand->tell("state");
        int count = 0;
        for (const QJsonObject &event : m_stand->events())
            count += event["event"] == "message" && event["type"] == int(MessageType::StartMode);
        return count;
    }
};

DESK_TEST_MAIN(TestCommands, VirtualDesk::Screen | VirtualDesk::Sound)
#include "TestCommands.moc"
