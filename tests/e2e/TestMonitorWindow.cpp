#include "Editor.h"
#include "ProgramTest.h"
#include "SineWave.h"
#include "core/settings/RecordingDeviceSettings.h"

#include <QImage>
#include <QRegularExpression>
#include <QScreen>

namespace {

const VirtualDesk::Needs needs{VirtualDesk::Sound | VirtualDesk::MONITOR_DESK};

const QString squareName = "^Vellumar .Qt.$";
const QString gainName = "^Vellumar .Qt. Gain$";
const QString themeName = "^Vellumar .Qt. Theme$";
const QString resultName = "^Vellumar .Qt. Result$";
const QString splashName = "^Splash Window$";

QString xdotool(const QStringList &arguments) {
    return desk().run("xdotool", arguments).trimmed();
}

/// The window of this name that can be seen, or an empty text.
QString visibleWindow(const QString &name) {
    return desk().ask("xdotool", {"search", "--onlyvisible", "--name", name}).section('\n', -1);
}

/// Where it stands, in pixels of the X server; an invalid rectangle if it cannot be seen.
QRect place(const QString &name) {
    const QString window = visibleWindow(name);
    if (window.isEmpty())
        return QRect();
    QMap<QString, int> values;
    for (const QString &line : desk().ask("xwininfo", {"-id", window}).split('\n'))
        values[line.section(':', 0, 0).trimmed()] = line.section(':', 1).toInt();
    return {values["Absolute upper-left X"], values["Absolute upper-left Y"], values["Width"],
            values["Height"]};
}

QString focusedName() {
    return desk().ask("xdotool", {"getwindowfocus", "getwindowname"});
}

/// One pixel of the program's, whatever the scale makes of it.
bool isShrunk() {
    const QSize size = place(squareName).size();
    return size.width() <= 2 && size.height() <= 2;
}

QColor pixel(const QPoint &at) {
    const QString file = desk().folder() + "/screen.png";
    desk().screenshot(file);
    return QImage(file).pixelColor(at);
}

void click(const QPoint &at, int button = 1) {
    xdotool({"mousemove", QString::number(at.x()), QString::number(at.y()), "click",
             QString::number(button)});
}

/// The corner of the square on the primary monitor, as far as panels leave it, at scale 1.
QPoint corner() {
    return QGuiApplication::primaryScreen()->availableGeometry().bottomRight() +
           QPoint(1 - 110, 1 - 110);
}

} // namespace

/// The monitor as the user meets it: the windows of the built program among those of others.
class TestMonitorWindow : public ProgramTest {
    Q_OBJECT

private slots:
    void init() {
        ProgramTest::init();
        xdotool({"mousemove", "600", "5"});
    }

    void cleanup() {
        if (m_program) {
            QCOMPARE(m_program->terminate(), 0);
            QVERIFY2(!m_program->log().contains("qrc:/"), "the views run clean");
        }
        ProgramTest::cleanup();
        m_editor.reset();
        qunsetenv("QT_SCALE_FACTOR");
    }

    void standsInItsCorner_data() {
        QTest::addColumn<QByteArray>("scale");
        for (const char *scale : {"1", "1.5", "2"})
            QTest::newRow(scale) << QByteArray(scale);
    }

