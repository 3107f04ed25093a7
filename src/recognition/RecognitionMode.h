#pragma once

#include <QObject>

namespace RecognitionModeNamespace {
Q_NAMESPACE

/// What the server listens for; sent as its number.
enum class RecognitionMode {
    Off = 0,
    VoiceActivation = 1,
    Text = 2,
    TemplatedForm = 3,
    TemplatedWizardForm = 4,
};
Q_ENUM_NS(RecognitionMode)

} // namespace RecognitionModeNamespace

using RecognitionModeNamespace::RecognitionMode;

/// How far a mode has got; its number on the wire.
enum class AsrState {
    Starting = 0,
    Started = 1,
    Stopped = 2,
    Stopping = 3,
};
Q_DECLARE_METATYPE(AsrState)
