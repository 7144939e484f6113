#pragma once

#if __cplusplus < 202002L
#error "ZUML needs C++20: compile with -std=c++20 or later"
#endif

/// Marks what the shared library offers. Everything else is compiled with hidden visibility, so
/// that the loader has less to bind and the compiler may inline across an operation's helpers.
///
/// A class template carries it where it is declared first, too: an instance that is named before
/// the definition has been read would otherwise be hidden by Clang.
#define ZUML_API __attribute__((visibility("default")))
