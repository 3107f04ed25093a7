#include "GalleryPictures.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QMouseEvent>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>

namespace {

/// The longest animation of the controls and the frame after it.
constexpr int SETTLE_MS = 400;
/// Where no control is.
const QPointF ASIDE(1, 1);

/// Lets the animations run to their end.
void settle() {
    QEventLoop loop;
    QTimer::singleShot(SETTLE_MS, &loop, &QEventLoop::quit);
    loop.exec();
}

QPointF centre(const QQuickItem *item) {
    return item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
}

/// The outermost stack of pages under an item, null if there is none.
QQuickItem *pageStack(QQuickItem *item) {
    if (item->inherits("QQuickStackLayout"))
        return item;
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *child : children) {
        if (QQuickItem *stack = pageStack(child))
            return stack;
    }
    return nullptr;
}

/// The one page of a stack that shows: what its loader has loaded.
QQuickItem *visiblePage(const QQuickItem *stack) {
    const QList<QQuickItem *> pages = stack ? stack->childItems() : QList<QQuickItem *>();
    for (const QQuickItem *page : pages) {
        if (page->isVisible() && !page->childItems().isEmpty())
            return page->childItems().first();
    }
    return nullptr;
}

/// Everything under an item that the mouse can be over; of a control with parts only the control.
void collectControls(QQuickItem *item, QList<QQuickItem *> &controls) {
    if (!item->isVisible() || !item->isEnabled())
        return;
    const bool holdsControls = item->inherits("QQuickContainer") || item->inherits("QQuickPane");
    if (item->property("hovered").isValid() && !holdsControls) {
        controls << item;
        return;
    }
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *child : children)
        collectControls(child, controls);
}

/// Draws over the picture what differs between the two others.
void addChanges(QImage &picture, const QImage &before, const QImage &after) {
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (before.pixel(x, y) != after.pixel(x, y))
                picture.setPixel(x, y, after.pixel(x, y));
        }
    }
}

} // namespace

GalleryPictures::GalleryPictures(QQuickWindow *window, const QString &folder)
    : m_window(window), m_folder(folder) {}

bool GalleryPictures::take(const QStringList &pages) {
    if (!QDir().mkpath(m_folder.path()))
        return false;
    for (int i = 0; i < pages.size(); ++i) {
        m_window->setProperty("currentPage", i);
        if (!takePage(pages[i]))
            return false;
    }
    return true;
}

bool GalleryPictures::takePage(const QString &name) {
    settle();
    QQuickItem *page = currentPage();
    if (!page || !save(m_window->grabWindow(), name))
        return false;
    const auto moveAside = [this](QQuickItem *) { sendMouse(QEvent::MouseMove, ASIDE, {}); };
    const auto hover = [this](QQuickItem *control) {
        sendMouse(QEvent::MouseMove, centre(control), {});
    };
    const auto press = [this, hover](QQuickItem *control) {
        hover(control);
        sendMouse(QEvent::MouseButtonPress, centre(control), Qt::LeftButton);
    };
    // Taken from the control first, so that nothing is clicked or dragged.
    const auto release = [this, moveAside](QQuickItem *control) {
        if (QQuickItem *grabber = m_window->mouseGrabberItem())
            grabber->ungrabMouse();
        sendMouse(QEvent::MouseButtonRelease, ASIDE, {});
        moveAside(control);
        m_window->contentItem()->forceActiveFocus();
    };
    const auto focus = [](QQuickItem *control) { control->forceActiveFocus(Qt::TabFocusReason); };
    const auto unfocus = [this](QQuickItem *) { m_window->contentItem()->forceActiveFocus(); };
    return takeState(name, page, {QStringLiteral("hovered"), hover, moveAside}) &&
           takeState(name, page, {QStringLiteral("pressed"), press, release}) &&
           takeState(name, page, {QStringLiteral("focused"), focus, unfocus}) &&
           takeDemonstrations(name, page);
}

bool GalleryPictures::takeState(const QString &pageName, QQuickItem *page, const State &state) {
    QList<QQuickItem *> controls;
    collectControls(page, controls);
    const QImage before = m_window->grabWindow();
    QImage picture = before;
    for (QQuickItem *control : qAsConst(controls)) {
        state.enter(control);
        settle();
        addChanges(picture, before, m_window->grabWindow());
        state.leave(control);
        settle();
    }
    return save(picture, pageName + QLatin1Char('-') + state.name);
}

bool GalleryPictures::takeDemonstrations(const QString &pageName, QQuickItem *page) {
    const QStringList names = page->property("demonstrations").toStringList();
    for (const QString &name : names) {
        QVariant shown;
        QMetaObject::invokeMethod(page, "demonstrate", Q_RETURN_ARG(QVariant, shown),
                                  Q_ARG(QVariant, name));
        settle();
        auto *window = qobject_cast<QQuickWindow *>(shown.value<QObject *>());
        const QImage picture = (window ? window : m_window)->grabWindow();
        QMetaObject::invokeMethod(page, "finish");
        settle();
        if (!save(picture, pageName + QLatin1Char('-') + name))
            return false;
    }
    return true;
}

bool GalleryPictures::save(const QImage &picture, const QString &name) const {
    return picture.save(m_folder.filePath(name + QStringLiteral(".png")));
}

QQuickItem *GalleryPictures::currentPage() const {
    return visiblePage(pageStack(m_window->contentItem()));
}

void GalleryPictures::sendMouse(int type, QPointF position, Qt::MouseButtons buttons) const {
    const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(static_cast<QEvent::Type>(type), position,
                      m_window->mapToGlobal(position.toPoint()), button, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(m_window, &event);
}
