// A clock that stands still until it is moved by hand.
#pragma once

#include "morvane/platform/time/winbase.h"

namespace winbase {

// Put in place of the machine's clock for its own lifetime.
class manual_clock : public time_source {
  public:
    explicit manual_clock(std::int64_t ticks_per_second) : ticks_per_second_(ticks_per_second) {
        set_time_source(this);
    }
    ~manual_clock() override { set_time_source(nullptr); }
    manual_clock(const manual_clock&) = delete;
    manual_clock& operator=(const manual_clock&) = delete;

    std::int64_t frequency() const override { return ticks_per_second_; }
    std::int64_t counter() override { return now_; }
    void sleep(std::uint32_t milliseconds) override { now_ += ticks_per_second_ * milliseconds / 1000; }

    void set(std::int64_t ticks) { now_ = ticks; }
    void advance(std::int64_t ticks) { now_ += ticks; }

  private:
    std::int64_t ticks_per_second_;
    std::int64_t now_ = 0;
};

} // namespace winbase
