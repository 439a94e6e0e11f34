#pragma once

#include "platform/host/Services.h"

namespace desktop {

/// The files compiled into the program: the interface resource under ":/", pictures under ":/images/". What a
/// picture shows is told by a text beside it: of ":/images/tree.jpg" it is ":/images/tree.txt".
class BundledResources final : public host::Resources {
 public:
  std::optional<std::string> text(const std::string& name) const override;
  /// A name without an ending stands for a drawing: "play" is ":/images/play.svg".
  std::optional<Picture> picture(const std::string& name) const override;
};

}  // namespace desktop
