#pragma once

#include "connection/BaseRestAccessPoint.h"
#include "themes/ClientThemeInfo.h"

#include <QList>

/// Requests to the recognition server in use.
class RestAccessPoint : public BaseRestAccessPoint {
public:
    /// The dictionaries that the server offers.
    /// @throws Exception  with a text for the user; the reason is in the log
    QList<ClientThemeInfo> getThemes();

    /// Sends the user's feedback.
    /// @return false if it did not arrive; the reason is in the log
    bool sendClaim(const JsonConvertable &claim);

protected:
    std::unique_ptr<BaseConnectionSettings> getSettings() const override;
};
