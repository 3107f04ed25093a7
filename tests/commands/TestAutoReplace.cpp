#include "DeskTest.h"
#include "Stand.h"
#include "commands/AutoReplaceManager.h"
#include "commands/PhraseTokens.h"
#include "commands/UserCommandsManager.h"
#include "connection/WebSocketClient.h"
#include "core/settings/ASRSettings.h"
#include "recognition/AsrManager.h"

#include <QRandomGenerator>

#include <map>

using Replacements = QList<QPair<QString, QString>>;
Q_DECLARE_METATYPE(Replacements)

namespace {

using Expressions = QMap<AutoReplaceManager::Info, QRegularExpression>;

QList<UserCommand> commands(const Replacements &replacements) {
    QList<UserCommand> list;
    for (const auto &replacement : replacements) {
        list << UserCommand(UserCommandNamespace::UserCommandType::Text);
        list.last().Pattern = replacement.first;
        list.last().Text = replacement.second;
    }
    return list;
}

/// All matches of an expression, as code points.
QVector<uint> found(const QString &pattern, const QString &text) {
    QVector<uint> characters;
    const QRegularExpression expression(pattern,
                                        AutoReplaceManager::CreateRegexp("").patternOptions());
    expression.optimize();
    for (auto matches = expression.globalMatch(text); matches.hasNext();)
        characters += matches.next().captured().toUcs4();
    return characters;
}

QString textOf(const QVector<uint> &characters) {
    return QString::fromUcs4(characters.constData(), characters.size());
}

/// An expression for any of these characters.
QString anyOf(const QVector<uint> &characters) {
    QString pattern;
    for (const uint c : characters)
        pattern += QStringLiteral("\\x{%1}").arg(c, 0, 16);
    return '[' + pattern + ']';
}

Expressions expressionsOf(const Replacements &replacements) {
    Expressions expressions;
    for (const auto &each : replacements) {
        const AutoReplaceManager::Info info{each.first, each.second};
        expressions.remove(info);
        const QString pattern = UserCommand::NormalizePattern(each.first);
        if (pattern.isValidUtf16())
            expressions.insert(info, AutoReplaceManager::CreateRegexp(pattern));
    }
    return expressions;
}

/// Every replacement's expression over the whole text, without an index.
QString plainWalk(const Expressions &expressions, const QString &text) {
    // By start; of those that begin alike the one found first stays ahead.
    std::multimap<int, QPair<int, QString>> found;
    for (auto each = expressions.cbegin(); each != expressions.cend(); ++each) {
        for (auto matches = each->globalMatch(text); matches.hasNext();) {
            const QRegularExpressionMatch match = matches.next();
            found.insert({match.capturedStart("Z"), {match.capturedLength("Z"), each.key().text}});
        }
    }
    QString result;
    int end = 0;
    for (const auto &[start, match] : found) {
        if (start >= end) {
            result += text.mid(end, start - end) + match.second;
            end = start + match.first;
        }
    }
    return result + text.mid(end);
}

} // namespace

/// What becomes of recognised text by the user's replacements.
class TestAutoReplace : public QObject {
    Q_OBJECT

private slots:
    void init();
    void replaces_data();
    void replaces();
    void prefersTheSelectedTheme();
    void followsThePunctuationSetting();
    void skipsWhatIsNoPhrase();
    void foldsAsTheExpressionsDo();
    void agreesWithAPlainWalk();

private:
    void use(const Replacements &all, const Replacements &therapy = {});
    void select(const char *theme);

    Stand m_stand;
    WebSocketClient m_client{nullptr};
    std::unique_ptr<AsrManager> m_asr;
    std::unique_ptr<UserCommandsManager> m_commands;
    std::unique_ptr<AutoReplaceManager> m_replace;
};

void TestAutoReplace::init() {
    QFile::remove(Settings(QString()).fileName());
    Settings(QString()).sync();
    m_stand.writeSettings();
    m_asr = std::make_unique<AsrManager>(&m_client);
    m_asr->get_Themes(true);
    m_commands = std::make_unique<UserCommandsManager>();
    m_commands->set_AsrManager(m_asr.get());
    m_commands->LoadAll();
    m_commands->UpdateThemesFromAsr();
    m_replace = std::make_unique<AutoReplaceManager>();
    m_replace->set_Managers(m_asr.get(), m_commands.get());
}

