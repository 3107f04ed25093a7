#include "ClientHarness.h"
#include "DeskTest.h"
#include "Stand.h"
#include "commands/AutoReplaceManager.h"
#include "commands/ExecutableCommandsManager.h"
#include "connection/WebSocketClient.h"
#include "recognition/AsrManager.h"
#include "recognition/ResultManager.h"

#include <QSignalSpy>

/// How results become prose, one result after another.
class TestTextFormat : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void continuesAcrossResults();
    void formats_data();
    void formats();
    void partialTextLeavesTheStateAlone();

private:
    /// A final result in a sentence that is under way.
    QString afterAWord(const QString &text);

    std::unique_ptr<WebSocketClient> m_client;
    std::unique_ptr<AsrManager> m_asrManager;
    AutoReplaceManager m_autoReplace;
    std::unique_ptr<ExecutableCommandsManager> m_commands;
    std::unique_ptr<ResultManager> m_results;
};

void TestTextFormat::init() {
    m_client = std::make_unique<WebSocketClient>(nullptr);
    m_asrManager = std::make_unique<AsrManager>(m_client.get());
    m_commands = std::make_unique<ExecutableCommandsManager>(QList<ExecutableCommandsSource *>(),
                                                             m_client.get());
    m_results = std::make_unique<ResultManager>(m_client.get(), m_asrManager.get(), &m_autoReplace,
                                                m_commands.get());
}

void TestTextFormat::cleanup() {
    m_results.reset();
    m_commands.reset();
    m_asrManager.reset();
    m_client.reset();
}

QString TestTextFormat::afterAWord(const QString &text) {
    m_results->formatText(QStringLiteral("слово"), true);
    return m_results->formatText(text, true);
}

void TestTextFormat::continuesAcrossResults() {
    const QList<QPair<QString, QString>> rows{
        {QStringLiteral("привет как дела"), QStringLiteral("Привет как дела")},
        {QStringLiteral("вот так . дальше идёт"), QStringLiteral(" вот так. Дальше идёт")},
        {QStringLiteral("нет , да ! точно ? да"), QStringLiteral(" нет, да! Точно? Да")},
        {QStringLiteral("слово. следующее"), QStringLiteral(" слово. следующее")},
        {QStringLiteral("( в скобках ) конец"), QStringLiteral(" (в скобках) конец")},
        {QStringLiteral("a - b / c"), QStringLiteral(" a-b/c")},
        {QStringLiteral("абзац ¶ новый"), QStringLiteral(" абзац¶Новый")},
        {QString(), QStringLiteral(" ")},
        {QString(), QString()},
        {QStringLiteral(". вот"), QStringLiteral(". Вот")},
    };
    Stand stand;
    ClientHarness client(stand);
    QSignalSpy ready(client.worker()->resultManager(), &ResultManager::resultReady);
    client.start();
    QVERIFY(client.waitFor(ConnectionState::Ready));
    client.asr()->startRecognition();
    QTRY_COMPARE(client.asr()->currentState(), AsrState::Started);
    for (const auto &row : rows)
        stand.sayResult(row.first);
    QTRY_COMPARE(ready.count(), rows.size());
    for (int i = 0; i < rows.size(); ++i)
        QCOMPARE(ready[i], QVariantList({rows[i].second, true}));
}

void TestTextFormat::formats_data() {
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("typed");
    const auto row = [](const char *name, const QString &input, const QString &typed) {
        QTest::newRow(name) << input << typed;
    };
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
    QTEST(afterAWord(input), "typed");
}

void TestTextFormat::partialTextLeavesTheStateAlone() {
    QCOMPARE(m_results->formatText(QStringLiteral("первая фраза"), true),
             QStringLiteral("Первая фраза"));
    QCOMPARE(m_results->formatText(QStringLiteral("третья ."), false), QStringLiteral("третья."));
    QCOMPARE(m_results->formatText(QStringLiteral("и ещё"), true), QStringLiteral(" и ещё"));
    QCOMPARE(m_results->formatText(QStringLiteral(" !"), true), QStringLiteral("!"));
    QCOMPARE(m_results->formatText(QStringLiteral("\002вот\003"), true),
             QStringLiteral(" \"вот\""));
}

DESK_CORE_TEST_MAIN(TestTextFormat)
#include "TestTextFormat.moc"
