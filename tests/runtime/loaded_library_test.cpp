// Libraries that are loaded when they are first needed, by way of the system's own.
#include "workbench/runtime/loaded_library.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace workbench {
namespace {

constexpr LibraryDescription description{"The library", "which counts", "Install it."};

struct Numbers {
  decltype(&std::labs) magnitude = nullptr;
};

TEST(LoadedLibrary, GivesItsFunctionsFromTheFirstPlaceThatHasIt) {
  const auto numbers = loadFunctions<Numbers>(
      {"/no/such/folder/libc.so.6", "libc.so.6"}, description,
      [](LoadedLibrary& library, Numbers& functions) { library.find(functions.magnitude, "labs"); });
  ASSERT_TRUE(numbers) << numbers.problem().text();
  EXPECT_EQ((*numbers)->magnitude(-5), 5);
}

TEST(LoadedLibrary, ThatIsNowhereIsAProblemThatTellsItsUseAndWhatToDo) {
  const auto numbers = loadFunctions<Numbers>({"libnowhere.so.7"}, description,
                                              [](LoadedLibrary&, Numbers&) { FAIL() << "there is none"; });
  ASSERT_FALSE(numbers);
  EXPECT_EQ(
      numbers.problem().text(),
      "The library, which counts, cannot be loaded (libnowhere.so.7: cannot open shared object file: No such file "
      "or directory). Install it.");
}

TEST(LoadedLibrary, ThatLacksFunctionsIsAProblemThatNamesTheFirstOfThem) {
  const auto numbers =
      loadFunctions<Numbers>({"libc.so.6"}, description, [](LoadedLibrary& library, Numbers& functions) {
        library.find(functions.magnitude, "labs");
        library.find(functions.magnitude, "no_such_function");
        library.find(functions.magnitude, "nor_this_one");
      });
  ASSERT_FALSE(numbers);
  EXPECT_EQ(numbers.problem().text(), "The library that was found lacks the function no_such_function. Install it.");
}

}  // namespace
}  // namespace workbench
