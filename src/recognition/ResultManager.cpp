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

#include <utility>

namespace {

/// How often, in milliseconds, texts whose window has closed look for another, and for how long.
constexpr int DisplacedLookMs = 100;
constexpr int DisplacedMs = 60000;

} // namespace

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
    connect(&m_displacedTimer, &QTimer::timeout, this, &ResultManager::typeDisplaced);
}

ResultManager::~ResultManager() {
    if (!m_displaced.isEmpty())
        qWarning() << "No window for the last texts, number:" << m_displaced.size();
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
    const unsigned long window = getResultWindow();
    // Behind those that wait for a window, so that the order stays.
    if (!m_displaced.isEmpty() || (m_closedWindow && !TextWriter::TakesText(window)))
        awaitWindow(text);
    else
        handOver(window, text);
}

void ResultManager::handOver(unsigned long window, const QString &text) {
    const bool hasFixedWindow = m_outputToBackground || m_closedWindow;
    const auto onFailure = [this, window, text, hasFixedWindow] {
        onNotTyped(window, text, hasFixedWindow);
    };
    if (!TextWriter::WriteText(window, text, {this, onFailure}))
        qWarning() << "A result could not be typed, characters:" << text.size();
}

void ResultManager::onNotTyped(unsigned long window, const QString &text, bool hasFixedWindow) {
    if (!hasFixedWindow || TextWriter::WindowExists(window)) {
        tellNotTyped(text.size());
        return;
    }
    leaveClosedWindow(window);
    // A window that closes while it is typed into has taken nobody knows how much of the text.
    awaitWindow(text);
}

void ResultManager::leaveClosedWindow(unsigned long window) {
    if (m_closedWindow)
        return;
    qInfo() << "The result window is closed, from here on the focus is followed";
    m_closedWindow = window;
    if (m_resultWindow == window) {
        m_outputToBackground = false;
        m_resultWindow = 0;
        m_asrManager->getTargetModeInfo()->UpdateTargetHandles(0);
    }
    tell(tr("Вывод в фоновое окно"),
         tr("Окно, в которое печатался текст, закрыто. Текст печатается в активное окно."));
}

void ResultManager::awaitWindow(const QString &text) {
    m_displaced += text;
    if (m_displacedTimer.isActive())
        return;
    m_sinceDisplaced.start();
    m_displacedTimer.start(DisplacedLookMs);
}

void ResultManager::typeDisplaced() {
    const unsigned long window = focusedWindow();
    const bool isFound = TextWriter::TakesText(window);
    if (!isFound && !m_sinceDisplaced.hasExpired(DisplacedMs))
        return;
    m_displacedTimer.stop();
    const QStringList texts = std::exchange(m_displaced, {});
    if (!isFound)
        tellNotTyped(texts.join(QString()).size());
    else
        for (const QString &text : texts)
            handOver(window, text);
}

void ResultManager::tellNotTyped(int characters) {
    qWarning() << "A result could not be typed, characters:" << characters;
    tell(tr("Текст не напечатан"),
         tr("Окно закрыто раньше, чем в него напечатан весь текст. Символов в тексте: %1.")
             .arg(characters));
}

void ResultManager::tell(const QString &title, const QString &message) {
    UserNotification notification(NotificationType::Warning, title, message);
    // Last words are typed also when the connection is lost.
    notification.setForce(true);
    emit notifyUser(notification);
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
    m_closedWindow = 0;
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
