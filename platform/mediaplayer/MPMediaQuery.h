#pragma once

#include "platform/mediaplayer/MPMediaItem.h"

#include <optional>
#include <string>
#include <vector>

inline constexpr std::uint64_t MPMediaTypeHomeVideo = 1U << 13U;

/// A condition on one property of an item: equality.
class MPMediaPropertyPredicate final : public NSObject {
 public:
  static Strong<MPMediaPropertyPredicate> predicateWithValue_forProperty(const Strong<NSNumber>& value,
                                                                         const std::string& property) {
    return make<MPMediaPropertyPredicate>(value, property);
  }
  MPMediaPropertyPredicate(Strong<NSNumber> value, std::string property)
      : value_(std::move(value)), property_(std::move(property)) {}

  const Strong<NSNumber>& value() const { return value_; }
  const std::string& property() const { return property_; }

 private:
  Strong<NSNumber> value_;
  std::string property_;
};

/// A question to the media library. Main thread only.
class MPMediaQuery final : public NSObject {
 public:
  using Items = std::vector<Strong<MPMediaItem>>;

  /// Only `MPMediaItemPropertyMediaType` can be asked for; any other property stops the app.
  void addFilterPredicate(const Strong<MPMediaPropertyPredicate>& predicate);
  /// The items that fulfil every predicate, in the library's order; none where the library cannot be queried.
  std::optional<Items> items() const;

 private:
  std::optional<std::uint64_t> mediaType_;
};
