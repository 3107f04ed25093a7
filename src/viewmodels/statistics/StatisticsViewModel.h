#pragma once

#include "viewmodels/ValidatableText.h"
#include "viewmodels/statistics/ReferenceData.h"

#include <QObject>
#include <QStringList>

/// The window that asks where and as whom the user works: a region, a settlement of it, an
/// organisation of that, and a specialty. Main thread.
class StatisticsViewModel : public QObject {
    Q_OBJECT
    /// Device-independent pixels.
    Q_PROPERTY(int LogoHeight READ get_LogoHeight CONSTANT)
    Q_PROPERTY(QStringList Regions READ get_Regions NOTIFY changed_Regions)
    Q_PROPERTY(QStringList Cities READ get_Cities NOTIFY changed_Cities)
    Q_PROPERTY(QStringList Companies READ get_Companies NOTIFY changed_Companies)
    Q_PROPERTY(QStringList Professions READ get_Professions NOTIFY changed_Professions)
    // The chosen rows, -1 for none.
    Q_PROPERTY(int SelectedRegionIndex READ get_SelectedRegionIndex WRITE set_SelectedRegionIndex
                   NOTIFY changed_SelectedRegionIndex)
    Q_PROPERTY(int SelectedCityIndex READ get_SelectedCityIndex WRITE set_SelectedCityIndex NOTIFY
                   changed_SelectedCityIndex)
    Q_PROPERTY(int SelectedCompanyIndex READ get_SelectedCompanyIndex WRITE set_SelectedCompanyIndex
                   NOTIFY changed_SelectedCompanyIndex)
    Q_PROPERTY(int SelectedProfessionIndex READ get_SelectedProfessionIndex WRITE
                   set_SelectedProfessionIndex NOTIFY changed_SelectedProfessionIndex)
    Q_PROPERTY(ValidatableText *WorkRoom READ get_WorkRoom CONSTANT)
    Q_PROPERTY(ValidatableText *UserFullName READ get_UserFullName CONSTANT)
    Q_PROPERTY(bool IsRegionSelected READ get_IsRegionSelected NOTIFY changed_SelectedRegionIndex)
    Q_PROPERTY(bool IsCitySelected READ get_IsCitySelected NOTIFY changed_SelectedCityIndex)
    Q_PROPERTY(
        bool IsCompanySelected READ get_IsCompanySelected NOTIFY changed_SelectedCompanyIndex)
    /// The profile is asked for and not complete yet.
    Q_PROPERTY(bool NeedShow READ get_NeedShow)
    Q_PROPERTY(bool IsValid READ get_IsValid NOTIFY changed_IsValid)
    /// Why there is nothing to choose from; empty if there is.
    Q_PROPERTY(QString LoadError READ get_LoadError CONSTANT)

public:
    /// Reads the reference data if the profile is to be asked for.
    explicit StatisticsViewModel(QObject *parent = nullptr);
    /// @param referenceFolder  of the reference files
    StatisticsViewModel(const QString &referenceFolder, QObject *parent);

    /// Stores the profile and gives the reference data's memory back.
    Q_INVOKABLE void applyCommand();

    int get_LogoHeight() const;
    QStringList get_Regions() const { return m_regions; }
    QStringList get_Cities() const { return m_cities; }
    QStringList get_Companies() const { return m_companies; }
    QStringList get_Professions() const { return m_reference.professions(); }
    int get_SelectedRegionIndex() const { return m_regionIndex; }
    void set_SelectedRegionIndex(int v);
    int get_SelectedCityIndex() const { return m_cityIndex; }
    void set_SelectedCityIndex(int v);
    int get_SelectedCompanyIndex() const { return m_companyIndex; }
    void set_SelectedCompanyIndex(int v);
    int get_SelectedProfessionIndex() const { return m_professionIndex; }
    void set_SelectedProfessionIndex(int v);
    ValidatableText *get_WorkRoom() { return &m_workRoom; }
    ValidatableText *get_UserFullName() { return &m_userFullName; }
    bool get_IsRegionSelected() const { return m_regionIndex >= 0; }
    bool get_IsCitySelected() const { return m_cityIndex >= 0; }
    bool get_IsCompanySelected() const { return m_companyIndex >= 0; }
    bool get_NeedShow() const { return m_needShow; }
    bool get_IsValid() const { return m_isValid; }
    QString get_LoadError() const { return m_loadError; }

signals:
    void changed_Regions();
    void changed_Cities();
    void changed_Companies();
    void changed_Professions();
    void changed_SelectedRegionIndex(int v);
    void changed_SelectedCityIndex(int v);
    void changed_SelectedCompanyIndex(int v);
    void changed_SelectedProfessionIndex(int v);
    void changed_IsValid(bool v);

private:
    static bool CheckNeedShow();
    static void ValidateWorkRoom(ValidatableText::ValidationArgs *args);
    void Load();
    /// Chooses what the profile's files already hold.
    void Restore();
    void isRegionSelectedChanged();
    void isCitySelectedChanged();
    void isValidChanged();
    void storeOrganisation() const;
    void storeUser() const;
    void release();
    /// Null while none is chosen.
    const StatisticsCity *selectedCity() const;
    const StatisticsOrganisation *selectedCompany() const;

    ReferenceData m_reference;
    QStringList m_regions;
    QStringList m_cities;
    QStringList m_companies;
    int m_regionIndex = -1;
    int m_cityIndex = -1;
    int m_companyIndex = -1;
    int m_professionIndex = -1;
    ValidatableText m_workRoom{this};
    ValidatableText m_userFullName{this};
    QString m_loadError;
    bool m_needShow;
    bool m_isValid = false;
};
