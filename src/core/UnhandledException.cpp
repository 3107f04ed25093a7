#include "core/UnhandledException.h"

#include "core/ProcessEnd.h"

#include <QDebug>

#include <exception>

namespace {

[[noreturn]] void endSilently() {
    endProcess(-1);
}

[[noreturn]] void terminate() {
    // For an exception of what follows, and for one of another thread.
    std::set_terminate(endSilently);
    qCritical() << "Unhandled exception, terminate handler called";
    try {
        if (std::current_exception())
            throw;
        qCritical() << "Unknown exception";
    } catch (const std::exception &error) {
        qCritical().noquote().nospace() << "Exception: " << error.what();
    } catch (...) {
        qCritical() << "Unknown exception";
    }
    endProcess(-1);
}

} // namespace

void set_unhandled_catcher() {
    std::set_terminate(terminate);
}
