#include "DeskTest.h"
#include "desktop/Hotkey.h"
#include "viewmodels/EnumModel.h"
#include "viewmodels/FilteredCollectionModel.h"

#include <QAbstractItemModelTester>
#include <QIdentityProxyModel>
#include <QSignalSpy>

#include <optional>

namespace {

/// Checks what a list tells its views. The list gives its objects for every role, but the tester
/// takes only a text for DisplayRole, so it sees the list through this.
class ModelTester : public QIdentityProxyModel {
public:
    explicit ModelTester(QObjectCollection *list) {
        setSourceModel(list);
        m_tester.emplace(this, QAbstractItemModelTester::FailureReportingMode::Fatal);
    }

    QVariant data(const QModelIndex &index, int role) const override {
        return role == Qt::UserRole ? QIdentityProxyModel::data(index, role) : QVariant();
    }

private:
    std::optional<QAbstractItemModelTester> m_tester;
};

/// Accepts the objects whose name contains a letter.
class ByLetter : public FilteredCollectionModel<QObject> {
public:
    QString letter;

protected:
    bool filterAcceptsRow(QObject *item) override { return item->objectName().contains(letter); }
};

/// The names of the objects, in order.
QString names(const QObjectCollection &list) {
    QString result;
    for (int row = 0; row < list.rowCount(); ++row) {
        const QVariant item = list.data(list.index(row), Qt::UserRole);
        result += item.value<QObject *>()->objectName();
    }
    return result;
}

} // namespace

/// Lists of objects, filtered lists and lists of an enumeration's values.
class TestListModels : public QObject {
    Q_OBJECT

private slots:
    void init();
    void insertsAtAPlace_data();
    void insertsAtAPlace();
    void keepsAnIndexOnRemoval_data();
    void keepsAnIndexOnRemoval();
    void clears();
    void tellsTheCurrentObject();
    void dropsADestroyedObject();
    void filters_data();
    void filters();
    void keepsBothListsInStep();
    void readsNames_data();
    void readsNames();
    void offersValues();

private:
    QObject *named(const QString &name);

    std::unique_ptr<QObject> m_owner;
};

void TestListModels::init() {
    m_owner = std::make_unique<QObject>();
}

QObject *TestListModels::named(const QString &name) {
    auto *object = new QObject(m_owner.get());
    object->setObjectName(name);
    return object;
}

void TestListModels::insertsAtAPlace_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("expected");
    QTest::newRow("first") << 0 << "xab";
    QTest::newRow("between") << 1 << "axb";
    QTest::newRow("last") << 2 << "abx";
    QTest::newRow("beyond the end") << 3 << "ab";
    QTest::newRow("before the start") << -1 << "ab";
}

void TestListModels::insertsAtAPlace() {
    QFETCH(int, index);
    CollectionModel<QObject> list;
    const ModelTester tester(&list);
    list.append(named(QStringLiteral("a")));
    list.append(named(QStringLiteral("b")));
    list.insert(index, named(QStringLiteral("x")));
    QTEST(names(list), "expected");
    QCOMPARE(list.roleNames(), (QHash<int, QByteArray>{{256, "user"}}));
    QVERIFY(!list.data(list.index(list.rowCount()), 256).isValid());
}

void TestListModels::keepsAnIndexOnRemoval_data() {
    QTest::addColumn<int>("current");
    QTest::addColumn<int>("removed");
    QTest::addColumn<int>("expected");
    QTest::addColumn<int>("signalCount");
    QTest::newRow("row before the current one") << 1 << 0 << 1 << 1;
    QTest::newRow("current row") << 1 << 1 << 1 << 1;
    QTest::newRow("row behind the current one") << 1 << 2 << 1 << 0;
    QTest::newRow("current row is the last") << 2 << 2 << 1 << 1;
    QTest::newRow("row before, current is the last") << 2 << 0 << 1 << 1;
    QTest::newRow("none current") << -1 << 0 << -1 << 0;
    QTest::newRow("no such row") << 1 << 3 << 1 << 0;
    QTest::newRow("negative row") << 1 << -1 << 1 << 0;
}

