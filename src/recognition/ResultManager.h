#pragma once

#include "connection/messages/RecognitionModeInfo.h"
#include "connection/messages/TextResult.h"
#include "connection/messages/UserNotification.h"

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <optional>

class AsrManager;
class AutoReplaceManager;
class ExecutableCommandsManager;
class WebSocketClient;
struct ResultPart;

/// Decides what each result of the server means in the current mode: text to type, a command to
/// run, or nothing; and settles which window gets the text.
///
/// Lives on the main thread and waits for no window: typing is handed over. The collaborators are
/// not owned.
class ResultManager : public QObject {
    Q_OBJECT

public:
    ResultManager(WebSocketClient *client, AsrManager *asrManager,
                  AutoReplaceManager *autoReplaceManager,
                  ExecutableCommandsManager *commandsManager);
    ~ResultManager() override;

    /// Types the last partial result as final: the server will not finish it any more.
    void flushResult();

    /// The window that results go to, 0 if none has the focus.
    unsigned long getResultWindow() const;
    /// While kept, results that would follow the focus go to the window that has it now: a popup of
    /// the program's own is about to take the focus, and has no use for text.
    void keepFocusedWindow(bool isKept);

    /// Applies the replacements and turns recognised text into typed prose.
    QString formatTextResult(const QString &text, bool isFinal);
    /// Sets spaces, capitals and marks, relative to what was typed before. Only a final text moves
    /// that state on.
    QString formatText(const QString &text, bool isFinal);

    /// While off, results are dropped; behind that too, those of the mode that runs at the moment.
    void setEnabled(bool enabled);

public slots:
    void modeChanged(const RecognitionModeInfo &info);
    void resultReceived(const TextResult &result);
    void modeStateChanged(RecognitionMode mode, AsrState state);

signals:
    void resultReady(QString text, bool isFinal);
    void notifyUser(const UserNotification &notification);

private:
    /// What was typed so far, as far as it concerns the next text.
    struct FormatState {
        bool capitalizeNext = true;
        /// The text ended with something that wants a space after it.
        bool spacePending = false;
        bool spaceBeforeQuote = true;
        bool spaceBeforeDash = true;
    };

    void processTextResult(const TextResult &result);
    void processVoiceActivationResult(const TextResult &result);
    QString processCommand(const QString &commandId);
    void writeTextResult(const QString &text, bool isFinal);
    void handOver(unsigned long window, const QString &text);
    /// The text was not typed to the end. What was for a fixed window that has closed goes to the
    /// focused one; what followed the focus was for the window that has closed, and for no other.
    void onNotTyped(unsigned long window, const QString &text, bool hasFixedWindow);
    /// From here on the dictation follows the focus, as its own window has closed.
    void leaveClosedWindow(unsigned long window);
    /// Keeps the text until a window has the focus that takes it, for a minute at most.
    void awaitWindow(const QString &text);
    void typeDisplaced();
    void tellNotTyped(int characters);
    void tell(const QString &title, const QString &message);
    void chooseResultWindow();
    /// The window in the focus, or the one that keepFocusedWindow() keeps.
    unsigned long focusedWindow() const;
    void setLastResult(const std::optional<TextResult> &result) { m_lastResult = result; }
    void reset();
    static QString formatWord(const QString &text, const ResultPart &part,
                              const FormatState &state);

    RecognitionMode m_currentMode = RecognitionMode::Off;
    AsrManager *m_asrManager;
    AutoReplaceManager *m_autoReplaceManager;
    ExecutableCommandsManager *m_commandsManager;
    /// The X window of the dictation when output goes to a fixed window.
    unsigned long m_resultWindow = 0;
    bool m_outputToBackground = false;
    /// The X window that the dictation has lost, 0 for none.
    unsigned long m_closedWindow = 0;
    /// Texts whose window has closed, in their order.
    QStringList m_displaced;
    QTimer m_displacedTimer{this};
    QElapsedTimer m_sinceDisplaced;
    /// The X window kept by keepFocusedWindow(), 0 for none.
    unsigned long m_keptWindow = 0;
    FormatState m_format;
    std::optional<TextResult> m_lastResult;
    bool m_enabled = true;
    /// Nothing counts before the next mode has started.
    bool m_awaitsStart = false;
};
