// A lock on a name in a folder: one program at a time holds it, and the system takes it from one that ends,
// however it ends. It is a file of its own, so that what the lock guards may be replaced.
#pragma once

#include <chrono>
#include <string>

class lock_file {
  public:
    // The file `name` in the folder open as `folder`, which stays open as long as the object lives.
    lock_file(int folder, std::string name);
    ~lock_file(); // gives the lock back and removes its file
    lock_file(const lock_file&) = delete;
    lock_file& operator=(const lock_file&) = delete;

    // Takes the lock, and waits for it so long if need be. Returns what stands against it, or nothing.
    std::string take(std::chrono::milliseconds patience);

    // Takes a lock whose holder was killed, so that its file goes with the object. False if there is none.
    bool take_left_behind();

  private:
    enum class attempt { taken, held, failed };
    attempt try_once(bool may_create);

    int folder;
    std::string name;
    int file = -1;
    int doomed = -1;
    long holder = 0; // the process that had it at the last attempt, 0 if that can't be told
};
