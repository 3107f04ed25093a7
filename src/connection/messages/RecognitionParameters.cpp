#include "connection/messages/RecognitionParameters.h"

#include <QJsonObject>

QJsonValue RecognitionParameters::toJson() const {
    return QJsonObject{
        {QStringLiteral("SendingMode"), m_sendingMode},
        {QStringLiteral("UsePunctuation"), m_usePunctuation},
    };
}
