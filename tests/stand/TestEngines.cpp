#include "core/Exception.h"
#include "desk/DeskTest.h"
#include "stand/AcousticEngine.h"
#include "stand/ScriptedEngine.h"
#include "stand/SpokenMarks.h"

#include <QJsonArray>
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
    const QString text = desk().folder() + QStringLiteral("/sentence.txt");
    const QString wav = desk().folder() + QStringLiteral("/sentence.wav");
    const QString raw = desk().folder() + QStringLiteral("/sentence.raw");
    QFile file(text);
    if (!file.open(QIODevice::WriteOnly) || file.write(sentence.toUtf8()) < 0)
        return QByteArray();
    file.close();
    if (voice == QStringLiteral("festival")) {
        desk().run(QStringLiteral("text2wave"),
                   {QStringLiteral("-eval"), QStringLiteral("(voice_msu_ru_nsh_clunits)"), text,
                    QStringLiteral("-o"), wav});
    } else {
        desk().run(QStringLiteral("espeak-ng"),
                   {QStringLiteral("-v"), voice, QStringLiteral("-s"), QStringLiteral("140"),
                    QStringLiteral("-w"), wav, QStringLiteral("-f"), text});
    }
    desk().run(QStringLiteral("sox"),
               {wav, QStringLiteral("-r"), QStringLiteral("16000"), QStringLiteral("-c"),
                QStringLiteral("1"), QStringLiteral("-b"), QStringLiteral("16"),
                QStringLiteral("-e"), QStringLiteral("signed-integer"), raw, QStringLiteral("pad"),
                QStringLiteral("0.5"), QStringLiteral("1")});
    QFile sound(raw);
    return sound.open(QIODevice::ReadOnly) ? sound.readAll() : QByteArray();
}

} // namespace

/// The engines without the network, and the script.
class TestEngines : public QObject {
    Q_OBJECT

private slots:
    void badScriptsAreExplained_data();
    void badScriptsAreExplained();
    void scriptFollowsTheSound_data();
    void scriptFollowsTheSound();
    void spokenMarksAreWritten_data();
    void spokenMarksAreWritten();
    void speechIsRecognised_data();
    void speechIsRecognised();
    void commandPhrasesAreHeard();
};

void TestEngines::badScriptsAreExplained_data() {
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("complaint");
    QTest::newRow("unknown key") << QByteArray(R"({"stepz":[]})") << "unknown key \"stepz\"";
    QTest::newRow("steps are no array") << QByteArray(R"({"steps":{}})") << "not an array";
    QTest::newRow("step without a place")
        << QByteArray(R"({"steps":[{"text":"a"}]})") << "step 1: one of \"atBytes\"";
    QTest::newRow("step with nothing to do")
        << QByteArray(R"({"steps":[{"atBytes":1}]})") << "step 1: neither";
    QTest::newRow("steps in falling order")
        << QByteArray(R"({"steps":[{"atBytes":5,"text":"a"},{"atBytes":4,"text":"b"}]})")
        << "step 2: \"atBytes\"";
    QTest::newRow("final is a word")
        << QByteArray(R"({"steps":[{"atBytes":5,"text":"a","final":"no"}]})") << "\"final\"";
    QTest::newRow("start command without a name")
        << QByteArray(R"({"start":[{"what":1}]})") << "without \"do\"";
}

void TestEngines::badScriptsAreExplained() {
    QFETCH(QByteArray, json);
    QFETCH(QString, complaint);
    try {
        Script::fromJson(QJsonDocument::fromJson(json).object());
        QFAIL("the script was taken");
    } catch (const Exception &problem) {
        QVERIFY2(QString::fromUtf8(problem.what()).contains(complaint), problem.what());
    }
}

void TestEngines::scriptFollowsTheSound_data() {
    QTest::addColumn<int>("blockBytes");
    QTest::newRow("one block") << 20000;
    QTest::newRow("blocks of 200 ms") << kBlockBytes;
    QTest::newRow("odd blocks") << 777;
}

void TestEngines::scriptFollowsTheSound() {
    QFETCH(int, blockBytes);
    const QByteArray json(R"({"steps":[
        {"atBytes":100,"text":"раз","final":false}, {"atStop":true,"text":"конец"},
        {"atBytes":13000,"text":"раз два"}, {"atBytes":30000,"text":"никогда"}]})");
    ScriptedEngine engine(Script::fromJson(QJsonDocument::fromJson(json).object()));
    const QStringList expected{QStringLiteral("~раз"), QStringLiteral("раз два"),
                               QStringLiteral("конец")};
    QCOMPARE(listen(&engine, QByteArray(20000, 0), blockBytes), expected);
    // A second run begins the script anew.
    QCOMPARE(listen(&engine, QByteArray(20000, 0), blockBytes), expected);
}

void TestEngines::spokenMarksAreWritten_data() {
    QTest::addColumn<QString>("spoken");
    QTest::addColumn<QString>("written");
    QTest::newRow("marks among words") << "кашель запятая одышка точка"
                                       << "кашель , одышка .";
    QTest::newRow("longer name first") << "раз точка с запятой два"
                                       << "раз ; два";
    QTest::newRow("two in a row") << "точка точка"
                                  << ". .";
    QTest::newRow("part of a word stays") << "точками"
                                          << "точками";
    QTest::newRow("dash is glued for the client") << "один тире два"
                                                  << "один\u0001 два";
}

void TestEngines::spokenMarksAreWritten() {
    QFETCH(QString, spoken);
    QTEST(withSpokenMarks(spoken), "written");
}

void TestEngines::speechIsRecognised_data() {
    QTest::addColumn<QString>("voice");
    QTest::newRow("festival") << "festival";
    QTest::newRow("espeak-ng, a man") << "ru";
    QTest::newRow("espeak-ng, a woman") << "ru+f2";
}

void TestEngines::speechIsRecognised() {
    QFETCH(QString, voice);
    const QStringList sentences{
        QStringLiteral("жалобы на головную боль и слабость точка"),
        QStringLiteral("живот мягкий запятая безболезненный при пальпации точка"),
        QStringLiteral("тоны сердца ясные запятая ритмичные точка"),
        QStringLiteral("пациент направлен на консультацию кардиолога точка")};
    AcousticEngine engine(QCoreApplication::applicationDirPath() + QStringLiteral("/recogniser"));
    int words = 0;
    int errors = 0;
    for (const QString &sentence : sentences) {
        const QStringList heard = listen(&engine, speech(voice, sentence), kBlockBytes);
        QVERIFY2(!heard.isEmpty() && heard.first().startsWith(QLatin1Char('~')),
                 "no partial text came before the final one");
        const QStringList finals = heard.filter(QRegularExpression(QStringLiteral("^[^~]")));
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
    AcousticEngine engine(QCoreApplication::applicationDirPath() + QStringLiteral("/recogniser"));
    for (const QString &phrase :
         {QStringLiteral("начать распознавание"), QStringLiteral("закончить распознавание"),
          QStringLiteral("вставить шаблон"), QStringLiteral("скопировать")}) {
        const QStringList heard =
            listen(&engine, speech(QStringLiteral("ru+f2"), phrase), kBlockBytes);
        QVERIFY2(heard.contains(phrase), qPrintable(heard.join(QStringLiteral(" | "))));
    }
}

int main(int argc, char **argv) {
    return runOnDesk<QCoreApplication, TestEngines>(argc, argv, VirtualDesk::Folders);
}

#include "TestEngines.moc"
