#pragma once

#include <QRect>
#include <QString>

#include <optional>

namespace desktop {

/// Where the window was, and how big, when the app last ended. Kept apart from the user defaults.
class WindowPlace final {
 public:
  struct Place {
    QRect geometry;
    bool fullScreen = false;
  };

  explicit WindowPlace(QString path) : path_(std::move(path)) {}

  /// None when nothing was remembered, or nothing sensible.
  std::optional<Place> remembered() const;
  void remember(const Place& place) const;

 private:
  QString path_;
};

}  // namespace desktop
