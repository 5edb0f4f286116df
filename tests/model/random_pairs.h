// How many random pairs of datasets a test goes through, and from which seed.
//
//   COMPARE_DATASETS_RANDOM_FACTOR=50   fifty times as many pairs in every test as keep it short
//   RC_PARAMS="seed=12345"              the pairs of an earlier run, which a failure names
#pragma once

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

namespace workbench::tests::model {

inline int randomPairs(int usually) {
  const char* factor = std::getenv("COMPARE_DATASETS_RANDOM_FACTOR");
  return factor == nullptr ? usually : std::max(1, static_cast<int>(usually * std::atof(factor)));
}

// Holds a property against random pairs; reports the smallest pair found for which it fails, and the seed.
template <class Property>
void forRandomPairs(int usually, const Property& property) {
  rc::detail::TestParams parameters = rc::detail::configuration().testParams;
  parameters.maxSuccess = randomPairs(usually);
  parameters.maxDiscardRatio = 20;
  rc::detail::TestMetadata metadata;
  metadata.description = ::testing::UnitTest::GetInstance()->current_test_info()->name();
  const auto result = rc::detail::checkTestable(property, metadata, parameters);
  std::ostringstream text;
  rc::detail::printResultMessage(result, text);
  if (!result.template is<rc::detail::SuccessResult>()) {
    FAIL() << "Again with RC_PARAMS=\"seed=" << parameters.seed << "\"\n" << text.str();
  }
  std::cout << parameters.maxSuccess << " pairs, seed " << parameters.seed << '\n' << text.str() << '\n';
}

}  // namespace workbench::tests::model
