#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QFile>
#include <QString>

#include <cmath>

/// A tone to play into the microphone, and the search for it in what was recorded. All sound is
/// 16000 Hz, one channel, 16 bits.
class SineWave {
public:
    static constexpr double rate = 16000;

    SineWave(double hertz, double amplitude, int seconds) {
        QDataStream stream(&m_samples, QIODevice::WriteOnly);
        stream.setByteOrder(QDataStream::LittleEndian);
        for (int i = 0; i < seconds * rate; ++i)
            stream << static_cast<qint16>(amplitude * std::sin(2 * M_PI * hertz * i / rate));
    }

    /// Writes a WAV file and returns its name.
    QString save(const QString &fileName) const {
        QFile file(fileName);
        if (!file.open(QIODevice::WriteOnly))
            return QString();
        QDataStream stream(&file);
        stream.setByteOrder(QDataStream::LittleEndian);
        stream.writeRawData("RIFF", 4);
        stream << quint32(36 + m_samples.size());
        stream.writeRawData("WAVEfmt ", 8);
        stream << quint32(16) << quint16(1) << quint16(1) << quint32(rate) << quint32(rate * 2)
               << quint16(2) << quint16(16);
        stream.writeRawData("data", 4);
        stream << quint32(m_samples.size());
        stream.writeRawData(m_samples.constData(), m_samples.size());
        return fileName;
    }

    /// How much of the sound's energy is a tone of this pitch, 0 to 1.
    static double share(const QByteArray &sound, double hertz) {
        const auto *samples = reinterpret_cast<const qint16 *>(sound.constData());
        const int count = sound.size() / 2;
        double energy = 0;
        double real = 0;
        double imaginary = 0;
        for (int i = 0; i < count; ++i) {
            const double phase = 2 * M_PI * hertz * i / rate;
            energy += double(samples[i]) * samples[i];
            real += samples[i] * std::cos(phase);
            imaginary += samples[i] * std::sin(phase);
        }
        return energy > 0 ? 2 * (real * real + imaginary * imaginary) / (energy * count) : 0;
    }

private:
    QByteArray m_samples;
};
