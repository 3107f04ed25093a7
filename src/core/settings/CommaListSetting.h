#pragma once

#include "core/settings/Setting.h"

/// A text of several parts with commas between them, which need no quotation marks in the file.
class CommaListSetting : public Setting<QString> {
public:
    using Setting<QString>::Setting;
    using Setting<QString>::operator=;

    QVariant value() const override {
        const QVariant stored = Setting<QString>::value();
        return stored.type() == QVariant::StringList ? stored.toStringList().join(',') : stored;
    }
};
