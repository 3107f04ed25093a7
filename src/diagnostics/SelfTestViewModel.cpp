#include "diagnostics/SelfTestViewModel.h"

#include "viewmodels/StoreProperty.h"

void SelfTestViewModel::set_IsConnected(bool v) {
    storeProperty(this, &m_isConnected, v, &SelfTestViewModel::changed_IsConnected);
}

void SelfTestViewModel::set_IsStarted(bool v) {
    storeProperty(this, &m_isStarted, v, &SelfTestViewModel::changed_IsStarted);
}

void SelfTestViewModel::set_Loop(bool v) {
    storeProperty(this, &m_loop, v, &SelfTestViewModel::changed_Loop);
}

void SelfTestViewModel::set_PingCount(qulonglong v) {
    storeProperty(this, &m_pingCount, v, &SelfTestViewModel::changed_PingCount);
}

void SelfTestViewModel::set_PongCount(qulonglong v) {
    storeProperty(this, &m_pongCount, v, &SelfTestViewModel::changed_PongCount);
}

void SelfTestViewModel::set_MinDelay(qulonglong v) {
    storeProperty(this, &m_minDelay, v, &SelfTestViewModel::changed_MinDelay);
}

void SelfTestViewModel::set_MaxDelay(qulonglong v) {
    storeProperty(this, &m_maxDelay, v, &SelfTestViewModel::changed_MaxDelay);
}

void SelfTestViewModel::set_AvgDelay(double v) {
    storeProperty(this, &m_avgDelay, v, &SelfTestViewModel::changed_AvgDelay);
}
