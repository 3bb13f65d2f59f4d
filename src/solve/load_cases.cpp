#include "solve/load_cases.hpp"

namespace velmor {

int ReadLoadCaseCount(ItemReader& lcd, std::source_location where) { return lcd.Count("number of load cases", where); }

LoadCases ReadLoadCases(ItemReader& lcd, int count, std::source_location where) {
  constexpr int numbersOfCase = 6;
  lcd.ExpectItems(count, numbersOfCase, "load cases", where);
  LoadCases cases;
  for (int c = 1; c <= count; ++c) {
    cases.LoadCaseName.push_back(lcd.Text("name of a load case", where));
    cases.LoadCaseType.push_back(lcd.Whole("type of a load case", where));
    auto& values = cases.LoadCaseValues.emplace_back();
    for (float& value : values) value = lcd.Single("value of a load case", where);
  }
  return cases;
}

}  // namespace velmor
