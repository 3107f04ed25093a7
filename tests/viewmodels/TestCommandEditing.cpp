#include "ClientHarness.h"
#include "DeskTest.h"
#include "Files.h"
#include "Stand.h"
#include "desktop/HotKeyManager.h"
#include "viewmodels/commands/CommandsViewModel.h"
#include "viewmodels/commands/FileCopyEditModel.h"
#include "viewmodels/commands/HotKeyEditModel.h"
#include "viewmodels/commands/ProcessExecuteEditModel.h"
#include "viewmodels/commands/TextReplaceEditModel.h"

#include <QDir>
#include <QKeyEvent>
#include <QSignalSpy>
#include <QStandardPaths>

using UserCommandNamespace::UserCommandType;

/// The tabs, in their order.
enum { Replacement, Key, Program, Document };

/// The window "Автозамена" without its views.
class TestCommandEditing : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    // Its listener would outlive the screen.
    void cleanupTestCase() { HotKeyManager::getHotkeyManager()->keyboardHookUnreg(); }
    void fieldsAreChecked_data();
    void fieldsAreChecked();
    void programsBecomePaths_data();
    void programsBecomePaths();
    void keysAreCaptured();
    void documentsAreShown();
    void searches_data();
    void searches();
    void editsAddsAndDeletes();
    void tellsWhatCannotBeSaved();
    void keepsWhatAnotherProgramWrote();

private:
    static QString file() {
        return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) +
               "/commands/default.json";
    }
    CommandsCollectionViewModel *tab(int index) const {
        return qobject_cast<CommandsCollectionViewModel *>(
            m_window->get_CommandSetList().value<QList<QObject *>>().value(index));
    }
    /// A new command of the type, from its dialog.
    template <typename Model>
    std::unique_ptr<Model> edit(int index) const {
        return std::unique_ptr<Model>(static_cast<Model *>(tab(index)->newCommand()));
    }
    void add(int index, const QString &pattern) const {
        const auto model = edit<PatternEditModel>(index);
        model->get_Pattern()->set_Text(pattern);
        model->apply();
    }
    QStringList shown(int index) const {
        QStringList patterns;
        for (int i = 0; i < tab(index)->filteredCollection()->count(); ++i) {
            const UserCommandViewModel *row = tab(index)->filteredCollection()->at(i);
            if (!row->get_IsSystem())
                patterns << row->get_Pattern();
        }
        return patterns;
    }

    std::unique_ptr<Stand> m_stand;
    std::unique_ptr<ClientHarness> m_client;
    std::unique_ptr<CommandsViewModel> m_window;
};

void TestCommandEditing::init() {
    QFile::remove(file());
    m_stand = std::make_unique<Stand>();
    m_client = std::make_unique<ClientHarness>(*m_stand);
    QVERIFY(m_client->open());
    m_client->userCommands().LoadAll();
    m_window = std::make_unique<CommandsViewModel>();
    m_window->set_UserCommandsManager(&m_client->userCommands());
    m_window->set_CommandTypes(m_client->userCommands().get_CommandTypes());
    m_window->onLoad();
}

void TestCommandEditing::cleanup() {
    m_window.reset();
    m_client.reset();
    m_stand.reset();
}

void TestCommandEditing::fieldsAreChecked_data() {
    columns<int, QString, QString, QString>("type", "pattern", "text", "error");
    const QString takenReplacement = "Такой образец автозамены уже есть";
    const QString takenCommand = "Такая команда/автозамена уже существует";
    row("nothing", +Replacement, "  ", "", "Образец автозамены пуст");
    row("marks in a replacement", +Replacement, "т.д.", "", "");
    row("the system's own", +Replacement, "Запятая", "", takenReplacement);
    row("taken, in another tab", +Replacement, " ОТКРЫТЬ ", "", takenReplacement);
    row("the longest text", +Replacement, "а", QString(128, 'x'), "");
    row("a longer text", +Replacement, "а", QString(129, 'x'),
        "Размер текста в поле ввода не может превышать 128 символов");
    row("no command", +Program, "", "x", "Текст команды не должен быть пустым");
    row("marks in a command", +Program, "т.д.", "x", "Команда должна содержать произносимый текст");
    row("no program", +Program, "а", "  ", "Адрес программы не должен быть пустым");
    row("no key", +Key, "а", "", "Не задана горячая клавиша");
    row("taken", +Document, "открыть", "x", takenCommand);
    row("taken, as it is stored", +Document, "новая   строка", "x", takenCommand);
    row("no document", +Document, "а", "", "Путь к файлу не может быть пустым");
    row("free", +Document, "вставить осмотр 2", "осмотр.txt", "");
}

