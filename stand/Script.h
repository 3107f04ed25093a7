#pragma once

#include <QJsonObject>
#include <QString>

#include <vector>

/// What the scripted engine says, and when, and what the stand does at its start.
///
/// The file is a JSON object with two optional arrays: "start", of control commands, and "steps".
/// A step has "atBytes" (sound received since the start of the mode, not falling from step to
/// step) or "atStop": true, and either "text" with an optional "final" (true unless given) or a
/// control command ("do" and its parameters).
class Script {
public:
    struct Step {
        qint64 atBytes = 0;
        bool atStop = false;
        QString text;
        bool isFinal = true;
        QJsonObject command; ///< empty for a step with a text
    };

    Script() = default;
    /// @throws Exception  the file cannot be read or says something that is not understood; the
    ///                    message names the file and the place
    static Script load(const QString &fileName);
    /// @throws Exception  as load()
    static Script fromJson(const QJsonObject &object);

    const std::vector<Step> &steps() const { return m_steps; }
    const std::vector<QJsonObject> &startCommands() const { return m_startCommands; }

private:
    std::vector<Step> m_steps;
    std::vector<QJsonObject> m_startCommands;
};
