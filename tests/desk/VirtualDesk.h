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
/// The constructor puts HOME, TMPDIR, the XDG folders and DISPLAY of the desk into this process's
/// environment, so it is to be made before the application object. The destructor ends every
/// process that was started here; after a crash of this process the kernel does. Everything that
/// cannot be raised throws std::runtime_error with the reason. To be used from the main thread.
class VirtualDesk {
public:
    enum Need {
        Folders = 0,
        Screen = 1, ///< Xvfb, openbox, layouts us,ru
        Sound = 2,  ///< PulseAudio: sinks "speaker" and "micfeed", source "mic"
        Tray = 4,   ///< trayer; needs Screen
    };
    Q_DECLARE_FLAGS(Needs, Need)

    explicit VirtualDesk(Needs needs);
    ~VirtualDesk();
    VirtualDesk(const VirtualDesk &) = delete;
    VirtualDesk &operator=(const VirtualDesk &) = delete;

    /// The desk's own folder, removed with the desk unless VELLUMAR_KEEP_DESK is set. The standard
    /// error of each process lies in its subfolder "log".
    QString folder() const;

    /// Runs a program to its end and returns its standard output.
    /// @throws std::runtime_error  it cannot be started, fails, or takes over 30 s
    QString run(const QString &program, const QStringList &arguments);
    /// Starts a program that is ended with the desk; the desk keeps owning it. Its standard output
    /// can be read if the application object exists by then, else it goes to the folder "log".
    QProcess *start(const QString &program, const QStringList &arguments);
    /// Ends a process of start() now and forgets it.
    void end(QProcess *process);

    void startSound();
    void stopSound();
    /// Plugs a device: `pactl load-module …`; returns the module's index.
    QString loadModule(const QStringList &arguments);
    void unloadModule(const QString &index);
    /// Starts to play a WAV file into the microphone and returns at once.
    QProcess *speak(const QString &wavFile);

    /// Saves a picture of the whole screen.
    void screenshot(const QString &pngFile);

private:
    void makeFolders();
    void startScreen();
    void startTray();
    void startServer();
    void awaitUp(QProcess *process, const char *what, const std::function<bool()> &isUp);

    QTemporaryDir m_folder;
    std::vector<std::unique_ptr<DeskProcess>> m_processes;
    QProcess *m_sound = nullptr;
    int m_started = 0;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(VirtualDesk::Needs)
