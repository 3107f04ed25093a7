#pragma once

#include "viewmodels/QObjectCollection.h"

/// A QObjectCollection of objects of one class.
template <typename T>
class CollectionModel : public QObjectCollection {
public:
    using QObjectCollection::QObjectCollection;

    int count() const { return items().size(); }
    /// Null if there is no such row.
    T *at(int index) const { return qobject_cast<T *>(items().value(index, nullptr)); }
    /// -1 if the object is not in the list.
    int indexOf(T *item) const { return items().indexOf(item); }
    /// The current object; null if there is none.
    T *current() const { return at(get_CurrentIndex()); }

    void insert(int index, T *item) { QObjectCollection::insert(index, item); }
    void append(T *item) { insert(count(), item); }
};
