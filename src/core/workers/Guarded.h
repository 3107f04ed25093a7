#pragma once

#include <QDebug>
#include <QString>

#include <exception>

/// Runs a piece of a worker's work; an exception that leaves it is logged and goes no further.
/// @param known    the message for a std::exception; its text follows
/// @param unknown  the message for anything else
template <typename Work>
void guarded(const QString &known, const QString &unknown, Work work) {
    try {
        work();
    } catch (const std::exception &error) {
        qCritical().noquote().nospace() << known << ": \n" << error.what();
    } catch (...) {
        qCritical().noquote().nospace() << unknown;
    }
}
