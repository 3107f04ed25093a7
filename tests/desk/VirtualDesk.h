#pragma once

#include <QFlags>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <vector>

class DeskProcess;

/// A desk of its own for one test executable: folders, and where asked for an X server with a
/// window manager, a tray and a PulseAudio server.
///
/// The constructor puts HOME, TMPDIR, the XDG folders, DISPLAY and the address of the session bus
/// of the desk into this process's environment, so it is to be made before the application object.
/// The destructor ends every process that was started here; after a crash of this process the
/// kernel does. Everything that cannot be raised throws std::runtime_error with the reason. To be
/// used from the main thread. With VELLUMAR_DESK_SOUND=pipewire in the environment every desk with
/// sound is one of PipeWire.
class VirtualDesk {
public:
    enum Need {
        Folders = 0,
        Screen = 1,       ///< an X server with openbox, layouts us,ru
        Sound = 2,        ///< PulseAudio: sinks "speaker" and "micfeed", source "mic"
        Tray = 4,         ///< trayer, or the panel of Xfce; implies Screen
        Xfce = 8,         ///< xfwm4 instead of openbox, a session bus; implies Screen
        TwoMonitors = 16, ///< 1280x800 and, on its right, 1024x768; implies Screen
        Bare = 32,        ///< an X server without any window manager
        PipeWire = 64,    ///< the same devices by PipeWire in PulseAudio's place; implies Sound
    };
    Q_DECLARE_FLAGS(Needs, Need)

    /// Where the tray or the panel lies on the primary monitor.
    enum class Edge { Top, Bottom };

    explicit VirtualDesk(Needs needs);
    ~VirtualDesk();
    VirtualDesk(const VirtualDesk &) = delete;
    VirtualDesk &operator=(const VirtualDesk &) = delete;

    /// The desk's own folder, removed with the desk unless VELLUMAR_KEEP_DESK is set. The standard
    /// error of each process lies in its subfolder "log".
    QString folder() const { return m_folder.path(); }

    /// Writes a file anew.
    /// @throws std::runtime_error  it cannot be written
    static void write(const QString &path, const QByteArray &content);
    /// A file as text; empty if there is none.
    static QString read(const QString &path);

    /// Runs a program to its end and returns its standard output.
    /// @throws std::runtime_error  it cannot be started, fails, or takes over 30 s
    QString run(const QString &program, const QStringList &arguments);
    /// The same without the spaces around it; empty if the program fails.
    QString ask(const QString &program, const QStringList &arguments);
    /// Starts a program that is ended with the desk; the desk keeps owning it. Its standard output
    /// can be read if the application object exists by then, else it goes to the folder "log".
    QProcess *start(const QString &program, const QStringList &arguments);
    /// Ends a process of start() now and forgets it.
    void end(QProcess *process);

    /// Starts the session's tray, unless it runs, and returns when icons can dock.
    void startTray(Edge edge = Edge::Top);
    void stopTray();
    /// Ends the window manager for good; nobody gives the focus to anyone from then on.
    void stopWindowManager();
    bool hasPipeWire() const { return m_needs & PipeWire; }
    void startSound();
    /// Starts the sound server alone, which then offers one device with nothing behind it.
    void startBareSound();
    /// Plugs the devices of the desk, and unplugs all devices.
    void plugDevices();
    void unplugDevices();
    void stopSound();
    /// Lets the sound server answer nobody until it is resumed or stopped.
    void hangSound();
    void resumeSound();
    /// Ends and starts PipeWire's session manager, as an update of the desktop does.
    void restartSessionManager();
    /// Plugs a device: `pactl load-module …`; returns the module's index.
    QString loadModule(const QStringList &arguments);
    void unloadModule(const QString &index) { run("pactl", {"unload-module", index}); }
    /// Starts to play a WAV file into the microphone and returns at once.
    QProcess *speak(const QString &wavFile) {
        return start("paplay", {"--device=micfeed", wavFile});
    }

    /// Saves a picture of the whole screen.
    void screenshot(const QString &pngFile) { run("import", {"-window", "root", pngFile}); }

private:
    void makeFolders();
    void startScreen();
    QProcess *startServer();
    QProcess *startTwoMonitors();
    void placeMonitors();
    void startWindowManager();
    QString busAddress() const { return "unix:path=" + m_folder.filePath("runtime/bus"); }
    void startSessionBus();
    void startPulseAudio(const QStringList &arguments);
    void awaitSound();
    void startPipeWire();
    void startSessionManager();
    QProcess *startPanel(Edge edge);
    bool hasStatusNotifier();
    void awaitUp(QProcess *process, const char *what, const std::function<bool()> &isUp);

    const Needs m_needs;
    QTemporaryDir m_folder;
    std::vector<std::unique_ptr<DeskProcess>> m_processes;
    QProcess *m_windowManager = nullptr;
    QProcess *m_tray = nullptr;
    /// The server that programs talk to, and what it needs with PipeWire.
    QProcess *m_sound = nullptr;
    QProcess *m_pipeWire = nullptr;
    QProcess *m_sessionManager = nullptr;
    int m_started = 0;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(VirtualDesk::Needs)
