#pragma once

#include "formapi/FormMetadata.h"

#include <QStringList>

/// Which element of a form has the focus, and which ones stand before and after it.
class FormWalk {
public:
    /// Takes up another form; no element has the focus then.
    void open(const FormMetadata &form);

    /// An unknown key is kept as it is: the form may know more than it described.
    void focus(const QString &key) { m_focused = key; }
    QString focused() const { return m_focused; }
    /// Follows the spoken «следующее поле», «предыдущее поле» and «первое поле»; false for any
    /// other text and where there is no element to go to.
    bool follow(const QString &text);

private:
    QStringList m_keys;
    QString m_focused;
};
