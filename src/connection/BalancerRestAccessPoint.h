#pragma once

#include "connection/BaseRestAccessPoint.h"
#include "connection/messages/ServerListDTO.h"

/// Requests to the balancer.
class BalancerRestAccessPoint : public BaseRestAccessPoint {
public:
    /// The recognition servers that the balancer knows.
    /// @throws Exception  with a text for the user; the reason is in the log
    ServerListDTO GetServers();

protected:
    std::unique_ptr<BaseConnectionSettings> getSettings() const override;
};
