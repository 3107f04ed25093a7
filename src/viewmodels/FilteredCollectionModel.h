#pragma once

#include "viewmodels/CollectionModel.h"

/// A full list of objects, and the part of it that a filter accepts, in the same order. A derived
/// class gives the filter, and calls refilter() when it accepts others than before.
///
/// Lives on the main thread; the objects are not owned. To be changed through this class only, so
/// that both lists stay in step.
template <typename T>
class FilteredCollectionModel : public QObject {
public:
    explicit FilteredCollectionModel(QObject *parent = nullptr) : QObject(parent) {}

    CollectionModel<T> *collection() { return &m_collection; }
    CollectionModel<T> *filteredCollection() { return &m_filteredCollection; }

    /// Puts the object at the end of the full list, and of the filtered one if it is accepted.
    void add(T *item) {
        m_collection.append(item);
        if (filterAcceptsRow(item))
            m_filteredCollection.append(item);
    }

    /// Takes the object out of both lists.
    void remove(T *item) {
        m_filteredCollection.remove(item);
        m_collection.remove(item);
    }

    void clear() {
        m_filteredCollection.clear();
        m_collection.clear();
    }

    /// Makes the filtered list anew. The current object stays current if it is still accepted; else
    /// the current index stays, or becomes the last row's if it would be beyond. Views see rows
    /// come and go on the way, so raiseIndexChanged() is to follow once they have settled.
    void refilter() {
        T *const current = m_filteredCollection.current();
        const int currentIndex = m_filteredCollection.get_CurrentIndex();
        int row = 0;
        for (QObject *object : QList<QObject *>(m_collection.items())) {
            if (updateRow(row, qobject_cast<T *>(object)))
                ++row;
        }
        const int kept = current ? m_filteredCollection.indexOf(current) : -1;
        m_filteredCollection.set_CurrentIndex(
            kept >= 0 ? kept : qMin(currentIndex, m_filteredCollection.count() - 1));
    }

    /// Lets views read the current object of the filtered list again.
    void raiseIndexChanged() {
        emit m_filteredCollection.changed_CurrentIndex(m_filteredCollection.get_CurrentIndex());
    }

protected:
    virtual bool filterAcceptsRow(T * /*item*/) { return true; }

private:
    /// Brings the filtered list up to date for the object that belongs at the row, if anywhere.
    /// @return whether it is there now
    bool updateRow(int row, T *item) {
        const bool isThere = m_filteredCollection.at(row) == item;
        const bool isAccepted = filterAcceptsRow(item);
        if (isThere && !isAccepted)
            m_filteredCollection.removeAt(row);
        else if (!isThere && isAccepted)
            m_filteredCollection.insert(row, item);
        return isAccepted;
    }

    CollectionModel<T> m_collection{this};
    CollectionModel<T> m_filteredCollection{this};
};
