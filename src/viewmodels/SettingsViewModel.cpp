#include "viewmodels/SettingsViewModel.h"

#include <QDebug>

#include <exception>

namespace {

/// Runs the step; what it throws ends in the log under the operation's name.
/// @return whether it threw nothing
template <typename Step>
bool runLogged(const char *operation, Step step) {
    const auto log = [operation](const char *reason) {
        qWarning().noquote().nospace()
            << "Error in SettingsViewModel::" << operation << ": " << reason;
    };
    try {
        step();
        return true;
    } catch (const std::exception &error) {
        log(error.what());
    } catch (...) {
        log("unknown exception");
    }
    return false;
}

} // namespace

SettingsViewModel::SettingsViewModel(QObject *parent) : QObject(parent) {}

SettingsViewModel::Pages SettingsViewModel::pages() const {
    Pages result;
    for (QObject *child : m_children)
        result << qobject_cast<SettingsViewModel *>(child);
    return result;
}

void SettingsViewModel::setPages(const QList<SettingsViewModel *> &pages) {
    QList<QObject *> children;
    for (SettingsViewModel *page : pages)
        children << page;
    if (children == m_children)
        return;
    for (QObject *child : qAsConst(m_children))
        disconnect(child, &QObject::destroyed, this, &SettingsViewModel::dropPage);
    m_children = children;
    for (QObject *child : qAsConst(m_children)) {
        connect(child, &QObject::destroyed, this, &SettingsViewModel::dropPage,
                Qt::UniqueConnection);
    }
    emit changed_InnerSettings();
}

void SettingsViewModel::addPage(SettingsViewModel *page) {
    m_children << page;
    connect(page, &QObject::destroyed, this, &SettingsViewModel::dropPage, Qt::UniqueConnection);
    emit changed_InnerSettings();
}

void SettingsViewModel::dropPage(QObject *page) {
    m_children.removeAll(page);
    emit changed_InnerSettings();
}

bool SettingsViewModel::isValid(SettingsViewModel *page) {
    bool result = false;
    return runLogged("Validate", [&] { result = page->Validate(); }) && result;
}

bool SettingsViewModel::Validate() {
    for (const auto &page : pages()) {
        if (page && !isValid(page))
            return false;
    }
    return true;
}

void SettingsViewModel::Load() {
    for (const auto &page : pages()) {
        if (page)
            runLogged("Load", [&] { page->Load(); });
    }
}

void SettingsViewModel::Unload() {
    for (const auto &page : pages()) {
        if (page)
            runLogged("Unload", [&] { page->Unload(); });
    }
}

void SettingsViewModel::Apply() {
    for (const auto &page : pages()) {
        if (page)
            page->Apply();
    }
}

void SettingsViewModel::Cancel() {
    for (const auto &page : pages()) {
        if (page)
            page->Cancel();
    }
}

bool SettingsViewModel::IsChanged() {
    for (const auto &page : pages()) {
        if (page && page->IsChanged())
            return true;
    }
    return false;
}

void SettingsViewModel::onLoad() {
    runLogged("Load", [this] { Load(); });
}

void SettingsViewModel::onClose() {
    runLogged("Unload", [this] { Unload(); });
}

bool SettingsViewModel::applyCommand() {
    bool isApplied = false;
    runLogged("applyCommand", [&] {
        if (!Validate())
            return;
        Apply();
        isApplied = true;
    });
    return isApplied;
}

void SettingsViewModel::cancelCommand() {
    runLogged("cancelCommand", [this] { Cancel(); });
}
