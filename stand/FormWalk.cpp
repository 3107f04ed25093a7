#include "stand/FormWalk.h"

namespace {

/// Keys of the elements that take text; a group stands for its members.
void collectKeys(const QJsonArray &elements, QStringList *keys) {
    for (const QJsonValue &value : elements) {
        const QJsonObject element = value.toObject();
        const QString key = element[QLatin1String("Key")].toString();
        const QJsonArray members = element[QLatin1String("Childs")].toArray();
        if (!key.isEmpty() && members.isEmpty())
            keys->append(key);
        collectKeys(members, keys);
    }
}

} // namespace

void FormWalk::open(const FormMetadata &form) {
    m_keys.clear();
    m_focused.clear();
    collectKeys(form.childs(), &m_keys);
}

bool FormWalk::follow(const QString &text) {
    int wanted = m_keys.indexOf(m_focused);
    if (text == QStringLiteral("следующее поле"))
        ++wanted;
    else if (text == QStringLiteral("предыдущее поле"))
        --wanted;
    else if (text == QStringLiteral("первое поле"))
        wanted = 0;
    else
        return false;
    if (wanted < 0 || wanted >= m_keys.size())
        return false;
    m_focused = m_keys[wanted];
    return true;
}
