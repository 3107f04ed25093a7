#include "DeskTest.h"
#include "commands/AutoReplaceManager.h"
#include "commands/ExecutableCommandsManager.h"
#include "connection/WebSocketClient.h"
#include "recognition/AsrManager.h"
#include "recognition/ResultManager.h"

namespace {

/// The way of a result to its text, with nothing said so far.
class Formatter {
public:
    QString format(const QString &text, bool isFinal = true) {
        return m_results.formatText(text, isFinal);
    }

private:
    WebSocketClient m_client{nullptr};
    AsrManager m_asrManager{&m_client};
    AutoReplaceManager m_autoReplace;
    ExecutableCommandsManager m_commands{{}, &m_client};
    ResultManager m_results{&m_client, &m_asrManager, &m_autoReplace, &m_commands};
};

} // namespace

/// How results become prose, one result after another.
class TestTextFormat : public QObject {
    Q_OBJECT

private slots:
    void continuesAcrossResults();
    void formats_data();
    void formats();
    void partialTextLeavesTheStateAlone();
};

void TestTextFormat::continuesAcrossResults() {
    const QList<QPair<QString, QString>> rows{
        {"привет как дела", "Привет как дела"},
        {"вот так . дальше идёт", " вот так. Дальше идёт"},
        {"нет , да ! точно ? да", " нет, да! Точно? Да"},
        {"слово. следующее", " слово. следующее"},
        {"( в скобках ) конец", " (в скобках) конец"},
        {"a - b / c", " a-b/c"},
        {"абзац ¶ новый", " абзац¶Новый"},
        {QString(), " "},
        {QString(), QString()},
        {". вот", ". Вот"},
    };
    Formatter formatter;
    for (const auto &[result, typed] : rows)
        QCOMPARE(formatter.format(result), typed);
}

void TestTextFormat::formats_data() {
    columns<QString, QString>("input", "typed");
    row("quote glued to a word gets a space", "а\002цитата\003 б", " а \"цитата\" б");
    row("quote behind a blank gets none", "а \002цитата\003 б", " а\"цитата\" б");
    row("dash glued to a word gets a space", "один\001два", " один -два");
    row("dash behind a blank gets none", "один \001 два", " один- два");
    row("line feed is a blank like others", "один \n два", " один \n два");
    row("two blanks stay two", "один  два", " один  два");
    row("no-break space and tab", "один\u00A0два\tтри", " один\u00A0два\tтри");
    row("sentence ends only with a lone mark", "т.е . вот", " т.е. Вот");
    row("closing bracket and comma", "да ) , нет", " да), нет");
    row("opening guillemet", "« цитата » вот", " «цитата» вот");
    row("emoji is a word", "ок 😀 . да", " ок 😀. Да");
    row("slashes take no space", "a \\ b / c", " a\\b/c");
    row("underscore is glued", "a _ b", " a_ b");
    row("number sign", "№ 5", " № 5");
    row("nothing but blanks", "   ", "   ");
}

void TestTextFormat::formats() {
    QFETCH(QString, input);
    Formatter formatter;
    formatter.format("слово"); // a sentence is under way
    QTEST(formatter.format(input), "typed");
}

void TestTextFormat::partialTextLeavesTheStateAlone() {
    Formatter formatter;
    QCOMPARE(formatter.format("первая фраза"), "Первая фраза");
    QCOMPARE(formatter.format("третья .", false), "третья.");
    QCOMPARE(formatter.format("и ещё"), " и ещё");
    QCOMPARE(formatter.format(" !"), "!");
    QCOMPARE(formatter.format("\002вот\003"), " \"вот\"");
}

DESK_CORE_TEST_MAIN(TestTextFormat)
#include "TestTextFormat.moc"
