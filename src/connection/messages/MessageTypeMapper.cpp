#include "connection/messages/MessageTypeMapper.h"

namespace {
constexpr int toForm = 200;
constexpr int fromForm = 100;
constexpr int unchanged = 800000;
} // namespace

int MessageTypeMapper::toServerMessage(int messageType) {
    if (messageType == unchanged)
        return unchanged;
    const bool isKnown =
        (messageType >= 200 && messageType <= 211) || (messageType >= 214 && messageType <= 218);
    return isKnown ? messageType - toForm : -1;
}

int MessageTypeMapper::toAsr(int messageFromClientCode) {
    const bool isKnown =
        messageFromClientCode >= 1 && messageFromClientCode <= 18 && messageFromClientCode != 12;
    return isKnown ? messageFromClientCode + fromForm : -1;
}
