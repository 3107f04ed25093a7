#pragma once

#include <QColor>
#include <QObject>
#include <QtQml>

/// The control style's native type: what QML sees as the attached properties `OstrelStyle`.
class OstrelStyle : public QObject {
    Q_OBJECT
    Q_PROPERTY(QColor defaultBackground READ defaultBackground NOTIFY defaultBackgroundChanged)

public:
    using QObject::QObject;

    QColor defaultBackground() const { return QColor(QStringLiteral("#FF0000")); }

    /// @return a new instance, a child of the object that it is attached to
    static OstrelStyle *qmlAttachedProperties(QObject *object) { return new OstrelStyle(object); }

signals:
    void defaultBackgroundChanged();
};

QML_DECLARE_TYPEINFO(OstrelStyle, QML_HAS_ATTACHED_PROPERTIES)
