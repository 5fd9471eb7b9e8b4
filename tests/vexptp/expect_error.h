// The message of an expected failure.
#pragma once

#include <gtest/gtest.h>

#include <string>

namespace zel::ptp {

// Empty, and a failed test, when nothing of that kind is thrown.
template <class Error, class Call>
std::string errorOf(const Call& call) {
  try {
    call();
  } catch (const Error& error) {
    return error.what();
  }
  ADD_FAILURE() << "no failure";
  return {};
}

}  // namespace zel::ptp
