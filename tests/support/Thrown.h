#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>

// The message of the exception of type Error that `work` throws; a failure when it throws none.
template <typename Error, typename Work>
std::string MessageOf(Work&& work) {
  try {
    std::forward<Work>(work)();
  } catch (const Error& error) {
    return error.what();
  }
  ADD_FAILURE() << "nothing was thrown";
  return {};
}
