#pragma once

namespace MessageTypes {
/// Numbers of the messages of the client's own family and of the form messages that the client
/// itself sends. The numbers are fixed by the server.
enum MessageType : int {
    StartMode = 1,
    ModeState = 2,
    Result = 3,
    Notification = 5,
    SelectTheme = 9,
    ThemeChoices = 10,
    SetCommands = 11,
    SetParameters = 13,
    RequestVoices = 21,
    TtsState = 22,
    SetTtsParams = 23,
    SetPersonalWords = 27,
    FormElement = 105,
    FormDescription = 106,
    TtsMute = 119,
    TtsUnmute = 120,
};
} // namespace MessageTypes

using MessageTypes::MessageType;
