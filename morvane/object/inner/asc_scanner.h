// The scanning steps of the ASC reader, over a text in memory.
//
// Each step returns false once it fails and writes down why; a reader chains them with &&. Every step moves
// forward only, so reading a text takes time in proportion to its length.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

class asc_scanner {
  public:
    explicit asc_scanner(std::string_view text) : all(text), rest(text) {}

    // Tests the token read last, and reads on until one begins with `word`.
    bool find_keyword(std::string_view word);
    // Reads one token of at most 99 characters; what is longer leaves its rest for the next one.
    bool read_token();
    // Reads one token of any length, which doesn't count as the token read last.
    bool read_name(std::string_view& name);

    // Skips to behind the next such character.
    bool find_letter(char letter);
    // Finds the letter, drops the character behind it and reads a number.
    bool read_value(char letter, float& value);
    bool read_value(char letter, std::int32_t& value);

    // A decimal integer after any blanks; beyond the type's range it is the nearest limit.
    bool read_int(std::int32_t& value);
    // A decimal number after any blanks, with or without exponent. What 32 bits can't hold, is not finite or
    // is written in another base is refused; what is too small for them, but not for 64, is 0.
    bool read_float(float& value);

    // Notes that the text is refused here, with the line's number, and returns false.
    bool fail(const std::string& reason);
    const std::string& problem() const { return why; }

  private:
    bool find_value(char letter);
    void skip_blanks();
    bool take_minus();
    bool ended(std::string_view wanted);

    std::string_view all;
    std::string_view rest;  // what hasn't been read
    std::string_view token; // read last
    std::string why;
};
