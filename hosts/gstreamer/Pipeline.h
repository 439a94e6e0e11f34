#pragma once

#include "hosts/gstreamer/Branch.h"
#include "hosts/gstreamer/ContainerClock.h"
#include "hosts/gstreamer/Decoders.h"
#include "hosts/gstreamer/Instant.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace gstreamer {

enum class Precision {
  Exact,
  /// What comes last before the position, where nothing comes from there on: a film's picture may be shorter than its
  /// sound. Takes many attempts, and does not tell damage from the end.
  ExactOrLast,
  KeyFrame
};

/// Why a pipeline plays no more.
struct Trouble {
  enum class Where { Media, HardwareDecoder, Sink };
  Where where = Where::Media;
  std::string reason;
  /// A thread of the pipeline does not come back, so that closing it may last for ever.
  bool isStuck = false;
};

/// One GStreamer pipeline: a file, the parser, the decoder of the one stream that is wanted, and its branch. Nothing
/// else of the file is decoded.
///
/// Its operations may block for as long as a disk or a sound server likes, so a thread of its own calls them; what
/// may be called on any thread says so. It runs on the system clock with a base time that it is given, and never
/// computes one by itself.
class Pipeline {
 public:
  /// Tells seeks to where somebody wants to be from those to where somebody wanted to be.
  using Round = std::uint64_t;

  struct Setup {
    std::string path;
    std::unique_ptr<Branch> branch;
    Hardware hardware = Hardware::Preferred;
    std::ptrdiff_t streams = 1;    ///< that the file has of the branch's kind
    double decoderPatience = 0.0;  ///< seconds; see `Options`
    std::function<void(const std::string& factory)> tellElement;
    /// Called on any thread when there is `trouble`, or when the end of the stream was reached while running.
    std::function<void()> troubled;
    std::function<void()> drained;
    /// Called on any thread when the sink was told to stand still by whoever is behind it.
    std::function<void()> sinkTaken;
  };

  explicit Pipeline(Setup setup);
  /// `close` must have been called, or nothing else ever.
  ~Pipeline();
  Pipeline(const Pipeline&) = delete;
  Pipeline& operator=(const Pipeline&) = delete;

  /// Gets everything ready at `position`; where another round than `round` has begun, somewhere. False when there is
  /// trouble, or after `interrupt`.
  bool open(double position, Precision precision, Round round);
  /// Brings a pipeline that stands still to `position`. Where only a key frame is wanted, the pipeline is ready for
  /// nothing but another seek afterwards. So it is where another round has begun; this returns early then, with true.
  bool seek(double position, Precision precision, Round round);
  /// Runs so that `position` is played at `instant`, which may have passed: then what is late is left out.
  void run(double position, Instant instant);
  void pause();
  void close();

  /// Makes operations that wait return at once, from now on, and nothing come out any more. Any thread, until closed.
  void interrupt();
  /// The decoder is to do something from now on, or just did. Any thread.
  void noteDecoder() { decoderMoved_ = now(); }
  /// Makes it trouble if a hardware decoder is stuck, which is to do something. Any thread, until closed.
  void judgeDecoder();
  /// The round of seeks that is on. Any thread.
  Round round() const { return round_; }
  /// Begins another round: somewhere else is wanted by now, and seeks of the rounds before need not arrive. Any
  /// thread.
  void outdateSeeks() { ++round_; }
  /// The same for seeks to key frames, which otherwise arrive in every round. Any thread.
  void outdatePreviews() { ++previewRound_; }
  bool usesHardware() const { return usesHardware_; }
  /// A hardware decoder was chosen, and has not given anything yet. Any thread.
  bool waitsForHardware() const { return usesHardware_ && !hasDecoded_; }
  /// Any thread.
  std::optional<Trouble> trouble() const;
  /// Nothing came before the end of the stream since the pipeline was opened, or sought; once that is done.
  bool isEmpty() const { return isEmpty_ || !setup_.branch->hasStill(); }
  /// The file is larger than it was when the pipeline was made. May block.
  bool hasGrown() const;

