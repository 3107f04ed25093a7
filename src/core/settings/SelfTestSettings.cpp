#include "core/settings/SelfTestSettings.h"

QList<SelfTestFile> SelfTestSettings::get_Files() {
    constexpr int usualTail = 2000;
    QList<SelfTestFile> files;
    const int count = beginReadArray(QStringLiteral("Files"));
    for (int i = 0; i < count; ++i) {
        setArrayIndex(i);
        files << SelfTestFile{value(QStringLiteral("path")).toString(),
                              value(QStringLiteral("tail"), usualTail).toInt(),
                              value(QStringLiteral("results"), 0).toInt()};
    }
    endArray();
    return files;
}
