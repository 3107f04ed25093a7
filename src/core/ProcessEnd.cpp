#include "core/ProcessEnd.h"

#include <cstdio>
#include <cstdlib>
#include <easylogging++.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

void endProcess(int status) {
    el::Loggers::flushAll();
    std::fflush(nullptr);
#ifdef __SANITIZE_ADDRESS__
    // The sanitizer looks for leaks when static objects are destroyed.
    __lsan_do_leak_check();
#endif
    std::quick_exit(status);
}
