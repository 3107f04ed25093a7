#pragma once

#include "themes/ThemeInfo.h"

#include <QList>
#include <QMetaType>

/// The server's message of the dictionaries to choose from.
class ServerThemesInfo : public JsonConvertable {
public:
    ServerThemesInfo() = default;
    explicit ServerThemesInfo(const QJsonObject &object);

    QList<ThemeInfo> themeInfos() const { return m_themeInfos; }

    /// @throws Exception  always: the record only ever arrives
    QJsonValue toJson() const override;

private:
    QList<ThemeInfo> m_themeInfos;
};
Q_DECLARE_METATYPE(ServerThemesInfo)
