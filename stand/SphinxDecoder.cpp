#include "stand/SphinxDecoder.h"

#include "core/Exception.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <cstring>
#include <pocketsphinx.h>
#include <sphinxbase/cmn.h>
#include <sphinxbase/err.h>
#include <sphinxbase/feat.h>
#include <vector>

namespace {

static_assert(std::is_same_v<mfcc_t, float>, "the library is built for fixed-point numbers");

/// Where the running mean of the voice begins: without it the first sentences are guesswork.
const char *const kFirstMean = "50.8,-5.8,-3.4,13.8,-7.7,-2.9,-9.8,-7.2,-3.4,-6.3,6.1,-5.3,-2.1";

/// @throws Exception  the file is not there
QByteArray pathOf(const QString &folder, const QString &name) {
    const QString path = folder + QLatin1Char('/') + name;
    if (!QFileInfo::exists(path))
        throw Exception(QStringLiteral("the acoustic engine's model lacks %1").arg(path));
    return QFile::encodeName(path);
}

} // namespace

SphinxDecoder::SphinxDecoder(const QString &folder) {
    const QByteArray model = pathOf(folder, QStringLiteral("model/mdef")).chopped(5);
    const QByteArray dictionary = pathOf(folder, QStringLiteral("demo.dic"));
    const QByteArray language = pathOf(folder, QStringLiteral("demo.arpa"));
    // The library writes pages of its parameters to stderr otherwise.
    err_set_logfp(nullptr);
    // Beams wider than the library's own: those make half as many errors again.
    cmd_ln_t *options = cmd_ln_init(
        nullptr, ps_args(), TRUE, "-hmm", model.constData(), "-dict", dictionary.constData(), "-lm",
        language.constData(), "-lw", "9", "-beam", "1e-80", "-wbeam", "1e-60", "-pbeam", "1e-80",
        "-lpbeam", "1e-70", "-lponlybeam", "1e-60", "-cmninit", kFirstMean, nullptr);
    if (!options)
        throw Exception("the acoustic engine does not take its options");
    m_decoder.reset(ps_init(options));
    cmd_ln_free_r(options);
    if (!m_decoder)
        throw Exception(QStringLiteral("the acoustic engine cannot load its model %1").arg(folder));
    const cmn_t *means = ps_get_feat(m_decoder.get())->cmn_struct;
    m_voiceMean.assign(means->cmn_mean, means->cmn_mean + means->veclen);
}

SphinxDecoder::~SphinxDecoder() {
    end();
}

void SphinxDecoder::Free::operator()(ps_decoder_s *decoder) const {
    ps_free(decoder);
}

void SphinxDecoder::begin() {
    end();
    ps_start_stream(m_decoder.get());
    m_running = ps_start_utt(m_decoder.get()) == 0;
    m_inSpeech = false;
}

SphinxDecoder::Heard SphinxDecoder::process(const QByteArray &sound) {
    Heard heard;
    if (!m_running)
        return heard;
    std::vector<int16> samples(static_cast<size_t>(sound.size()) / sizeof(int16));
    if (samples.empty())
        return heard;
    std::memcpy(samples.data(), sound.constData(), samples.size() * sizeof(int16));
    addHiss(samples.data(), samples.size());
    ps_process_raw(m_decoder.get(), samples.data(), samples.size(), FALSE, FALSE);

    const bool inSpeech = ps_get_in_speech(m_decoder.get()) != 0;
    if (m_inSpeech && !inSpeech) {
        heard.finalText = endUtterance();
        m_running = ps_start_utt(m_decoder.get()) == 0;
    } else {
        heard.partialText = hypothesis();
    }
    m_inSpeech = inSpeech;
    return heard;
}

QString SphinxDecoder::end() {
    if (!m_running)
        return QString();
    m_running = false;
    return endUtterance();
}

void SphinxDecoder::addHiss(short *samples, size_t count) {
    // Digital silence, and the single bits that a conversion strews over it, are like no room that
    // the model was trained in: words are heard in them. A hiss that no one hears covers both.
    constexpr int loudness = 12;
    for (size_t index = 0; index < count; ++index) {
        const int hiss = static_cast<int>(m_hiss() % (2 * loudness + 1)) - loudness;
        samples[index] = static_cast<short>(std::clamp(samples[index] + hiss, -32768, 32767));
    }
}

QString SphinxDecoder::endUtterance() {
    ps_end_utt(m_decoder.get());
    const QString text = hypothesis();
    // Until the library knows a room's noise, it takes that for speech, and its mean for the mean
    // of the voice: after that it recognises nothing for several sentences.
    cmn_t *means = ps_get_feat(m_decoder.get())->cmn_struct;
    if (text.isEmpty())
        cmn_live_set(means, m_voiceMean.data());
    else
        cmn_live_get(means, m_voiceMean.data());
    return text;
}

QString SphinxDecoder::hypothesis() {
    int32 score = 0;
    QString text = QString::fromUtf8(ps_get_hyp(m_decoder.get(), &score));
    // A word with several pronunciations is told apart by a number in brackets.
    static const QRegularExpression variant(QStringLiteral("\\(\\d+\\)"));
    return text.remove(variant);
}
