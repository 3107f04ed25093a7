#include "core/DialogTranslator.h"

#include <QDebug>
#include <QLibraryInfo>

#include <algorithm>
#include <array>
#include <string_view>

namespace {

constexpr std::array<std::string_view, 7> dialogContexts = {
    "QFileDialog", "QFileSystemModel", "QPlatformTheme",    "QDialogButtonBox",
    "QMessageBox", "QLineEdit",        "QWidgetTextControl"};

} // namespace

DialogTranslator::DialogTranslator(QObject *parent) : QTranslator(parent) {
    if (!load(QStringLiteral("qtbase_ru"), QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        qInfo() << "Qt's Russian texts are not installed";
}

QString DialogTranslator::translate(const char *context, const char *sourceText,
                                    const char *disambiguation, int n) const {
    const bool isDialog =
        std::find(dialogContexts.begin(), dialogContexts.end(), context) != dialogContexts.end();
    return isDialog ? QTranslator::translate(context, sourceText, disambiguation, n) : QString();
}
