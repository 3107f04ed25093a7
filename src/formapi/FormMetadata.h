#pragma once

#include "connection/messages/JsonConvertable.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

/// A web form that takes part in dictation. Its elements and commands are not looked into.
class FormMetadata : public JsonConvertable {
public:
    FormMetadata() = default;
    explicit FormMetadata(const QJsonObject &object);

    /// The dictionary of the form.
    QString themeId() const { return m_themeId; }
    void setThemeId(const QString &themeId) { m_themeId = themeId; }
    QString key() const { return m_key; }
    void setKey(const QString &key) { m_key = key; }
    QJsonArray childs() const { return m_childs; }
    void setChilds(const QJsonArray &childs) { m_childs = childs; }
    QJsonArray customCommands() const { return m_customCommands; }
    void setCustomCommands(const QJsonArray &commands) { m_customCommands = commands; }
    QJsonArray formCommands() const { return m_formCommands; }
    void setFormCommands(const QJsonArray &commands) { m_formCommands = commands; }
    /// A JSON object as compact text.
    QString formSettings() const { return m_formSettings; }
    void setFormSettings(const QString &settings) { m_formSettings = settings; }
    QString name() const { return m_name; }
    void setName(const QString &name) { m_name = name; }
    QString cultureCode() const { return m_cultureCode; }
    void setCultureCode(const QString &code) { m_cultureCode = code; }
    bool isDeleted() const { return m_isDeleted; }
    void setIsDeleted(bool isDeleted) { m_isDeleted = isDeleted; }
    /// 0 for a plain form, any other value for a wizard form.
    int mode() const { return m_mode; }
    void setMode(int mode) { m_mode = mode; }

    void Clone(const FormMetadata &other) { *this = other; }

    QJsonValue toJson() const override;

private:
    QString m_themeId;
    QString m_key;
    QJsonArray m_childs;
    QJsonArray m_customCommands;
    QJsonArray m_formCommands;
    QString m_formSettings;
    QString m_name;
    QString m_cultureCode;
    bool m_isDeleted = false;
    int m_mode = 0;
};
