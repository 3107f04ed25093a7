#pragma once

#include <QAbstractListModel>
#include <QStringList>

/// A list model with a current row, as the grid follows it; keeps what was written to it.
class IndexedList : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int CurrentIndex READ currentIndex WRITE setCurrentIndex NOTIFY changed_CurrentIndex)
    Q_PROPERTY(QVariantList written MEMBER m_written)

public:
    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override {
        return parent.isValid() ? 0 : m_names.size();
    }
    QVariant data(const QModelIndex &index, int) const override {
        return m_names.value(index.row());
    }
    QHash<int, QByteArray> roleNames() const override { return {{Qt::UserRole, "name"}}; }

    int currentIndex() const { return m_currentIndex; }
    void setCurrentIndex(int v) {
        m_written << v;
        moveTo(v);
    }

    Q_INVOKABLE void append(const QString &name) {
        beginInsertRows({}, m_names.size(), m_names.size());
        m_names << name;
        endInsertRows();
    }
    Q_INVOKABLE void removeAt(int row) {
        beginRemoveRows({}, row, row);
        m_names.removeAt(row);
        endRemoveRows();
        emit changed_CurrentIndex(m_currentIndex = qMin(m_currentIndex, m_names.size() - 1));
    }
    /// The model's own doing, which is no write.
    Q_INVOKABLE void moveTo(int v) {
        if (v != m_currentIndex)
            emit changed_CurrentIndex(m_currentIndex = v);
    }

signals:
    void changed_CurrentIndex(int v);

private:
    int m_currentIndex = -1;
    QStringList m_names;
    QVariantList m_written;
};