void TestListModels::keepsAnIndexOnRemoval() {
    QFETCH(int, current);
    QFETCH(int, removed);
    CollectionModel<QObject> list;
    const ModelTester tester(&list);
    for (const char *name : {"a", "b", "c"})
        list.append(named(QLatin1String(name)));
    list.set_CurrentIndex(current);
    QSignalSpy changed(&list, &QObjectCollection::changed_CurrentIndex);
    QSignalSpy objectChanged(&list, &QObjectCollection::changed_CurrentObject);
    list.removeAt(removed);
    QTEST(list.get_CurrentIndex(), "expected");
    QTEST(changed.count(), "signalCount");
    QCOMPARE(objectChanged.count(), changed.count());
    QCOMPARE(names(list), QStringLiteral("abc").remove(list.rowCount() < 3 ? removed : 3, 1));
    list.remove(named(QStringLiteral("stranger")));
    QCOMPARE(names(list).size(), list.rowCount());
}

void TestListModels::clears() {
    CollectionModel<QObject> list;
    const ModelTester tester(&list);
    QSignalSpy changed(&list, &QObjectCollection::changed_CurrentIndex);
    QSignalSpy removed(&list, &QAbstractItemModel::rowsRemoved);
    list.clear();
    QCOMPARE(changed.count() + removed.count(), 0);
    list.append(named(QStringLiteral("a")));
    list.append(named(QStringLiteral("b")));
    list.set_CurrentIndex(1);
    list.clear();
    QCOMPARE(changed.count(), 2);
    QCOMPARE(changed.last().first().toInt(), -1);
    QCOMPARE(removed.count(), 1);
    QCOMPARE(list.rowCount(), 0);
}

void TestListModels::tellsTheCurrentObject() {
    CollectionModel<QObject> list;
    QObject *const item = named(QStringLiteral("a"));
    list.append(item);
    QCOMPARE(list.property("CurrentObject").value<QObject *>(), nullptr);
    list.setProperty("CurrentIndex", 0);
    QCOMPARE(list.property("CurrentObject").value<QObject *>(), item);
    list.setProperty("CurrentIndex", 1);
    QCOMPARE(list.property("CurrentObject").value<QObject *>(), nullptr);
    QSignalSpy changed(&list, &QObjectCollection::changed_CurrentIndex);
    list.set_CurrentIndex(1);
    QCOMPARE(changed.count(), 0);
}

void TestListModels::dropsADestroyedObject() {
    CollectionModel<QObject> list;
    const ModelTester tester(&list);
    QObject *const doomed = named(QStringLiteral("a"));
    list.append(doomed);
    list.append(named(QStringLiteral("b")));
    list.append(doomed);
    list.set_CurrentIndex(2);
    connect(&list, &QAbstractItemModel::rowsAboutToBeRemoved, &list,
            [&](const QModelIndex &, int row) {
                QCOMPARE(list.data(list.index(row)).value<QObject *>(), nullptr);
            });
    std::unique_ptr<QObject>(doomed).reset();
    QCOMPARE(names(list), QStringLiteral("b"));
    QCOMPARE(list.get_CurrentIndex(), 0);
}

void TestListModels::filters_data() {
    QTest::addColumn<QString>("before");
    QTest::addColumn<int>("current");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<int>("expected");
    QTest::newRow("fewer, current stays") << "" << 3 << "y"
                                          << "byay" << 1;
    QTest::newRow("fewer, current goes") << "" << 2 << "y"
                                         << "byay" << 1;
    QTest::newRow("more, current stays") << "y" << 1 << ""
                                         << "axbybxay" << 3;
    QTest::newRow("others instead") << "y" << 1 << "x"
                                    << "axbx" << 1;
    QTest::newRow("none") << "a" << 0 << "z"
                          << "" << -1;
    QTest::newRow("none was current") << "a" << -1 << "b"
                                      << "bybx" << -1;
}

