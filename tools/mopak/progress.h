// Tells how far long work is. On a terminal one line that is written over and goes at the end; elsewhere a
// line every ten percent. Short work tells nothing.
#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <string_view>

class progress {
  public:
    // `verb` as in "packing". `total` is the work in bytes.
    progress(std::string verb, std::int64_t total);
    // With another sink and clock, which gives seconds.
    progress(std::string verb, std::int64_t total, std::FILE* sink, bool terminal,
             std::function<double()> clock);
    ~progress() { clear(); }
    progress(const progress&) = delete;
    progress& operator=(const progress&) = delete;

    // `done` bytes of the work are behind, the file called `name` is next.
    void at(std::int64_t done, std::string_view name);

    // Takes the line away, before something else is written.
    void clear();

  private:
    std::string verb;
    std::int64_t total;
    std::FILE* sink;
    bool terminal;
    std::function<double()> clock;
    double start;
    double last_shown = 0;
    int last_tenth = 0;
    bool visible = false;
};
