#pragma once

#include "core/Enum.h"

#include <QObject>

namespace UserCommandNamespace {
Q_NAMESPACE

/// What a command does; the gaps in the numbers are not assigned.
enum class UserCommandType {
    Undefined = -1, ///< no stored command is of this type
    Text = 0,       ///< an auto-replacement
    Key = 2,        ///< presses a key combination
    Exe = 3,        ///< starts a program
    FileCopy = 5,   ///< inserts the text of a document
};
Q_ENUM_NS(UserCommandType)

} // namespace UserCommandNamespace

template <>
const Enum<UserCommandNamespace::UserCommandType>::Container
    Enum<UserCommandNamespace::UserCommandType>::Values;
