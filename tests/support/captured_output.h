// What the process writes to standard output and standard error.
#pragma once

#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

// Takes over one file descriptor, so that it catches what libraries written in C print, too. Nest them in the
// order of a stack.
class captured_descriptor {
  public:
    explicit captured_descriptor(int which) : descriptor(which), saved(dup(which)), file(std::tmpfile()) {
        if (saved < 0 || file == nullptr) throw std::runtime_error("can't capture the output");
        flush();
        dup2(fileno(file), descriptor);
    }
    ~captured_descriptor() {
        stop();
        std::fclose(file);
    }
    captured_descriptor(const captured_descriptor&) = delete;
    captured_descriptor& operator=(const captured_descriptor&) = delete;

    // Gives the descriptor back; the text stays. A second call does nothing.
    void stop() {
        if (saved < 0) return;
        flush();
        dup2(saved, descriptor);
        close(saved);
        saved = -1;
    }

    // Ends the capture and gives all that was written.
    std::string text() {
        stop();
        std::rewind(file);
        std::string all;
        for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file))
            all.push_back(static_cast<char>(c));
        return all;
    }

  private:
    static void flush() {
        std::cout.flush();
        std::cerr.flush();
        std::fflush(stdout);
        std::fflush(stderr);
    }

    int descriptor;
    int saved;
    std::FILE* file;
};

// Both streams of the process, from construction until `out` or `err` is first asked.
//
//     captured_output printed;
//     frame_tables_init();
//     EXPECT_EQ(printed.out(), "");
//
// If the test has failed when the object goes, all that it caught is written to standard error, for the
// messages of failed checks are among it.
class captured_output {
  public:
    captured_output() = default;
    ~captured_output() {
        if (testing::Test::HasFailure()) {
            const std::string all = out() + err();
            std::fwrite(all.data(), 1, all.size(), stderr);
        }
    }
    captured_output(const captured_output&) = delete;
    captured_output& operator=(const captured_output&) = delete;

    std::string out() {
        stop();
        return out_stream.text();
    }
    std::string err() {
        stop();
        return err_stream.text();
    }
    void stop() {
        err_stream.stop();
        out_stream.stop();
    }

  private:
    captured_descriptor out_stream{STDOUT_FILENO};
    captured_descriptor err_stream{STDERR_FILENO};
};
