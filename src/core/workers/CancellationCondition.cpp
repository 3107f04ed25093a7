#include "core/workers/CancellationCondition.h"

#include <QMutexLocker>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {

/// How often a stop is looked for without a handle that tells of it.
constexpr int lookMs = 100;

} // namespace

CancellationCondition::CancellationCondition()
    : m_stopHandle(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

CancellationCondition::~CancellationCondition() {
    if (m_stopHandle >= 0)
        ::close(m_stopHandle);
}

void CancellationCondition::cancel() {
    const QMutexLocker locker(&mutex);
    isCanceled = true;
    condition.wakeAll();
    if (m_stopHandle >= 0)
        ::eventfd_write(m_stopHandle, 1);
}

bool CancellationCondition::pause(unsigned long milliseconds) {
    const QMutexLocker locker(&mutex);
    if (!isCanceled)
        condition.wait(&mutex, milliseconds);
    return isCanceled;
}

void CancellationCondition::awaitInput(int handle) {
    // A negative handle is passed over.
    pollfd handles[] = {{handle, POLLIN, 0}, {m_stopHandle, POLLIN, 0}};
    ::poll(handles, 2, m_stopHandle < 0 ? lookMs : -1);
}
