// SPDX-License-Identifier: MIT
//
// Holds nothing: CMake takes a file to make the precompiled header of the tests with.
