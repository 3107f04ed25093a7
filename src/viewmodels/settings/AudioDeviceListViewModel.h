#pragma once

#include "viewmodels/SettingsViewModel.h"

#include <QStringList>

class AudioDeviceManagerBase;

/// The devices of one direction, one of them selected. A selection takes effect at once, and is
/// stored by Apply(). Main thread.
class AudioDeviceListViewModel : public SettingsViewModel {
    Q_OBJECT
    /// Names for display.
    Q_PROPERTY(QStringList Devices READ get_Devices NOTIFY changed_Devices)
    Q_PROPERTY(int SelectedDeviceIndex READ get_SelectedDeviceIndex WRITE set_SelectedDeviceIndex
                   NOTIFY changed_SelectedDeviceIndex)
    /// Whether a newly plugged device becomes the selected one.
    Q_PROPERTY(bool IsTrackChanges READ get_IsTrackChanges WRITE set_IsTrackChanges NOTIFY
                   changed_IsTrackChanges)

public:
    /// @param manager  not owned, outlives this object
    /// @throws std::invalid_argument  the manager is null
    AudioDeviceListViewModel(AudioDeviceManagerBase *manager, QObject *parent);

    void Load() override;
    void Unload() override;
    /// Takes the user's choice of a device since Load() back.
    void Cancel() override;
    bool IsChanged() override;

    QStringList get_Devices() const { return m_devices; }
    int get_SelectedDeviceIndex() const;
    void set_SelectedDeviceIndex(int index);
    bool get_IsTrackChanges() const;
    void set_IsTrackChanges(bool isTrackChanges);

signals:
    void changed_Devices();
    void changed_SelectedDeviceIndex();
    void changed_IsTrackChanges();

protected:
    /// The name that the sound server knows the selected device by.
    QString selectedName() const;
    QString loadedName() const { return m_loadedName; }

private:
    void onDeviceListChanged();

    AudioDeviceManagerBase *m_manager;
    QStringList m_devices;
    /// The view's list is being replaced, and a combo box may reset itself.
    bool m_isListChanging = false;
    QString m_loadedName;
    QString m_loadedWantedName;
    bool m_loadedTrackChanges = false;
};
