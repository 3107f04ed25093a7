#include "VirtualDesk.h"

#include "DeskProcess.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>

#include <X11/Xlib.h>
#include <algorithm>
#include <csignal>
#include <stdexcept>
#include <utility>

namespace {

constexpr int upTimeoutMs = 30000;

/// A panel along a whole edge, with a list of windows and a tray.
constexpr char panelSettings[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="length" type="double" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="30"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/><value type="int" value="2"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="tasklist"/>
    <property name="plugin-2" type="string" value="systray"/>
  </property>
</channel>
)";

/// The desk's devices, as modules of PulseAudio. What is played to "micfeed" is said to "mic".
const QStringList devices[] = {
    {"module-null-sink", "sink_name=speaker", "sink_properties=device.description=Speaker"},
    {"module-null-sink", "sink_name=micfeed", "sink_properties=device.description=Feed"},
    {"module-remap-source", "master=micfeed.monitor", "source_name=mic",
     "source_properties=device.description=Microphone"},
};

using XConnection = std::unique_ptr<Display, decltype(&XCloseDisplay)>;

[[noreturn]] void fail(const QString &reason) {
    throw std::runtime_error(reason.toStdString());
}

XConnection connectToScreen() {
    XConnection display(XOpenDisplay(nullptr), &XCloseDisplay);
    if (!display)
        fail("the desk's X server does not answer");
    return display;
}

bool hasProperty(Display *display, Window window, const char *name) {
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char *value = nullptr;
    XGetWindowProperty(display, window, XInternAtom(display, name, False), 0, 1, False,
                       AnyPropertyType, &type, &format, &count, &left, &value);
    if (value)
        XFree(value);
    return type != 0;
}

/// Asks the window manager for the frame of a window that is never shown. The answer comes from its
/// event loop as the property _NET_FRAME_EXTENTS of that window.
void askForFrame(Display *display, Window window) {
    XEvent question{};
    question.xclient.type = ClientMessage;
    question.xclient.window = window;
    question.xclient.message_type = XInternAtom(display, "_NET_REQUEST_FRAME_EXTENTS", False);
    question.xclient.format = 32;
    XSendEvent(display, DefaultRootWindow(display), False,
               SubstructureNotifyMask | SubstructureRedirectMask, &question);
    XFlush(display);
}

bool hasTray(Display *display) {
    const Atom tray = XInternAtom(display, "_NET_SYSTEM_TRAY_S0", False);
    return XGetSelectionOwner(display, tray) != 0;
}

VirtualDesk::Needs withChosenServer(VirtualDesk::Needs needs) {
    const bool isChosen = qgetenv("VELLUMAR_DESK_SOUND") == "pipewire";
    return isChosen && needs & VirtualDesk::Sound ? needs | VirtualDesk::PipeWire : needs;
}

/// Nothing of the caller's own desktop, sound server or proxy may reach the desk's programs.
void forgetOuterDesktop() {
    const QByteArray names =
        "http_proxy https_proxy all_proxy no_proxy HTTP_PROXY HTTPS_PROXY ALL_PROXY NO_PROXY "
        "DISPLAY WAYLAND_DISPLAY XAUTHORITY XMODIFIERS XDG_CURRENT_DESKTOP XDG_SESSION_TYPE "
        "PULSE_SERVER PULSE_SINK PULSE_SOURCE PULSE_COOKIE PULSE_CLIENTCONFIG PULSE_RUNTIME_PATH "
        "QT_IM_MODULE GTK_IM_MODULE QT_STYLE_OVERRIDE QT_QPA_PLATFORMTHEME LANGUAGE";
    for (const QByteArray &name : names.split(' '))
        qunsetenv(name);
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("NO_AT_BRIDGE", "1");
    // Without a graphics card GL is emulated: slow, and the emulator leaks when it is unloaded.
    qputenv("QT_XCB_GL_INTEGRATION", "none");
    qputenv("QT_QUICK_BACKEND", "software");
    // Otherwise the first program that looks for a session bus would start one that nobody ends.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
}

} // namespace

