#include "VirtualDesk.h"
#include "core/settings/Settings.h"
#include "desktop/TextWriter.h"
#include "desktop/XHotKeyConverter.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QElapsedTimer>
#include <QLoggingCategory>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTest>
#include <QThread>
#include <QUrl>

#include <cstdio>
#include <ctime>
#include <exception>

/// How many texts arrive wrong in programs of several toolkits while the machine is busy, how fast
/// characters of no layout arrive, and how long the main thread stands still meanwhile.
///
///     typing_accuracy [texts [program]]
///
/// Half of the texts are typed under the layouts us,ru, half under ru alone.
namespace {

constexpr int FastCharacters = 3000;
constexpr double MsInSecond = 1000;
/// Keycodes of letters on every usual keyboard.
constexpr unsigned int LatinA = 38;
constexpr unsigned int LatinC = 54;

/// A program that texts are typed into.
struct Receiver {
    QString name;
    QString program;
    QStringList arguments;
    QString title;  ///< part of the window's title once it takes keys
    int startsAnew; ///< after so many texts; 0 for never
};

VirtualDesk *desk = nullptr;

QString inFolder(const QString &name) {
    return desk->folder() + QLatin1Char('/') + name;
}

QString page() {
    const QString file = inFolder(QStringLiteral("page.html"));
    VirtualDesk::write(file, "<!DOCTYPE html><meta charset='utf-8'><title>typed here</title>"
                             "<textarea autofocus rows='20' cols='80'></textarea>");
    return QUrl::fromLocalFile(file).toString();
}

Receiver firefox(const QString &name, int startsAnew) {
    const QString profile = inFolder(QStringLiteral("firefox"));
    QDir().mkpath(profile);
    VirtualDesk::write(profile + QStringLiteral("/user.js"),
                       "user_pref('browser.aboutwelcome.enabled', false);"
                       "user_pref('browser.shell.checkDefaultBrowser', false);"
                       "user_pref('datareporting.policy.dataSubmissionEnabled', false);"
                       "user_pref('browser.sessionstore.resume_from_crash', false);");
    return {name,
            QStringLiteral("firefox-esr"),
            {QStringLiteral("--no-remote"), QStringLiteral("--profile"), profile, page()},
            QStringLiteral("typed here"),
            startsAnew};
}

Receiver chromium() {
    return {QStringLiteral("Chromium"),
            QStringLiteral("chromium"),
            {QStringLiteral("--no-sandbox"), QStringLiteral("--disable-gpu"),
             QStringLiteral("--no-first-run"), QStringLiteral("--disable-background-networking"),
             QStringLiteral("--disable-component-update"), QStringLiteral("--disable-sync"),
             QStringLiteral("--user-data-dir=") + inFolder(QStringLiteral("chromium")),
             QStringLiteral("--app=") + page()},
            QStringLiteral("typed here"),
            0};
}

Receiver editor(const QString &name, const QString &program, const QString &option) {
    const QString file = inFolder(program + QStringLiteral(".txt"));
    VirtualDesk::write(file, "");
    return {name, program, {option, file}, program + QStringLiteral(".txt"), 0};
}

/// Writer corrects what is typed unless it is told not to.
Receiver libreOffice() {
    const QString folder = inFolder(QStringLiteral("office"));
    QDir().mkpath(folder + QStringLiteral("/user"));
    QByteArray items;
    const auto set = [&items](const char *path, const char *names) {
        for (const QByteArray &name : QByteArray(names).split(' '))
            items += "<item oor:path='/org.openoffice.Office." + QByteArray(path) +
                     "'><prop oor:name='" + name +
                     "' oor:op='fuse'><value>false</value></prop></item>";
    };
    set("Common/AutoCorrect",
        "UseReplacementTable TwoCapitalsAtStart CapitalAtStartSentence ChangeUnderlineWeight "
        "SetInetAttribute ChangeOrdinalNumber AddNonBreakingSpace ChangeDash RemoveDoubleSpaces "
        "ReplaceSingleQuote ReplaceDoubleQuote CorrectAccidentalCapsLock TransliterateRTL");
    set("Writer/AutoFunction/Completion", "Enable");
    set("Writer/AutoFunction/Format/Option", "UseReplacementTable");
    set("Writer/AutoFunction/Format/ByInput/ApplyNumbering", "Enable");
    set("Writer/AutoFunction/Format/ByInput", "Enable");
    set("Common/Misc", "ShowTipOfTheDay FirstRun");
    VirtualDesk::write(folder + QStringLiteral("/user/registrymodifications.xcu"),
                       "<?xml version='1.0' encoding='UTF-8'?><oor:items "
                       "xmlns:oor='http://openoffice.org/2001/registry'>" +
                           items + "</oor:items>");
    return {QStringLiteral("LibreOffice"),
            QStringLiteral("soffice"),
            {QStringLiteral("-env:UserInstallation=file://") + folder,
             QStringLiteral("--norestore"), QStringLiteral("--nologo"), QStringLiteral("--writer")},
            QStringLiteral("LibreOffice Writer"),
            0};
}

QString focusedTitle() {
    return desk->ask(QStringLiteral("xdotool"),
                     {QStringLiteral("getwindowfocus"), QStringLiteral("getwindowname")});
}

/// Presses a combination with Control by the name of its letter and by the letter's place on a
/// Latin keyboard: Chromium goes by the place, whatever the layout, others by the symbol.
void pressControl(char letter, unsigned int keycode) {
    const QString name = QStringLiteral("Ctrl+") + QLatin1Char(letter);
    const HotKeyInfo key = XHotKeyConverter().ConvertFromString(name);
    TextWriter::WriteKey(0, key);
    TextWriter::WriteKey(0, {keycode, key.modifiers, 0});
}

/// What the program holds, by way of the clipboard: the expected text, or what is there instead
/// after a while. All of it stays selected, so that the next text takes its place.
QString readBack(const QString &expected) {
    constexpr int Tries = 10;
    constexpr int TryMs = 2000;
    QString text;
    const auto isThere = [&] {
        text = QApplication::clipboard()->text().trimmed();
        return text == expected;
    };
    for (int i = 0; i < Tries; ++i) {
        pressControl('a', LatinA);
        pressControl('c', LatinC);
        if (QTest::qWaitFor(isThere, TryMs))
            break;
    }
    return text;
}

/// What a doctor says and what no layout has; the same with each run.
QString makeText(QRandomGenerator *random) {
    static const QStringList words =
        QStringLiteral(
            "Жалобы боль «Да» «Нет» — АД 120/80, 38.5° № 7 5 μg µ ≥ ≤ ± é École naïve "
            "Hello World №12 ½ → € 😀 🩺 ещё; съешь Ёлка Aspirin C₂H₅OH "
            "\"кавычки\" "
            "IgG(+) [x] {y} @ # $ % & * ~ ^ < > | \\ / ? ! ’ “цитата” … • § ©")
            .split(QLatin1Char(' '));
    QStringList chosen;
    constexpr int Words = 12;
    for (int i = 0; i < Words; ++i)
        chosen += words.at(random->bounded(words.size()));
    return chosen.join(QLatin1Char(' '));
}

QString charactersOfNoLayout() {
    // Editors take long over a line without end.
    const QString signs = QStringLiteral("éà«»—μ°≥±½→€…•§©™ñüöß").repeated(2) + QLatin1Char('\n');
    return signs.repeated(FastCharacters / signs.size() + 1).left(FastCharacters).trimmed();
}

/// The processor time of this thread: on a busy machine the clock would tell of the others.
double busyMs() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    constexpr double NsInMs = 1e6;
    return static_cast<double>(time.tv_sec) * MsInSecond +
           static_cast<double>(time.tv_nsec) / NsInMs;
}

