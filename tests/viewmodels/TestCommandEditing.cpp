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

/// The window "Автозамена" without its views.
class TestCommandEditing : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    // Its listener would outlive the screen.
    void cleanupTestCase() { HotKeyManager::getHotkeyManager()->keyboardHookUnreg(); }
    void phrasesAreChecked_data();
    void phrasesAreChecked();
    void replacementsAreChecked_data();
    void replacementsAreChecked();
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

void TestCommandEditing::phrasesAreChecked_data() {
    columns<int, QString, QString>("type", "pattern", "error");
    row("nothing", 0, QString("  "), QString("Образец автозамены пуст"));
    row("marks in a replacement", 0, QString("т.д."), QString());
    row("the system's own", 0, QString("Запятая"), QString("Такой образец автозамены уже есть"));
    row("taken, in another tab", 0, QString(" ОТКРЫТЬ "),
        QString("Такой образец автозамены уже есть"));
    row("no command", 2, QString(), QString("Текст команды не должен быть пустым"));
    row("marks in a command", 2, QString("т.д."),
        QString("Команда должна содержать произносимый текст"));
    row("taken", 3, QString("открыть"), QString("Такая команда/автозамена уже существует"));
    row("taken, as it is stored", 3, QString("новая   строка"),
        QString("Такая команда/автозамена уже существует"));
    row("free", 3, QString("вставить осмотр 2"), QString());
}

void TestCommandEditing::phrasesAreChecked() {
    QFETCH(int, type);
    QFETCH(QString, pattern);
    QFETCH(QString, error);
    add(1, "открыть");
    const auto model = edit<PatternEditModel>(type);
    model->get_Pattern()->set_Text(pattern);
    QSignalSpy focused(model->get_Pattern(), &ValidatableText::validateFailed);
    model->validate();
    QCOMPARE(model->get_Pattern()->get_Error(), error);
    QCOMPARE(focused.size(), error.isEmpty() ? 0 : 1);
    // Its own phrase is not another command's.
    const std::unique_ptr<PatternEditModel> own(
        static_cast<PatternEditModel *>(tab(1)->editCommand(tab(1)->filteredCollection()->at(0))));
    own->validate();
    QCOMPARE(own->get_Pattern()->get_Error(), QString());
}

void TestCommandEditing::replacementsAreChecked_data() {
    columns<int, bool>("length", "isValid");
    row("nothing deletes the phrase", 0, true);
    row("the longest", 128, true);
    row("one more", 129, false);
}

void TestCommandEditing::replacementsAreChecked() {
    QFETCH(int, length);
    const auto model = edit<TextReplaceEditModel>(0);
    model->get_Pattern()->set_Text("а");
    model->get_Text()->set_Text(QString(length, 'x'));
    QTEST(model->validate(), "isValid");
    if (length > 128) {
        QCOMPARE(model->get_Text()->get_Error(),
                 QString("Размер текста в поле ввода не может превышать 128 символов"));
    }
}

void TestCommandEditing::programsBecomePaths_data() {
    columns<QString, QString>("text", "path");
    row("a dialog's URL", QString("file:///opt/%D0%B0%20%D0%B1"), QString("/opt/а б"));
    row("a path that would end in a URL", QString("/opt/a#1?"), QString("/opt/a#1?"));
    row("a name", QString("featherpad"), QString("featherpad"));
    row("nothing", QString("  "), QString());
}

void TestCommandEditing::programsBecomePaths() {
    QFETCH(QString, path);
    QFETCH(QString, text);
    const auto model = edit<ProcessExecuteEditModel>(2);
    model->get_Pattern()->set_Text("открыть карту");
    model->get_Text()->set_Text(text);
    QCOMPARE(model->validate(), !path.isEmpty());
    if (path.isEmpty())
        return;
    model->apply();
    QCOMPARE(tab(2)->filteredCollection()->at(0)->get_Text(), path);
}

void TestCommandEditing::keysAreCaptured() {
    const auto model = edit<HotKeyEditModel>(1);
    model->get_Pattern()->set_Text("скопировать");
    QVERIFY(!model->validate());
    QCOMPARE(model->get_Text()->get_Error(), QString("Не задана горячая клавиша"));
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
    QVERIFY(!model->validate());
    QCOMPARE(model->get_FilePath()->get_Error(), QString("Путь к файлу не может быть пустым"));
}

void TestCommandEditing::searches_data() {
    columns<QString, QString>("filter", "found");
    row("everything", QString(), QString("А  Б|вг|т.д."));
    row("any case, any blanks", QString("а б"), QString("А  Б"));
    row("marks are only marks", QString("."), QString("т.д."));
    row("nothing", QString("["), QString());
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