  /// Null until opened, and once closed.
  Branch* branch() const { return setup_.branch.get(); }

 private:
  bool build();
  bool addSource();
  bool moveTo(double position, Precision precision, Round round);
  bool jumpTo(double position, double runUp, Precision precision, Round round);
  void expectStill(double position, bool isNear);
  bool beginsTooLate() const;
  bool moveToLast(double position, Round round);
  void fail(Trouble trouble);
  void fail(Trouble::Where where, std::string reason) { fail({where, std::move(reason)}); }
  bool settle() { return settle(round_, std::nullopt); }
  /// Or until another round than `round` is on.
  bool settle(const std::atomic<Round>& on, std::optional<Round> round);
  void failToPrepare();
  void waitUntil(Instant instant) const;

  static GstBusSyncReply seeMessage(GstBus* bus, GstMessage* message, gpointer pipeline);
  void seeError(GstMessage& message);
  void seeRequest(GstMessage& message) const;
  static void seeElement(GstBin* pipeline, GstBin* bin, GstElement* element, gpointer self);
  static void seePad(GstElement* parser, GstPad* pad, gpointer pipeline);
  static void seeUnknownType(GstElement* parser, GstPad* pad, GstCaps* caps, gpointer pipeline);
  static void seeNoMorePads(GstElement* parser, gpointer pipeline);
  static gboolean goesOn(GstElement* parser, GstPad* pad, GstCaps* caps, gpointer pipeline);
  static GstPadProbeReturn attachWhenDescribed(GstPad* pad, GstPadProbeInfo* info, gpointer pipeline);
  static GstPadProbeReturn dropUntilAttached(GstPad* pad, GstPadProbeInfo* info, gpointer pipeline);
  void attach(GstPad& pad, const GstCaps& caps);
  void failToAttach(const GstCaps& caps, bool hasDecoder);
  bool canPlay(const GstCaps& caps) const;
  void passOver(const GstCaps& caps);
  void watchData();
  void watchDecoder(GstElement& decoder);
  static GstPadProbeReturn seeDecoderTake(GstPad* pad, GstPadProbeInfo* info, gpointer pipeline);
  static GstPadProbeReturn seeData(GstPad* pad, GstPadProbeInfo* info, gpointer pipeline);
  bool attachThrough(const std::string& decoder, GstPad& pad, const GstCaps& caps);
  Pad readAhead(GstPad& pad);
  GstBin& bin() const { return *GST_BIN(pipeline_.get()); }

  Setup setup_;
  std::uintmax_t sizeWhenMade_ = 0;  ///< bytes
  Element pipeline_;
  double standsAt_ = 0.0;
  /// Whether the stream that is wanted was found. Written and read by the threads of the parser.
  std::atomic<bool> attached_ = false;
  std::atomic<std::ptrdiff_t> passedOver_ = 0;  ///< so many streams of the kind that is wanted, without a decoder
  std::atomic<bool> interrupted_ = false;
  std::atomic<Round> round_ = 0, previewRound_ = 0;
  std::atomic<bool> hasData_ = false;
  /// Of the first data since the pipeline was opened, or sought.
  std::atomic<GstClockTime> dataSince_ = GST_CLOCK_TIME_NONE;
  ContainerClock clock_;
  std::atomic<bool> isEmpty_ = false;
  std::atomic<bool> isAtEnd_ = false;  ///< the end of the stream has been decoded
  std::atomic<bool> usesHardware_ = false;
  std::atomic<bool> hasDecoded_ = false;  ///< anything, since the pipeline was made
  /// When the decoder last took or gave something, or was expected to.
  std::atomic<Instant> decoderMoved_ = 0;
  mutable std::mutex mutex_;
  std::optional<Trouble> trouble_;
};

}  // namespace gstreamer