void TestListModels::filters() {
    QFETCH(QString, before);
    QFETCH(int, current);
    QFETCH(QString, after);
    ByLetter lists;
    const ModelTester tester(lists.filteredCollection());
    lists.letter = before;
    for (const char *name : {"ax", "by", "bx", "ay"})
        lists.add(named(QLatin1String(name)));
    lists.filteredCollection()->set_CurrentIndex(current);
    lists.letter = after;
    lists.refilter();
    QTEST(names(*lists.filteredCollection()), "shown");
    QTEST(lists.filteredCollection()->get_CurrentIndex(), "expected");
    QCOMPARE(names(*lists.collection()), QStringLiteral("axbybxay"));
}

void TestListModels::keepsBothListsInStep() {
    ByLetter lists;
    lists.letter = QStringLiteral("a");
    QObject *const first = named(QStringLiteral("a"));
    QObject *const second = named(QStringLiteral("aa"));
    for (QObject *item : {first, named(QStringLiteral("b")), second})
        lists.add(item);
    lists.filteredCollection()->set_CurrentIndex(1);
    QSignalSpy raised(lists.filteredCollection(), &QObjectCollection::changed_CurrentIndex);
    lists.raiseIndexChanged();
    QCOMPARE(raised, (QList<QList<QVariant>>{{1}}));
    lists.remove(second);
    QCOMPARE(names(*lists.filteredCollection()), QStringLiteral("a"));
    QCOMPARE(names(*lists.collection()), QStringLiteral("ab"));
    m_owner.reset();
    QCOMPARE(lists.collection()->count() + lists.filteredCollection()->count(), 0);
    m_owner = std::make_unique<QObject>();
    lists.add(named(QStringLiteral("a")));
    lists.clear();
    QCOMPARE(lists.collection()->count() + lists.filteredCollection()->count(), 0);
}

void TestListModels::readsNames_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("expected");
    QTest::newRow("first value") << "DoubleCtrl" << 0;
    QTest::newRow("second value") << "DoubleCapsLock" << 1;
    QTest::newRow("unknown text") << "TripleCtrl" << -1;
    QTest::newRow("other case") << "doublectrl" << -1;
    QTest::newRow("empty text") << "" << -1;
}

void TestListModels::readsNames() {
    QFETCH(QString, text);
    QFETCH(int, expected);
    if (expected < 0) {
        QVERIFY_EXCEPTION_THROWN(Enum<Hotkey>::FromInvariantString(text), ConveterException);
        QVERIFY_EXCEPTION_THROWN(Enum<Hotkey>::ToString(Hotkey(7)), ConveterException);
    } else {
        const Hotkey value = Enum<Hotkey>::FromInvariantString(text);
        QCOMPARE(int(value), expected);
        QCOMPARE(Enum<Hotkey>::ToString(value), Enum<Hotkey>::Values[value]->get_Name());
    }
}

void TestListModels::offersValues() {
    EnumModel<Hotkey> model;
    QSignalSpy changed(&model, &EnumModelBase::changed_CurrentIndex);
    QCOMPARE(model.property("Items").toStringList(),
             QStringList({"Ctrl 2 раза", "Caps Lock 2 раза"}));
    QCOMPARE(model.value(), Hotkey::DoubleCtrl);
    model.setValue(Hotkey::DoubleCapsLock);
    model.setValue(Hotkey::DoubleCapsLock);
    QCOMPARE(model.property("CurrentIndex").toInt(), 1);
    QCOMPARE(changed.count(), 1);
    QVERIFY_EXCEPTION_THROWN(model.setValue(Hotkey(7)), ConveterException);
    QCOMPARE(model.value(), Hotkey::DoubleCapsLock);
    model.setProperty("CurrentIndex", -1);
    QVERIFY_EXCEPTION_THROWN(model.value(), ConveterException);
}

DESK_CORE_TEST_MAIN(TestListModels)
#include "TestListModels.moc"
