#pragma once

#include <gtest/gtest.h>

#include <clocale>

namespace quorin::terminal::test {

/// A locale of UTF-8, where characters have the widths that a terminal gives them.
struct Utf8Locale {
  Utf8Locale() { EXPECT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr); }
  ~Utf8Locale() { std::setlocale(LC_CTYPE, "C"); }
};

}  // namespace quorin::terminal::test
