#pragma once

#include <functional>
#include <memory>

struct pa_context;
struct pa_operation;
struct pa_threaded_mainloop;

/// The patterns of every synchronous request to PulseAudio.
namespace pa_utils {

/// Holds the lock of a threaded main loop for as long as it lives.
class MainLoopLock {
public:
    explicit MainLoopLock(pa_threaded_mainloop *mainLoop);
    ~MainLoopLock();
    MainLoopLock(const MainLoopLock &) = delete;
    MainLoopLock &operator=(const MainLoopLock &) = delete;

private:
    pa_threaded_mainloop *m_mainLoop;
};

/// One reference to a context, given back with the object. The main loop's lock is to be held.
struct ContextUnref {
    void operator()(pa_context *context) const;
};
using ContextRef = std::unique_ptr<pa_context, ContextUnref>;

template <typename Info>
using InfoFunction = std::function<void(pa_context *, const Info *, int)>;

/// The C callback of every request: hands the answer to the InfoFunction given as userdata.
template <typename Info>
void generic_callback_f(pa_context *context, const Info *info, int eol, void *userdata) {
    (*static_cast<InfoFunction<Info> *>(userdata))(context, info, eol);
}

/// Waits until the operation has ended or the context has died, and releases the operation: no
/// callback of it comes after this. The main loop's lock is to be held.
void WaitForEnd(pa_threaded_mainloop *mainLoop, pa_context *context, pa_operation *operation);

/// Runs one request to its end and calls take(const Info &) for every answer.
///
/// Not from the main loop's own thread. The context is read under the lock, since another thread
/// may give it up; a null main loop or context is a failed request.
/// @param start  (context, callback, userdata) to the operation or null
/// @return whether the answer is whole
template <typename Info, typename Start, typename Take>
bool Request(pa_threaded_mainloop *mainLoop, pa_context *const &context, Start start, Take take);

/// A reference of its own to the context, null for null.
ContextRef Ref(pa_context *context);
/// Wakes whoever waits on the main loop.
void Signal(pa_threaded_mainloop *mainLoop);

template <typename Info, typename Start, typename Take>
bool Request(pa_threaded_mainloop *mainLoop, pa_context *const &context, Start start, Take take) {
    if (!mainLoop)
        return false;
    const MainLoopLock lock(mainLoop);
    // Cleanup may run while this thread waits, and must not free the context under it.
    const ContextRef inUse = Ref(context);
    if (!inUse)
        return false;
    bool whole = false;
    InfoFunction<Info> answer = [&](pa_context *, const Info *info, int eol) {
        if (eol == 0 && info) {
            take(*info);
            return;
        }
        whole = eol > 0;
        Signal(mainLoop);
    };
    pa_operation *operation = start(inUse.get(), &generic_callback_f<Info>, &answer);
    if (!operation)
        return false;
    WaitForEnd(mainLoop, inUse.get(), operation);
    return whole;
}

} // namespace pa_utils
