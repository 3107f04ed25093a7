#include "ClientHarness.h"
#include "DeskTest.h"
#include "Stand.h"
#include "core/Exception.h"
#include "viewmodels/SettingsContainerViewModel.h"

#include <QSignalSpy>

#include <functional>

/// A page that writes down what it is asked to do.
class Page : public AppSettingsViewModel {
    Q_OBJECT

public:
    Page(const QString &name, QStringList *journal, bool needsServer = false)
        : AppSettingsViewModel(name, needsServer), m_journal(journal) {}

    bool Validate() override { return note("Validate", isValidNow); }
    void Load() override { note("Load"); }
    void Unload() override { note("Unload"); }
    void Apply() override { note("Apply"); }
    void Cancel() override { note("Cancel"); }
    bool IsChanged() override { return note("IsChanged", isChangedNow); }

    bool isValidNow = true;
    bool isChangedNow = false;
    std::function<void()> onCall;

private:
    bool note(const QString &call, bool answer = true) {
        *m_journal << get_HeaderText() + ' ' + call;
        if (onCall)
            onCall();
        return answer;
    }

    QStringList *m_journal;
};

/// What only a derived page can do with the inner ones.
struct Group : SettingsViewModel {
    using SettingsViewModel::addPage;
};

/// The protocol of load, check, apply and cancel, and the settings window's choice of pages.
class TestSettingsPages : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_journal.clear();
        m_first = std::make_unique<Page>("first", &m_journal);
        m_second = std::make_unique<Page>("second", &m_journal);
        m_group = std::make_unique<Group>();
        m_group->addPage(m_first.get());
        m_group->addPage(m_second.get());
    }

    void goesThroughThePages_data() {
        columns<QString, QString, bool, QString>("operation", "fault", "answer", "calls");
        const QString load = "first Load|second Load";
        const QString unload = "first Unload|second Unload";
        row("load", "onLoad", "", true, load);
        row("load, one throws", "onLoad", "Load", true, load);
        row("unload", "onClose", "", true, unload);
        row("unload, one throws", "onClose", "Unload", true, unload);
        row("cancel", "cancelCommand", "", true, "first Cancel|second Cancel");
        row("cancel, one throws", "cancelCommand", "cancelCommand", true, "first Cancel");
        row("apply, all valid", "applyCommand", "", true,
            "first Validate|second Validate|first Apply|second Apply");
        row("apply, one invalid", "applyCommand", "", false, "first Validate");
        row("apply, one throws", "applyCommand", "Validate", false, "first Validate");
        row("changed up to the first that is", "IsChanged", "", true, "first IsChanged");
        row("not changed", "IsChanged", "", false, "first IsChanged|second IsChanged");
    }

    void goesThroughThePages() {
        QFETCH(QString, operation);
        QFETCH(QString, fault);
        QFETCH(bool, answer);
        m_first->isValidNow = m_first->isChangedNow = answer;
        for (const bool isException : {true, false}) {
            m_journal.clear();
            if (!fault.isEmpty()) {
                m_first->onCall = [isException] { fail(isException); };
                const QString log = "Error in SettingsViewModel::%1: %2";
                QTest::ignoreMessage(
                    QtWarningMsg,
                    qPrintable(log.arg(fault, isException ? "диск полон" : "unknown exception")));
            }
            QCOMPARE(call(operation), answer);
            QTEST(m_journal.join('|'), "calls");
        }
    }

    void appliesOnlyWhatIsValid() {
        m_second->onCall = [this] {
            if (m_journal.last() == "second Apply")
                fail(false);
        };
        QTest::ignoreMessage(QtWarningMsg,
                             "Error in SettingsViewModel::applyCommand: unknown exception");
        QVERIFY(!m_group->applyCommand());
        QCOMPARE(m_journal.last(), "second Apply");
        QVERIFY_EXCEPTION_THROWN(m_group->Apply(), int);
        QVERIFY(Group().applyCommand()); // nothing to check, nothing wrong
    }

    void forgetsADestroyedPage() {
        QSignalSpy changed(m_group.get(), &SettingsViewModel::changed_InnerSettings);
        m_first->onCall = [this] { m_second.reset(); };
        m_group->onLoad();
        QCOMPARE(m_journal, QStringList{"first Load"});
        QCOMPARE(offered(*m_group), QObjectList{m_first.get()});
        QCOMPARE(changed.count(), 1);
    }

    void offersPagesByConnection() {
        Stand stand;
        ClientHarness client(stand);
        Page online("online", &m_journal, true);
        SettingsContainerViewModel window({&online, m_first.get(), m_second.get()},
                                          client.manager());
        window.set_currentIndex(1);
        window.onLoad();
        QCOMPARE(offered(window), QObjectList({m_first.get(), m_second.get()}));
        QCOMPARE(m_journal, QStringList({"first Load", "second Load"}));
        QCOMPARE(window.get_currentIndex(), 0);

        client.start();
        QVERIFY(client.waitFor(ConnectionState::Ready));
        window.onLoad();
        QCOMPARE(offered(window), QObjectList({&online, m_first.get(), m_second.get()}));

        client.stop();
        m_second.reset();
        window.onLoad();
        QCOMPARE(offered(window), QObjectList{m_first.get()});
    }

    void jumpsToThePageAtFault_data() {
        columns<int, bool, bool, int>("shown", "isValid", "isThrowing", "signalCount");
        row("another page", 0, false, false, 1);
        row("the shown page", 1, false, false, 0);
        row("a page that throws", 0, true, true, 1);
        row("no page", 1, true, false, 0);
    }

    void jumpsToThePageAtFault() {
        QFETCH(int, shown);
        QFETCH(bool, isValid);
        QFETCH(bool, isThrowing);
        Stand stand;
        ClientHarness client(stand);
        SettingsContainerViewModel window({m_first.get(), m_second.get()}, client.manager());
        window.onLoad();
        window.set_currentIndex(shown);
        QSignalSpy jumped(&window, &SettingsContainerViewModel::changed_currentIndex);
        m_second->isValidNow = isValid;
        if (isThrowing) {
            m_second->onCall = [] { fail(true); };
            QTest::ignoreMessage(QtWarningMsg, "Error in SettingsViewModel::Validate: диск полон");
        }
        const bool isApplied = isValid && !isThrowing;
        QCOMPARE(window.applyCommand(), isApplied);
        QCOMPARE(m_journal.contains("first Apply"), isApplied);
        QCOMPARE(window.get_currentIndex(), 1);
        QTEST(jumped.count(), "signalCount");
    }

private:
    static void fail(bool isException) {
        if (isException)
            throw Exception("диск полон");
        throw 42;
    }

    static QObjectList offered(const SettingsViewModel &pages) {
        return pages.property("InnerSettings").value<QObjectList>();
    }

    bool call(const QString &operation) {
        return operation == "IsChanged" ? m_group->IsChanged()
               : operation == "applyCommand"
                   ? m_group->applyCommand()
                   : QMetaObject::invokeMethod(m_group.get(), operation.toLatin1());
    }

    QStringList m_journal;
    std::unique_ptr<Page> m_first;
    std::unique_ptr<Page> m_second;
    std::unique_ptr<Group> m_group;
};

DESK_CORE_TEST_MAIN(TestSettingsPages)
#include "TestSettingsPages.moc"
