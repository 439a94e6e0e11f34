#pragma once

#include "platform/uikit/UIViewController.h"

#include <memory>
#include <optional>
#include <string>

/// The interface resource: scenes with their views, connections and segues.
///
/// One `<scene class="..." [initial="true"] [preferredWidth preferredHeight]>` per screen; the two are the size, in
/// points, of a page sheet that is to be smaller than others. In it one element per view, named after its class
/// (`UIView`, `UIImageView`, `UILabel`, `UIButton`, `UISlider`, `UITableView`), nested as the views are. Attributes:
/// `id`; `outlet`; `tag`; `action`; `accessibilityLabel`; `hidden`; `clips`; `backgroundColor`, `textColor`,
/// `tintColor` ("#RRGGBB" or "#RRGGBBAA"); `text`; `title`; `image`; `contentMode` (fill, fit, fillCropped);
/// `fontSize`; `bold`; `alignment` (left, center, right); `cornerRadius`; `minimum`, `maximum`, `value`, `step`;
/// `rowHeight`; `emptyText` (what a table shows when it has no rows); `dataSource` and `delegate` (only
/// "controller"). Position: `left`, `right`, `width`, `centerX`,
/// `top`, `bottom`, `height`, `centerY`, each a fraction of the parent plus points ("50% - 16"); a child element
/// `<portrait .../>` or `<landscape .../>` replaces those that it names in that orientation. Besides views a scene
/// holds `<segue identifier destination presentation [waitsFor]/>` (destination is a scene's class, presentation
/// `pageSheet` or `fullScreen`; with `waitsFor="mediaLibrary"` the segue runs once the media library is prepared for
/// being listed) and
/// `<film number view overlay playPause close position volume/>`, which name views by their `id`.
///
/// The resource is part of the program: whatever is wrong in it stops the app.
class UIStoryboard final : public NSObject {
 public:
  /// Reads the resource called `name` ("Main" is "Main.storyboard.xml").
  static Strong<UIStoryboard> storyboardWithName(const std::string& name);

  /// Parses `text`; `name` is for messages.
  UIStoryboard(const std::string& name, const std::string& text);
  ~UIStoryboard() override;

  /// A new controller of the initial scene; its view is not loaded yet.
  Strong<UIViewController> instantiateInitialViewController();
  /// A new controller of the scene of that class; its view is not loaded yet.
  Strong<UIViewController> instantiateViewController(const std::string& sceneClass);

  /// What a segue waits for before it runs.
  enum class Condition { None, MediaLibraryPrepared };

  struct Segue {
    std::string destinationClass;
    UIModalPresentationStyle presentationStyle;
    Condition condition = Condition::None;
  };
  /// The segue of that scene; stops the app when there is none.
  Segue segue(const std::string& sceneClass, const std::string& identifier) const;

  /// Builds the views of the scene into `controller`'s root view and connects them.
  void buildView(const std::string& sceneClass, UIViewController& controller) const;

 private:
  struct Document;
  std::unique_ptr<Document> document_;
};

/// What a controller that comes from the interface resource is made from.
class NSCoder {
 public:
  NSCoder() = default;
  NSCoder(Strong<UIStoryboard> storyboard, std::string scene)
      : storyboard_(std::move(storyboard)), scene_(std::move(scene)) {}
  /// None for a coder made by a test.
  const Strong<UIStoryboard>& storyboard() const { return storyboard_; }
  const std::string& scene() const { return scene_; }

 private:
  Strong<UIStoryboard> storyboard_;
  std::string scene_;
};