class Measurement {
public:
    Measurement(Receiver receiver, int texts) : m_receiver(std::move(receiver)), m_texts(texts) {}

    void run() {
        if (QStandardPaths::findExecutable(m_receiver.program).isEmpty()) {
            std::printf("%-16s is not installed, skipped\n", qPrintable(m_receiver.name));
            return;
        }
        // Each program gets the same texts.
        QRandomGenerator random(1);
        for (int index = 0; index < m_texts; ++index) {
            if (index == 0 || index == m_texts / 2)
                setLayouts(index == 0 ? "us,ru" : "ru");
            if (index == 0 || (m_receiver.startsAnew > 0 && index % m_receiver.startsAnew == 0))
                start();
            typeOne(makeText(&random));
        }
        setLayouts("us,ru");
        typeFast();
        std::printf("%-16s %4d of %4d wrong %8.0f characters/s %8.1f ms main thread at a stretch\n",
                    qPrintable(m_receiver.name), m_wrong, m_texts, m_perSecond, m_longestMs);
        std::fflush(stdout);
        desk->end(m_process);
    }

private:
    static void setLayouts(const char *layouts) {
        desk->run(QStringLiteral("setxkbmap"),
                  {QStringLiteral("-layout"), QString::fromLatin1(layouts)});
    }

