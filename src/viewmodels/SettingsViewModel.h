#pragma once

#include "viewmodels/IChangable.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QVariant>

/// A page, or a group of pages, that a view loads, checks, applies or cancels as a whole. Each
/// operation of the base goes through the inner pages in order.
///
/// Lives on the main thread. The inner pages are not owned; one that is destroyed leaves the list.
/// What a view calls (onLoad, onClose, applyCommand, cancelCommand) throws nothing: failures are
/// logged as warnings.
class SettingsViewModel : public QObject, public IChangable {
    Q_OBJECT
    Q_PROPERTY(QVariant InnerSettings READ get_InnerSettings NOTIFY changed_InnerSettings)

public:
    explicit SettingsViewModel(QObject *parent = nullptr);

    /// Up to the first inner page that fails; one that throws is logged and fails.
    virtual bool Validate();
    /// All inner pages; one that throws is logged, and the others are still loaded.
    void Load() override;
    /// All inner pages; one that throws is logged, and the others are still unloaded.
    void Unload() override;
    /// All inner pages. What one of them throws passes on.
    void Apply() override;
    /// All inner pages. What one of them throws passes on.
    void Cancel() override;
    /// Whether any inner page is. What one of them throws passes on.
    bool IsChanged() override;

    /// The inner pages, as a QList<QObject *>.
    QVariant get_InnerSettings() const { return QVariant::fromValue(m_children); }

    Q_INVOKABLE void onLoad();
    Q_INVOKABLE void onClose();
    /// @return whether everything was valid and is applied, so that the view may close
    Q_INVOKABLE bool applyCommand();
    Q_INVOKABLE void cancelCommand();

signals:
    void changed_InnerSettings();

protected:
    using Pages = QList<QPointer<SettingsViewModel>>;

    /// The inner pages of this moment. A page that is destroyed while the list is gone through
    /// reads as null.
    Pages pages() const;
    void setPages(const QList<SettingsViewModel *> &pages);
    void addPage(SettingsViewModel *page);
    /// Whether the page is valid; one that throws is logged and is not.
    static bool isValid(SettingsViewModel *page);

private:
    void dropPage(QObject *page);

    QList<QObject *> m_children;
};
