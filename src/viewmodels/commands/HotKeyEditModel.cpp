#include "viewmodels/commands/HotKeyEditModel.h"

#include "desktop/HotKeyManager.h"

#include <QKeyEvent>

namespace {

bool isModifier(int key) {
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Meta ||
           key == Qt::Key_Alt || key == Qt::Key_AltGr;
}

/// Leads out of the field.
bool isNavigation(const QKeyEvent *press) {
    const bool isPlain =
        (press->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) == 0;
    const int key = press->key();
    return isPlain && (key == Qt::Key_Tab || key == Qt::Key_Backtab || key == Qt::Key_Up ||
                       key == Qt::Key_Down);
}

} // namespace

HotKeyEditModel::HotKeyEditModel(UserCommandViewModel *command,
                                 CommandsCollectionViewModel *collection)
    : CommandEditModel(command, collection) {
    if (command)
        set_HotKey(m_converter.ConvertFromString(command->get_Text()));
    m_text.setValidator([this](ValidatableText::ValidationArgs *args) { ValidateHotKey(args); });
}

HotKeyEditModel::~HotKeyEditModel() {
    unmute();
}

void HotKeyEditModel::ValidateHotKey(ValidatableText::ValidationArgs *args) const {
    if (m_info.code == 0)
        args->error = tr("Не задана горячая клавиша");
}

bool HotKeyEditModel::validate() {
    return CommandEditModel::validate() && m_text.CheckAndSetFocus();
}

void HotKeyEditModel::copyTo(UserCommandViewModel *command) {
    CommandEditModel::copyTo(command);
    command->set_Text(m_text.get_Text());
}

void HotKeyEditModel::attachWindow(QObject *object) {
    HotKeyManager::getHotkeyManager()->muteListener();
    m_isMuting = true;
    object->installEventFilter(this);
}

void HotKeyEditModel::detachWindow(QObject *object) {
    object->removeEventFilter(this);
    unmute();
}

void HotKeyEditModel::unmute() {
    if (m_isMuting)
        HotKeyManager::getHotkeyManager()->unmuteListener();
    m_isMuting = false;
}

bool HotKeyEditModel::eventFilter(QObject * /*watched*/, QEvent *event) {
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto *press = static_cast<QKeyEvent *>(event);
    // Whoever goes on to the next field does not want to lose what is in this one.
    const bool leaves = m_info.code != 0 && isNavigation(press);
    if (!isModifier(press->key()) && !leaves) {
        HotKeyInfo info = m_converter.HotKeyFromEvent(press);
        m_converter.SetQtModifiers(&info, m_flags, true);
        set_HotKey(info);
    }
    return false;
}

void HotKeyEditModel::set_HotKey(const HotKeyInfo &info) {
    m_info = info;
    m_text.SetText(m_converter.ConvertToString(info));
}

void HotKeyEditModel::setModifier(Qt::KeyboardModifier modifier, bool isOn,
                                  void (HotKeyEditModel::*changed)(bool)) {
    if (m_flags.testFlag(modifier) == isOn)
        return;
    m_flags.setFlag(modifier, isOn);
    emit(this->*changed)(isOn);
    HotKeyInfo info = m_info;
    m_converter.SetQtModifiers(&info, modifier, isOn);
    set_HotKey(info);
}

void HotKeyEditModel::set_ModCtrl(bool v) {
    setModifier(Qt::ControlModifier, v, &HotKeyEditModel::changed_ModCtrl);
}

void HotKeyEditModel::set_ModAlt(bool v) {
    setModifier(Qt::AltModifier, v, &HotKeyEditModel::changed_ModAlt);
}

void HotKeyEditModel::set_ModShift(bool v) {
    setModifier(Qt::ShiftModifier, v, &HotKeyEditModel::changed_ModShift);
}

void HotKeyEditModel::set_ModWin(bool v) {
    setModifier(Qt::MetaModifier, v, &HotKeyEditModel::changed_ModWin);
}
