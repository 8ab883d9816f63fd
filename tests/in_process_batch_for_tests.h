// Test support: batch requests answered in the test's own process, by a LIB
// whose store and log lie in a folder of the test's own.
#ifndef NORVIK50_TESTS_IN_PROCESS_BATCH_FOR_TESTS_H_
#define NORVIK50_TESTS_IN_PROCESS_BATCH_FOR_TESTS_H_

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "batch.h"
#include "norvik50/lib.h"
#include "testing/temp_folder.h"

namespace norvik50::cli {

class InProcessBatchTest : public ::testing::Test {
 protected:
  // The answer to one request line.
  nlohmann::ordered_json Ask(const std::string& line) { return AnswerRequest(lib_, line); }

  testing::TempFolder temp_;
  testing::ScopedEnv tmpdir_{"TMPDIR", temp_.path()};
  testing::ScopedEnv store_{"NORVIK50_REGISTRY_DIR", temp_.File("reg")};
  LIB lib_;
};

}  // namespace norvik50::cli

#endif  // NORVIK50_TESTS_IN_PROCESS_BATCH_FOR_TESTS_H_
