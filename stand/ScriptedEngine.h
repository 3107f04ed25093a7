#pragma once

#include "stand/RecognitionEngine.h"
#include "stand/Script.h"

/// Says what its script says, at the amounts of sound that the script names: the same sound always
/// gives the same results, however it is cut into blocks. Each run begins the script anew.
class ScriptedEngine : public RecognitionEngine {
    Q_OBJECT

public:
    explicit ScriptedEngine(const Script &script, QObject *parent = nullptr);

    void start() override;
    void feed(const QByteArray &sound) override;
    void finish() override;
    /// Without effect: texts come letter for letter as they are in the script.
    void setPunctuation(bool on) override;

signals:
    void commandReached(const QJsonObject &command);

private:
    void play(const Script::Step &step);

    const Script m_script;
    qint64 m_bytes = 0;
    size_t m_nextStep = 0;
};
