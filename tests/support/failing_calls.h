// Makes a chosen call of the C library or of the heap fail, as a full disk or a small machine would. For test
// programs that are linked with the wraps of failing_calls.cpp.
#pragma once

#include <cstddef>

enum class failing_call { none, open, read, write, close, array, object };

// Lets the `number`th call of this kind from now on fail, counted from 1, and only that one.
void fail_call(failing_call kind, int number);

// No call fails any more. True if one has.
bool stop_failing();

// The largest array that was asked of the heap, with or without success, since this was last called.
std::size_t largest_array_asked();
