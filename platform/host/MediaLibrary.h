#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace host {

/// Numbers as `MPMediaLibrary` knows them.
enum class LibraryAccess { NotDetermined = 0, Denied = 1, Restricted = 2, Authorised = 3 };

struct LibraryItem {
  std::string url;                   ///< absolute `file:` URL
  std::optional<std::string> title;  ///< UTF-8
  double duration = 0.0;             ///< seconds
  /// How the screen host finds the picture again, at any size; the pixels may be made when they are asked for.
  std::string artworkSource;
};

/// The answer to one query: it does not change any more, whatever happens to the library.
class LibraryItems {
 public:
  virtual ~LibraryItems() = default;
  virtual std::size_t count() const = 0;
  virtual LibraryItem item(std::size_t index) const = 0;
};

/// The answer where there is nothing.
class NoItems final : public LibraryItems {
 public:
  std::size_t count() const override { return 0; }
  LibraryItem item(std::size_t /*index*/) const override { return {}; }
};

/// The device's media library. Main thread.
class MediaLibrary {
 public:
  virtual ~MediaLibrary() = default;
  virtual LibraryAccess access() const = 0;
  /// Asks the user where that is still open, and answers with the access that holds then: on the main thread, in
  /// a later turn, never from within this call.
  virtual void requestAccess(std::function<void(LibraryAccess)> answer) = 0;
  /// To be asked before a list of the library is shown. Calls `ready` exactly once: with true when a list shown now
  /// would be right, or where waiting any longer would tell no more; with false when the person did not want to wait.
  /// Either from within this call, or later, on the main thread and in a turn of its own. A library that makes the
  /// person wait shows how far it is, and how to go on without waiting. Without access the answer is true: there is
  /// nothing to wait for.
  virtual void prepare(std::function<void(bool isReady)> ready) = 0;
  /// Every item whose media kind is `mediaType` (the container's own tag; a home video, 8192, without one), in
  /// the library's order: title by the user's collation with numbers by value, then path. Only what has a
  /// duration, a picture and an address is an item. None when the library cannot be queried at all.
  virtual std::shared_ptr<const LibraryItems> items(std::uint64_t mediaType) = 0;
};

}  // namespace host