void TestCommandEditing::fieldsAreChecked() {
    QFETCH(int, type);
    QFETCH(QString, pattern);
    QFETCH(QString, text);
    QFETCH(QString, error);
    add(1, "открыть");
    const auto model = edit<PatternEditModel>(type);
    auto *field =
        model->property(type == Document ? "FilePath" : "Text").value<ValidatableText *>();
    const QSignalSpy patternRefused(model->get_Pattern(), &ValidatableText::validateFailed);
    const QSignalSpy textRefused(field, &ValidatableText::validateFailed);
    model->get_Pattern()->set_Text(pattern);
    field->set_Text(text);
    QCOMPARE(model->validate(), error.isEmpty());
    QCOMPARE(model->get_Pattern()->get_Error() + field->get_Error(), error);
    QCOMPARE(patternRefused.size() + textRefused.size(), error.isEmpty() ? 0 : 1);
    // Its own phrase is not another command's.
    const std::unique_ptr<PatternEditModel> own(
        static_cast<PatternEditModel *>(tab(1)->editCommand(tab(1)->filteredCollection()->at(0))));
    own->validate();
    QCOMPARE(own->get_Pattern()->get_Error(), QString());
}

void TestCommandEditing::programsBecomePaths_data() {
    columns<QString, QString>("text", "path");
    row("a dialog's URL", "file:///opt/%D0%B0%20%D0%B1", "/opt/а б");
    row("a path that would end in a URL", "/opt/a#1?", "/opt/a#1?");
    row("a name", "featherpad", "featherpad");
}

void TestCommandEditing::programsBecomePaths() {
    QFETCH(QString, text);
    const auto model = edit<ProcessExecuteEditModel>(2);
    model->get_Pattern()->set_Text("открыть карту");
    model->get_Text()->set_Text(text);
    model->apply();
    QTEST(tab(2)->filteredCollection()->at(0)->get_Text(), "path");
}

void TestCommandEditing::keysAreCaptured() {
    const auto model = edit<HotKeyEditModel>(1);
    model->get_Pattern()->set_Text("скопировать");
    QObject field;
    model->attachWindow(&field);
    // As X tells them: the keycode, and the state of which 4 is Control.
    const auto press = [&field](int key, quint32 code, quint32 state) {
        QKeyEvent event(QEvent::KeyPress, key, {}, code, 0, state);
        QCoreApplication::sendEvent(&field, &event);
    };
    press(Qt::Key_Control, 37, 0);
    QCOMPARE(model->get_Text()->get_Text(), QString());
    press(Qt::Key_Tab, 23, 0);
    QCOMPARE(model->get_Text()->get_Text(), QString("Tab"));
    press(Qt::Key_C, 54, 4);
    QCOMPARE(model->get_Text()->get_Text(), QString("Ctrl+c"));
    model->set_ModShift(true);
    QCOMPARE(model->get_Text()->get_Text(), QString("Ctrl+Shift+c"));
    press(Qt::Key_V, 55, 0);
    QCOMPARE(model->get_Text()->get_Text(), QString("Shift+v"));
    for (const int key : {Qt::Key_Tab, Qt::Key_Down})
        press(key, 23, 0);
    QCOMPARE(model->get_Text()->get_Text(), QString("Shift+v"));
    model->set_ModShift(false);
    model->detachWindow(&field);
    press(Qt::Key_C, 54, 4);
    QCOMPARE(model->get_Text()->get_Text(), QString("v"));
    QVERIFY(model->validate());
}

void TestCommandEditing::documentsAreShown() {
    const auto model = edit<FileCopyEditModel>(3);
    model->get_Pattern()->set_Text("вставить осмотр");
    const QString path = desk().folder() + "/осмотр.txt";
    save(path, "Кожные покровы чистые.");
    model->get_FilePath()->set_Text(path);
    QCOMPARE(model->get_PreviewText(), QString("Кожные покровы чистые."));
    QVERIFY(!model->get_IsError());
    model->get_FilePath()->set_Text(path + "x");
    QVERIFY(model->get_IsError());
    QVERIFY(!model->get_PreviewText().isEmpty());
    model->get_FilePath()->set_Text(QString());
    QVERIFY(!model->get_IsError());
    QCOMPARE(model->get_PreviewText(), QString());
}

