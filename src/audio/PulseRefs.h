#pragma once

#include <memory>
#include <pulse/pulseaudio.h>

/// Gives back what libpulse counts the references of.
struct PulseUnref {
    void operator()(pa_context *context) const { pa_context_unref(context); }
    void operator()(pa_stream *stream) const { pa_stream_unref(stream); }
    /// Its callback is not called any more.
    void operator()(pa_operation *operation) const {
        pa_operation_cancel(operation);
        pa_operation_unref(operation);
    }
};

template <typename T>
using PulseRef = std::unique_ptr<T, PulseUnref>;