void TestAutoReplace::use(const Replacements &all, const Replacements &therapy) {
    m_commands->set_Commands({{"", commands(all)}, {"therapy", commands(therapy)}});
}

void TestAutoReplace::select(const char *theme) {
    ASRSettings().SelectedTheme = theme;
    m_asr->selectedTheme();
}

void TestAutoReplace::replaces_data() {
    columns<Replacements, QString, QString>("replacements", "text", "typed");
    const auto row = [](const char *name, const Replacements &replacements, const QString &text,
                        const QString &typed) {
        QTest::newRow(name) << replacements << text << typed;
    };
    const Replacements line{{"новая строка", "\n"}};
    row("mark between the words", line, "да Новая, строка и", "да \n и");
    row("two blanks between the words", line, "новая  строка", "\n");
    row("a letter in front", line, "обновая строка", "обновая строка");
    row("a digit behind", line, "новая строка2", "новая строка2");
    const Replacements stops{{"точка", "."}, {"точка с запятой", ";"}};
    row("the longer phrase wins", stops, "точка с запятой, точка", ";, .");
    row("the longer of more than 16", stops, QString("точка с запятой ").repeated(20),
        QString("; ").repeated(20));
    row("the one that begins first wins", {{"б в г", "2"}, {"а б", "1"}}, "а б в г", "1 в г");
    row("what was put in stays", {{"а", "б"}, {"б", "В $1 \\1"}}, "А б", "б В $1 \\1");
    row("a case that changes the length", {{"İ", "i"}}, "i\u0307", "i");
    row("characters of expressions", {{"(a|b)*", "1"}, {"a.c", "2"}}, "(a|b)* abc", "1 abc");
}

void TestAutoReplace::replaces() {
    QFETCH(Replacements, replacements);
    QFETCH(QString, text);
    use(replacements);
    QTEST(m_replace->ProcessText(text), "typed");
}

void TestAutoReplace::prefersTheSelectedTheme() {
    use({{"а", "0"}, {"а", "1"}, {"б", "1"}}, {{"а", "2"}, {"в", "2"}});
    QCOMPARE(m_replace->ProcessText("а б в"), "1 1 в");
    select("therapy");
    QCOMPARE(m_replace->ProcessText("а б в"), "2 1 2");
    m_commands->CommandsChanged();
    QCOMPARE(m_replace->ProcessText("а б в"), "2 1 2");
    select("surgery");
    QCOMPARE(m_replace->ProcessText("а б в"), "1 1 в");
}

void TestAutoReplace::followsThePunctuationSetting() {
    QList<UserCommand> list = commands({{"точка", "."}, {"тире", "-"}});
    list.first().IsPunctuation = true;
    list << UserCommand(UserCommandNamespace::UserCommandType::Key);
    list.last().Pattern = list.last().Text = "да";
    m_commands->set_Commands({{"", list}});
    QCOMPARE(m_replace->ProcessText("Точка Тире Да"), ". - Да");
    for (const bool isOn : {true, false}) {
        ASRSettings().UsePunctuation = isOn;
        m_asr->getTargetModeInfo()->BackupTargetMode(RecognitionMode::Text, {}, {}, {});
        m_replace->OnRecognitionSettingsChanged();
        QCOMPARE(m_replace->ProcessText("Точка Тире Да"), isOn ? "Точка - Да" : ". - Да");
        QCOMPARE(m_asr->getTargetModeInfo()->mode(), std::optional(RecognitionMode::Off));
    }
}

void TestAutoReplace::skipsWhatIsNoPhrase() {
    static QStringList told;
    const QString half(QChar(0xD83D));
    use({{"А" + half, "1"}});
    const auto previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &message) { told << message; });
    const QString twice = m_replace->ProcessText("а" + half) + m_replace->ProcessText("а" + half);
    qInstallMessageHandler(previous);
    QCOMPARE(told, QStringList({"A phrase that cannot be looked for, characters: 2",
                                "Error while create regexp: а" + half}));
    QCOMPARE(twice, "а" + half + "а" + half);
}

