#include "refused_threads.h"

#include <dlfcn.h>
#include <pthread.h>

#include <cerrno>

namespace orvc {

FaultPlan& threadFaults() {
    static FaultPlan plan;
    return plan;
}

}  // namespace orvc

// Stands before the C library's, or a sanitizer's, for the whole program.
extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                              void* argument) {
    using Create = decltype(&pthread_create);
    static const auto next = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"));
    return orvc::threadFaults().fails() ? EAGAIN : next(thread, attributes, start, argument);
}
