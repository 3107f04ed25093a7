#pragma once

#include <QTest>

/// How long tests wait for what must come, in milliseconds. Qt's own five seconds are too few on a
/// machine that has other work beside the tests.
constexpr int patienceMs = 20000;

#undef QTRY_VERIFY
#define QTRY_VERIFY(expression) QTRY_VERIFY_WITH_TIMEOUT((expression), patienceMs)
#undef QTRY_VERIFY2
#define QTRY_VERIFY2(expression, message)                                                          \
    QTRY_VERIFY2_WITH_TIMEOUT((expression), (message), patienceMs)
#undef QTRY_COMPARE
#define QTRY_COMPARE(expression, expected)                                                         \
    QTRY_COMPARE_WITH_TIMEOUT((expression), (expected), patienceMs)
