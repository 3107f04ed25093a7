#pragma once

#include "viewmodels/AppSettingsViewModel.h"

/// The page "О программе". Main thread.
class AboutSettingsViewModel : public AppSettingsViewModel {
    Q_OBJECT
    Q_PROPERTY(QString ClientId READ get_ClientId CONSTANT)
    Q_PROPERTY(QString Version READ get_Version CONSTANT)
    Q_PROPERTY(QString AppDescription READ get_AppDescription CONSTANT)
    Q_PROPERTY(QString SupportLink READ get_SupportLink CONSTANT)
    Q_PROPERTY(QString AppLink READ get_AppLink CONSTANT)
    /// Path of the manual's first page, which need not be there.
    Q_PROPERTY(QString LocalHelpFile READ get_LocalHelpFile CONSTANT)
    Q_PROPERTY(bool EnableTutorial READ get_EnableTutorial CONSTANT)
    Q_PROPERTY(bool VisibleManual READ get_VisibleManual CONSTANT)
    /// Device-independent pixels.
    Q_PROPERTY(int BackgroundWidth READ get_BackgroundWidth CONSTANT)
    Q_PROPERTY(QString BackgroundColor READ get_BackgroundColor CONSTANT)

public:
    /// Makes this machine's identity if it has none yet.
    explicit AboutSettingsViewModel(QObject *parent = nullptr);

    QString get_ClientId() const { return m_clientId; }
    QString get_Version() const;
    QString get_AppDescription() const;
    QString get_SupportLink() const;
    QString get_AppLink() const;
    QString get_LocalHelpFile() const { return m_localHelpFile; }
    bool get_EnableTutorial() const { return false; }
    bool get_VisibleManual() const { return m_visibleManual; }
    int get_BackgroundWidth() const;
    QString get_BackgroundColor() const;

signals:
    void openTutorial();
    void getSystemInfo();
    void reportProblem();

private:
    /// Asks for a file and waits until the archive is written.
    static void collectSystemInfo();

    const QString m_clientId;
    const QString m_localHelpFile;
    const bool m_visibleManual;
};
