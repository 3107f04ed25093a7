#pragma once

#include "desktop/XHotKeyConverter.h"
#include "viewmodels/commands/CommandEditModel.h"

/// A spoken command that presses a key combination, which the user enters by pressing it. Main
/// thread.
class HotKeyEditModel : public CommandEditModel {
    Q_OBJECT
    /// The combination's name.
    Q_PROPERTY(ValidatableText *Text READ get_Text CONSTANT)
    Q_PROPERTY(bool ModCtrl READ get_ModCtrl WRITE set_ModCtrl NOTIFY changed_ModCtrl)
    Q_PROPERTY(bool ModAlt READ get_ModAlt WRITE set_ModAlt NOTIFY changed_ModAlt)
    Q_PROPERTY(bool ModShift READ get_ModShift WRITE set_ModShift NOTIFY changed_ModShift)
    Q_PROPERTY(bool ModWin READ get_ModWin WRITE set_ModWin NOTIFY changed_ModWin)

public:
    HotKeyEditModel(UserCommandViewModel *command, CommandsCollectionViewModel *collection);
    ~HotKeyEditModel() override;

    bool validate() override;
    void copyTo(UserCommandViewModel *command) override;

    ValidatableText *get_Text() { return &m_text; }
    bool get_ModCtrl() const { return m_flags.testFlag(Qt::ControlModifier); }
    void set_ModCtrl(bool v);
    bool get_ModAlt() const { return m_flags.testFlag(Qt::AltModifier); }
    void set_ModAlt(bool v);
    bool get_ModShift() const { return m_flags.testFlag(Qt::ShiftModifier); }
    void set_ModShift(bool v);
    bool get_ModWin() const { return m_flags.testFlag(Qt::MetaModifier); }
    void set_ModWin(bool v);

    /// Takes the keys that are pressed in this object. Those that lead out of it leave a
    /// combination that is there alone.
    /// @param object  the view's key field, not owned
    Q_INVOKABLE void attachWindow(QObject *object);
    Q_INVOKABLE void detachWindow(QObject *object);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    void changed_ModCtrl(bool v);
    void changed_ModAlt(bool v);
    void changed_ModShift(bool v);
    void changed_ModWin(bool v);

private:
    void ValidateHotKey(ValidatableText::ValidationArgs *args) const;
    void set_HotKey(const HotKeyInfo &info);
    void setModifier(Qt::KeyboardModifier modifier, bool isOn,
                     void (HotKeyEditModel::*changed)(bool));
    void unmute();

    XHotKeyConverter m_converter;
    HotKeyInfo m_info;
    /// Those that the check boxes ask for.
    Qt::KeyboardModifiers m_flags;
    ValidatableText m_text{this};
    bool m_isMuting = false;
};