    void standsInItsCorner() {
        QFETCH(QByteArray, scale);
        qputenv("QT_SCALE_FACTOR", scale);
        const double factor = scale.toDouble();
        QVERIFY(dictate());
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        const QPoint expected = screen.bottomRight() + QPoint(1, 1) - QPoint(110, 110) * factor;
        const QSize size = QSize(100, 100) * factor;
        QTRY_VERIFY(place(squareName).size() == size);
        QVERIFY((place(squareName).topLeft() - expected).manhattanLength() <= 2);
        const QString state =
            desk().run("xprop", {"-id", visibleWindow(squareName), "_NET_WM_STATE", "WM_HINTS"});
        for (const char *part : {"_SKIP_TASKBAR", "_SKIP_PAGER", "_ABOVE", "input focus: False"})
            QVERIFY2(state.contains(QLatin1String(part)), qPrintable(state));

        m_stand->sayResult("жалобы на кашель", false);
        QTRY_VERIFY(place(resultName).isValid());
        QTRY_VERIFY2(isTooltipOverEditor(), "centred at its upper edge");
        const int width = place(resultName).width();
        QVERIFY(width > 80 * factor && width < 160 * factor);
        const QPoint elsewhere = QGuiApplication::screens().constLast()->geometry().center();
        xdotool({"windowmove", visibleWindow(editorName()), QString::number(elsewhere.x()), "100"});
        QTRY_VERIFY(place(editorName()).x() > elsewhere.x() - 50);
        m_stand->sayResult("жалобы на сухой кашель", false);
        QTRY_VERIFY2(isTooltipOverEditor(), "also on the other monitor");
        m_stand->sayResult("жалобы на кашель");
        QTRY_VERIFY(!place(resultName).isValid());
        QTRY_COMPARE(m_editor->text(), "Жалобы на кашель");
        QVERIFY2(m_keptFocus && focusedName() == editorName(), "the editor keeps the focus");

        // A window manager that asks the square to go is not heard.
        XKeyboard().askToClose(visibleWindow(squareName).toULong());
        m_stand->forget();
        click(place(squareName).topLeft() + QPoint(85, 15) * factor);
        QCOMPARE(nextMode(m_stand.get()).toInt(-1), 0);
        QTRY_VERIFY(isShrunk());
    }

    void followsTheSound_data() {
        QTest::addColumn<QByteArray>("scale");
        for (const char *scale : {"1", "2"})
            QTest::newRow(scale) << QByteArray(scale);
    }

    void followsTheSound() {
        QFETCH(QByteArray, scale);
        qputenv("QT_SCALE_FACTOR", scale);
        const int factor = scale.toInt();
        QVERIFY(dictate());
        QTRY_VERIFY(place(squareName).width() == 100 * factor);
        const QPoint square = place(squareName).topLeft();
        const QPoint inMicrophone = square + QPoint(50, 52) * factor;
        QTRY_COMPARE(pixel(square + QPoint(2, 50) * factor), QColor("#f8f8ff"));
        QCOMPARE(pixel(square), QColor("#A0A0A0"));
        const QPoint stem = square + QPoint(50, 70) * factor;
        QVERIFY2(pixel(stem) != pixel(stem + QPoint(6, 0) * factor), "the stand is drawn");
        QVERIFY(pixel(inMicrophone) != QColor("#f8f8ff"));
        desk().speak(SineWave(440, 20000, 5).save(desk().folder() + "/tone.wav"));
        QTRY_COMPARE(pixel(inMicrophone), QColor("#f8f8ff"));
        QTRY_VERIFY_WITH_TIMEOUT(pixel(inMicrophone) != QColor("#f8f8ff"), patienceMs);
    }

    void opensAPopupAndGivesTheFocusBack_data() {
        columns<QString, QPoint, QPoint, QString>("name", "button", "otherButton", "otherName");
        QTest::newRow("gain") << gainName << QPoint(15, 15) << QPoint(15, 86) << themeName;
        QTest::newRow("dictionary") << themeName << QPoint(15, 86) << QPoint(15, 15) << gainName;
    }

    void opensAPopupAndGivesTheFocusBack() {
        QFETCH(QString, name);
        QFETCH(QPoint, button);
        QFETCH(QPoint, otherButton);
        QFETCH(QString, otherName);
        QVERIFY(dictate());
        const QRect square(corner(), QSize(100, 100));
        QTRY_COMPARE(place(squareName), square);
        const auto open = [&] {
            click(square.topLeft() + button);
            return QTest::qWaitFor(
                [&] { return QRegularExpression(name).match(focusedName()).hasMatch(); },
                patienceMs);
        };
        QVERIFY(open());
        const QRect popup = place(name);
        QCOMPARE(popup.right(), square.left() - 11);
        QCOMPARE(popup.bottom(), square.bottom());
        QCOMPARE(popup.height(), name == gainName ? 100 : 38);
        m_stand->sayResult("жалобы на кашель");
        QTRY_COMPARE(m_editor->text(), "Жалобы на кашель");
        click(square.topLeft() + button);
        QTRY_VERIFY(place(name).isEmpty() && focusedName() == editorName());

        QVERIFY(open());
        xdotool({"key", "Escape"});
        QTRY_VERIFY(place(name).isEmpty() && focusedName() == editorName());

        QVERIFY(open());
        click(square.topLeft() + otherButton);
        QTRY_VERIFY(place(name).isEmpty() && place(otherName).isValid());
        m_editor->focus();
        QTRY_VERIFY(place(otherName).isEmpty() && focusedName() == editorName());

        QVERIFY(open());
        XKeyboard().play(doubleCtrl);
        QTRY_VERIFY(place(name).isEmpty() && isShrunk());
        QTRY_COMPARE(focusedName(), editorName());
    }

