// What ThreadSanitizer has to know about Qt, which is not built for it: Qt's mutexes and its queue
// of events are made of futexes and atomics that the sanitizer does not see, so everything that
// one thread hands to another by a signal would look like a race. Linked into the program of the
// preset "tsan" only.
//
// An emission or a posted event comes before every event that is delivered later, and an unlocked
// mutex before its next lock. The first is more than Qt promises: a race may go unseen if any event
// happens to pass between the two threads, but what is reported is real.

#include <QCoreApplication>
#include <QMutex>
#include <QObject>
#include <QReadWriteLock>

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