VirtualDesk::VirtualDesk(Needs needs)
    : m_needs(withChosenServer(needs)), m_folder(QDir::tempPath() + "/vellumar-desk-XXXXXX") {
    if (!m_folder.isValid())
        fail("no folder for the desk: " + m_folder.errorString());
    m_folder.setAutoRemove(!qEnvironmentVariableIsSet("VELLUMAR_KEEP_DESK"));
    forgetOuterDesktop();
    makeFolders();
    const bool hasScreen = needs & (Screen | Tray | Xfce | TwoMonitors | Bare);
    qputenv("QT_QPA_PLATFORM", hasScreen ? "xcb" : "offscreen");
    if (hasScreen)
        startScreen();
    if (needs & Tray)
        startTray();
    if (needs & (Sound | PipeWire))
        startSound();
}

VirtualDesk::~VirtualDesk() {
    // The last started goes first, so that the X server outlives its clients.
    while (!m_processes.empty())
        m_processes.pop_back();
}

void VirtualDesk::write(const QString &path, const QByteArray &content) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        fail(QString("cannot write %1").arg(path));
}

QString VirtualDesk::read(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void VirtualDesk::makeFolders() {
    const QDir root(m_folder.path());
    const std::vector<std::pair<const char *, QString>> folders = {
        {"HOME", "home"},          {"TMPDIR", "tmp"},           {"XDG_CONFIG_HOME", "config"},
        {"XDG_DATA_HOME", "data"}, {"XDG_CACHE_HOME", "cache"}, {"XDG_RUNTIME_DIR", "runtime"},
    };
    for (const auto &[variable, name] : folders) {
        root.mkpath(name);
        const QString path = root.filePath(name);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv(variable, path.toLocal8Bit());
    }
    root.mkpath("log");
    root.mkpath("config/pulse");
    // A client that finds no server must not start one behind the back of a test that ended it.
    write(root.filePath("config/pulse/client.conf"), "autospawn = no\n");
}

QProcess *VirtualDesk::startServer() {
    if (m_needs & TwoMonitors)
        return startTwoMonitors();
    return start(
        "Xvfb", {"-displayfd", "1", "-screen", "0", "1280x800x24", "-noreset", "-nolisten", "tcp"});
}

QProcess *VirtualDesk::startTwoMonitors() {
    // Xvfb puts the monitors of one screen on top of each other; the dummy driver does not. It is
    // kept off the machine's own cards, keyboards and consoles.
    const QString file = m_folder.filePath("xorg.conf");
    write(file, R"(Section "ServerFlags"
    Option "AutoAddDevices" "false"
    Option "AutoAddGPU" "false"
    Option "DontVTSwitch" "true"
EndSection
Section "Device"
    Identifier "card"
    Driver "dummy"
    VideoRam 65536
EndSection
Section "Monitor"
    Identifier "monitor"
    HorizSync 5.0-1000.0
    VertRefresh 5.0-200.0
EndSection
Section "Screen"
    Identifier "screen"
    Device "card"
    Monitor "monitor"
    DefaultDepth 24
EndSection
)");
    return start("Xorg",
                 {"-displayfd", "1", "-config", file, "-logfile", m_folder.filePath("log/Xorg"),
                  "-noreset", "-novtswitch", "-sharevts", "-nolisten", "tcp"});
}

void VirtualDesk::placeMonitors() {
    // The second one counts as plugged in once it has a mode and somebody asks for it anew.
    for (const char *arguments : {"--addmode DUMMY1 1024x768",
                                  "--output DUMMY0 --mode 1280x800 --primary "
                                  "--output DUMMY1 --mode 1024x768 --right-of DUMMY0",
                                  "--query"})
        run("xrandr", QString::fromLatin1(arguments).split(' '));
}

void VirtualDesk::startScreen() {
    QProcess *server = startServer();
    QByteArray number;
    const QDeadlineTimer deadline(upTimeoutMs);
    while (!number.endsWith('\n')) {
        if (!server->waitForReadyRead(static_cast<int>(deadline.remainingTime())))
            fail("the X server names no display: " + server->errorString());
        number += server->readAllStandardOutput();
    }
    qputenv("DISPLAY", ":" + number.trimmed());
    if (m_needs & TwoMonitors)
        placeMonitors();
    run("setxkbmap", {"-layout", "us,ru"});
    if (m_needs & Xfce)
        startSessionBus();
    if (!(m_needs & Bare))
        startWindowManager();
}

void VirtualDesk::startWindowManager() {
    const XConnection display = connectToScreen();
    const Window root = DefaultRootWindow(display.get());
    const Window asked = XCreateSimpleWindow(display.get(), root, 0, 0, 10, 10, 0, 0, 0);
    m_windowManager = m_needs & Xfce ? start("xfwm4", {"--compositor=off"}) : start("openbox", {});
    // The window manager names itself early and loses what comes before its event loop; a window
    // shown till then would not get the focus. So it is up when it answers.
    awaitUp(m_windowManager, "the window manager", [&] {
        if (hasProperty(display.get(), asked, "_NET_FRAME_EXTENTS"))
            return true;
        askForFrame(display.get(), asked);
        return false;
    });
}

void VirtualDesk::startSessionBus() {
    const QDir root(m_folder.path());
    root.mkpath("bus");
    // Only what belongs to the session may be started over the bus.
    for (const char *service :
         {"org.xfce.Xfconf.service", "org.xfce.xfce4-notifyd.Notifications.service"}) {
        const QString name = QLatin1String(service);
        if (!QFile::link("/usr/share/dbus-1/services/" + name, root.filePath("bus/" + name)))
            fail(QString("cannot offer %1 on the session bus").arg(name));
    }
    const QString file = root.filePath("bus/session.conf");
    write(file, QStringLiteral(R"(<busconfig>
  <type>session</type>
  <listen>%1</listen>
  <servicedir>%2</servicedir>
  <policy context="default">
    <allow send_destination="*"/><allow receive_sender="*"/><allow own="*"/>
  </policy>
</busconfig>
)")
                    .arg(busAddress(), root.filePath("bus"))
                    .toLocal8Bit());
    root.mkpath("config/xfce4/xfconf/xfce-perchannel-xml");
    write(root.filePath("config/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml"), panelSettings);
    qputenv("DBUS_SESSION_BUS_ADDRESS", busAddress().toLocal8Bit());
    qputenv("GIO_USE_VFS", "local");
    QProcess *bus = start("dbus-daemon", {"--config-file", file, "--nofork", "--nopidfile"});
    awaitUp(bus, "dbus-daemon", [&root] { return QFile::exists(root.filePath("runtime/bus")); });
}

void VirtualDesk::startTray(Edge edge) {
    if (m_tray)
        return;
    const XConnection display = connectToScreen();
    if (m_needs & Xfce) {
        m_tray = startPanel(edge);
    } else {
        m_tray =
            start("trayer", {"--edge", edge == Edge::Top ? "top" : "bottom", "--align", "right"});
    }
    awaitUp(m_tray, "the tray", [this, &display] {
        return hasTray(display.get()) && (!(m_needs & Xfce) || hasStatusNotifier());
    });
}

void VirtualDesk::stopTray() {
    end(m_tray);
    m_tray = nullptr;
}

void VirtualDesk::stopWindowManager() {
    end(m_windowManager);
    m_windowManager = nullptr;
}

QProcess *VirtualDesk::startPanel(Edge edge) {
    // The number of the corner to start from.
    const QString position = edge == Edge::Top ? "p=6;x=0;y=0" : "p=8;x=0;y=0";
    run("xfconf-query", {"-c", "xfce4-panel", "-n", "-p", "/panels/panel-1/position", "-t",
                         "string", "-s", position});
    return start("xfce4-panel", {});
}

bool VirtualDesk::hasStatusNotifier() {
    return run("dbus-send",
               {"--session", "--print-reply", "--dest=org.freedesktop.DBus", "/",
                "org.freedesktop.DBus.NameHasOwner", "string:org.kde.StatusNotifierWatcher"})
        .contains("boolean true");
}

void VirtualDesk::startSound() {
    if (m_sound)
        return;
    if (hasPipeWire()) {
        startBareSound();
        plugDevices();
        return;
    }
    QStringList arguments;
    for (const QStringList &device : devices)
        arguments << "--load=" + device.join(' ');
    startPulseAudio(arguments);
}

void VirtualDesk::startBareSound() {
    if (hasPipeWire())
        startPipeWire();
    else
        startPulseAudio({});
}

void VirtualDesk::plugDevices() {
    for (const QStringList &device : devices)
        loadModule(device);
}

void VirtualDesk::unplugDevices() {
    for (const char *module : {"module-remap-source", "module-null-sink"})
        unloadModule(module);
}

void VirtualDesk::startPulseAudio(const QStringList &arguments) {
    m_sound = start("pulseaudio", QStringList{"--daemonize=no", "--exit-idle-time=-1", "-n",
                                              "--load=module-native-protocol-unix"} +
                                      arguments + QStringList{"--load=module-always-sink"});
    awaitSound();
}

void VirtualDesk::awaitSound() {
    awaitUp(m_sound, "the sound server", [this] { return !ask("pactl", {"info"}).isEmpty(); });
}

void VirtualDesk::startPipeWire() {
    m_pipeWire = start("pipewire", {});
    awaitUp(m_pipeWire, "pipewire",
            [this] { return QFile::exists(m_folder.filePath("runtime/pipewire-0")); });
    startSessionManager();
    m_sound = start("pipewire-pulse", {});
    awaitSound();
}

void VirtualDesk::startSessionManager() {
    const QByteArray outside = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    // The manager ends without a bus, and nobody else is to know of this one.
    if (!QFile::exists(m_folder.filePath("runtime/bus")))
        startSessionBus();
    qputenv("DBUS_SESSION_BUS_ADDRESS", busAddress().toLocal8Bit());
    m_sessionManager = start("wireplumber", {});
    qputenv("DBUS_SESSION_BUS_ADDRESS", outside);
}

void VirtualDesk::restartSessionManager() {
    end(m_sessionManager);
    startSessionManager();
}

void VirtualDesk::stopSound() {
    for (QProcess **process : {&m_sound, &m_sessionManager, &m_pipeWire})
        end(std::exchange(*process, nullptr));
}

void VirtualDesk::hangSound() {
    if (::kill(static_cast<pid_t>(m_sound->processId()), SIGSTOP) != 0)
        fail("the sound server cannot be stopped");
}

void VirtualDesk::resumeSound() {
    ::kill(static_cast<pid_t>(m_sound->processId()), SIGCONT);
}

void VirtualDesk::awaitUp(QProcess *process, const char *what, const std::function<bool()> &isUp) {
    constexpr int betweenProbesMs = 20;
    const QDeadlineTimer deadline(upTimeoutMs);
    while (!isUp()) {
        // The wait between two looks is one for the process's untimely end.
        if (process->waitForFinished(betweenProbesMs) || process->state() == QProcess::NotRunning)
            fail(QString("%1 ended at once with status %2")
                     .arg(QLatin1String(what))
                     .arg(process->exitCode()));
        if (deadline.hasExpired())
            fail(QString("%1 did not come up").arg(QLatin1String(what)));
    }
}

QString VirtualDesk::run(const QString &program, const QStringList &arguments) {
    DeskProcess process;
    process.start(program, arguments);
    if (!process.waitForStarted() || !process.waitForFinished())
        fail(QString("%1: %2").arg(program, process.errorString()));
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        fail(QString("%1 %2 failed: %3")
                 .arg(program, arguments.join(' '),
                      QString::fromLocal8Bit(process.readAllStandardError())));
    return QString::fromUtf8(process.readAllStandardOutput());
}

QString VirtualDesk::ask(const QString &program, const QStringList &arguments) {
    try {
        return run(program, arguments).trimmed();
    } catch (const std::runtime_error &) {
        return QString();
    }
}

QProcess *VirtualDesk::start(const QString &program, const QStringList &arguments) {
    const QString log =
        QString("%1/log/%2-%3")
            .arg(m_folder.path(), QString::number(++m_started).rightJustified(2, '0'),
                 program.section('/', -1));
    auto process = std::make_unique<DeskProcess>();
    process->setStandardErrorFile(log + ".err");
    // Without an event loop nobody would read a pipe, and a talkative program would block on it;
    // an X server tells the number of its display there and nothing more.
    if (!QCoreApplication::instance() && !program.startsWith('X'))
        process->setStandardOutputFile(log + ".out");
    process->start(program, arguments);
    if (!process->waitForStarted())
        fail(QString("%1: %2").arg(program, process->errorString()));
    m_processes.push_back(std::move(process));
    return m_processes.back().get();
}

void VirtualDesk::end(QProcess *process) {
    const auto known = std::find_if(m_processes.begin(), m_processes.end(),
                                    [process](const auto &own) { return own.get() == process; });
    if (known != m_processes.end())
        m_processes.erase(known);
}

QString VirtualDesk::loadModule(const QStringList &arguments) {
    return run("pactl", QStringList{"load-module"} + arguments).trimmed();
}
