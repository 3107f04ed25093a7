#include "audio/PaUtils.h"

#include <pulse/pulseaudio.h>

namespace pa_utils {

MainLoopLock::MainLoopLock(pa_threaded_mainloop *mainLoop) : m_mainLoop(mainLoop) {
    pa_threaded_mainloop_lock(m_mainLoop);
}

MainLoopLock::~MainLoopLock() {
    pa_threaded_mainloop_unlock(m_mainLoop);
}

void ContextUnref::operator()(pa_context *context) const {
    pa_context_unref(context);
}

ContextRef Ref(pa_context *context) {
    return ContextRef(context ? pa_context_ref(context) : nullptr);
}

void Signal(pa_threaded_mainloop *mainLoop) {
    pa_threaded_mainloop_signal(mainLoop, 0);
}

void WaitForEnd(pa_threaded_mainloop *mainLoop, pa_context *context, pa_operation *operation) {
    while (pa_operation_get_state(operation) == PA_OPERATION_RUNNING &&
           PA_CONTEXT_IS_GOOD(pa_context_get_state(context)))
        pa_threaded_mainloop_wait(mainLoop);
    // The callback's data lies on the caller's stack, so nothing may arrive after the return.
    if (pa_operation_get_state(operation) == PA_OPERATION_RUNNING)
        pa_operation_cancel(operation);
    pa_operation_unref(operation);
}

} // namespace pa_utils
