#include "formapi/HttpTarget.h"

#include <algorithm>

namespace {

bool endsHost(char character) {
    return character == '/' || character == '?' || character == '#';
}

} // namespace

HttpTarget::HttpTarget(const QByteArray &text) : path(text) {
    const int scheme = text.indexOf("://");
    if (scheme < 0 || std::any_of(text.begin(), text.begin() + scheme, endsHost))
        return;
    const auto begin = text.begin() + scheme + 3;
    const auto end = std::find_if(begin, text.end(), endsHost);
    host = QByteArray(begin, static_cast<int>(end - begin));
    path = QByteArray(end, static_cast<int>(text.end() - end));
}
