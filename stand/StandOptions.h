#pragma once

#include "stand/Script.h"

#include <QString>
#include <QStringList>

#include <optional>

/// What the stand is told on its command line.
struct StandOptions {
    enum class Engine { Scripted, Acoustic, Counting };

    quint16 port = 34000;
    quint16 restPort = 39255;
    std::optional<quint16> controlPort;
    Engine engine = Engine::Acoustic;
    Script script;
    QString modelFolder;
    bool quiet = false;

    /// Set when the person asked for help and nothing else is to be done.
    QString help;

    /// @param arguments  with the program's name as the first
    /// @throws Exception  an option is unknown or does not fit; the message says which
    static StandOptions parse(const QStringList &arguments);
};
