#pragma once

#include <QByteArray>
#include <QObject>
#include <QProcess>
#include <QQueue>
#include <QStringList>

/// Speaks Russian text by running espeak-ng. The speech comes as raw sound: 22050 Hz, mono, 16-bit
/// signed little-endian. Texts are spoken one after another.
class SpeechSource : public QObject {
    Q_OBJECT

public:
    explicit SpeechSource(QObject *parent = nullptr);
    /// Ends the running process.
    ~SpeechSource() override;

    /// Whether the program that speaks is installed.
    static bool isAvailable();
    /// Names of the voices, the default one first.
    static QStringList voices();

    /// @param voice  one of voices(); any other name stands for the first
    /// @param speed  1.0 is the normal rate; held to 0.5 to 3
    void speak(const QString &text, const QString &voice, double speed);
    /// Falls silent at once: the text in hand and those that wait are dropped.
    void stop();

signals:
    /// Whole samples, in order.
    void sound(const QByteArray &samples);

private:
    struct Text {
        QByteArray text;
        QStringList arguments;
    };

    void startNext();
    void readSound();

    QProcess m_process;
    QQueue<Text> m_waiting;
    QByteArray m_buffer;
    bool m_headerRead = false;
};
