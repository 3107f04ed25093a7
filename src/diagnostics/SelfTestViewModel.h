#pragma once

#include <QObject>

/// The window of the measuring test run: its buttons, its figures and its log. Main thread.
class SelfTestViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool IsConnected READ get_IsConnected NOTIFY changed_IsConnected)
    Q_PROPERTY(bool IsStarted READ get_IsStarted NOTIFY changed_IsStarted)
    /// The run begins again when it has come to its end.
    Q_PROPERTY(bool Loop READ get_Loop WRITE set_Loop NOTIFY changed_Loop)
    Q_PROPERTY(qulonglong PingCount READ get_PingCount NOTIFY changed_PingCount)
    Q_PROPERTY(qulonglong PongCount READ get_PongCount NOTIFY changed_PongCount)
    // Milliseconds.
    Q_PROPERTY(qulonglong MinDelay READ get_MinDelay NOTIFY changed_MinDelay)
    Q_PROPERTY(qulonglong MaxDelay READ get_MaxDelay NOTIFY changed_MaxDelay)
    Q_PROPERTY(double AvgDelay READ get_AvgDelay NOTIFY changed_AvgDelay)

public:
    explicit SelfTestViewModel(QObject *parent = nullptr) : QObject(parent) {}

    bool get_IsConnected() const { return m_isConnected; }
    void set_IsConnected(bool v);
    bool get_IsStarted() const { return m_isStarted; }
    void set_IsStarted(bool v);
    bool get_Loop() const { return m_loop; }
    void set_Loop(bool v);
    qulonglong get_PingCount() const { return m_pingCount; }
    void set_PingCount(qulonglong v);
    qulonglong get_PongCount() const { return m_pongCount; }
    void set_PongCount(qulonglong v);
    qulonglong get_MinDelay() const { return m_minDelay; }
    void set_MinDelay(qulonglong v);
    qulonglong get_MaxDelay() const { return m_maxDelay; }
    void set_MaxDelay(qulonglong v);
    double get_AvgDelay() const { return m_avgDelay; }
    void set_AvgDelay(double v);

signals:
    // From the view.
    void load();
    void close();
    void clear();
    void start();
    void stop();
    // To the view.
    void clearLog();
    void appendLog(const QString &text);

    void changed_IsConnected(bool v);
    void changed_IsStarted(bool v);
    void changed_Loop(bool v);
    void changed_PingCount(qulonglong v);
    void changed_PongCount(qulonglong v);
    void changed_MinDelay(qulonglong v);
    void changed_MaxDelay(qulonglong v);
    void changed_AvgDelay(double v);

private:
    bool m_isConnected = false;
    bool m_isStarted = false;
    bool m_loop = false;
    qulonglong m_pingCount = 0;
    qulonglong m_pongCount = 0;
    qulonglong m_minDelay = 0;
    qulonglong m_maxDelay = 0;
    double m_avgDelay = 0;
};
