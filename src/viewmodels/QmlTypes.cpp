#include "viewmodels/QmlTypes.h"

#include "desktop/FixedWindow.h"
#include "viewmodels/OstrelStyle.h"

void registerQmlTypes() {
    qmlRegisterType<FixedWindow>("QLN", 1, 0, "QFixedWindow");
    qmlRegisterUncreatableType<OstrelStyle>("OstrelStyle", 1, 0, "OstrelStyle",
                                            QStringLiteral("OstrelStyle attached properties"));
}
