#include "core/Exception.h"
#include "desk/DeskTest.h"
#include "desk/Files.h"
#include "stand/AcousticEngine.h"
#include "stand/CountingEngine.h"
#include "stand/ScriptedEngine.h"
#include "stand/SpokenMarks.h"

#include <QJsonDocument>
#include <QRegularExpression>
#include <QSignalSpy>

#include <algorithm>
#include <numeric>

namespace {

constexpr int kBlockBytes = 6400; // 200 ms, as the client sends it

/// What an engine says, a line a text: "~" marks a partial one.
QStringList listen(RecognitionEngine *engine, const QByteArray &sound, int blockBytes) {
    QStringList heard;
    QObject context;
    QObject::connect(engine, &RecognitionEngine::partialText, &context,
                     [&](const QString &text) { heard += QLatin1Char('~') + text; });
    QObject::connect(engine, &RecognitionEngine::finalText, &context,
                     [&](const QString &text) { heard += text; });
    QSignalSpy finished(engine, &RecognitionEngine::finished);
    engine->start();
    for (int from = 0; from < sound.size(); from += blockBytes)
        engine->feed(sound.mid(from, blockBytes));
    engine->finish();
    if (finished.isEmpty())
        finished.wait(60000);
    return heard;
}

/// Words to be deleted, inserted and replaced to make one text of the other.
int wordErrors(const QStringList &said, const QStringList &heard) {
    QVector<int> costs(heard.size() + 1);
    std::iota(costs.begin(), costs.end(), 0);
    for (int row = 1; row <= said.size(); ++row) {
        int diagonal = costs[0];
        costs[0] = row;
        for (int column = 1; column <= heard.size(); ++column) {
            const int replaced = diagonal + (said[row - 1] == heard[column - 1] ? 0 : 1);
            diagonal = costs[column];
            costs[column] = std::min({replaced, costs[column] + 1, costs[column - 1] + 1});
        }
    }
    return costs.last();
}

/// Has a sentence spoken; returns raw sound as the client records it, with a
/// second of silence behind it.
QByteArray speech(const QString &voice, const QString &sentence) {
    const QString text = desk().folder() + "/sentence.txt";
    const QString wav = desk().folder() + "/sentence.wav";
    const QString raw = desk().folder() + "/sentence.raw";
    if (!save(text, sentence.toUtf8()))
        return QByteArray();
    if (voice == "festival") {
        desk().run("text2wave", {"-eval", "(voice_msu_ru_nsh_clunits)", text, "-o", wav});
    } else {
        desk().run("espeak-ng", {"-v", voice, "-s", "140", "-w", wav, "-f", text});
    }
    desk().run("sox", {wav, "-r", "16000", "-c", "1", "-b", "16", "-e", "signed-integer", raw,
                       "pad", "0.5", "1"});
    return bytesOf(raw);
}

} // namespace

/// The engines without the network, and the script.
class TestEngines : public QObject {
    Q_OBJECT

private slots:
    void badScriptsAreExplained_data();
    void badScriptsAreExplained();
    void scriptFollowsTheSound();
    void soundIsNumbered();
    void spokenMarksAreWritten_data();
    void spokenMarksAreWritten();
    void speechIsRecognised_data();
    void speechIsRecognised();
    void commandPhrasesAreHeard();
};

void TestEngines::badScriptsAreExplained_data() {
    columns<QString, QString>("json", "complaint");
    row("unknown key", R"({"stepz":[]})", "unknown key \"stepz\"");
    row("steps are no array", R"({"steps":{}})", "not an array");
    row("step without a place", R"({"steps":[{"text":"a"}]})", "step 1: one of \"atBytes\"");
    row("step with nothing to do", R"({"steps":[{"atBytes":1}]})", "step 1: neither");
    row("steps in falling order",
        R"({"steps":[{"atBytes":5,"text":"a"},{"atBytes":4,"text":"b"}]})", "step 2: \"atBytes\"");
    row("final is a word", R"({"steps":[{"atBytes":5,"text":"a","final":"no"}]})", "\"final\"");
    row("start command without a name", R"({"start":[{"what":1}]})", "without \"do\"");
}