    void start() {
        if (m_process)
            desk->end(m_process);
        m_process = desk->start(m_receiver.program, m_receiver.arguments);
        constexpr int StartTimeoutMs = 120000;
        const auto isUp = [this] { return focusedTitle().contains(m_receiver.title); };
        if (!QTest::qWaitFor(isUp, StartTimeoutMs))
            throw std::runtime_error(m_receiver.name.toStdString() + " does not start");
    }

    void typeOne(const QString &text) {
        TextWriter::WriteText(TextWriter::GetFocusedWindow(), text);
        const QString received = readBack(text);
        if (received == text)
            return;
        ++m_wrong;
        std::printf("  %s\n  expected %s\n  received %s\n", qPrintable(m_receiver.name),
                    qPrintable(text), qPrintable(received));
    }

    /// The speed counts until the program has everything, the standstill until all is sent to it.
    void typeFast() {
        const QString text = charactersOfNoLayout();
        QElapsedTimer whole;
        whole.start();
        double lastMs = busyMs();
        const auto isTyped = [&] {
            const double nowMs = busyMs();
            m_longestMs = qMax(m_longestMs, nowMs - lastMs);
            lastMs = nowMs;
            return TextWriter::WaitForTyped(0);
        };
        TextWriter::WriteText(TextWriter::GetFocusedWindow(), text);
        while (!isTyped())
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        const QString received = readBack(text);
        m_perSecond = text.size() * MsInSecond / static_cast<double>(whole.elapsed());
        if (received != text)
            std::printf("  %s: the fast text is wrong, %d of %d characters: %s\n",
                        qPrintable(m_receiver.name), received.size(), text.size(),
                        qPrintable(received.left(120)));
    }

    const Receiver m_receiver;
    const int m_texts;
    QProcess *m_process = nullptr;
    int m_wrong = 0;
    double m_perSecond = 0;
    double m_longestMs = 0;
};

void keepBusy() {
    for (int i = 0; i < QThread::idealThreadCount(); ++i)
        desk->start(QStringLiteral("sh"),
                    {QStringLiteral("-c"), QStringLiteral("while :; do :; done")});
}

void run(int texts, const QString &only) {
    constexpr int FreshTexts = 10;
    const Receiver receivers[] = {
        firefox(QStringLiteral("Firefox"), 0),
        firefox(QStringLiteral("Firefox, fresh"), FreshTexts),
        chromium(),
        editor(QStringLiteral("GTK 3 mousepad"), QStringLiteral("mousepad"),
               QStringLiteral("--disable-server")),
        editor(QStringLiteral("Qt 5 featherpad"), QStringLiteral("featherpad"),
               QStringLiteral("--standalone")),
        libreOffice(),
    };
    keepBusy();
    TextWriter::Init();
    for (const Receiver &receiver : receivers) {
        if (receiver.name.contains(only, Qt::CaseInsensitive))
            Measurement(receiver, texts).run();
    }
    TextWriter::Cleanup();
}

} // namespace

int main(int argc, char **argv) {
    try {
        VirtualDesk ownDesk(VirtualDesk::Screen);
        desk = &ownDesk;
        const QApplication application(argc, argv);
        Settings::setOrganizationName(QStringLiteral("Ostrel"));
        Settings::setApplicationName(QStringLiteral("Vellumar"));
        Settings::setFileName(QStringLiteral("settings"));
        QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
        const QStringList arguments = QCoreApplication::arguments();
        constexpr int Texts = 200;
        const int texts = arguments.size() > 1 ? arguments.at(1).toInt() : Texts;
        run(texts, arguments.value(2));
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}
