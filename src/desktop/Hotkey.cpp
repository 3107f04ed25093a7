#include "desktop/Hotkey.h"

template <>
const Enum<Hotkey>::Container Enum<Hotkey>::Values = {
    {Hotkey::DoubleCtrl, QT_TRANSLATE_NOOP("EnumElementBase", "Ctrl 2 раза"), "DoubleCtrl"},
    {Hotkey::DoubleCapsLock, QT_TRANSLATE_NOOP("EnumElementBase", "Caps Lock 2 раза"),
     "DoubleCapsLock"},
};

template <>
const Enum<Push2TalkKey>::Container Enum<Push2TalkKey>::Values = {
    {Push2TalkKey::Ctrl, QT_TRANSLATE_NOOP("EnumElementBase", "Клавиша Ctrl"), "Ctrl"},
    {Push2TalkKey::Pause, QT_TRANSLATE_NOOP("EnumElementBase", "Клавиша Pause/Break"), "Pause"},
};
