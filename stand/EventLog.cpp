#include "stand/EventLog.h"

#include <QJsonDocument>

#include <chrono>
#include <cstdio>

namespace {
constexpr size_t kKept = 50000;
constexpr int kPrintedCharacters = 160;
} // namespace

EventLog::EventLog(bool print, QObject *parent) : QObject(parent), m_print(print) {}

void EventLog::add(const QString &event, QJsonObject fields) {
    using std::chrono::microseconds;
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    if (m_print && event != QLatin1String("sound")) {
        const QByteArray shown = QJsonDocument(fields).toJson(QJsonDocument::Compact);
        const QString text = QString::fromUtf8(shown).left(kPrintedCharacters);
        std::printf("%s %s\n", qPrintable(event), qPrintable(text));
        std::fflush(stdout);
    }
    fields.insert(QStringLiteral("event"), event);
    fields.insert(QStringLiteral("n"), ++m_count);
    fields.insert(QStringLiteral("us"),
                  static_cast<qint64>(std::chrono::duration_cast<microseconds>(now).count()));
    m_lines.push_back(QJsonDocument(fields).toJson(QJsonDocument::Compact));
    if (m_lines.size() > kKept)
        m_lines.pop_front();
    const QByteArray line = m_lines.back();
    emit added(line);
}
