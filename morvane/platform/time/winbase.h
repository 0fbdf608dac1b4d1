// What the show relies on of its platform: time, sleep, message boxes, and the run time library's millisecond
// clock and 15-bit random numbers.
//
// All time has one source. Put in another with `set_time_source` (the recorder and the tests move one by
// hand, see manual_clock.h), and everything here that counts time follows it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace winbase {

// A counter that never runs backwards, and the sleep that belongs to it.
class time_source {
  public:
    virtual ~time_source() = default;
    virtual std::int64_t frequency() const = 0; // ticks per second, positive
    virtual std::int64_t counter() = 0;         // ticks since some fixed moment
    virtual void sleep(std::uint32_t milliseconds) = 0;
};

// Makes `source` the one that all below reads; null brings back the machine's monotonic clock. The caller
// keeps `source` alive as long as it is in place.
void set_time_source(time_source* source);

bool QueryPerformanceFrequency(std::int64_t* frequency); // ticks per second; always true
bool QueryPerformanceCounter(std::int64_t* counter);     // ticks; always true
std::uint32_t GetTickCount();                            // milliseconds of the time source, wraps at 2^32
std::int32_t clock(); // wall-clock milliseconds since the first call of this layer
void Sleep(std::uint32_t milliseconds);

// The folder that the running program lies in, without a slash at its end; empty where the system doesn't
// tell.
std::string program_folder();

// Shows `text` under `caption` in a box and waits until it is closed; where there is no display the two go to
// standard error as one line. Always returns 1, the code of the OK button.
int MessageBoxA(void* window, const char* text, const char* caption, std::uint32_t type);

// Lets a program look after its window while a box is up: the box is then shown by another process of the
// same program. For the start of `main`, with its arguments: the exit code if this is that other process,
// which has shown its box by then; nothing in the program itself. The library of windows alone can't do it,
// its boxes block.
std::optional<int> box_process(int count, char** words);

// Whether the window's close button, an interrupt, a hang-up or a termination signal has ended such a box. No
// further box comes up then. The wish waits for the console, too, as a press of Escape.
bool stop_wished();

// The next number of the kit's one fixed sequence (base/random.h), uniform over 0 to 32767.
int rand();

// Restarts that sequence; each seed has its own, and the sequence from program start is that of seed 1.
void srand(std::uint32_t seed);

} // namespace winbase
