#include "counted_new.h"

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace orvc {
namespace {

std::atomic<std::size_t> bytes{0};
thread_local int exempt = 0;

}  // namespace

std::size_t allocatedBytes() {
    return bytes;
}

FaultPlan& allocationFaults() {
    static FaultPlan plan;
    return plan;
}

Exempt::Exempt() {
    ++exempt;
}

Exempt::~Exempt() {
    --exempt;
}

}  // namespace orvc

// Every form, or a sanitizer's own would take the rest.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    void* memory = orvc::exempt == 0 && orvc::allocationFaults().fails() ? nullptr : std::malloc(size);
    orvc::bytes += malloc_usable_size(memory);
    return memory;
}

void* operator new(std::size_t size) {
    void* memory = operator new(size, std::nothrow);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

void* operator new[](std::size_t size) {
    return operator new(size);
}

void operator delete(void* memory) noexcept {
    orvc::bytes -= malloc_usable_size(memory);
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

void operator delete[](void* memory) noexcept {
    operator delete(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    operator delete(memory);
}
