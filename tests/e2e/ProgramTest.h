#pragma once

#include "DeskTest.h"
#include "Program.h"
#include "Stand.h"
#include "XKeyboard.h"

/// What tests of the whole program share: a stand and a program that is to end well, anew for each
/// test function.
class ProgramTest : public QObject {
    Q_OBJECT

protected slots:
    void init() {
        clearSettings();
        m_stand = std::make_unique<Stand>();
        writeSettings(*m_stand);
    }

    void cleanup() {
        if (m_program)
            QCOMPARE(m_program->terminate(), 0);
        m_program.reset();
        m_stand.reset();
    }

protected:
    /// Starts the program and waits until all its opening messages are sent.
    bool start() {
        m_program = startProgram(m_stand.get());
        return m_program != nullptr;
    }

    /// Starts to dictate by the user's gesture, and waits until sound comes.
    bool startDictation() {
        m_stand->forget();
        XKeyboard().play(doubleCtrl);
        return nextMode(m_stand.get()).isNull() && soundFlows();
    }

    /// Waits until as much more sound has come as a second gives.
    bool soundFlows() {
        constexpr int secondBytes = 32000;
        m_stand->forget();
        int bytes = 0;
        while (bytes < secondBytes) {
            const QJsonObject sound = m_stand->waitFor("sound");
            if (sound.isEmpty())
                return false;
            bytes += sound["bytes"].toInt();
        }
        return true;
    }

    std::unique_ptr<Stand> m_stand;
    std::unique_ptr<Program> m_program;
};
