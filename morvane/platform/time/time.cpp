// The replaceable time source and what counts by it.
#include <chrono>
#include <thread>

#include "morvane/platform/time/winbase.h"

namespace winbase {
namespace {

using steady = std::chrono::steady_clock;

class machine_clock final : public time_source {
  public:
    std::int64_t frequency() const override { return steady::period::den / steady::period::num; }
    std::int64_t counter() override { return steady::now().time_since_epoch().count(); }
    void sleep(std::uint32_t milliseconds) override {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    }
};

machine_clock machine;
time_source* current = &machine;
std::int64_t clock_origin = -1; // milliseconds at the first call of `clock`

// Whole seconds and the rest apart, so that no counter value overflows.
std::int64_t milliseconds_now() {
    const std::int64_t ticks = current->counter();
    const std::int64_t frequency = current->frequency();
    return ticks / frequency * 1000 + ticks % frequency * 1000 / frequency;
}

} // namespace

void set_time_source(time_source* source) {
    current = source != nullptr ? source : &machine;
    clock_origin = -1;
}

bool QueryPerformanceFrequency(std::int64_t* frequency) {
    *frequency = current->frequency();
    return true;
}

bool QueryPerformanceCounter(std::int64_t* counter) {
    *counter = current->counter();
    return true;
}

std::uint32_t GetTickCount() {
    return static_cast<std::uint32_t>(milliseconds_now() & 0xffffffff);
}

std::int32_t clock() {
    const std::int64_t now = milliseconds_now();
    if (clock_origin < 0) clock_origin = now;
    return static_cast<std::int32_t>((now - clock_origin) & 0x7fffffff);
}

void Sleep(std::uint32_t milliseconds) {
    current->sleep(milliseconds);
}

} // namespace winbase
