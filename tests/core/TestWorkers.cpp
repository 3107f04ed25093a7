#include "DeskTest.h"
#include "core/Exception.h"
#include "core/UnhandledException.h"
#include "core/workers/RepeatWorker.h"
#include "core/workers/SubService.h"

#include <QElapsedTimer>
#include <QSemaphore>
#include <QThread>

#include <cstdlib>
#include <functional>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

Q_DECLARE_METATYPE(std::function<void()>)

/// Calls what the test gives it at each step of its life and counts the steps.
class ScriptedWorker : public BaseWorker {
    Q_OBJECT

public:
    std::function<void()> onInitialize = [] {};
    std::function<void(CancellationCondition *)> onProcess = [](CancellationCondition *) {};
    std::function<void()> onCleanUp = [] {};
    std::function<void()> onStopping = [] {};
    QStringList steps;
    QSemaphore lives;

    void setStartDelay(unsigned long milliseconds) { m_startDelay = milliseconds; }
    void onStop() override {
        onStopping();
        BaseWorker::onStop();
    }

protected:
    void initialize() override {
        steps << "initialize";
        onInitialize();
    }
    void process(CancellationCondition *cancellation) override {
        steps << QThread::currentThread()->objectName();
        onProcess(cancellation);
    }
    void cleanUp() override {
        steps << "cleanUp";
        lives.release();
        onCleanUp();
    }
};

class CountingWorker : public RepeatWorker {
    Q_OBJECT

public:
    explicit CountingWorker(unsigned long interval) : RepeatWorker(interval) {}
    std::function<void(int)> onRound = [](int) {};
    QSemaphore rounds;

protected:
    void repeatableWork(CancellationCondition *) override {
        rounds.release();
        onRound(++m_round);
    }

private:
    int m_round = 0;
};

/// Services and workers: lives, stops, faults.
class TestWorkers : public QObject {
    Q_OBJECT

private slots:
    void livesAgainAfterAStop() {
        auto *worker = new ScriptedWorker;
        SubService service(worker, true);
        QVERIFY(service.autoStart());
        const QStringList life{"initialize", "ScriptedWorker", "cleanUp"};
        service.Start();
        QVERIFY(worker->lives.tryAcquire(1, 5000));
        QVERIFY(!worker->isWorkDone(nullptr));
        service.Start(); // a whole stop, then a new life
        QVERIFY(worker->lives.tryAcquire(1, 5000));
        service.Stop();
        QVERIFY(worker->isWorkDone(nullptr));
        QCOMPARE(worker->steps, life + life);
    }

    void logsFaults_data() {
        columns<QString, bool, QString>("place", "isKnown", "message");
        row("initialize", "initialize", true,
            "External cycle error in subService [ScriptedWorker]: \nboom");
        row("process", "process", true,
            "External cycle error in subService [ScriptedWorker]: \nboom");
        row("process, unknown", "process", false,
            "External cycle unknown error in subService [ScriptedWorker]");
        row("cleanUp", "cleanUp", true, "CleanUp error in subService [ScriptedWorker]: \nboom");
        row("cleanUp, unknown", "cleanUp", false,
            "CleanUp unknown error in subService [ScriptedWorker]");
        row("onStop", "onStop", true, "onStop errorin subService [ScriptedWorker]: \nboom");
        row("onStop, unknown", "onStop", false,
            "onStop unknown error in subService [ScriptedWorker]");
    }

    void logsFaults() {
        QFETCH(QString, place);
        QFETCH(bool, isKnown);
        QFETCH(QString, message);
        auto *worker = new ScriptedWorker;
        const auto fail = [place, isKnown, worker](const char *here) {
            if (place != QLatin1String(here))
                return;
            if (place == "onStop") // or the service would wait its whole time
                worker->BaseWorker::onStop();
            if (isKnown)
                throw Exception("boom");
            throw 1;
        };
        worker->onInitialize = [fail] { fail("initialize"); };
        worker->onProcess = [fail](CancellationCondition *) { fail("process"); };
        worker->onCleanUp = [fail] { fail("cleanUp"); };
        worker->onStopping = [fail] { fail("onStop"); };
        SubService service(worker, true);
        QTest::ignoreMessage(QtCriticalMsg, qPrintable(message));
        service.Start();
        QVERIFY2(worker->lives.tryAcquire(1, 5000), "cleanUp runs after every fault");
        service.Stop();
    }

