#include "DeskTest.h"
#include "desktop/Hotkey.h"
#include "viewmodels/EnumModel.h"
#include "viewmodels/FilteredCollectionModel.h"

#include <QAbstractItemModelTester>
#include <QIdentityProxyModel>
#include <QSignalSpy>

/// Checks what a list tells its views. The list gives its objects for every role, but the tester
/// takes only a text for DisplayRole, so it sees the list through this.
struct ModelTester : QIdentityProxyModel {
    explicit ModelTester(QObjectCollection *list) {
        setSourceModel(list);
        new QAbstractItemModelTester(this, QAbstractItemModelTester::FailureReportingMode::Fatal,
                                     this);
    }
    QVariant data(const QModelIndex &index, int role) const override {
        return role == Qt::UserRole ? QIdentityProxyModel::data(index, role) : QVariant();
    }
};

/// Accepts the objects whose name contains a letter.
struct ByLetter : FilteredCollectionModel<QObject> {
    bool filterAcceptsRow(QObject *item) override { return item->objectName().contains(letter); }

    QString letter;
};

/// Lists of objects, filtered lists and lists of an enumeration's values.
class TestListModels : public QObject {
    Q_OBJECT

private slots:
    void init() { m_owner = std::make_unique<QObject>(); }

    void insertsAtAPlace_data() {
        columns<int, QString>("index", "expected");
        QTest::newRow("first") << 0 << "xab";
        QTest::newRow("last") << 2 << "abx";
        QTest::newRow("beyond the end") << 3 << "ab";
        QTest::newRow("before the start") << -1 << "ab";
    }

    void insertsAtAPlace() {
        QFETCH(int, index);
        CollectionModel<QObject> &list = listOf({"a", "b"});
        list.insert(index, named("x"));
        QTEST(names(list), "expected");
        QCOMPARE(list.roleNames(), (QHash<int, QByteArray>{{256, "user"}}));
        QVERIFY(!list.data(list.index(list.rowCount()), 256).isValid());
    }

    void keepsAnIndexOnRemoval_data() {
        columns<int, int, int, int>("current", "removed", "expected", "signalCount");
        row("current row", 1, 1, 1, 1);
        row("row behind the current one", 1, 2, 1, 0);
        row("row before, current is the last", 2, 0, 1, 1);
        row("none current", -1, 0, -1, 0);
        row("no such row", 1, 3, 1, 0);
        row("negative row", 1, -1, 1, 0);
    }

    void keepsAnIndexOnRemoval() {
        QFETCH(int, current);
        QFETCH(int, removed);
        CollectionModel<QObject> &list = listOf({"a", "b", "c"});
        list.set_CurrentIndex(current);
        QSignalSpy changed(&list, &QObjectCollection::changed_CurrentIndex);
        QSignalSpy objectChanged(&list, &QObjectCollection::changed_CurrentObject);
        list.removeAt(removed);
        QTEST(list.get_CurrentIndex(), "expected");
        QTEST(changed.count(), "signalCount");
        QCOMPARE(objectChanged.count(), changed.count());
        QCOMPARE(names(list), QString("abc").remove(removed < 0 ? 3 : removed, 1));
    }

    void clears() {
        CollectionModel<QObject> &list = listOf({"a", "b"});
        list.set_CurrentIndex(1);
        QSignalSpy changed(&list, &QObjectCollection::changed_CurrentIndex);
        QSignalSpy removed(&list, &QAbstractItemModel::rowsRemoved);
        for (int i = 0; i < 2; ++i)
            list.clear();
        QCOMPARE(changed, (QList<QVariantList>{{-1}}));
        QCOMPARE(removed.count(), 1);
        QCOMPARE(list.rowCount(), 0);
    }

    void tellsTheCurrentObject() {
        CollectionModel<QObject> &list = listOf({"a"});
        QSignalSpy changed(&list, &QObjectCollection::changed_CurrentIndex);
        for (const int index : {-1, 0, 1, 1}) {
            list.setProperty("CurrentIndex", index);
            QCOMPARE(list.property("CurrentObject").value<QObject *>(), list.at(index));
        }
        QCOMPARE(changed.count(), 2);
    }

    void dropsADestroyedObject() {
        CollectionModel<QObject> &list = listOf({"a", "b"});
        list.append(list.at(0));
        list.set_CurrentIndex(2);
        connect(&list, &QAbstractItemModel::rowsAboutToBeRemoved, this, [&](auto, int row) {
            QCOMPARE(list.data(list.index(row)).template value<QObject *>(), nullptr);
        });
        delete list.at(0);
        QCOMPARE(names(list), "b");
        QCOMPARE(list.get_CurrentIndex(), 0);
    }

