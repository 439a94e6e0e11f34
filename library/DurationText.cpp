#include "library/DurationText.h"

namespace {

std::string atLeastTwoDigits(std::int64_t number) {
  const std::string digits = std::to_string(number);
  return digits.size() < 2 ? "0" + digits : digits;
}

}  // namespace

std::string durationText(std::int64_t seconds) {
  return atLeastTwoDigits(seconds / 3600) + ":" + atLeastTwoDigits(seconds / 60 % 60) + ":" +
         atLeastTwoDigits(seconds % 60);
}
