#include "core/LoggingCategories.h"

Q_LOGGING_CATEGORY(audiodevlog, "AudioManager")
Q_LOGGING_CATEGORY(pulselog, "PulseAudioManager")
Q_LOGGING_CATEGORY(connectionManagerLog, "ConnectionManager")
Q_LOGGING_CATEGORY(webSocketWorkerLog, "WebSocketWorker")
Q_LOGGING_CATEGORY(heartbeatWorkerLog, "HeartbeatWorker")
Q_LOGGING_CATEGORY(restProxyLog, "RestProxyServer")
Q_LOGGING_CATEGORY(kbdlog, "KBD")
