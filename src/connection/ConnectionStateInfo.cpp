#include "connection/ConnectionStateInfo.h"

ConnectionStateInfo::ConnectionStateInfo(const ConnectionStateInfo &other)
    : QObject(nullptr),
      m_oldState(other.m_oldState),
      m_state(other.m_state),
      m_message(other.m_message),
      m_balancerHost(other.m_balancerHost),
      m_serverHost(other.m_serverHost),
      m_connectionNumber(other.m_connectionNumber) {}

ConnectionStateInfo &ConnectionStateInfo::operator=(const ConnectionStateInfo &other) {
    if (this != &other) {
        m_oldState = other.m_oldState;
        m_state = other.m_state;
        m_message = other.m_message;
        m_balancerHost = other.m_balancerHost;
        m_serverHost = other.m_serverHost;
        m_connectionNumber = other.m_connectionNumber;
    }
    return *this;
}
