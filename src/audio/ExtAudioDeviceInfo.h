#pragma once

#include <QAudioDeviceInfo>
#include <QString>

/// An audio device with a name that a person can read.
class ExtAudioDeviceInfo : public QAudioDeviceInfo {
public:
    /// A null device without a description.
    ExtAudioDeviceInfo() = default;
    ExtAudioDeviceInfo(const QAudioDeviceInfo &device, const QString &description)
        : QAudioDeviceInfo(device), m_description(description) {}

    /// The name for display; deviceName() is the sound server's.
    QString Description() const { return m_description; }

private:
    QString m_description;
};
