#include "stand/CountingEngine.h"

#include <QStringList>

#include <algorithm>
#include <cstdlib>

namespace {

constexpr int kPartialBytes = 48000;
constexpr int kFinalBytes = 64000;
/// Of 32768; a null sink's own silence is exact.
constexpr int kSilence = 100;

bool isSilent(const QByteArray &sound) {
    const auto *samples = reinterpret_cast<const qint16 *>(sound.constData());
    return std::all_of(samples, samples + sound.size() / 2,
                       [](qint16 sample) { return std::abs(sample) < kSilence; });
}

QString inWords(int number) {
    static const QStringList digits =
        QStringLiteral("ноль один два три четыре пять шесть семь восемь девять").split(' ');
    QString words;
    for (const QChar digit : QString::number(number))
        words += digits[digit.digitValue()] + QLatin1Char(' ');
    return words + QLatin1Char('.');
}

} // namespace

CountingEngine::CountingEngine(int *last, QObject *parent)
    : RecognitionEngine(parent), m_last(last) {}

void CountingEngine::start() {
    m_partial.clear();
    m_bytes = 0;
}

void CountingEngine::feed(const QByteArray &sound) {
    if (isSilent(sound))
        return;
    m_bytes += sound.size();
    if (m_partial.isEmpty() && m_bytes >= kPartialBytes) {
        m_partial = inWords(++*m_last);
        emit partialText(m_partial);
    }
    if (m_bytes >= kFinalBytes)
        end();
}

void CountingEngine::finish() {
    end();
    emit finished();
}

void CountingEngine::end() {
    m_bytes = 0;
    if (m_partial.isEmpty())
        return;
    // Cleared first: the receiver may end the connection, and this engine with it.
    const QString text = m_partial;
    m_partial.clear();
    emit finalText(text);
}

void CountingEngine::setPunctuation(bool) {}
