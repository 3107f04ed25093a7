#pragma once

#include "connection/messages/JsonConvertable.h"

/// What the user allows and wants of recognition.
class RecognitionParameters : public JsonConvertable {
public:
    /// @param sendingMode     data about the user's speech model may be sent
    /// @param usePunctuation  the server is to set punctuation marks
    RecognitionParameters(bool sendingMode, bool usePunctuation)
        : m_sendingMode(sendingMode), m_usePunctuation(usePunctuation) {}

    QJsonValue toJson() const override;

private:
    bool m_sendingMode;
    bool m_usePunctuation;
};