    void setsTheGainByTheWheel() {
        QVERIFY(dictate());
        QTRY_COMPARE(place(squareName).topLeft(), corner());
        click(corner() + QPoint(15, 15));
        QTRY_VERIFY(place(gainName).isValid());
        QCOMPARE(int(RecordingDeviceSettings().Gain), 100);
        constexpr int wheelDown = 5;
        click(place(gainName).center(), wheelDown);
        const auto stored = [] {
            Settings(QString()).sync();
            return int(RecordingDeviceSettings().Gain);
        };
        QTRY_COMPARE(stored(), 99);
    }

    void makesRoomForAPanel() {
        QVERIFY(dictate());
        QTRY_COMPARE(place(squareName).topLeft(), corner());
        const QPoint before = corner();
        if (!(needs & VirtualDesk::Xfce)) {
            keepsOffAPanelOfSeveralMonitors();
            return;
        }
        desk().startTray(VirtualDesk::Edge::Bottom);
        QTRY_VERIFY(corner().y() < before.y());
        QTRY_COMPARE(place(squareName).topLeft(), corner());
        desk().stopTray();
        QTRY_COMPARE(corner(), before);
        QTRY_COMPARE(place(squareName).topLeft(), before);
    }

private:
    /// Starts the program beside an editor that has the focus, and then a dictation.
    bool dictate() {
        m_editor = std::make_unique<Editor>("monitor.txt");
        m_program = std::make_unique<Program>();
        if (!QTest::qWaitFor([] { return place(splashName).isValid(); }, patienceMs))
            return false;
        m_keptFocus = focusedName() == editorName();
        // The last of the opening messages.
        if (nextMode(m_stand.get(), patienceMs).isUndefined())
            return false;
        m_keptFocus = m_keptFocus && focusedName() == editorName();
        if (place(splashName).isValid() || !isShrunk())
            return false;
        XKeyboard().play(doubleCtrl);
        return QTest::qWaitFor([] { return !isShrunk(); }, patienceMs);
    }

    static QString editorName() { return desk().folder() + "/monitor.txt"; }
    static bool isTooltipOverEditor() {
        const QRect target = place(editorName());
        const QRect tooltip = place(resultName);
        return qAbs(tooltip.center().x() - target.center().x()) < 10 &&
               qAbs(tooltip.top() - target.top()) < 40;
    }

    static void keepsOffAPanelOfSeveralMonitors() {
        const QPoint before = corner();
        const auto workArea = [] { return desk().run("xprop", {"-root", "_NET_WORKAREA"}); };
        const QString whole = workArea();
        QProcess *panel =
            desk().start("trayer", {"--edge", "bottom", "--monitor", "0", "--height", "40",
                                    "--SetDockType", "true", "--SetPartialStrut", "true"});
        QTRY_VERIFY(workArea() != whole);
        XKeyboard().play(doubleCtrl);
        QTRY_VERIFY(isShrunk());
        XKeyboard().play(doubleCtrl);
        QTRY_COMPARE(place(squareName), QRect(before - QPoint(0, 40), QSize(100, 100)));
        desk().end(panel);
    }

    std::unique_ptr<Editor> m_editor;
    bool m_keptFocus = false;
};

DESK_TEST_MAIN(TestMonitorWindow, needs)
#include "TestMonitorWindow.moc"
