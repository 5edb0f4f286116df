// ShownNumber: a number that is a result and no value of a variable, such as a mean, shown as the plain number it is.
//
// The host shows numbers in the print formats of variables. This is one for the occasion: it has the name of the
// variable that the number tells about, and as many decimals as the number needs.
#pragma once

#include <string>

#include "host/data.h"
#include "host/output.h"

namespace profile {

class ShownNumber final : private VRIX_Variable {
 public:
  // At least so many decimals, and more where these would round off too much of the number.
  ShownNumber(const VRIX_Variable& variable, double number, std::int32_t decimals);

  BpDataValue text() const { return {*this, number_, BpValueShow::inPrintFormat}; }

 private:
  const std::string& GetName() const override { return name_; }
  std::int32_t GetType() const override { return 0; }
  void GetFormatEx(FormatType& type, std::int32_t& width, std::int32_t& decimals) const override;
  VRIX_Variable_Enumerations::MeasurementLevel GetMeasurementLevel() const override;
  const std::string* GetLabel() const override { return nullptr; }
  RefCountPtr<VRIX_ValueLabelMap> GetValueLabels() const override { return {}; }
  std::int32_t GetMissingValues(const OBS*& first, const OBS*& second, const OBS*& third) const override;
  std::int32_t GetDisplayWidth() const override { return 0; }
  VRIX_Variable_Enumerations::Alignment GetAlignment() const override;
  VRIX_Variable_Enumerations::Role GetRole() const override;
  const DatasourceAttributes& GetAttributes() const override { return attributes_; }
  void SetName(std::string_view) override {}
  void SetFormat(FormatType, std::int32_t, std::int32_t) override {}
  void SetMeasurementLevel(VRIX_Variable_Enumerations::MeasurementLevel) override {}
  void SetLabel(std::string_view) override {}
  void AddValueLabel(double, std::string_view) override {}

  std::string name_;
  double number_;
  FormatType type_ = FormatType::number;
  std::int32_t decimals_;
  DatasourceAttributes attributes_;
};

// The fewest decimals, but no fewer than given and no more than 15, that show the number to some three digits.
std::int32_t decimalsFor(double number, std::int32_t least);

}  // namespace profile
