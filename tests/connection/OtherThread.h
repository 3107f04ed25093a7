#pragma once

#include <QSignalSpy>
#include <QThread>

#include <memory>

/// Runs a blocking call on a thread of its own while this thread serves its events.
template <typename Call>
auto onAnotherThread(Call call) {
    decltype(call()) result;
    const std::unique_ptr<QThread> thread(QThread::create([&] { result = call(); }));
    QSignalSpy finished(thread.get(), &QThread::finished);
    thread->start();
    if (!finished.wait(30000))
        qCritical("the call does not come back");
    thread->wait();
    return result;
}
