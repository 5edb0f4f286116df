// Property display: keys, and the patterns that lay missing values out.
#include "tables/property_display.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>

namespace compdatas {
namespace {

namespace enumerations = VRIX_Variable_Enumerations;

// A variable of which only the storage width and the missing values are asked.
class VariableWithMissingValues final : public VRIX_Variable {
 public:
  VariableWithMissingValues(std::int32_t code, const std::array<double, 3>& values) : code_(code) {
    for (std::size_t place = 0; place < values.size(); ++place) values_[place].number = values[place];
  }

  const std::string& GetName() const override { return name_; }
  std::int32_t GetType() const override { return 0; }
  void GetFormatEx(FormatType& type, std::int32_t& width, std::int32_t& decimals) const override {
    type = FormatType::number;
    width = 8;
    decimals = 0;
  }
  enumerations::MeasurementLevel GetMeasurementLevel() const override { return enumerations::MeasurementLevel::scale; }
  const std::string* GetLabel() const override { return nullptr; }
  RefCountPtr<VRIX_ValueLabelMap> GetValueLabels() const override { return {}; }
  std::int32_t GetMissingValues(const OBS*& first, const OBS*& second, const OBS*& third) const override {
    first = &values_[0];
    second = &values_[1];
    third = &values_[2];
    return code_;
  }
  std::int32_t GetDisplayWidth() const override { return 8; }
  enumerations::Alignment GetAlignment() const override { return enumerations::Alignment::right; }
  enumerations::Role GetRole() const override { return enumerations::Role::input; }
  const DatasourceAttributes& GetAttributes() const override { return attributes_; }
  void SetName(std::string_view) override {}
  void SetFormat(FormatType, std::int32_t, std::int32_t) override {}
  void SetMeasurementLevel(enumerations::MeasurementLevel) override {}
  void SetLabel(std::string_view) override {}
  void AddValueLabel(double, std::string_view) override {}

 private:
  std::int32_t code_;
  std::string name_ = "x";
  std::array<OBS, 3> values_{};
  DatasourceAttributes attributes_;
};

// "pattern: slots"
std::string laidOut(std::int32_t code, double first = 1, double second = 2, double third = 3) {
  const VariableWithMissingValues variable(code, {first, second, third});
  MissingValueSet missing(variable);
  std::string all = std::string(MissingValuePattern(missing)) + ":";
  for (const std::int32_t slot : missing.slots) all += ' ' + std::to_string(slot);
  return all;
}

const double lowest = pvGetCmnMch()->constants[CmnMch::lowestValidNumber];
const double highest = pvGetCmnMch()->constants[CmnMch::highestNumber];

TEST(MissingValuePattern, ListsAsManyDiscreteValuesAsTheCodeSays) {
  EXPECT_EQ(laidOut(1), "[%1:, ^1:]1: 0");
  EXPECT_EQ(laidOut(2), "[%1:, ^1:]1: 0 1");
  EXPECT_EQ(laidOut(3), "[%1:, ^1:]1: 0 1 2");
  EXPECT_EQ(laidOut(2, lowest, highest), "[%1:, ^1:]1: 0 1");
}

TEST(MissingValuePattern, HasEightWaysToLayARangeOut) {
  EXPECT_EQ(laidOut(-2), "^1 - ^2: 0 1");
  EXPECT_EQ(laidOut(-3), "^1 - ^2, ^3: 0 1 2");
  EXPECT_EQ(laidOut(-2, lowest), "LO - ^1: 1");
  EXPECT_EQ(laidOut(-3, lowest), "LO - ^1, ^2: 1 2");
  EXPECT_EQ(laidOut(-2, 1, highest), "^1 - HI: 0");
  EXPECT_EQ(laidOut(-3, 1, highest), "^1 - HI, ^2: 0 2");
  EXPECT_EQ(laidOut(-2, lowest, highest), "LO - HI:");
  EXPECT_EQ(laidOut(-3, lowest, highest), "LO - HI, ^1: 2");
}

TEST(MissingValuePattern, KnowsTheEndsByTheirBitsOnly) {
  EXPECT_EQ(laidOut(-2, std::nextafter(lowest, 0), std::nextafter(highest, 0)), "^1 - ^2: 0 1");
  EXPECT_EQ(laidOut(-2, highest, lowest), "^1 - ^2: 0 1");
  EXPECT_EQ(laidOut(-3, 1, 2, highest), "^1 - ^2, ^3: 0 1 2");
}

TEST(MissingValuePattern, IsEmptyWhereThereIsNothingToShow) {
  for (const std::int32_t code : {0, -1, -4, 4, 100}) EXPECT_EQ(laidOut(code), ":") << code;
}

TEST(PropertyKeys, CallWhateverStandsForNothingUnknown) {
  for (const int number : {-2147483647 - 1, -1, 3, 2147483647}) {
    EXPECT_STREQ(AlignmentKey(static_cast<enumerations::Alignment>(number)), "CD_Unknown");
  }
  for (const int number : {-1, 0, 6, 2147483647}) {
    EXPECT_STREQ(MeasurementLevelKey(static_cast<enumerations::MeasurementLevel>(number)), "CD_Unknown");
  }
  for (const int number : {-1, 8, 2147483647}) {
    EXPECT_STREQ(RoleKey(static_cast<enumerations::Role>(number)), "CD_Unknown");
  }
}

TEST(PropertyKeys, PutRightBeforeCenter) {
  EXPECT_STREQ(AlignmentKey(static_cast<enumerations::Alignment>(0)), "CD_Left");
  EXPECT_STREQ(AlignmentKey(static_cast<enumerations::Alignment>(1)), "CD_Right");
  EXPECT_STREQ(AlignmentKey(static_cast<enumerations::Alignment>(2)), "CD_Center");
}

TEST(PropertyKeys, NameTheMeasurementLevelsInTheirOrder) {
  const std::array<const char*, 6> names = {"CD_Unknown", "CD_Nominal", "CD_Ordinal",
                                            "CD_Scale",   "CD_Flag",    "CD_Typeless"};
  for (int number = 0; number < 6; ++number) {
    EXPECT_STREQ(MeasurementLevelKey(static_cast<enumerations::MeasurementLevel>(number)),
                 names[static_cast<std::size_t>(number)]);
  }
}

TEST(PropertyKeys, NameTheRolesInTheirOrder) {
  const std::array<const char*, 8> names = {"CD_InputRole",      "CD_TargetRole",    "CD_BothRoles",
                                            "CD_NoneRole",       "CD_PartitionRole", "CD_SplitRole",
                                            "CD_FreqWeightRole", "CD_RecordIDRole"};
  for (int number = 0; number < 8; ++number) {
    EXPECT_STREQ(RoleKey(static_cast<enumerations::Role>(number)), names[static_cast<std::size_t>(number)]);
  }
}

}  // namespace
}  // namespace compdatas