    void goesOnAfterAFaultyRound() {
        auto *worker = new CountingWorker(60000);
        worker->onRound = [](int round) {
            if (round == 1)
                throw Exception("first");
            if (round == 2)
                throw 2;
        };
        SubService service(worker, true);
        QTest::ignoreMessage(QtCriticalMsg, "Error in subService [CountingWorker]: \nfirst");
        QTest::ignoreMessage(QtCriticalMsg, "Unknown error in subService [CountingWorker]");
        service.Start();
        QVERIFY2(worker->rounds.tryAcquire(3, 5000),
                 "a faulty round is followed without the pause");
        service.Stop();
        QCOMPARE(worker->rounds.available(), 0);
    }

    void stopsAtOnce() {
        auto *delayed = new ScriptedWorker;
        delayed->setStartDelay(60000);
        auto *counting = new CountingWorker(60000);
        auto *awaiting = new ScriptedWorker;
        awaiting->onProcess = [](CancellationCondition *cancellation) {
            cancellation->awaitInput(-1);
        };
        SubService neverStarted(new CountingWorker(0), false);
        SubService beforeTheStart(delayed, true);
        SubService betweenTwoRounds(counting, true);
        SubService withNothingToRead(awaiting, true);
        beforeTheStart.Start();
        betweenTwoRounds.Start();
        withNothingToRead.Start();
        QVERIFY(counting->rounds.tryAcquire(1, 5000));
        QElapsedTimer timer;
        timer.start();
        neverStarted.Stop();
        beforeTheStart.Stop();
        betweenTwoRounds.Stop();
        withNothingToRead.Stop();
        QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
    }

    void livesAgainAfterALateEnd() {
        QSemaphore mayEnd;
        bool sawTheStop = false;
        auto *worker = new ScriptedWorker;
        worker->onProcess = [&](CancellationCondition *cancellation) {
            mayEnd.acquire();
            // The service has given up waiting and must not have freed this.
            sawTheStop = sawTheStop || cancellation->isCanceled;
        };
        QSemaphore served;
        {
            SubService service(worker, true);
            service.Start();
            QElapsedTimer timer;
            timer.start();
            service.Stop();
            QVERIFY2(timer.elapsed() < 12000, "a stuck worker costs at most ten seconds");
            timer.restart();
            service.Start();
            QVERIFY2(timer.elapsed() < 2000, "nobody waits for the late end");
            mayEnd.release(2);
            QTRY_COMPARE(worker->lives.available(), 2);
            QVERIFY(sawTheStop && !worker->isWorkDone(nullptr));
            QMetaObject::invokeMethod(worker, [&served] { served.release(); });
            QVERIFY2(served.tryAcquire(1, patienceMs), "the thread serves the worker's events");
        }
    }

    void endsTheProcessOnce_data() {
        columns<std::function<void()>, int>("last", "status");
        row<std::function<void()>>(
            "at an exception that nobody catches", [] { throw Exception("boom"); }, 255);
        row<std::function<void()>>(
            "where a library does so", [] { std::exit(1); }, 1);
        row<std::function<void()>>(
            "by itself", [] { endProcess(3); }, 3);
    }

    void endsTheProcessOnce() {
        QFETCH(std::function<void()>, last);
        QFETCH(int, status);
        const pid_t child = ::fork();
        if (child == 0) {
            set_unhandled_catcher();
            std::atexit([] { std::abort(); });
            for (int thread = 0; thread < 8; ++thread)
                std::thread(last).detach();
            for (;;)
                ::pause();
        }
        int result = 0;
        QCOMPARE(::waitpid(child, &result, 0), child);
        QVERIFY2(WIFEXITED(result), qPrintable(QString("signal %1").arg(WTERMSIG(result))));
        QCOMPARE(WEXITSTATUS(result), status);
    }
};

DESK_CORE_TEST_MAIN(TestWorkers)
#include "TestWorkers.moc"
