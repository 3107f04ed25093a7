#include "DeskTest.h"
#include "Files.h"
#include "commands/AutoReplaceManager.h"
#include "commands/ExecutableCommandsManager.h"
#include "commands/UserCommandsManager.h"
#include "connection/WebSocketClient.h"
#include "core/settings/ASRSettings.h"
#include "recognition/AsrManager.h"
#include "recognition/ResultManager.h"

/// What a doctor says and what is typed of it, with the replacements that come with the program.
class TestSpokenMarks : public QObject {
    Q_OBJECT

private slots:
    void typesWhatWasSaid_data();
    void typesWhatWasSaid();
    void leavesMarksToTheServer();
    void standsInItsFormAndInTheManual();

private:
    /// The typed text of final results in a row.
    static QString typed(const QStringList &results);
};

QString TestSpokenMarks::typed(const QStringList &results) {
    WebSocketClient client(nullptr);
    AsrManager asrManager(&client);
    UserCommandsManager commands;
    commands.set_AsrManager(&asrManager);
    commands.LoadAll();
    AutoReplaceManager replacements;
    replacements.set_Managers(&asrManager, &commands);
    ExecutableCommandsManager executable({}, &client);
    ResultManager manager(&client, &asrManager, &replacements, &executable);
    QString text;
    for (const QString &result : results)
        text += manager.formatTextResult(result, true);
    return text;
}

void TestSpokenMarks::typesWhatWasSaid_data() {
    columns<QStringList, QString>("said", "typed");
    row("comma and full stop", QStringList{"жалобы на кашель запятая одышку точка общее состояние"},
        "Жалобы на кашель, одышку. Общее состояние");
    row("a mark at the start of a result", QStringList{"одышка", "точка кашель"}, "Одышка. Кашель");
    row("colon, semicolon, dash",
        QStringList{"диагноз двоеточие грипп точка с запятой тире без осложнений"},
        "Диагноз: грипп; – без осложнений");
    row("question and exclamation",
        QStringList{"пневмония вопросительный знак срочно восклицательный знак да многоточие"},
        "Пневмония? Срочно! Да...");
    row("lines and paragraphs", QStringList{"первое новая строка второе точка новый абзац третье"},
        "Первое¶Второе.¶Третье");
    row("quotes and brackets",
        QStringList{"препарат открыть кавычки но шпа закрыть "
                    "кавычки открыть скобку две таблетки "
                    "закрыть скобку запятая на ночь"},
        "Препарат «но шпа» (две таблетки), на ночь");
    row("a quote at the start of a result",
        QStringList{"препарат", "открыть кавычки анальгин закрыть кавычки"}, "Препарат «анальгин»");
    row("numbers",
        QStringList{"давление 120 дробь 80 температура 38,5 градусов цельсия сатурация 97 "
                    "процентов погрешность плюс минус 2 процента"},
        "Давление 120/80 температура 38,5 °C сатурация 97% погрешность ± 2%");
    row("number sign and hyphen", QStringList{"палата знак номера 5 на левой рентген дефис снимок"},
        "Палата № 5 на левой рентген-снимок");
    row("words that only begin like a mark", QStringList{"точками минусовать всё равно процентный"},
        "Точками минусовать всё равно процентный");
}

void TestSpokenMarks::typesWhatWasSaid() {
    QFETCH(QStringList, said);
    ASRSettings().UsePunctuation = false;
    QTEST(typed(said), "typed");
}

void TestSpokenMarks::leavesMarksToTheServer() {
    ASRSettings().UsePunctuation = true;
    QCOMPARE(typed({"болевая точка запятая 5 процентов новая строка открыть скобку"}),
             QString("Болевая точка запятая 5%¶("));
}

void TestSpokenMarks::standsInItsFormAndInTheManual() {
    const QString path = QCoreApplication::applicationDirPath() + "/autoreplaces.json";
    const QList<UserCommand> commands = UserCommandsManager::LoadFrom(path, nullptr, true);
    const QByteArray manual =
        bytesOf(QCoreApplication::applicationDirPath() + "/help/punctuation.html");
    QStringList patterns;
    for (const UserCommand &command : commands) {
        QVERIFY2(manual.contains(("<td>" + command.Pattern + "</td>").toUtf8()),
                 qPrintable("the manual does not tell of it: " + command.Pattern));
        QVERIFY2(UserCommand::ValidatePatternSymbols(command.Pattern), qPrintable(command.Pattern));
        patterns << command.get_NormalizedPattern();
    }
    QCOMPARE(patterns.removeDuplicates(), 0);
    const QString copy = desk().folder() + "/copy.json";
    UserCommandsManager::SaveTo(copy, ClientThemeInfo(), commands);
    QCOMPARE(bytesOf(copy), bytesOf(path));
}

DESK_CORE_TEST_MAIN(TestSpokenMarks)
#include "TestSpokenMarks.moc"
