#pragma once

#include <QByteArray>
#include <QList>

#include <optional>
#include <utility>

/// Gathers the pieces in which a request arrives, and knows what its header lines say. A value for
/// one connection.
class HttpRequestBuffer {
public:
    /// What a body may have at most.
    static constexpr qint64 maximumBodyBytes = 40LL * 1024 * 1024;

    void append(const QByteArray &piece);

    /// True once the header lines and as much body as they announce are there, or nothing useful
    /// can follow any more.
    bool isComplete() const;
    const QByteArray &bytes() const { return m_bytes; }
    /// Leaves this object without them.
    QByteArray takeBytes() { return std::exchange(m_bytes, {}); }

    /// The header lines are there, or it is certain that they are none.
    bool hasHead() const { return m_hasHead || m_isMalformed || isHeadTooLong(); }
    bool isHeadTooLong() const;
    /// There is no address, or a line that others could read in another way.
    bool isMalformed() const { return m_isMalformed; }
    const QByteArray &target() const { return m_target; }
    /// What all header lines of this name say.
    const QList<QByteArray> &hosts() const { return m_hosts; }
    const QList<QByteArray> &origins() const { return m_origins; }
    bool isBodyTooLong() const { return m_bodyBytes.value_or(0) > maximumBodyBytes; }
    /// The client waits for a word before it sends the body.
    bool isContinueExpected() const { return m_hasHead && m_isContinueExpected; }
    /// The body comes in chunks, whose end its header lines do not tell.
    bool isChunked() const { return m_isChunked; }

private:
    /// Looks for the end of the header lines in what is new.
    void findBody();
    void takeRequestLine(const QByteArray &line);
    void takeHeader(const QByteArray &line, int colon);
    void takeLength(const QByteArray &value);

    QByteArray m_bytes;
    /// Where the line begins that has not been looked at yet.
    int m_lineStart = 0;
    /// Where the search for its end goes on.
    int m_searchStart = 0;
    bool m_hasHead = false;
    bool m_isMalformed = false;
    bool m_isContinueExpected = false;
    bool m_isChunked = false;
    QByteArray m_target;
    QList<QByteArray> m_hosts;
    QList<QByteArray> m_origins;
    std::optional<qint64> m_bodyBytes;
};
