#include "commands/UserCommandType.h"

using UserCommandNamespace::UserCommandType;

template <>
const Enum<UserCommandType>::Container Enum<UserCommandType>::Values = {
    {UserCommandType::Text, QT_TRANSLATE_NOOP("EnumElementBase", "Автозамена"), "text"},
    {UserCommandType::Key, QT_TRANSLATE_NOOP("EnumElementBase", "Сочетание клавиш"), "key"},
    {UserCommandType::Exe, QT_TRANSLATE_NOOP("EnumElementBase", "Запуск программ"), "exe"},
    {UserCommandType::FileCopy, QT_TRANSLATE_NOOP("EnumElementBase", "Файл автозамены"), "file"},
};
