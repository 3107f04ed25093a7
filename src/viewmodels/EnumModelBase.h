#pragma once

#include <QObject>
#include <QStringList>

/// The texts of a combo box and the chosen one's place. Lives on the main thread.
class EnumModelBase : public QObject {
    Q_OBJECT
    Q_PROPERTY(QStringList Items READ get_Items WRITE set_Items NOTIFY changed_Items)
    Q_PROPERTY(
        int CurrentIndex READ get_CurrentIndex WRITE set_CurrentIndex NOTIFY changed_CurrentIndex)

public:
    explicit EnumModelBase(QObject *parent = nullptr) : QObject(parent) {}

    QStringList get_Items() const { return m_items; }
    void set_Items(const QStringList &items);
    /// -1 for none.
    int get_CurrentIndex() const { return m_currentIndex; }
    void set_CurrentIndex(int v);

signals:
    void changed_Items(const QStringList &items);
    void changed_CurrentIndex(int v);

private:
    QStringList m_items;
    int m_currentIndex = -1;
};
