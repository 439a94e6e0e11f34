#pragma once

#include "platform/avfoundation/AVPlayer.h"
#include "platform/coreanimation/CALayer.h"

/// What an `AVPlayerLayer` shows its picture in: opaque black over the whole layer, the picture fitted into it.
class AVPlayerContentLayer final : public CALayer {
 public:
  explicit AVPlayerContentLayer(std::shared_ptr<host::PictureStream> pictures) : pictures_(std::move(pictures)) {}
  const std::shared_ptr<host::PictureStream>& pictures() const { return pictures_; }

 private:
  std::shared_ptr<host::PictureStream> pictures_;
};

/// Shows the pictures of a player. It always reports a list of sublayers: one content layer at first, an empty list
/// once that was removed. Removing it ends the picture for good: the layer lets go of the player and holds no
/// picture any more.
class AVPlayerLayer : public CALayer {
 public:
  static Strong<AVPlayerLayer> playerLayerWithPlayer(const Strong<AVPlayer>& player);
  explicit AVPlayerLayer(Strong<AVPlayer> player) : player_(std::move(player)) {}

  /// None once the content layer was removed.
  const Strong<AVPlayer>& player() const { return player_; }
  void setFrame(CGRect frame) override;
  std::optional<std::vector<Strong<CALayer>>> sublayers() const override { return children(); }

 protected:
  void didRemoveSublayer() override;

 private:
  Strong<CALayer> content() const;

  Strong<AVPlayer> player_;
};
