#pragma once

#include <QDir>
#include <QImage>
#include <QStringList>

#include <functional>

class QQuickItem;
class QQuickWindow;

/// Takes pictures of every page of the gallery, with each control in each state that the mouse or
/// the keyboard gives it.
///
/// Main thread. The events are made here and sent to the window, so that no pointer is needed.
class GalleryPictures {
public:
    /// @param window  the gallery's window, not owned, outlives this object
    GalleryPictures(QQuickWindow *window, const QString &folder);

    /// Writes PAGE.png, PAGE-hovered.png, PAGE-pressed.png, PAGE-focused.png for every page, and
    /// a picture of each thing that a page can open. Takes up to a minute a page.
    /// @return whether all could be written
    bool take(const QStringList &pages);

private:
    /// Brings a control into a state and back.
    struct State {
        QString name;
        std::function<void(QQuickItem *)> enter;
        std::function<void(QQuickItem *)> leave;
    };

    bool takePage(const QString &name);
    bool takeState(const QString &pageName, QQuickItem *page, const State &state);
    bool takeDemonstrations(const QString &pageName, QQuickItem *page);
    bool save(const QImage &picture, const QString &name) const;
    QQuickItem *currentPage() const;
    void sendMouse(int type, QPointF position, Qt::MouseButtons buttons) const;

    QQuickWindow *m_window;
    QDir m_folder;
};
