#include "desktop/XErrorScope.h"

#include <QMutex>
#include <QMutexLocker>
#include <QVector>

#include <X11/Xlib.h>

namespace {

// Xlib has one error handler for the whole process; Qt's platform plug-in installs one, too.
struct Registry {
    QMutex mutex;
    QVector<XErrorScope *> scopes;
    XErrorHandler previous = nullptr;
};

Registry &registry() {
    static Registry instance;
    return instance;
}

/// The innermost scope that a request was sent in; the outermost for one from before them all. Null
/// if the connection has none.
XErrorScope *scopeOf(const Display *display, unsigned long request) {
    XErrorScope *outermost = nullptr;
    const QVector<XErrorScope *> &scopes = registry().scopes;
    for (auto scope = scopes.crbegin(); scope != scopes.crend(); ++scope) {
        if ((*scope)->display() != display)
            continue;
        outermost = *scope;
        if (outermost->firstRequest() <= request)
            break;
    }
    return outermost;
}

int onXError(Display *display, XErrorEvent *event) {
    XErrorHandler previous = nullptr;
    {
        const QMutexLocker locker(&registry().mutex);
        if (XErrorScope *scope = scopeOf(display, event->serial)) {
            scope->record(event->error_code);
            return 0;
        }
        previous = registry().previous;
    }
    return previous ? previous(display, event) : 0;
}

void install() {
    const XErrorHandler previous = XSetErrorHandler(onXError);
    if (previous != onXError)
        registry().previous = previous;
}

void uninstall() {
    const XErrorHandler current = XSetErrorHandler(registry().previous);
    // Someone else took over in the meantime: theirs stays.
    if (current != onXError)
        XSetErrorHandler(current);
}

} // namespace

XErrorScope::XErrorScope(_XDisplay *display)
    : m_display(display), m_firstRequest(XNextRequest(display)) {
    const QMutexLocker locker(&registry().mutex);
    if (registry().scopes.isEmpty())
        install();
    registry().scopes.append(this);
}

XErrorScope::~XErrorScope() {
    // Without an unanswered request no error can be on its way.
    if (XLastKnownRequestProcessed(m_display) + 1 != XNextRequest(m_display))
        XSync(m_display, False);
    const QMutexLocker locker(&registry().mutex);
    registry().scopes.removeOne(this);
    if (registry().scopes.isEmpty())
        uninstall();
}

void XErrorScope::record(int errorCode) {
    int none = 0;
    m_errorCode.compare_exchange_strong(none, errorCode);
}
