#pragma once

#include "viewmodels/SettingsViewModel.h"

#include <QString>

/// One page of the settings window. Lives on the main thread.
class AppSettingsViewModel : public SettingsViewModel {
    Q_OBJECT
    Q_PROPERTY(
        QString HeaderText READ get_HeaderText WRITE set_HeaderText NOTIFY changed_HeaderText)
    Q_PROPERTY(QString ClassName READ get_ClassName CONSTANT)

public:
    /// @param headerText   the text of the page's tab
    /// @param needsServer  whether the page makes sense only while there is a connection
    AppSettingsViewModel(const QString &headerText, bool needsServer, QObject *parent = nullptr);

    virtual bool needServerConnection() { return m_needsServer; }

    QString get_HeaderText() const { return m_headerText; }
    void set_HeaderText(const QString &headerText);
    /// The name of the actual class, by which the view picks the page's component.
    QString get_ClassName() const { return QString::fromLatin1(metaObject()->className()); }

signals:
    void changed_HeaderText();

private:
    QString m_headerText;
    bool m_needsServer;
};
