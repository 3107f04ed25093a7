#include "stand/AcousticWorker.h"

#include "core/Exception.h"
#include "stand/SpokenMarks.h"

void AcousticWorker::start() {
    try {
        if (!m_decoder)
            m_decoder = std::make_unique<SphinxDecoder>(m_folder);
        m_decoder->begin();
    } catch (const Exception &problem) {
        emit failed(QString::fromUtf8(problem.what()));
    }
}

void AcousticWorker::feed(const QByteArray &sound) {
    if (!m_decoder)
        return;
    const SphinxDecoder::Heard heard = m_decoder->process(sound);
    tellFinal(heard.finalText);
    if (!heard.partialText.isEmpty())
        emit partialText(written(heard.partialText));
}

void AcousticWorker::finish() {
    if (m_decoder)
        tellFinal(m_decoder->end());
    emit finished();
}

void AcousticWorker::tellFinal(const QString &text) {
    // Coughs and knocks end an utterance without a word in it.
    if (!text.isEmpty())
        emit finalText(written(text));
}

QString AcousticWorker::written(const QString &text) const {
    return m_punctuation ? withSpokenMarks(text) : text;
}