    void filters_data() {
        columns<QString, int, QString, int, QString>("before", "current", "after", "expected",
                                                     "shown");
        QTest::newRow("fewer, current stays") << "" << 3 << "y" << 1 << "byay";
        QTest::newRow("fewer, current goes") << "" << 2 << "y" << 1 << "byay";
        QTest::newRow("more, current stays") << "y" << 1 << "" << 3 << "axbybxay";
        QTest::newRow("others instead") << "y" << 1 << "x" << 1 << "axbx";
        QTest::newRow("none") << "a" << 0 << "z" << -1 << "";
        QTest::newRow("none was current") << "a" << -1 << "b" << -1 << "bybx";
    }

    void filters() {
        QFETCH(QString, after);
        QFETCH(int, current);
        QFETCH(QString, before);
        ByLetter lists;
        const ModelTester tester(lists.filteredCollection());
        lists.letter = before;
        for (const char *name : {"ax", "by", "bx", "ay"})
            lists.add(named(name));
        lists.filteredCollection()->set_CurrentIndex(current);
        lists.letter = after;
        lists.refilter();
        QTEST(names(*lists.filteredCollection()), "shown");
        QTEST(lists.filteredCollection()->get_CurrentIndex(), "expected");
        QCOMPARE(names(*lists.collection()), "axbybxay");
    }

    void keepsBothListsInStep() {
        ByLetter lists;
        lists.letter = "a";
        QObject *const last = named("aa");
        for (QObject *item : {named("a"), named("b"), last})
            lists.add(item);
        lists.filteredCollection()->set_CurrentIndex(1);
        QSignalSpy raised(lists.filteredCollection(), &QObjectCollection::changed_CurrentIndex);
        lists.raiseIndexChanged();
        QCOMPARE(raised, (QList<QVariantList>{{1}}));
        lists.remove(last);
        QCOMPARE(names(*lists.filteredCollection()) + names(*lists.collection()), "aab");
        m_owner = std::make_unique<QObject>();
        QCOMPARE(lists.collection()->count() + lists.filteredCollection()->count(), 0);
        lists.add(named("a"));
        lists.clear();
        QCOMPARE(lists.collection()->count() + lists.filteredCollection()->count(), 0);
    }

    void offersValues() {
        EnumModel<Hotkey> model;
        QSignalSpy changed(&model, &EnumModelBase::changed_CurrentIndex);
        QCOMPARE(model.property("Items").toStringList().join('|'), "Ctrl 2 раза|Caps Lock 2 раза");
        QCOMPARE(model.value(), Enum<Hotkey>::FromInvariantString("DoubleCtrl"));
        for (int i = 0; i < 2; ++i)
            model.setValue(Enum<Hotkey>::FromInvariantString("DoubleCapsLock"));
        QCOMPARE(model.property("CurrentIndex").toInt(), 1);
        QCOMPARE(changed.count(), 1);
        QVERIFY_EXCEPTION_THROWN(model.setValue(Hotkey(7)), ConveterException);
        QCOMPARE(Enum<Hotkey>::ToString(model.value()), "Caps Lock 2 раза");
        for (const char *text : {"doublectrl", ""})
            QVERIFY_EXCEPTION_THROWN(Enum<Hotkey>::FromInvariantString(text), ConveterException);
        QVERIFY_EXCEPTION_THROWN(Enum<Hotkey>::ToString(Hotkey(7)), ConveterException);
        model.setProperty("CurrentIndex", -1);
        QVERIFY_EXCEPTION_THROWN(model.value(), ConveterException);
    }

private:
    QObject *named(const char *name) {
        auto *object = new QObject(m_owner.get());
        object->setObjectName(name);
        return object;
    }

    CollectionModel<QObject> &listOf(std::initializer_list<const char *> letters) {
        m_list = std::make_unique<CollectionModel<QObject>>();
        m_tester = std::make_unique<ModelTester>(m_list.get());
        for (const char *name : letters)
            m_list->append(named(name));
        return *m_list;
    }

    /// The names of the objects, in order.
    static QString names(const QObjectCollection &list) {
        QString result;
        for (int row = 0; row < list.rowCount(); ++row)
            result += list.index(row).data(Qt::UserRole).value<QObject *>()->objectName();
        return result;
    }

    std::unique_ptr<QObject> m_owner;
    std::unique_ptr<CollectionModel<QObject>> m_list;
    std::unique_ptr<ModelTester> m_tester;
};

DESK_CORE_TEST_MAIN(TestListModels)
#include "TestListModels.moc"
