#pragma once

#include <QMetaType>
#include <QString>

/// An audio device: the sound server's name for it, and one that a person can read.
class ExtAudioDeviceInfo {
public:
    /// A null device without a description.
    ExtAudioDeviceInfo() = default;
    ExtAudioDeviceInfo(const QString &deviceName, const QString &description)
        : m_deviceName(deviceName), m_description(description) {}

    bool isNull() const { return m_deviceName.isEmpty(); }
    /// The sound server's name.
    QString deviceName() const { return m_deviceName; }
    /// The name for display.
    QString Description() const { return m_description; }

    /// Whether both are the same device, however they are described.
    bool operator==(const ExtAudioDeviceInfo &other) const {
        return m_deviceName == other.m_deviceName;
    }

private:
    QString m_deviceName;
    QString m_description;
};

Q_DECLARE_METATYPE(ExtAudioDeviceInfo)
