// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

/// The standard streams as the system has them. None of the functions allocates memory.
namespace StandardStreams {

constexpr int input = 0;
constexpr int output = 1;
constexpr int error = 2;

/// Call it once, before any file is opened.
void prepare();

/// Lets the system's messages have the language and encoding of the environment.
void useLocale();

/// Writes all of the bytes. Returns the system's error number, or 0.
int write(int stream, const char *bytes, std::size_t size) noexcept;

/// Whether an open file is a terminal.
bool isTerminal(int descriptor);

/// The number of characters in a line of the terminal, or 0 if it is not known.
int terminalWidth(int stream);

} // namespace StandardStreams
