#pragma once

#include "connection/messages/RecognitionModeInfo.h"
#include "connection/messages/TextResult.h"
#include "connection/messages/UserNotification.h"

#include <QObject>

#include <optional>

class AsrManager;
class AutoReplaceManager;
class ExecutableCommandsManager;
class WebSocketClient;
struct ResultPart;

/// Decides what each result of the server means in the current mode: text to type, a command to
/// run, or nothing; and settles which window gets the text.
///
/// Lives on the main thread; typing a final result blocks it. The collaborators are not owned.
class ResultManager : public QObject {
    Q_OBJECT

public:
    ResultManager(WebSocketClient *client, AsrManager *asrManager,
                  AutoReplaceManager *autoReplaceManager,
                  ExecutableCommandsManager *commandsManager);

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
    /// Gives the focused window the place of the dictation's own if that is gone.
    /// @return whether it did
    bool leaveClosedWindow();
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
    /// The X window kept by keepFocusedWindow(), 0 for none.
    unsigned long m_keptWindow = 0;
    FormatState m_format;
    std::optional<TextResult> m_lastResult;
    bool m_enabled = true;
    /// Nothing counts before the next mode has started.
    bool m_awaitsStart = false;
};
