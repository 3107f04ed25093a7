#include "viewmodels/EnumModelBase.h"

void EnumModelBase::set_Items(const QStringList &items) {
    if (items == m_items)
        return;
    m_items = items;
    emit changed_Items(m_items);
}

void EnumModelBase::set_CurrentIndex(int v) {
    if (v == m_currentIndex)
        return;
    m_currentIndex = v;
    emit changed_CurrentIndex(v);
}
