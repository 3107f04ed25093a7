#include "recognition/ResultManager.h"

#include "commands/AutoReplaceManager.h"
#include "commands/ExecutableCommandsManager.h"
#include "connection/DataMessageProcessor.h"
#include "connection/WebSocketClient.h"
#include "core/settings/ASRSettings.h"
#include "core/settings/LaunchSettings.h"
#include "desktop/TextWriter.h"
#include "recognition/AsrManager.h"
#include "recognition/ResultCharacters.h"
#include "recognition/ResultIterator.h"

#include <QDebug>

ResultManager::ResultManager(WebSocketClient *client, AsrManager *asrManager,
                             AutoReplaceManager *autoReplaceManager,
                             ExecutableCommandsManager *commandsManager)
    : m_asrManager(asrManager),
      m_autoReplaceManager(autoReplaceManager),
      m_commandsManager(commandsManager) {
    connect(client->messageProcessor(), &DataMessageProcessor::modeChanged, this,
            &ResultManager::modeChanged);
    connect(client->messageProcessor(), &DataMessageProcessor::resultReceived, this,
            &ResultManager::resultReceived);
    connect(asrManager, &AsrManager::currentModeOrStateChanged, this,
            &ResultManager::modeStateChanged);
    connect(this, &ResultManager::resultReady, this, &ResultManager::writeTextResult);
}

void ResultManager::modeChanged(const RecognitionModeInfo &info) {
    if (info.state() != AsrState::Started)
        return;
    m_currentMode = info.mode();
    m_awaitsStart = false;
}

void ResultManager::setEnabled(bool enabled) {
    m_enabled = enabled;
    // Of a mode that runs now, the server may still finish what it heard.
    m_awaitsStart = enabled && m_currentMode >= RecognitionMode::Text;
}

void ResultManager::resultReceived(const TextResult &result) {
    if (!m_enabled || m_awaitsStart)
        return;
    switch (m_currentMode) {
    case RecognitionMode::Off:
    case RecognitionMode::VoiceActivation:
        processVoiceActivationResult(result);
        break;
    case RecognitionMode::Text:
        processTextResult(result);
        break;
    case RecognitionMode::TemplatedForm:
    case RecognitionMode::TemplatedWizardForm:
        // Forms get their results through their own session.
        break;
    }
}

void ResultManager::processVoiceActivationResult(const TextResult &result) {
    if (!result.commandId().isEmpty())
        processCommand(result.commandId());
}

QString ResultManager::processCommand(const QString &commandId) {
    return m_commandsManager->executeCommand(commandId);
}

void ResultManager::processTextResult(const TextResult &result) {
    if (result.isFinal())
        setLastResult(std::nullopt);
    else
        setLastResult(result.clone());
    if (!result.commandId().isEmpty())
        emit resultReady(processCommand(result.commandId()), true);
    else
        emit resultReady(formatTextResult(result.text(), result.isFinal()), result.isFinal());
}

void ResultManager::writeTextResult(const QString &text, bool isFinal) {
    if (!isFinal || text.isEmpty())
        return;
    leaveClosedWindow();
    const unsigned long window = getResultWindow();
    const auto typeElsewhere = [this, window, text] {
        leaveClosedWindow();
        // What comes after it in the queue is told of in turn, so the order stays. Text that
        // follows the focus was for the window that has closed, and for no other.
        if (m_outputToBackground && m_resultWindow != window)
            writeTextResult(text, true);
    };
    // A window that closes while it is typed into has taken nobody knows how much of the text.
    if (!TextWriter::WriteText(window, text, {this, typeElsewhere}))
        qWarning() << "A result could not be typed, characters:" << text.size();
}

bool ResultManager::leaveClosedWindow() {
    if (!m_outputToBackground || !m_resultWindow || TextWriter::WindowExists(m_resultWindow))
        return false;
    const unsigned long focused = focusedWindow();
    // Without one, the next text looks again.
    if (!focused)
        return false;
    qInfo() << "The result window is closed, its place is taken by" << focused;
    m_resultWindow = focused;
    m_asrManager->getTargetModeInfo()->UpdateTargetHandles(focused);
    UserNotification notification(NotificationType::Warning, tr("Вывод в фоновое окно"),
                                  tr("Окно, в которое печатался текст, закрыто. Текст печатается в "
                                     "активное окно."));
    // Last words are typed also when the connection is lost.
    notification.setForce(true);
    emit notifyUser(notification);
    return true;
}

