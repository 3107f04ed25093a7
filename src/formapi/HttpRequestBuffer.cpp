#include "formapi/HttpRequestBuffer.h"

#include <algorithm>
#include <limits>

namespace {

constexpr int maximumHeadBytes = 8 * 1024 * 1024;

/// A bare carriage return or a zero ends a line for some servers.
bool hasControlCharacter(const QByteArray &line) {
    return std::any_of(line.begin(), line.end(), [](char character) {
        return (static_cast<uchar>(character) < ' ' && character != '\t') || character == '\x7F';
    });
}

/// Some servers cut blanks off a name, or join a line that begins with one to the line before it.
bool isHeaderName(const QByteArray &name) {
    return !name.isEmpty() && std::all_of(name.begin(), name.end(), [](char character) {
        return character > ' ' && character < '\x7F';
    });
}

} // namespace

void HttpRequestBuffer::append(const QByteArray &piece) {
    m_bytes += piece;
    findBody();
}

bool HttpRequestBuffer::isHeadTooLong() const {
    return !m_hasHead && m_bytes.size() >= maximumHeadBytes;
}

bool HttpRequestBuffer::isComplete() const {
    return m_isMalformed || isHeadTooLong() ||
           (m_hasHead && m_bytes.size() - m_lineStart >= m_bodyBytes.value_or(0));
}

void HttpRequestBuffer::findBody() {
    while (!m_hasHead && !m_isMalformed) {
        const int lineEnd = m_bytes.indexOf('\n', m_searchStart);
        if (lineEnd < 0) {
            m_searchStart = m_bytes.size();
            return;
        }
        QByteArray line = m_bytes.mid(m_lineStart, lineEnd - m_lineStart);
        if (line.endsWith('\r'))
            line.chop(1);
        const bool isRequestLine = m_lineStart == 0;
        m_lineStart = m_searchStart = lineEnd + 1;
        const int colon = line.indexOf(':');
        if (isRequestLine)
            takeRequestLine(line);
        else if (colon >= 0)
            takeHeader(line, colon);
        else
            m_hasHead = true;
    }
}

void HttpRequestBuffer::takeRequestLine(const QByteArray &line) {
    const QList<QByteArray> words = line.trimmed().split(' ');
    m_isMalformed = words.size() < 2 || hasControlCharacter(line);
    m_target = words.value(1).trimmed();
}

void HttpRequestBuffer::takeHeader(const QByteArray &line, int colon) {
    const QByteArray name = line.left(colon).toLower();
    const QByteArray value = line.mid(colon + 1).trimmed();
    if (!isHeaderName(name) || hasControlCharacter(line)) {
        m_isMalformed = true;
    } else if (name == "content-length") {
        takeLength(value);
    } else if (name == "expect") {
        m_isContinueExpected = value.toLower() == "100-continue";
    } else if (name == "transfer-encoding") {
        m_isChunked = true;
    } else if (name == "host") {
        m_hosts << value;
    } else if (name == "origin") {
        m_origins << value;
    }
}

void HttpRequestBuffer::takeLength(const QByteArray &value) {
    const bool isNumber = !value.isEmpty() && std::all_of(value.begin(), value.end(), [](char c) {
        return c >= '0' && c <= '9';
    });
    bool fits = false;
    qint64 length = value.toLongLong(&fits);
    if (!fits)
        length = std::numeric_limits<qint64>::max();
    if (!isNumber || m_bodyBytes.value_or(length) != length)
        m_isMalformed = true;
    else
        m_bodyBytes = length;
}
