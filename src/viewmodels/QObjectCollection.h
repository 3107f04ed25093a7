#pragma once

#include <QAbstractListModel>
#include <QList>

/// A list of objects for views, with a current one.
///
/// Lives on the main thread. The objects are not owned; one that is destroyed leaves the list as if
/// it had been removed.
class QObjectCollection : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(
        int CurrentIndex READ get_CurrentIndex WRITE set_CurrentIndex NOTIFY changed_CurrentIndex)
    Q_PROPERTY(QObject *CurrentObject READ get_CurrentObject NOTIFY changed_CurrentObject)

public:
    explicit QObjectCollection(QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    /// The object, whatever the role.
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// @param index  0 to the number of objects; any other does nothing
    void insert(int index, QObject *item);
    /// Removes the first place of the object, if it is in the list.
    void remove(QObject *item);
    /// @param index  any but a row's does nothing
    ///
    /// The current index stays a row's, and is not moved down when a row before it goes. Its change
    /// is also announced when it only stands for another object now.
    void removeAt(int index);
    /// Removes all, and there is no current object then.
    void clear();
    /// Exchanges all objects in one step; the current index stays as it is.
    void setItems(const QList<QObject *> &items);

    /// The objects in the order of their rows.
    const QList<QObject *> &items() const { return m_items; }

    /// -1 for none; it may be out of range.
    int get_CurrentIndex() const { return m_currentIndex; }
    void set_CurrentIndex(int v);
    /// Null if the index is out of range.
    QObject *get_CurrentObject() const { return m_items.value(m_currentIndex, nullptr); }

signals:
    void changed_CurrentIndex(int v);
    void changed_CurrentObject();

private:
    void onItemDestroyed(QObject *item);
    void adjustCurrentIndex(int removedIndex);

    int m_currentIndex = -1;
    QList<QObject *> m_items;
};
