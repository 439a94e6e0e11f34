#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace host {

/// Where console lines go.
class Console {
 public:
  virtual ~Console() = default;
  /// Writes `line` and a line feed and flushes. Never fails.
  virtual void writeLine(std::string_view line) = 0;
};

/// The stored user defaults.
class Defaults {
 public:
  using Value = std::variant<std::string, double>;

  virtual ~Defaults() = default;
  virtual std::optional<Value> value(const std::string& key) const = 0;
  /// Stores `value`, or removes the key where there is none. On return it is on disk, or the failure was logged
  /// to standard error and the value holds for this run.
  virtual void setValue(const std::string& key, const std::optional<Value>& value) = 0;
};

/// Files that come with the app.
class Resources {
 public:
  struct Picture {
    std::string source;  ///< how the screen host finds it again, for example "qrc:/images/play.svg"
    double width = 0;    ///< natural size in points
    double height = 0;
    std::string description;  ///< what it shows, for those who do not see it; empty for one that only decorates
  };

  virtual ~Resources() = default;
  /// The contents of the file called `name`, or none.
  virtual std::optional<std::string> text(const std::string& name) const = 0;
  /// The picture called `name` (with or without its ending), or none.
  virtual std::optional<Picture> picture(const std::string& name) const = 0;
};

/// The rest of the desktop.
class Desktop {
 public:
  virtual ~Desktop() = default;
  /// Opens `url` outside the app, in what the user has set up for it; false when nothing takes it.
  virtual bool open(const std::string& url) = 0;
};

/// The device's display. Main thread.
class Display {
 public:
  virtual ~Display() = default;
  /// Whether the display is to stay lit while nobody touches it. Told at each change only; at first it is not. Never
  /// waits, and does nothing where the desktop cannot be asked.
  virtual void keepAwake(bool awake) = 0;
};

}  // namespace host
