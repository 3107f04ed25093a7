#include "stand/ScriptedEngine.h"

ScriptedEngine::ScriptedEngine(const Script &script, QObject *parent)
    : RecognitionEngine(parent), m_script(script) {}

void ScriptedEngine::start() {
    m_bytes = 0;
    m_nextStep = 0;
}

void ScriptedEngine::feed(const QByteArray &sound) {
    m_bytes += sound.size();
    while (m_nextStep < m_script.steps().size()) {
        const Script::Step &step = m_script.steps()[m_nextStep];
        if (!step.atStop && step.atBytes > m_bytes)
            return;
        // Counted first: a command may end the connection, and this run with it.
        ++m_nextStep;
        if (!step.atStop)
            play(step);
    }
}

void ScriptedEngine::finish() {
    for (const Script::Step &step : m_script.steps()) {
        if (step.atStop)
            play(step);
    }
    emit finished();
}

void ScriptedEngine::setPunctuation(bool) {}

void ScriptedEngine::play(const Script::Step &step) {
    if (!step.command.isEmpty())
        emit commandReached(step.command);
    else if (step.isFinal)
        emit finalText(step.text);
    else
        emit partialText(step.text);
}
