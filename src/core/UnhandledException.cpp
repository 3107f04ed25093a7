#include "core/UnhandledException.h"

#include <QDebug>

#include <cstdlib>
#include <exception>

namespace {

std::terminate_handler savedHandler = nullptr;

[[noreturn]] void terminate() {
    std::set_terminate(savedHandler);
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
    std::exit(-1);
}

} // namespace

void set_unhandled_catcher() {
    savedHandler = std::set_terminate(terminate);
}
