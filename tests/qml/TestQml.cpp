#include "CheckedText.h"
#include "DeskTest.h"
#include "IndexedList.h"
#include "viewmodels/QmlTypes.h"

#include <QQmlEngine>
#include <QQmlError>
#include <QtQuickTest>

namespace {

/// The keyboard of the desk, for windows that are not the test's own.
class Keyboard : public QObject {
    Q_OBJECT

public:
    /// Presses and releases a key, named as X does, in the window with the focus.
    Q_INVOKABLE void press(const QString &key) { desk().run("xdotool", {"key", key}); }
};

/// Makes ready what the controls need, for each file of tests.
class Setup : public QObject {
    Q_OBJECT

public slots:
    void applicationAvailable() {
        registerQmlTypes();
        qmlRegisterType<CheckedText>("Tests", 1, 0, "CheckedText");
        qmlRegisterType<IndexedList>("Tests", 1, 0, "IndexedList");
        qmlRegisterType<Keyboard>("Tests", 1, 0, "Keyboard");
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