/// The candidates are found by Qt's knowledge of characters, the matches by the library's.
void TestAutoReplace::foldsAsTheExpressionsDo() {
    using namespace PhraseTokens;
    QVector<uint> characters;
    // By what they fold to.
    QMap<uint, QVector<uint>> blocks;
    for (uint c = 0; c < 0x20000; ++c) {
        if (!QChar::isSurrogate(c) && !isUncertain(c)) {
            characters << c;
            blocks[fold(c) / 256] << c;
        }
    }
    const QString all = textOf(characters);
    for (const uint c : found("\\W", all))
        QVERIFY2(!isWordCharacter(fold(c)), qPrintable(anyOf({c})));
    for (const uint c : found("[.,!:;?\\-\\s]", all))
        QVERIFY2(isSeparator(fold(c)), qPrintable(anyOf({c})));
    QCOMPARE(found(anyOf({'a'}), "A"), QVector<uint>{'A'});
    // Two characters that fold differently do so in their blocks, or else in a bit.
    for (const QVector<uint> &block : qAsConst(blocks)) {
        QVERIFY2(found(anyOf(block), all) == block, qPrintable(anyOf(block)));
        for (uint bit = 1; bit < 256; bit *= 2) {
            QVector<uint> set;
            QVector<uint> clear;
            for (const uint c : block)
                (fold(c) & bit ? set : clear) << c;
            if (!set.isEmpty())
                QVERIFY2(found(anyOf(set), textOf(clear)).isEmpty(), qPrintable(anyOf(set)));
        }
    }
}

void TestAutoReplace::agreesWithAPlainWalk() {
    constexpr quint32 seed = 20;
    QRandomGenerator random(seed);
    const QStringList common{"а", "А", "б", "аб", "ё", "Ё", "1", "K", "\u212A", "k"};
    const QStringList rare{
        "ſ", "S",  "ς",      "Σ",  "е\u0308", "İ", "i",      "ß",      "ẞ",      "٣",      "_",
        "(", ")*", "[а",     "\\", "\\Q",     "|", ".",      "$",      "^",      "\t",     "\n",
        "-", ".",  "\u00A0", "😀",  "😁",       "№", "\u0378", "\u0345", "\u2C5F", "\u180E", "",
    };
    const QStringList gaps{" ", " ", " ", "", ", ", "  ", "-", "\n", "?! "};
    const auto any = [&](const QStringList &list) { return list[random.bounded(list.size())]; };
    const auto phrase = [&](int most) {
        QString text;
        for (int i = random.bounded(most + 1); i > 0; --i)
            text += any(random.bounded(6) ? common : rare) + any(gaps);
        return random.bounded(100) ? text : text + QChar(0xD83D);
    };
    const auto replacements = [&](int count) {
        Replacements list;
        for (int i = 0; i < count; ++i)
            list.append({phrase(4), QString("<%1>").arg(random.bounded(1000))});
        return list;
    };
    int changed = 0;
    for (int set = 0; set < 40; ++set) {
        const Replacements all = replacements(30);
        const Replacements therapy = replacements(10);
        use(all, therapy);
        select("therapy");
        const Expressions expressions = expressionsOf(all + therapy);
        for (int i = 0; i < 80; ++i) {
            const QString text = phrase(12);
            const QString expected = text.isEmpty() ? text : plainWalk(expressions, text);
            const QString typed = m_replace->ProcessText(text);
            const QString told = QString("seed %1: '%2' became '%3', not '%4'");
            QVERIFY2(typed == expected,
                     qPrintable(told.arg(QString::number(seed), text, typed, expected)));
            changed += expected != text;
        }
    }
    QVERIFY2(changed > 1600 && changed < 3200, "the texts are to match, though not all of them");
}

DESK_CORE_TEST_MAIN(TestAutoReplace)
#include "TestAutoReplace.moc"
