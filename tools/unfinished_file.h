// A file that gets its name when it is whole.
#pragma once

#include <string>

// A name beside that of the file, under which the file is written. It takes the final name's place with
// `finish`, or goes with the object.
class unfinished_file {
  public:
    explicit unfinished_file(const std::string& path);
    ~unfinished_file();
    unfinished_file(const unfinished_file&) = delete;
    unfinished_file& operator=(const unfinished_file&) = delete;

    // The name to write to.
    const std::string& name() const { return name_; }

    // Why no file can get the final name, as far as that can be told beforehand; empty if nothing is in the
    // way.
    std::string obstacle() const;

    // Gives the file, closed by now, its final name; what was there is replaced. Returns an empty text or the
    // reason of the failure.
    std::string finish();

  private:
    std::string path_, name_;
    bool finished_ = false;
};
