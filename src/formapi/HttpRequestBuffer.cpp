#include "formapi/HttpRequestBuffer.h"

#include <algorithm>

namespace {

constexpr int maximumHeaderBytes = 8 * 1024 * 1024;
constexpr int maximumBytes = 40 * 1024 * 1024;

} // namespace

void HttpRequestBuffer::append(const QByteArray &piece) {
    m_bytes += piece.left(maximumBytes - m_bytes.size());
    findBody();
}

bool HttpRequestBuffer::isComplete() const {
    if (m_isMalformed || m_bytes.size() >= maximumBytes)
        return true;
    return m_hasBody ? m_bytes.size() >= m_wholeSize : m_bytes.size() >= maximumHeaderBytes;
}

void HttpRequestBuffer::findBody() {
    while (!m_hasBody && !m_isMalformed) {
        const int lineEnd = m_bytes.indexOf('\n', m_lineStart);
        if (lineEnd < 0)
            return;
        const QByteArray line = m_bytes.mid(m_lineStart, lineEnd - m_lineStart).trimmed();
        const bool isRequestLine = m_lineStart == 0;
        m_lineStart = lineEnd + 1;
        const int colon = line.indexOf(':');
        if (isRequestLine) {
            m_isMalformed = !line.contains(' ');
        } else if (colon < 0) {
            m_hasBody = true;
            m_wholeSize += m_lineStart;
        } else {
            takeHeader(line.left(colon).trimmed().toLower(), line.mid(colon + 1).trimmed());
        }
    }
}

void HttpRequestBuffer::takeHeader(const QByteArray &name, const QByteArray &value) {
    if (name == "content-length")
        m_wholeSize = std::clamp(value.toLongLong(), 0LL, static_cast<qlonglong>(maximumBytes));
    else if (name == "expect")
        m_isContinueExpected = value.toLower() == "100-continue";
    else if (name == "transfer-encoding")
        m_isChunked = true;
}
