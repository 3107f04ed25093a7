#pragma once

#include "stand/RecognitionEngine.h"

/// Numbers what it hears: every two seconds of sound that is not silence are one number, a digit a
/// word, and no number comes twice. So a lost result can be told, and a doubled one.
class CountingEngine : public RecognitionEngine {
    Q_OBJECT

public:
    /// @param last  the last number that any engine has said; outlives the engine
    explicit CountingEngine(int *last, QObject *parent = nullptr);

    void start() override;
    void feed(const QByteArray &sound) override;
    void finish() override;
    /// Without effect: a full stop ends every number.
    void setPunctuation(bool on) override;

private:
    void end();

    int *m_last;
    QString m_partial;
    int m_bytes = 0;
};
