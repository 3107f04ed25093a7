#include "viewmodels/QmlTypes.h"

#include "desktop/FixedWindow.h"
#include "viewmodels/OstrelStyle.h"
#include "viewmodels/commands/UserCommandEditModel.h"

void registerQmlTypes() {
    // What a window of Qt Quick has gained since its first version, the signal `closing` among it.
    qmlRegisterRevision<QWindow, 1>("QLN", 1, 0);
    qmlRegisterRevision<QQuickWindow, 1>("QLN", 1, 0);
    qmlRegisterType<FixedWindow>("QLN", 1, 0, "QFixedWindow");
    // Views call methods that return one.
    qRegisterMetaType<UserCommandEditModel *>();
    qmlRegisterUncreatableType<OstrelStyle>("OstrelStyle", 1, 0, "OstrelStyle",
                                            QStringLiteral("OstrelStyle attached properties"));
}
