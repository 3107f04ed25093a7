#include "audio/PulseLoop.h"

#include <QDateTime>
#include <QSocketNotifier>
#include <QTimer>

#include <pulse/mainloop-api.h>

// libpulse declares these three and leaves it to the loop what they are. It may free one within the
// call that the event makes, so an event only falls silent then, and goes a little later.

struct pa_io_event : QObject {
    pa_io_event(int fd, pa_io_event_cb_t callback, void *userdata)
        : read(fd, QSocketNotifier::Read), write(fd, QSocketNotifier::Write), data(userdata) {
        // A hang-up and a failure wake both, and show themselves at the next call on the socket.
        connect(&read, &QSocketNotifier::activated, this,
                [this, fd, callback] { callback(pulseLoop(), this, fd, PA_IO_EVENT_INPUT, data); });
        connect(&write, &QSocketNotifier::activated, this, [this, fd, callback] {
            callback(pulseLoop(), this, fd, PA_IO_EVENT_OUTPUT, data);
        });
    }
    void enable(pa_io_event_flags_t flags) {
        read.setEnabled(flags & PA_IO_EVENT_INPUT);
        write.setEnabled(flags & PA_IO_EVENT_OUTPUT);
    }
    void silence() { enable(PA_IO_EVENT_NULL); }

    QSocketNotifier read;
    QSocketNotifier write;
    void *const data;
    pa_io_event_destroy_cb_t destroy = nullptr;
};

struct pa_time_event : QObject {
    pa_time_event(pa_time_event_cb_t callback, void *userdata) : data(userdata) {
        timer.setSingleShot(true);
        timer.setTimerType(Qt::PreciseTimer);
        connect(&timer, &QTimer::timeout, this,
                [this, callback] { callback(pulseLoop(), this, &time, data); });
    }
    /// @param at  by the clock on the wall; null for never
    void restart(const timeval *at) {
        if (!at) {
            timer.stop();
            return;
        }
        time = *at;
        const qint64 atMs = qint64(at->tv_sec) * 1000 + at->tv_usec / 1000;
        timer.start(static_cast<int>(
            qBound<qint64>(0, atMs - QDateTime::currentMSecsSinceEpoch(), INT_MAX)));
    }
    void silence() { timer.stop(); }

    QTimer timer;
    timeval time{};
    void *const data;
    pa_time_event_destroy_cb_t destroy = nullptr;
};

struct pa_defer_event : QObject {
    pa_defer_event(pa_defer_event_cb_t callback, void *userdata) : data(userdata) {
        connect(&timer, &QTimer::timeout, this,
                [this, callback] { callback(pulseLoop(), this, data); });
        timer.start(0);
    }
    void enable(bool isEnabled) {
        if (isEnabled)
            timer.start(0);
        else
            timer.stop();
    }
    void silence() { timer.stop(); }

    QTimer timer;
    void *const data;
    pa_defer_event_destroy_cb_t destroy = nullptr;
};

namespace {

template <typename Event>
void release(Event *event) {
    event->silence();
    if (event->destroy)
        event->destroy(pulseLoop(), event, event->data);
    event->deleteLater();
}

pa_io_event *newIo(pa_mainloop_api *, int fd, pa_io_event_flags_t flags, pa_io_event_cb_t callback,
                   void *userdata) {
    auto *event = new pa_io_event(fd, callback, userdata);
    event->enable(flags);
    return event;
}

pa_time_event *newTime(pa_mainloop_api *, const timeval *at, pa_time_event_cb_t callback,
                       void *userdata) {
    auto *event = new pa_time_event(callback, userdata);
    event->restart(at);
    return event;
}

pa_defer_event *newDefer(pa_mainloop_api *, pa_defer_event_cb_t callback, void *userdata) {
    return new pa_defer_event(callback, userdata);
}

} // namespace

pa_mainloop_api *pulseLoop() {
    static pa_mainloop_api api{
        nullptr,
        newIo,
        [](pa_io_event *event, pa_io_event_flags_t flags) { event->enable(flags); },
        release<pa_io_event>,
        [](pa_io_event *event, pa_io_event_destroy_cb_t destroy) { event->destroy = destroy; },
        newTime,
        [](pa_time_event *event, const timeval *at) { event->restart(at); },
        release<pa_time_event>,
        [](pa_time_event *event, pa_time_event_destroy_cb_t destroy) { event->destroy = destroy; },
        newDefer,
        [](pa_defer_event *event, int isEnabled) { event->enable(isEnabled != 0); },
        release<pa_defer_event>,
        [](pa_defer_event *event, pa_defer_event_destroy_cb_t destroy) {
            event->destroy = destroy;
        },
        [](pa_mainloop_api *, int) {},
    };
    return &api;
}
