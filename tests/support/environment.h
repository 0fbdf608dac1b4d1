// Environment variables that live as long as a test.
#pragma once

#include <optional>
#include <string>

#include <stdlib.h> // setenv

// Sets a variable, or removes it with a null `value`, and puts back what was there when the object goes.
class environment_variable {
  public:
    environment_variable(const char* variable, const char* value) : name(variable) {
        if (const char* old = getenv(variable)) before = old;
        set(value);
    }
    ~environment_variable() { set(before ? before->c_str() : nullptr); }
    environment_variable(const environment_variable&) = delete;
    environment_variable& operator=(const environment_variable&) = delete;

  private:
    void set(const char* value) const {
        if (value != nullptr)
            setenv(name.c_str(), value, 1);
        else
            unsetenv(name.c_str());
    }

    std::string name;
    std::optional<std::string> before;
};

// No display: message boxes go to standard error.
struct no_display {
    environment_variable x11{"DISPLAY", nullptr};
    environment_variable wayland{"WAYLAND_DISPLAY", nullptr};
    environment_variable driver{"SDL_VIDEODRIVER", nullptr};
};
