#pragma once

#include <QMap>
#include <QString>

#include <functional>
#include <initializer_list>
#include <utility>

/// Named values with an option, and the expansion of `${name:option}` in a text.
///
/// The first get() of the process is to be made in main, before any other thread exists;
/// afterwards the table is read-only and may be used from any thread. Nothing throws.
class AppVariables {
public:
    using Getter = std::function<QString(const QString &option)>;

    /// Names are looked up without regard to case; a later pair of the same name replaces the
    /// earlier one.
    AppVariables(std::initializer_list<std::pair<QString, Getter>> variables);

    /// The variable's value, or an empty text for an unknown name.
    QString get(const QString &name, const QString &option) const;

    /// The text with each `${name:option}` replaced; what is inserted is not expanded again.
    QString substitute(const QString &text) const;

    /// Takes the start time of the process and opens the build properties. Called by the first
    /// get().
    static void StaticInitializer();

    /// The build property of this name; empty for an unknown one.
    static QString buildProperty(const char *name);
    /// True if the build property of this name is "true" in any case.
    static bool buildFlag(const QString &property);

    /// The one table that everybody uses: the desktop's folders, the environment, the start time
    /// and the build properties.
    static const AppVariables sm_stdVars;

private:
    QMap<QString, Getter> m_variables;
};
