#pragma once

/// Translates between the numbers that a form speaks and those that the server speaks.
class MessageTypeMapper {
public:
    /// The form's number for a message of the server, -1 if it is none for forms.
    static int toServerMessage(int messageType);
    /// The server's number for a message of a form, -1 if it is not to be forwarded.
    static int toAsr(int messageFromClientCode);
};
