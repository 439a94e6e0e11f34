#pragma once

#include "platform/uikit/UIViewController.h"

#include <optional>
#include <string>

/// A way from one screen to another, on its way.
class UIStoryboardSegue final : public NSObject {
 public:
  UIStoryboardSegue(std::optional<std::string> identifier, Strong<UIViewController> source,
                    Strong<UIViewController> destination)
      : identifier_(std::move(identifier)), source_(std::move(source)), destination_(std::move(destination)) {}

  const std::optional<std::string>& identifier() const { return identifier_; }
  const Strong<UIViewController>& sourceViewController() const { return source_; }
  const Strong<UIViewController>& destinationViewController() const { return destination_; }

 private:
  std::optional<std::string> identifier_;
  Strong<UIViewController> source_;
  Strong<UIViewController> destination_;
};
