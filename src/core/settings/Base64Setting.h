#pragma once

#include "core/settings/Setting.h"

/// A text that stands in the file as base64 of its UTF-8. The default is given as base64 too.
class Base64Setting : public Setting<QString> {
public:
    using Setting<QString>::Setting;

    // NOLINTNEXTLINE(misc-unconventional-assign-operator)
    void operator=(const QString &newValue) override {
        ChangeValue(QString::fromLatin1(newValue.toUtf8().toBase64()));
    }

    /// The clear text, up to the first zero byte.
    QVariant value() const override {
        const QByteArray stored = Setting<QString>::value().toString().toUtf8();
        return QString::fromUtf8(QByteArray::fromBase64(stored).constData());
    }
};
