#pragma once

#include <QMap>
#include <QMetaType>
#include <QString>

/// The HTTP verb of a REST request.
enum class Method { Get = 0, Post = 1, Put = 2 };
Q_DECLARE_METATYPE(Method)

/// The query items of a REST request.
using ParameterDictionary = QMap<QString, QString>;
Q_DECLARE_METATYPE(ParameterDictionary)
