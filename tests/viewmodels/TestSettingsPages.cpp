#include "ClientHarness.h"
#include "DeskTest.h"
#include "Stand.h"
#include "core/Exception.h"
#include "viewmodels/SettingsContainerViewModel.h"

#include <QSignalSpy>

#include <functional>

namespace {

/// A page that writes down what it is asked to do.
class Page : public AppSettingsViewModel {
    Q_OBJECT

public:
    Page(const QString &name, QStringList *journal, bool needsServer = false)
        : AppSettingsViewModel(name, needsServer), m_journal(journal) {}

    bool Validate() override {
        note("Validate");
        return isValidNow;
    }
    void Load() override { note("Load"); }
    void Unload() override { note("Unload"); }
    void Apply() override { note("Apply"); }
    void Cancel() override { note("Cancel"); }
    bool IsChanged() override {
        note("IsChanged");
        return isChangedNow;
    }

    bool isValidNow = true;
    bool isChangedNow = false;
    std::function<void()> onCall;

private:
    void note(const char *call) {
        *m_journal << get_HeaderText() + QLatin1Char(' ') + QLatin1String(call);
        if (onCall)
            onCall();
    }

    QStringList *m_journal;
};

/// What only a derived page can do with the inner ones.
class Group : public SettingsViewModel {
    Q_OBJECT

public:
    using SettingsViewModel::addPage;
};

void fail(const QString &how) {
    if (how == QLatin1String("exception"))
        throw Exception(QStringLiteral("диск полон"));
    if (how == QLatin1String("something"))
        throw 42;
}

} // namespace

/// The protocol of load, check, apply and cancel, and the settings window's choice of pages.
class TestSettingsPages : public QObject {
    Q_OBJECT

private slots:
    void init();
    void goesThroughThePages_data();
    void goesThroughThePages();
    void survivesAPageThatThrows_data();
    void survivesAPageThatThrows();
    void appliesOnlyWhatIsValid();
    void forgetsADestroyedPage();
    void describesAPage();
    void offersPagesByConnection();
    void jumpsToThePageAtFault_data();
    void jumpsToThePageAtFault();

private:
    bool call(const QString &operation);

    QStringList m_journal;
    std::unique_ptr<Page> m_first;
    std::unique_ptr<Page> m_second;
    std::unique_ptr<Group> m_group;
};

void TestSettingsPages::init() {
    m_journal.clear();
    m_first = std::make_unique<Page>(QStringLiteral("first"), &m_journal);
    m_second = std::make_unique<Page>(QStringLiteral("second"), &m_journal);
    m_group = std::make_unique<Group>();
    m_group->addPage(m_first.get());
    m_group->addPage(m_second.get());
}

bool TestSettingsPages::call(const QString &operation) {
    if (operation == QLatin1String("Validate"))
        return m_group->Validate();
    if (operation == QLatin1String("IsChanged"))
        return m_group->IsChanged();
    if (operation == QLatin1String("applyCommand"))
        return m_group->applyCommand();
    return QMetaObject::invokeMethod(m_group.get(), operation.toLatin1().constData());
}

void TestSettingsPages::goesThroughThePages_data() {
    QTest::addColumn<QString>("operation");
    QTest::addColumn<bool>("firstAnswer");
    QTest::addColumn<bool>("expected");
    QTest::addColumn<QStringList>("calls");
    const QStringList apply{"first Validate", "second Validate", "first Apply", "second Apply"};
    QTest::newRow("load") << "onLoad" << true << true << QStringList{"first Load", "second Load"};
    QTest::newRow("unload") << "onClose" << true << true
                            << QStringList{"first Unload", "second Unload"};
    QTest::newRow("cancel") << "cancelCommand" << true << true
                            << QStringList{"first Cancel", "second Cancel"};
    QTest::newRow("apply, all valid") << "applyCommand" << true << true << apply;
    QTest::newRow("apply, one invalid")
        << "applyCommand" << false << false << QStringList{"first Validate"};
    QTest::newRow("check, one invalid")
        << "Validate" << false << false << QStringList{"first Validate"};
    QTest::newRow("changed up to the first that is")
        << "IsChanged" << true << true << QStringList{"first IsChanged"};
    QTest::newRow("not changed") << "IsChanged" << false << false
                                 << QStringList{"first IsChanged", "second IsChanged"};
}

void TestSettingsPages::goesThroughThePages() {
    QFETCH(QString, operation);
    QFETCH(bool, firstAnswer);
    m_first->isValidNow = firstAnswer;
    m_first->isChangedNow = firstAnswer;
    QTEST(call(operation), "expected");
    QTEST(m_journal, "calls");
}

void TestSettingsPages::survivesAPageThatThrows_data() {
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("how");
    QTest::addColumn<QString>("log");
    QTest::addColumn<QStringList>("calls");
    const QList<QPair<QString, QStringList>> operations{
        {"onLoad", {"Load", "first Load", "second Load"}},
        {"onClose", {"Unload", "first Unload", "second Unload"}},
        {"Validate", {"Validate", "first Validate"}},
        {"cancelCommand", {"cancelCommand", "first Cancel"}},
    };
    for (const auto &row : operations) {
        const QStringList calls = row.second.mid(1);
        const QString log = "Error in SettingsViewModel::" + row.second.first() + ": ";
        QTest::addRow("exception in %s", qPrintable(row.first))
            << row.first << "exception" << log + "диск полон" << calls;
        QTest::addRow("anything else in %s", qPrintable(row.first))
            << row.first << "something" << log + "unknown exception" << calls;
    }
}

