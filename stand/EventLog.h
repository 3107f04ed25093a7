#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QObject>

#include <deque>

/// What happened at the stand, in order of arrival, one compact JSON object an event. Besides its
/// own fields each has "event", "n" (counting from 1) and "us" (monotonic clock, microseconds:
/// comparable with other processes of this machine). The last 50,000 are kept.
class EventLog : public QObject {
    Q_OBJECT

public:
    /// @param print  also print the events, shortened and without sound, on standard output
    explicit EventLog(bool print, QObject *parent = nullptr);

    void add(const QString &event, QJsonObject fields = {});
    const std::deque<QByteArray> &lines() const { return m_lines; }

signals:
    void added(const QByteArray &line);

private:
    const bool m_print;
    qint64 m_count = 0;
    std::deque<QByteArray> m_lines;
};
