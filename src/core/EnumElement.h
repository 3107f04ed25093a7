#pragma once

#include <QObject>
#include <QString>

/// One value of an enumeration with the name that the user sees and the name that files hold.
class EnumElementBase : public QObject {
    Q_OBJECT
    Q_PROPERTY(int Value READ get_Value CONSTANT)
    Q_PROPERTY(QString Name READ get_Name CONSTANT)
    Q_PROPERTY(QString InvariantName READ get_InvariantName CONSTANT)

public:
    EnumElementBase(int value, const QString &name, const QString &invariantName)
        : m_value(value), m_name(name), m_invariantName(invariantName) {}

    int get_Value() const { return m_value; }
    /// The display name, translated.
    QString get_Name() const { return metaObject()->tr(m_name.toUtf8().constData(), nullptr); }
    QString get_InvariantName() const { return m_invariantName; }

private:
    int m_value;
    QString m_name;
    QString m_invariantName;
};

/// An element of the enumeration T.
template <typename T>
class EnumElement : public EnumElementBase {
public:
    EnumElement(T value, const QString &name, const QString &invariantName)
        : EnumElementBase(static_cast<int>(value), name, invariantName) {}

    T value() const { return static_cast<T>(get_Value()); }
};
