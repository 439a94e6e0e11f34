#pragma once

#include "platform/coregraphics/CGGeometry.h"
#include "platform/foundation/NSObject.h"

#include <string>

/// A picture. The platform knows where it comes from and how big it is; only the screen host sees pixels, and it may
/// get them later.
class UIImage final : public NSObject {
 public:
  /// The picture of that name among the app's resources, or none.
  static Strong<UIImage> imageNamed(const std::string& name);

  UIImage(std::string source, CGSize size, std::string name = {}, std::string accessibilityLabel = {})
      : source_(std::move(source)),
        size_(size),
        name_(std::move(name)),
        accessibilityLabel_(std::move(accessibilityLabel)) {}

  /// How the screen host finds the pixels.
  const std::string& source() const { return source_; }
  /// Natural size in points.
  CGSize size() const { return size_; }
  /// The name it was loaded by; empty for a picture that is no resource.
  const std::string& name() const { return name_; }
  /// What it shows, as assistive technology tells it; empty for one that is passed over.
  const std::string& accessibilityLabel() const { return accessibilityLabel_; }

 private:
  std::string source_;
  CGSize size_;
  std::string name_;
  std::string accessibilityLabel_;
};