void TestCommandEditing::searches_data() {
    columns<QString, QString>("filter", "found");
    row("everything", "", "А  Б|вг|т.д.");
    row("any case, any blanks", "а б", "А  Б");
    row("marks are only marks", ".", "т.д.");
    row("nothing", "[", "");
}

void TestCommandEditing::searches() {
    QFETCH(QString, filter);
    add(0, "А");
    tab(0)->filteredCollection()->current()->set_Pattern("А  Б");
    add(0, "вг");
    add(0, "т.д.");
    tab(0)->set_Filter(filter);
    QTEST(shown(0).join('|'), "found");
    tab(0)->set_Filter(QString());
    m_window->set_ThemeIndex(1);
    QCOMPARE(shown(0), QStringList());
}

void TestCommandEditing::editsAddsAndDeletes() {
    QCOMPARE(m_window->get_Themes(),
             (QStringList{"Для всех словарей", "Кардиология", "Терапия", "Хирургия"}));
    QVERIFY(tab(0)->isSystem(0));
    QCOMPARE(tab(1)->get_TypeName(), QString("Key"));
    add(0, "  общий   анализ ");
    const UserCommandViewModel *row = tab(0)->filteredCollection()->current();
    QVERIFY(row);
    QCOMPARE(row->get_Pattern(), QString("общий анализ"));
    QSignalSpy changed(m_window.get(), &CommandsViewModel::commandsChanged);
    QVERIFY(m_window->applyCommand());
    QCOMPARE(changed.size(), 1);
    QVERIFY(bytesOf(file()).contains("общий анализ"));

    m_window->onClose();
    m_window->onLoad();
    QCOMPARE(shown(0), QStringList{"общий анализ"});
    auto *own = tab(0)->filteredCollection()->at(tab(0)->filteredCollection()->count() - 1);
    const QString id = own->get_Id();
    {
        const std::unique_ptr<UserCommandEditModel> model(tab(0)->editCommand(own));
        static_cast<TextReplaceEditModel *>(model.get())->get_Text()->set_Text("\n");
        QVERIFY(model->validate());
        model->apply();
    }
    QCOMPARE(own->get_Text(), QString("\n"));
    QCOMPARE(own->get_Id(), id);
    tab(0)->deleteCommand(own);
    QVERIFY(m_window->applyCommand());
    QVERIFY2(!QFile::exists(file()), "without commands there is no file");
    QVERIFY(tab(0)->isSystem(0));
    const QList<UserCommand> system = m_client->userCommands().get_ThemeCommands(QString());
    QVERIFY2(std::any_of(system.begin(), system.end(),
                         [](const UserCommand &command) { return command.IsPunctuation; }),
             "the server's own punctuation has to know which marks are ours");
}

void TestCommandEditing::tellsWhatCannotBeSaved() {
    add(0, "фраза");
    QVERIFY(QDir().mkpath(file()));
    QVERIFY(!m_window->applyCommand());
    QVERIFY(m_window->get_ErrorText().contains("default.json"));
    QCOMPARE(shown(0), QStringList{"фраза"});
    QVERIFY(QDir().rmdir(file()));
    QVERIFY(m_window->applyCommand());
}

void TestCommandEditing::keepsWhatAnotherProgramWrote() {
    add(0, "своя");
    QVERIFY(m_window->applyCommand());
    const QByteArray foreign = R"({"ThemeId":"","ThemeName":"","Commands":[]})";
    save(file(), foreign);
    QSignalSpy told(&m_client->userCommands(), &UserCommandsManager::CommandFileKept);
    QVERIFY(m_window->applyCommand());
    QCOMPARE(told.size(), 1);
    QVERIFY(bytesOf(file()).contains("своя"));
    const QFileInfo info(file());
    const QStringList kept = info.dir().entryList({"default.json.*.bak"});
    QCOMPARE(kept.size(), 1);
    QCOMPARE(bytesOf(info.dir().filePath(kept.first())), foreign);
    QVERIFY(m_window->applyCommand());
    QCOMPARE(told.size(), 1);
}

DESK_TEST_MAIN(TestCommandEditing, VirtualDesk::Screen)
#include "TestCommandEditing.moc"