void TestSettingsPages::survivesAPageThatThrows() {
    QFETCH(QString, operation);
    QFETCH(QString, how);
    QFETCH(QString, log);
    m_first->onCall = [how] { fail(how); };
    QTest::ignoreMessage(QtWarningMsg, log.toUtf8().constData());
    QCOMPARE(call(operation), operation != QLatin1String("Validate"));
    QTEST(m_journal, "calls");
}

void TestSettingsPages::appliesOnlyWhatIsValid() {
    m_second->onCall = [this] {
        if (m_journal.last() == QLatin1String("second Apply"))
            fail(QStringLiteral("something"));
    };
    QTest::ignoreMessage(QtWarningMsg,
                         "Error in SettingsViewModel::applyCommand: unknown exception");
    QVERIFY(!m_group->applyCommand());
    QCOMPARE(m_journal.last(), QStringLiteral("second Apply"));
    QVERIFY_EXCEPTION_THROWN(m_group->Apply(), int);
    QVERIFY(Group().applyCommand()); // nothing to check, nothing wrong
}

void TestSettingsPages::forgetsADestroyedPage() {
    QSignalSpy changed(m_group.get(), &SettingsViewModel::changed_InnerSettings);
    m_first->onCall = [this] { m_second.reset(); };
    m_group->onLoad();
    QCOMPARE(m_journal, QStringList{"first Load"});
    QCOMPARE(m_group->property("InnerSettings").value<QList<QObject *>>(),
             QList<QObject *>{m_first.get()});
    QCOMPARE(changed.count(), 1);
}

void TestSettingsPages::describesAPage() {
    QSignalSpy changed(m_first.get(), &AppSettingsViewModel::changed_HeaderText);
    QCOMPARE(m_first->property("ClassName").toString().section(QStringLiteral("::"), -1),
             QStringLiteral("Page"));
    m_first->set_HeaderText(QStringLiteral("first"));
    QCOMPARE(changed.count(), 0);
    m_first->set_HeaderText(QStringLiteral("Сеть"));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_first->property("HeaderText").toString(), QStringLiteral("Сеть"));
}

void TestSettingsPages::offersPagesByConnection() {
    Stand stand;
    ClientHarness client(stand);
    Page online(QStringLiteral("online"), &m_journal, true);
    SettingsContainerViewModel window({&online, m_first.get(), m_second.get()}, client.manager());
    const auto offered = [&] { return window.property("InnerSettings").value<QList<QObject *>>(); };

    window.set_currentIndex(1);
    window.onLoad();
    QCOMPARE(offered(), QList<QObject *>({m_first.get(), m_second.get()}));
    QCOMPARE(m_journal, QStringList({"first Load", "second Load"}));
    QCOMPARE(window.get_currentIndex(), 0);

    client.start();
    QVERIFY(client.waitFor(ConnectionState::Ready));
    window.onLoad();
    QCOMPARE(offered(), QList<QObject *>({&online, m_first.get(), m_second.get()}));

    client.stop();
    m_second.reset();
    window.onLoad();
    QCOMPARE(offered(), QList<QObject *>{m_first.get()});
}

void TestSettingsPages::jumpsToThePageAtFault_data() {
    QTest::addColumn<int>("shown");
    QTest::addColumn<int>("faulty");
    QTest::addColumn<bool>("isThrowing");
    QTest::addColumn<int>("expected");
    QTest::addColumn<int>("signalCount");
    QTest::newRow("another page") << 0 << 1 << false << 1 << 1;
    QTest::newRow("the shown page") << 1 << 1 << false << 1 << 0;
    QTest::newRow("back to the first page") << 1 << 0 << false << 0 << 1;
    QTest::newRow("a page that throws") << 0 << 1 << true << 1 << 1;
    QTest::newRow("no page") << 1 << -1 << false << 1 << 0;
}

void TestSettingsPages::jumpsToThePageAtFault() {
    QFETCH(int, shown);
    QFETCH(int, faulty);
    QFETCH(bool, isThrowing);
    Stand stand;
    ClientHarness client(stand);
    SettingsContainerViewModel window({m_first.get(), m_second.get()}, client.manager());
    window.onLoad();
    window.set_currentIndex(shown);
    QSignalSpy jumped(&window, &SettingsContainerViewModel::changed_currentIndex);
    if (faulty >= 0) {
        Page *page = faulty == 0 ? m_first.get() : m_second.get();
        page->isValidNow = false;
        if (isThrowing) {
            page->onCall = [] { fail(QStringLiteral("exception")); };
            QTest::ignoreMessage(QtWarningMsg, "Error in SettingsViewModel::Validate: диск полон");
        }
    }
    QCOMPARE(window.applyCommand(), faulty < 0);
    QCOMPARE(m_journal.contains(QStringLiteral("first Apply")), faulty < 0);
    QTEST(window.get_currentIndex(), "expected");
    QTEST(jumped.count(), "signalCount");
}

DESK_CORE_TEST_MAIN(TestSettingsPages)
#include "TestSettingsPages.moc"
