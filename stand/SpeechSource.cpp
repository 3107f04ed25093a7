#include "stand/SpeechSource.h"

#include <QStandardPaths>

#include <algorithm>
#include <array>

namespace {

struct Voice {
    const char *name;
    const char *variant;
};
constexpr std::array<Voice, 3> kVoices{
    {{"Александр", "ru"}, {"Елена", "ru+f2"}, {"Николай", "ru+m3"}}};
constexpr int kWavHeaderBytes = 44;
constexpr int kFrameBytes = 8192;
constexpr double kNormalWordsAMinute = 160;
const QString kProgram = QStringLiteral("espeak-ng");

QString variantOf(const QString &voice) {
    for (const Voice &known : kVoices) {
        if (voice == QString::fromUtf8(known.name))
            return QString::fromLatin1(known.variant);
    }
    return QString::fromLatin1(kVoices.front().variant);
}

} // namespace

SpeechSource::SpeechSource(QObject *parent) : QObject(parent) {
    m_process.setProgram(kProgram);
    m_process.setStandardErrorFile(QProcess::nullDevice());
    connect(&m_process, &QProcess::readyReadStandardOutput, this, &SpeechSource::readSound);
    connect(&m_process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            &SpeechSource::startNext);
}

SpeechSource::~SpeechSource() {
    stop();
}

bool SpeechSource::isAvailable() {
    return !QStandardPaths::findExecutable(kProgram).isEmpty();
}

QStringList SpeechSource::voices() {
    QStringList names;
    for (const Voice &voice : kVoices)
        names.append(QString::fromUtf8(voice.name));
    return names;
}

void SpeechSource::speak(const QString &text, const QString &voice, double speed) {
    const int wordsAMinute = qRound(std::clamp(speed, 0.5, 3.0) * kNormalWordsAMinute);
    m_waiting.enqueue({text.toUtf8(),
                       {QStringLiteral("--stdout"), QStringLiteral("--stdin"), QStringLiteral("-v"),
                        variantOf(voice), QStringLiteral("-s"), QString::number(wordsAMinute)}});
    if (m_process.state() == QProcess::NotRunning)
        startNext();
}

void SpeechSource::stop() {
    m_waiting.clear();
    if (m_process.state() == QProcess::NotRunning)
        return;
    const QSignalBlocker quiet(m_process);
    m_process.kill();
    m_process.waitForFinished(2000);
}

void SpeechSource::startNext() {
    if (m_waiting.isEmpty())
        return;
    const Text next = m_waiting.dequeue();
    m_buffer.clear();
    m_headerRead = false;
    m_process.setArguments(next.arguments);
    m_process.start();
    // The text goes in by stdin: as an argument it could be taken for an option.
    m_process.write(next.text);
    m_process.closeWriteChannel();
}

void SpeechSource::readSound() {
    m_buffer += m_process.readAllStandardOutput();
    if (!m_headerRead) {
        if (m_buffer.size() < kWavHeaderBytes)
            return;
        m_buffer.remove(0, kWavHeaderBytes);
        m_headerRead = true;
    }
    while (m_buffer.size() >= 2) {
        const int size = qMin(m_buffer.size(), kFrameBytes) & ~1;
        emit sound(m_buffer.left(size));
        m_buffer.remove(0, size);
    }
}
