#pragma once

#include "viewmodels/QObjectCollection.h"

#include <QVariant>

/// A list that QML can fill, and that keeps what a view writes to its current index.
class IndexedList : public QObjectCollection {
    Q_OBJECT
    Q_PROPERTY(
        int CurrentIndex READ get_CurrentIndex WRITE writeCurrentIndex NOTIFY changed_CurrentIndex)
    Q_PROPERTY(QVariantList written MEMBER m_written)

public:
    using QObjectCollection::QObjectCollection;

    void writeCurrentIndex(int v) {
        m_written << v;
        set_CurrentIndex(v);
    }

    Q_INVOKABLE void append(const QString &name) {
        auto *item = new QObject(this);
        item->setObjectName(name);
        insert(rowCount(), item);
    }
    Q_INVOKABLE void removeRowAt(int row) { removeAt(row); }
    Q_INVOKABLE void removeAll() { clear(); }
    /// The list's own doing, which is no write.
    Q_INVOKABLE void moveTo(int v) { set_CurrentIndex(v); }

private:
    QVariantList m_written;
};
