#include "hosts/medialibrary/Order.h"

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/stringpiece.h>

#include <cstdlib>

namespace medialibrary {

namespace {

/// The variables that decide about the collation, the strongest first (POSIX, 8.2).
std::string localeOfEnvironment() {
  for (const char* variable : {"LC_ALL", "LC_COLLATE", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && value[0] != '\0') return value;
  }
  return "C";
}

/// Without the character set and the modifier, which are of another notation than ICU's.
icu::Locale localeOf(const std::string& name) {
  const std::string plain = name.substr(0, name.find_first_of(".@"));
  // Under a name that it does not know, ICU would take the environment's locale instead.
  return plain == "C" || plain == "POSIX" ? icu::Locale::getRoot() : icu::Locale(plain.c_str());
}

}  // namespace

struct Order::Collation {
  std::unique_ptr<icu::Collator> collator;
};

Order::Order(const std::string& locale) : collation_(std::make_unique<Collation>()) {
  UErrorCode error = U_ZERO_ERROR;
  const icu::Locale wanted = localeOf(locale.empty() ? localeOfEnvironment() : locale);
  std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(wanted, error));
  if (error == U_USING_DEFAULT_WARNING || collator == nullptr || U_FAILURE(error)) {
    error = U_ZERO_ERROR;
    collator.reset(icu::Collator::createInstance(icu::Locale::getRoot(), error));
  }
  if (collator != nullptr && U_SUCCESS(error)) collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, error);
  if (collator != nullptr && U_SUCCESS(error)) collation_->collator = std::move(collator);
}

Order::~Order() = default;

int Order::compare(const std::string& left, const std::string& right) const {
  if (!collation_->collator) return left.compare(right);  // an installation without collation data
  UErrorCode error = U_ZERO_ERROR;
  return collation_->collator->compareUTF8(left, right, error);
}

}  // namespace medialibrary
