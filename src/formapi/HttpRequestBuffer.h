#pragma once

#include <QByteArray>

/// Gathers the pieces in which a request arrives. A value for one connection.
class HttpRequestBuffer {
public:
    /// Takes another piece; more than the longest request is dropped.
    void append(const QByteArray &piece);

    /// True once the header lines and as much body as they announce are there, or nothing useful
    /// can follow any more.
    bool isComplete() const;
    const QByteArray &bytes() const { return m_bytes; }
    /// The client waits for a word before it sends the body.
    bool isContinueExpected() const { return m_hasBody && m_isContinueExpected; }
    /// The body comes in chunks, whose end its header lines do not tell.
    bool isChunked() const { return m_isChunked; }

private:
    /// Looks for the end of the header lines in what is new.
    void findBody();
    void takeHeader(const QByteArray &name, const QByteArray &value);

    QByteArray m_bytes;
    /// Where the line begins that has not been looked at yet.
    int m_lineStart = 0;
    bool m_hasBody = false;
    bool m_isMalformed = false;
    bool m_isContinueExpected = false;
    bool m_isChunked = false;
    qint64 m_wholeSize = 0;
};
