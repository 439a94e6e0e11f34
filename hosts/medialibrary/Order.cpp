#include "hosts/medialibrary/Order.h"

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/stringpiece.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/uversion.h>

#include <array>
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

std::string textOf(const UVersionInfo& version) {
  std::array<char, U_MAX_VERSION_STRING_LENGTH> text{};
  u_versionToString(version, text.data());
  return text.data();
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

std::string Order::key(const std::string& title) const {
  if (!collation_->collator) return title;
  const icu::UnicodeString text = icu::UnicodeString::fromUTF8(title);
  std::string key(title.size() * 4 + 16, '\0');
  const auto fill = [&] {
    return collation_->collator->getSortKey(text, reinterpret_cast<std::uint8_t*>(key.data()),
                                            static_cast<std::int32_t>(key.size()));
  };
  std::int32_t length = fill();
  if (length > static_cast<std::int32_t>(key.size())) {
    key.resize(static_cast<std::size_t>(length));
    length = fill();
  }
  key.resize(length > 0 ? static_cast<std::size_t>(length) - 1 : 0);  // without the zero at its end
  return key;
}

std::string Order::name() const {
  if (!collation_->collator) return "bytes";
  UErrorCode error = U_ZERO_ERROR;
  const std::string rules = collation_->collator->getLocale(ULOC_ACTUAL_LOCALE, error).getName();
  UVersionInfo rulesVersion{};
  collation_->collator->getVersion(rulesVersion);
  UVersionInfo libraryVersion{};
  u_getVersion(libraryVersion);
  return rules + " " + textOf(rulesVersion) + ", ICU " + textOf(libraryVersion) + ", numbers by value";
}

}  // namespace medialibrary
