// What ThreadSanitizer has to know about Qt, which is not built for it: Qt's mutexes and its queue
// of events are made of futexes and atomics that the sanitizer does not see, so everything that
// one thread hands to another by a signal would look like a race. Linked into the program of the
// preset "tsan" only.
//
// An emission, a posted event and an event that has been dealt with come before every event that is
// delivered later, all events of a thread before its end is seen, and an unlocked mutex before its
// next lock. The first is more than Qt promises: a race may go unseen if any event happens to pass
// between the two threads, but what is reported is real.

#include <QCoreApplication>
#include <QMutex>
#include <QObject>
#include <QThread>

#include <dlfcn.h>

extern "C" {
void __tsan_acquire(void *address);
void __tsan_release(void *address);
}

namespace {

char order;

template <typename Function>
Function next(const char *symbol) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, symbol));
}

bool beforeEvent(void **) {
    __tsan_acquire(&order);
    __tsan_release(&order);
    return false;
}

const bool isRegistered = QInternal::registerCallback(QInternal::EventNotifyCallback, beforeEvent);

} // namespace

void QMetaObject::activate(QObject *sender, const QMetaObject *object, int index, void **data) {
    static const auto real = next<void (*)(QObject *, const QMetaObject *, int, void **)>(
        "_ZN11QMetaObject8activateEP7QObjectPKS_iPPv");
    __tsan_release(&order);
    real(sender, object, index, data);
    // A blocking connection has waited for the receiver.
    __tsan_acquire(&order);
}

bool QMetaObject::invokeMethodImpl(QObject *object, QtPrivate::QSlotObjectBase *slot,
                                   Qt::ConnectionType type, void *result) {
    static const auto real =
        next<bool (*)(QObject *, QtPrivate::QSlotObjectBase *, Qt::ConnectionType, void *)>(
            "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14"
            "ConnectionTypeEPv");
    __tsan_release(&order);
    const bool isDone = real(object, slot, type, result);
    __tsan_acquire(&order);
    return isDone;
}

void QCoreApplication::postEvent(QObject *receiver, QEvent *event, int priority) {
    static const auto real = next<void (*)(QObject *, QEvent *, int)>(
        "_ZN16QCoreApplication9postEventEP7QObjectP6QEventi");
    __tsan_release(&order);
    real(receiver, event, priority);
}

bool QThread::isFinished() const {
    static const auto real = next<bool (*)(const QThread *)>("_ZNK7QThread10isFinishedEv");
    const bool hasFinished = real(this);
    if (hasFinished)
        __tsan_acquire(&order);
    return hasFinished;
}

bool QThread::wait(unsigned long milliseconds) {
    static const auto real = next<bool (*)(QThread *, unsigned long)>("_ZN7QThread4waitEm");
    const bool hasFinished = real(this, milliseconds);
    __tsan_acquire(&order);
    return hasFinished;
}

bool QThread::wait(QDeadlineTimer deadline) {
    static const auto real =
        next<bool (*)(QThread *, QDeadlineTimer)>("_ZN7QThread4waitE14QDeadlineTimer");
    const bool hasFinished = real(this, deadline);
    __tsan_acquire(&order);
    return hasFinished;
}

void QMutex::lock() {
    static const auto real = next<void (*)(QMutex *)>("_ZN6QMutex4lockEv");
    real(this);
    __tsan_acquire(this);
}

void QMutex::unlock() noexcept {
    static const auto real = next<void (*)(QMutex *)>("_ZN6QMutex6unlockEv");
    __tsan_release(this);
    real(this);
}
