#include "CheckedText.h"
#include "DeskTest.h"
#include "IndexedList.h"
#include "viewmodels/QmlTypes.h"

#include <QQmlEngine>
#include <QQmlError>
#include <QtQuickTest>

namespace {

/// Makes ready what the controls need, for each file of tests.
class Setup : public QObject {
    Q_OBJECT

public slots:
    void applicationAvailable() {
        registerQmlTypes();
        qmlRegisterType<CheckedText>("Tests", 1, 0, "CheckedText");
        qmlRegisterType<IndexedList>("Tests", 1, 0, "IndexedList");
    }

    /// A control that works but warns is at fault, too.
    void qmlEngineAvailable(QQmlEngine *engine) {
        connect(engine, &QQmlEngine::warnings, this, [](const QList<QQmlError> &warnings) {
            for (const QQmlError &warning : warnings)
                QTest::qFail(qPrintable(warning.toString()), __FILE__, __LINE__);
        });
    }
};

} // namespace

int main(int argc, char **argv) {
    return withDesk<QApplication>(argc, argv, VirtualDesk::Screen, [&] {
        Setup setup;
        return quick_test_main_with_setup(argc, argv, "controls", QUICK_TEST_SOURCE_DIR, &setup);
    });
}

#include "TestQml.moc"
