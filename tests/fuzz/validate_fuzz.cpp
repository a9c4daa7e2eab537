// Fuzzes SCC_Variant: validation rules of any shape against variants of each
// kind, with and without a convertor, and the conversions between kinds.
//
// Input: one control byte (the variant's kind), then the rule, a NUL and the
// variant's text.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "scc_convertor.h"
#include "scc_variant.h"
#include "sys_exception.h"

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

class Halving : public SCC_Convertor {
 public:
  SCC_Variant Convert(SCC_Variant value, int direction) override {
    double const v = value;
    return SCC_Variant(direction == 1 ? v / 2 : v * 2);
  }
};

SCC_Variant Make(std::uint8_t kind, std::string const &text) {
  double d = 0;
  SCC_Variant const asText(text.c_str());
  switch (kind % 4) {
    case 0: return asText;
    case 1:
      try {
        d = asText;
      } catch (SYS_Exception const &) {
      }
      return SCC_Variant(d);
    case 2: return SCC_Variant(static_cast<int>(text.size()) - 5);
    default: return SCC_Variant();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
  if (size == 0) return 0;
  std::uint8_t const control = data[0];
  std::string const rest(reinterpret_cast<char const *>(data) + 1, size - 1);
  std::size_t const split = rest.find('\0');
  std::string const rule = rest.substr(0, split);
  std::string const text = split == std::string::npos ? std::string() : rest.substr(split + 1);

  static Halving halving;
  SCC_Variant const value = Make(control, text);
  SCC_Variant const before = value;
  try {
    int const valid = value.Validate(rule.c_str(), (control & 4) != 0 ? &halving : nullptr);
    Require(valid == 0 || valid == 1);
    Require(valid == 1 ? value == before : (value.GetType() == SCC_Variant::ValueString || value == before));
  } catch (SYS_Exception const &) {
  }
  try {
    SYS_String const asText = value;
    Require(value.IsEmpty() || SCC_Variant(asText) == value);
    double const asDouble = value;
    int const asInt = value;  // in range, or it threw
    Require(asInt == static_cast<int>(asDouble) || value.GetType() == SCC_Variant::ValueLong);
  } catch (SYS_Exception const &) {
  }
  return 0;
}
