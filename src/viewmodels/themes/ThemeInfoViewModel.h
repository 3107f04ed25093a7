#pragma once

#include "themes/ClientThemeInfo.h"

#include <QObject>

/// One dictionary for views; it never changes. Main thread.
class ThemeInfoViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString Id READ get_Id CONSTANT)
    Q_PROPERTY(QString Name READ get_Name CONSTANT)
    Q_PROPERTY(QString Version READ get_Version CONSTANT)
    Q_PROPERTY(QString ThemeId READ get_ThemeId CONSTANT)
    Q_PROPERTY(QString Description READ get_Description CONSTANT)

public:
    ThemeInfoViewModel(const ClientThemeInfo &theme, QObject *parent)
        : QObject(parent), m_theme(theme) {}

    QString get_Id() const { return m_theme.id(); }
    QString get_Name() const { return m_theme.name(); }
    QString get_Version() const { return m_theme.version(); }
    QString get_ThemeId() const { return m_theme.themeId(); }
    QString get_Description() const { return m_theme.description(); }

private:
    ClientThemeInfo m_theme;
};