void TestEngines::badScriptsAreExplained() {
    QFETCH(QString, json);
    QFETCH(QString, complaint);
    try {
        Script::fromJson(QJsonDocument::fromJson(json.toUtf8()).object());
        QFAIL("the script was taken");
    } catch (const Exception &problem) {
        QVERIFY2(QString::fromUtf8(problem.what()).contains(complaint), problem.what());
    }
}

void TestEngines::scriptFollowsTheSound() {
    const QByteArray json(R"({"steps":[
        {"atBytes":100,"text":"раз","final":false}, {"atStop":true,"text":"конец"},
        {"atBytes":13000,"text":"раз два"}, {"atBytes":30000,"text":"никогда"}]})");
    ScriptedEngine engine(Script::fromJson(QJsonDocument::fromJson(json).object()));
    // In one block, in blocks of 200 ms and in odd ones; each run begins the script anew.
    for (const int blockBytes : {20000, kBlockBytes, 777}) {
        QCOMPARE(listen(&engine, QByteArray(20000, 0), blockBytes),
                 QStringList({"~раз", "раз два", "конец"}));
    }
}

void TestEngines::soundIsNumbered() {
    const QByteArray sound(3 * 32000, 'a');
    int last = 8;
    CountingEngine first(&last);
    QCOMPARE(listen(&first, sound + QByteArray(32000, 0), kBlockBytes),
             QStringList({"~девять .", "девять ."}));
    // What is begun is ended with the run, and no other engine says it again.
    CountingEngine second(&last);
    QCOMPARE(listen(&second, sound + sound.left(16000), kBlockBytes),
             QStringList({"~один ноль .", "один ноль .", "~один один .", "один один ."}));
}

void TestEngines::spokenMarksAreWritten_data() {
    columns<QString, QString>("spoken", "written");
    row("marks among words", "кашель запятая одышка точка", "кашель , одышка .");
    row("longer name first", "раз точка с запятой два", "раз ; два");
    row("two in a row", "точка точка", ". .");
    row("part of a word stays", "точками", "точками");
    row("dash is glued for the client", "один тире два", "один\u0001 два");
}

void TestEngines::spokenMarksAreWritten() {
    QFETCH(QString, spoken);
    QTEST(withSpokenMarks(spoken), "written");
}

void TestEngines::speechIsRecognised_data() {
    QTest::addColumn<QString>("voice");
    row("festival", "festival");
    row("espeak-ng, a man", "ru");
    row("espeak-ng, a woman", "ru+f2");
}

void TestEngines::speechIsRecognised() {
    QFETCH(QString, voice);
    const QStringList sentences{"жалобы на головную боль и слабость точка",
                                "живот мягкий запятая безболезненный при пальпации точка",
                                "тоны сердца ясные запятая ритмичные точка",
                                "пациент направлен на консультацию кардиолога точка"};
    AcousticEngine engine(QCoreApplication::applicationDirPath() + "/recogniser");
    int words = 0;
    int errors = 0;
    for (const QString &sentence : sentences) {
        const QStringList heard = listen(&engine, speech(voice, sentence), kBlockBytes);
        QVERIFY2(!heard.isEmpty() && heard.first().startsWith(QLatin1Char('~')),
                 "no partial text came before the final one");
        const QStringList finals = heard.filter(QRegularExpression("^[^~]"));
        const QStringList said = sentence.split(QLatin1Char(' '));
        words += said.size();
        errors += wordErrors(said, finals.join(QLatin1Char(' ')).split(QLatin1Char(' ')));
    }
    const QString rate =
        QStringLiteral("%1: %2 errors in %3 words").arg(voice).arg(errors).arg(words);
    qInfo("%s", qPrintable(rate));
    QVERIFY2(errors * 100 <= words * 15, qPrintable(rate));
}

void TestEngines::commandPhrasesAreHeard() {
    AcousticEngine engine(QCoreApplication::applicationDirPath() + "/recogniser");
    const QStringList phrases{"начать распознавание", "закончить распознавание", "вставить шаблон",
                              "скопировать"};
    for (const QString &phrase : phrases) {
        const QStringList heard = listen(&engine, speech("ru+f2", phrase), kBlockBytes);
        QVERIFY2(heard.contains(phrase), qPrintable(heard.join(" | ")));
    }
}

DESK_CORE_TEST_MAIN(TestEngines)
#include "TestEngines.moc"
