#pragma once

#include "platform/avfoundation/AVAsset.h"
#include "platform/avfoundation/AVAudioMix.h"

#include <functional>
#include <memory>
#include <vector>

class Wakefulness;

/// Posted by an item when it was played to its end.
inline constexpr const char* AVPlayerItemDidPlayToEndTimeNotification = "AVPlayerItemDidPlayToEndTimeNotification";

enum class AVPlayerActionAtItemEnd { Advance = 0, Pause = 1, None = 2 };

/// A medium as a player plays it.
class AVPlayerItem final : public NSObject {
 public:
  explicit AVPlayerItem(const Strong<NSURL>& url) : asset_(make<AVAsset>(url)) {}

  const Strong<AVAsset>& asset() const { return asset_; }
  const Strong<AVMutableAudioMix>& audioMix() const { return audioMix_; }
  /// The player that plays the item does not decode the tracks that the mix silences. None silences nothing.
  void setAudioMix(Strong<AVMutableAudioMix> mix);

 private:
  friend class AVPlayer;

  Strong<AVAsset> asset_;
  Strong<AVMutableAudioMix> audioMix_;
  std::function<void()> audioMixChanged_;
};

/// Plays the pictures of one item. Main thread only.
///
/// After the end of the item the last picture stays where the action at item end is `None`. What an engine still had
/// to say when the player was released is dropped.
class AVPlayer final : public NSObject {
 public:
  static Strong<AVPlayer> playerWithURL(const Strong<NSURL>& url);
  explicit AVPlayer(const Strong<NSURL>& url);
  ~AVPlayer() override;

  const Strong<AVPlayerItem>& currentItem() const { return currentItem_; }
  AVPlayerActionAtItemEnd actionAtItemEnd() const { return actionAtItemEnd_; }
  void setActionAtItemEnd(AVPlayerActionAtItemEnd action) { actionAtItemEnd_ = action; }

  /// From here until `pause`, the end of the item, its failure or the player's release the display stays lit.
  void play();
  void pause();
  void seekToTime(CMTime time);
  /// Asked of the engine each time; the target while a seek is under way.
  CMTime currentTime() const;

  /// The pictures, for the layer that shows them.
  std::shared_ptr<host::PictureStream> pictures() const;

 private:
  void open();
  void didReachEnd();
  std::vector<int> silencedTracks() const;

  Strong<AVPlayerItem> currentItem_;
  std::unique_ptr<host::PicturePlayer> engine_;
  Strong<Wakefulness> wakefulness_;  ///< held while playing
  AVPlayerActionAtItemEnd actionAtItemEnd_ = AVPlayerActionAtItemEnd::Pause;
};
