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
    const CollectionModel<T> *collection() const { return &m_collection; }
    CollectionModel<T> *filteredCollection() { return &m_filteredCollection; }
    const CollectionModel<T> *filteredCollection() const { return &m_filteredCollection; }

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

    /// Puts many objects at the end, as add() does with one.
    void addAll(const QList<T *> &items) {
        QList<QObject *> all = m_collection.items();
        QList<QObject *> accepted = m_filteredCollection.items();
        for (T *item : items) {
            all << item;
            if (filterAcceptsRow(item))
                accepted << item;
        }
        m_collection.setItems(all);
        m_filteredCollection.setItems(accepted);
    }

    void clear() {
        m_filteredCollection.clear();
        m_collection.clear();
    }

    /// Makes the filtered list anew, in one step. The current object stays current if it is still
    /// accepted; else the current index stays, or becomes the last row's if it would be beyond.
    /// Views start anew, so raiseIndexChanged() is to follow once they have settled.
    void refilter() {
        T *const current = m_filteredCollection.current();
        const int currentIndex = m_filteredCollection.get_CurrentIndex();
        QList<QObject *> accepted;
        for (QObject *object : m_collection.items()) {
            if (filterAcceptsRow(static_cast<T *>(object)))
                accepted << object;
        }
        if (accepted != m_filteredCollection.items())
            m_filteredCollection.setItems(accepted);
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
    CollectionModel<T> m_collection{this};
    CollectionModel<T> m_filteredCollection{this};
};
