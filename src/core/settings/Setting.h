#pragma once

#include "core/settings/Settings.h"

#include <QVariant>

/// One typed key of a settings group: bool, int, double or QString.
///
/// A member of its group object. Reading asks the file each time. A stored text that does not
/// convert reads as T{}, not as the default.
template <typename T>
class Setting {
public:
    /// @param owner  the group object that this setting is a member of
    Setting(Settings *owner, const QString &key, T defaultValue)
        : m_owner(owner), m_key(key), m_defaultValue(std::move(defaultValue)) {}
    virtual ~Setting() = default;
    Setting(const Setting &) = delete;
    Setting &operator=(const Setting &) = delete;

    /// Writes the value, unless the file already yields it.
    // NOLINTNEXTLINE(misc-unconventional-assign-operator,bugprone-unhandled-self-assignment)
    virtual void operator=(const T &newValue) { ChangeValue(newValue); }

    virtual QVariant value() const { return m_owner->value(m_key, QVariant(m_defaultValue)); }

    virtual operator T() const {
        QVariant stored = value();
        if (stored.userType() == qMetaTypeId<T>())
            return stored.value<T>();
        return stored.convert(qMetaTypeId<T>()) ? stored.value<T>() : T{};
    }

    /// The value as T: for places where an implicit conversion would not be seen.
    T get() const { return static_cast<T>(*this); }

    /// The core of writing: nothing is written and no flag changes if the file already yields it.
    void ChangeValue(const T &newValue) {
        if (m_owner->value(m_key, QVariant(m_defaultValue)) == QVariant(newValue))
            return;
        m_owner->setValue(m_key, QVariant(newValue));
        m_owner->changed = true;
        m_changed = true;
    }

    /// True once this object has written a new value.
    bool changed() const { return m_changed; }

protected:
    Settings *m_owner;
    QString m_key;
    T m_defaultValue;
    bool m_changed = false;
};
