#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <random>
#include <vector>

struct ps_decoder_s;

/// The decoder of the acoustic engine: PocketSphinx with the small Russian model. It cuts the
/// sound into utterances at the pauses. To be used from one thread.
class SphinxDecoder {
public:
    /// What a block of sound brought; empty texts stand for nothing.
    struct Heard {
        QString partialText;
        QString finalText;
    };

    /// @param folder  holds model/, demo.dic and demo.arpa
    /// @throws Exception  the model is not there or cannot be loaded
    explicit SphinxDecoder(const QString &folder);
    ~SphinxDecoder();
    SphinxDecoder(const SphinxDecoder &) = delete;
    SphinxDecoder &operator=(const SphinxDecoder &) = delete;

    void begin();
    /// @param sound  16000 Hz, mono, 16-bit signed little-endian
    Heard process(const QByteArray &sound);
    /// Ends the last utterance and returns its text.
    QString end();

private:
    void addHiss(short *samples, size_t count);
    QString endUtterance();
    QString hypothesis();

    struct Free {
        void operator()(ps_decoder_s *decoder) const;
    };
    std::unique_ptr<ps_decoder_s, Free> m_decoder;
    std::vector<float> m_voiceMean; ///< of the voice and the microphone, see endUtterance()
    std::minstd_rand m_hiss;        ///< always the same hiss: the same sound gives the same text
    bool m_running = false;
    bool m_inSpeech = false;
};
