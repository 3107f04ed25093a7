#pragma once

#include "Patience.h"
#include "VirtualDesk.h"
#include "core/AppVariables.h"
#include "core/ProcessEnd.h"
#include "core/settings/Settings.h"

#include <QApplication>
#include <QTest>

#include <cstdio>
#include <exception>
#include <memory>

/// The desk of this test executable; empty before and after runOnDesk().
inline std::unique_ptr<VirtualDesk> &currentDesk() {
    static std::unique_ptr<VirtualDesk> current;
    return current;
}

/// The desk of this test executable. To be used from within a test object.
inline VirtualDesk &desk() {
    return *currentDesk();
}

/// Raises the desk, makes the application as the program's own main does, and runs tests in it.
/// Returns what they return, or -1 without a desk.
template <typename Application, typename Tests>
int withDesk(int argc, char **argv, VirtualDesk::Needs needs, const Tests &tests) {
    try {
        currentDesk() = std::make_unique<VirtualDesk>(needs);
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "The virtual desk could not be raised: %s\n", failure.what());
        return -1;
    }
    int failures = 0;
    {
        Application application(argc, argv);
        QCoreApplication::setOrganizationName("Ostrel");
        QCoreApplication::setApplicationName("Vellumar");
        Settings::setFileName("settings");
        AppVariables::sm_stdVars.get("HomeLocation", {});
        failures = tests();
    }
    currentDesk().reset();
    return failures;
}

/// Adds the columns of the data of a test: columns<QString, int>("text", "length").
template <typename... Types, typename... Names>
void columns(Names... names) {
    (QTest::addColumn<Types>(names), ...);
}

/// Adds a row to the data of a test: its name, then a value a column, of exactly the column's type.
template <typename... Values>
void row(const char *name, const Values &...values) {
    (QTest::newRow(name) << ... << values);
}

/// Runs one test object on the desk; returns the number of failures.
template <typename Application, typename TestObject>
int runOnDesk(int argc, char **argv, VirtualDesk::Needs needs) {
    return withDesk<Application>(argc, argv, needs, [&] {
        TestObject test;
        return QTest::qExec(&test, argc, argv);
    });
}

/// The main function of a test executable: DESK_TEST_MAIN(TestKeys, VirtualDesk::Screen).
#define DESK_TEST_MAIN(TestObject, needs)                                                          \
    int main(int argc, char **argv) {                                                              \
        endProcess(runOnDesk<QApplication, TestObject>(argc, argv, needs));                        \
    }

/// The same for a test that needs neither windows nor keys, only folders of its own.
#define DESK_CORE_TEST_MAIN(TestObject)                                                            \
    int main(int argc, char **argv) {                                                              \
        endProcess(runOnDesk<QCoreApplication, TestObject>(argc, argv, VirtualDesk::Folders));     \
    }
