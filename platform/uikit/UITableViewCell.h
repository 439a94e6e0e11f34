#pragma once

#include "platform/uikit/UIImageView.h"
#include "platform/uikit/UILabel.h"

#include <string>

enum class UITableViewCellStyle { Default = 0, Value1 = 1, Value2 = 2, Subtitle = 3 };

/// One row of a table. In the subtitle style: an image on the left, a main text, a detail text under it.
class UITableViewCell final : public UIView {
 public:
  /// The detail label exists in every style but the default one.
  UITableViewCell(UITableViewCellStyle style, std::string reuseIdentifier);

  const std::string& reuseIdentifier() const { return reuseIdentifier_; }
  const Strong<UIView>& contentView() const { return contentView_; }
  const Strong<UILabel>& textLabel() const { return textLabel_; }
  const Strong<UILabel>& detailTextLabel() const { return detailTextLabel_; }
  const Strong<UIImageView>& imageView() const { return imageView_; }

 private:
  std::string reuseIdentifier_;
  Strong<UIView> contentView_ = make<UIView>();
  Strong<UILabel> textLabel_ = make<UILabel>();
  Strong<UILabel> detailTextLabel_;
  Strong<UIImageView> imageView_ = make<UIImageView>();
};
