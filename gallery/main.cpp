#include "GalleryPictures.h"
#include "viewmodels/QmlTypes.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

#include <cstdio>

namespace {

/// The names of the pages: each file of the gallery whose name ends with Page.qml is one.
QStringList pageNames() {
    QStringList names = QDir(QStringLiteral(":/gallery"))
                            .entryList({QStringLiteral("*Page.qml")}, QDir::Files, QDir::Name);
    names.replaceInStrings(QStringLiteral("Page.qml"), QString());
    return names;
}

int fail(const QString &reason) {
    std::fprintf(stderr, "vellumar-gallery: %s\n", qPrintable(reason));
    return 2;
}

} // namespace

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    const QStringList pages = pageNames();
    QCommandLineParser options;
    const QCommandLineOption pageOption(QStringLiteral("page"),
                                        "The page to begin with: " + pages.join(", "), "NAME",
                                        pages.first());
    const QCommandLineOption folderOption(QStringLiteral("screenshots"),
                                          "Put pictures of every page and state there and end.",
                                          "FOLDER");
    options.addOptions({pageOption, folderOption});
    options.addHelpOption();
    options.process(application);
    const int page = pages.indexOf(options.value(pageOption));
    if (page < 0)
        return fail("no such page: " + options.value(pageOption));

    registerQmlTypes();
    QQmlApplicationEngine engine;
    engine.setInitialProperties({{"pages", pages}, {"currentPage", page}});
    engine.load(QUrl(QStringLiteral("qrc:/gallery/Gallery.qml")));
    if (engine.rootObjects().isEmpty())
        return fail(QStringLiteral("the window could not be loaded"));
    if (!options.isSet(folderOption))
        return application.exec();
    auto *window = qobject_cast<QQuickWindow *>(engine.rootObjects().first());
    GalleryPictures pictures(window, options.value(folderOption));
    return pictures.take(pages) ? 0 : fail("cannot write " + options.value(folderOption));
}
