// A file that a program writes: it gets its name when it is whole.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

// What the path names decides what becomes of it:
//
// - nothing, or a file: the output is written beside it under another name, and takes its place with `finish`
//   and the permissions that it had; without `finish` it goes with the object, or with a signal that ends the
//   process (interrupts.h). A file that may not be written is left alone.
// - a link: the same is done where it leads, also if nothing is there yet; the link stays.
// - a device or a pipe: it is written to as it is, from `open` on. No seeking there.
// - standard output or error, under any name ("/dev/stdout"): the same, behind what stands there already.
// - a folder: refused.
//
// Functions that return a text return the reason of their failure, without the path, or nothing.
class output_file {
  public:
    // Looks what is there and changes nothing.
    explicit output_file(const std::string& path);
    ~output_file();
    output_file(const output_file&) = delete;
    output_file& operator=(const output_file&) = delete;

    // Whether it is a device, a pipe, standard output or error.
    bool direct() const { return direct_; }

    // Why the output can't be written, as far as that can be told beforehand.
    std::string obstacle() const;

    // Makes the unfinished file, or opens the device or pipe; waits until somebody reads from the pipe, or an
    // interruption has been noted.
    std::string open();

    // What `open` has opened; the object closes it.
    int descriptor() const { return descriptor_; }

    // Under what name a library may open the unfinished file once more. Not for a device or pipe.
    const std::string& name() const { return name_; }

    std::string write(std::span<const std::uint8_t> bytes);
    std::string write(std::string_view text);

    // Closes the output and gives it its name.
    std::string finish();

    // The same, but what has got the name since the object was made stays as it is: `taken` is true then.
    std::string finish_if_free(bool& taken);

    // Whether two paths lead to one output, however they are spelt.
    static bool same(const std::string& a, const std::string& b);

  private:
    std::string open_direct();
    std::string open_unfinished();
    std::string close();
    void forget();

    std::string target_; // where links lead
    std::string name_;   // of the unfinished file; empty: there is none
    int error_ = 0;      // why what is there can't be told
    bool direct_ = false, folder_ = false, there_ = false;
    mode_t mode_ = 0666; // of what is there
    int given_ = -1;     // standard output or error, if it is that
    int descriptor_ = -1;
    int noted_ = -1; // place among the unfinished names
};