unsigned long ResultManager::getResultWindow() const {
    if (m_outputToBackground)
        return m_resultWindow;
    return focusedWindow();
}

unsigned long ResultManager::focusedWindow() const {
    return m_keptWindow ? m_keptWindow : TextWriter::GetFocusedWindow();
}

void ResultManager::keepFocusedWindow(bool isKept) {
    m_keptWindow = isKept ? TextWriter::GetFocusedWindow() : 0;
}

void ResultManager::flushResult() {
    if (!m_lastResult)
        return;
    TextResult result = *m_lastResult;
    result.setIsFinal(true);
    processTextResult(result);
}

void ResultManager::modeStateChanged(RecognitionMode mode, AsrState state) {
    if (state == AsrState::Started) {
        reset();
    } else if (mode == RecognitionMode::Text && state == AsrState::Starting) {
        chooseResultWindow();
    } else if (mode == RecognitionMode::Text && state == AsrState::Stopped &&
               m_outputToBackground && !m_lastResult) {
        // Words that are not final yet still belong there.
        qDebug() << "Clear Result window";
        m_resultWindow = 0;
    }
}

void ResultManager::chooseResultWindow() {
    m_outputToBackground = LaunchSettings().OutputToBackground;
    m_resultWindow = 0;
    if (!m_outputToBackground)
        return;
    TargetModeInfo *target = m_asrManager->getTargetModeInfo();
    // A resumed dictation goes on writing into the window that it was started for.
    if (target->GetTargetHandles(&m_resultWindow))
        return;
    m_resultWindow = TextWriter::GetFocusedWindow();
    qDebug() << "Result window:" << m_resultWindow;
    target->UpdateTargetHandles(m_resultWindow);
}

void ResultManager::reset() {
    m_format = FormatState();
    m_format.capitalizeNext = ASRSettings().CapitalLetterAfterStart;
    m_lastResult.reset();
}

QString ResultManager::formatTextResult(const QString &text, bool isFinal) {
    qDebug().noquote().nospace() << "source text: " << text << (isFinal ? " [final]" : "");
    return formatText(m_autoReplaceManager->ProcessText(text), isFinal);
}

QString ResultManager::formatWord(const QString &text, const ResultPart &part,
                                  const FormatState &state) {
    using namespace ResultCharacters;
    const QChar first = text[part.start];
    if (first == OpeningQuote)
        return state.spaceBeforeQuote ? QStringLiteral(" \"") : QStringLiteral("\"");
    if (first == ClosingQuote)
        return QStringLiteral("\"");
    if (first == Dash)
        return state.spaceBeforeDash ? QStringLiteral(" -") : QStringLiteral("-");
    QString word = text.mid(part.start, part.length);
    if (state.capitalizeNext)
        word[0] = word[0].toUpper();
    return word;
}

QString ResultManager::formatText(const QString &text, bool isFinal) {
    FormatState state = m_format;
    QString result;
    ResultIterator parts(text);
    parts.MoveNext();
    ResultPart current = parts.current();
    if (isFinal && state.spacePending && current.spaceBefore) {
        result += QLatin1Char(' ');
        state.spacePending = false;
        state.spaceBeforeQuote = false;
        state.spaceBeforeDash = false;
    }
    while (parts.MoveNext()) {
        const ResultPart next = parts.current();
        if (current.isSpace) {
            if (state.spacePending && next.spaceBefore)
                result += text.midRef(current.start, current.length);
        } else {
            result += formatWord(text, current, state);
            state.capitalizeNext = current.isEndOfSentence;
        }
        state.spacePending = current.spaceAfter;
        state.spaceBeforeQuote = current.spaceBeforeQuote;
        state.spaceBeforeDash = current.spaceBeforeDash;
        current = next;
    }
    if (isFinal)
        m_format = state;
    return result;
}
