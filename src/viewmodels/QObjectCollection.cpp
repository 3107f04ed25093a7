#include "viewmodels/QObjectCollection.h"

#include <QSet>

QObjectCollection::QObjectCollection(QObject *parent) : QAbstractListModel(parent) {
    connect(this, &QObjectCollection::changed_CurrentIndex, this,
            &QObjectCollection::changed_CurrentObject);
}

int QObjectCollection::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : m_items.size();
}

QVariant QObjectCollection::data(const QModelIndex &index, int /*role*/) const {
    if (!index.isValid() || index.row() >= m_items.size())
        return {};
    return QVariant::fromValue(m_items[index.row()]);
}

QHash<int, QByteArray> QObjectCollection::roleNames() const {
    return {{Qt::UserRole, QByteArrayLiteral("user")}};
}

void QObjectCollection::insert(int index, QObject *item) {
    if (index < 0 || index > m_items.size())
        return;
    beginInsertRows({}, index, index);
    m_items.insert(index, item);
    endInsertRows();
    if (item) {
        connect(item, &QObject::destroyed, this, &QObjectCollection::onItemDestroyed,
                Qt::UniqueConnection);
    }
}

void QObjectCollection::remove(QObject *item) {
    removeAt(m_items.indexOf(item));
}

void QObjectCollection::removeAt(int index) {
    if (index < 0 || index >= m_items.size())
        return;
    beginRemoveRows({}, index, index);
    QObject *item = m_items.takeAt(index);
    endRemoveRows();
    if (item && !m_items.contains(item))
        disconnect(item, &QObject::destroyed, this, &QObjectCollection::onItemDestroyed);
    adjustCurrentIndex(index);
}

void QObjectCollection::adjustCurrentIndex(int removedIndex) {
    const int count = m_items.size();
    const int next = m_currentIndex < count ? m_currentIndex : count - 1;
    if (next != m_currentIndex) {
        m_currentIndex = next;
        emit changed_CurrentIndex(next);
    } else if (removedIndex <= next) {
        // The row under the index is another one now: views are to read CurrentObject again.
        emit changed_CurrentIndex(next);
    }
}

void QObjectCollection::clear() {
    set_CurrentIndex(-1);
    if (m_items.isEmpty())
        return;
    beginRemoveRows({}, 0, m_items.size() - 1);
    for (QObject *item : qAsConst(m_items)) {
        if (item)
            disconnect(item, &QObject::destroyed, this, &QObjectCollection::onItemDestroyed);
    }
    m_items.clear();
    endRemoveRows();
}

void QObjectCollection::setItems(const QList<QObject *> &items) {
    const QSet<QObject *> former(m_items.cbegin(), m_items.cend());
    const QSet<QObject *> present(items.cbegin(), items.cend());
    for (QObject *item : former) {
        if (item && !present.contains(item))
            disconnect(item, &QObject::destroyed, this, &QObjectCollection::onItemDestroyed);
    }
    for (QObject *item : present) {
        if (item && !former.contains(item))
            connect(item, &QObject::destroyed, this, &QObjectCollection::onItemDestroyed);
    }
    beginResetModel();
    m_items = items;
    endResetModel();
}

void QObjectCollection::set_CurrentIndex(int v) {
    if (v == m_currentIndex)
        return;
    m_currentIndex = v;
    emit changed_CurrentIndex(v);
}

void QObjectCollection::onItemDestroyed(QObject *item) {
    for (int row = m_items.indexOf(item); row >= 0; row = m_items.indexOf(item)) {
        // What is left of the object is not for a view that reads the row once more as it goes.
        m_items[row] = nullptr;
        removeAt(row);
    }
}
