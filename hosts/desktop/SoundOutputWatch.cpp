#include "hosts/desktop/SoundOutputWatch.h"

#include <pulse/pulseaudio.h>

#include <cstdint>
#include <string_view>
#include <utility>

namespace desktop {

namespace {

/// Between attempts to find a server.
constexpr pa_usec_t patience = 5 * PA_USEC_PER_SEC;

struct MainLoopRelease {
  void operator()(pa_threaded_mainloop* loop) const { pa_threaded_mainloop_free(loop); }
};
struct ContextRelease {
  void operator()(pa_context* context) const {
    pa_context_set_state_callback(context, nullptr, nullptr);
    pa_context_set_subscribe_callback(context, nullptr, nullptr);
    pa_context_disconnect(context);
    pa_context_unref(context);
  }
};
using MainLoop = std::unique_ptr<pa_threaded_mainloop, MainLoopRelease>;
using Context = std::unique_ptr<pa_context, ContextRelease>;

/// What is asked goes on without its handle.
void letGo(pa_operation* operation) {
  if (operation) pa_operation_unref(operation);
}

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

std::optional<Audience> audienceOf(const pa_sink_port_info& port) {
  switch (port.type) {
    case PA_DEVICE_PORT_TYPE_HEADPHONES:
    case PA_DEVICE_PORT_TYPE_HEADSET:
    case PA_DEVICE_PORT_TYPE_EARPIECE:
    case PA_DEVICE_PORT_TYPE_HANDSET:
    case PA_DEVICE_PORT_TYPE_HANDSFREE:
      return Audience::Wearer;
    case PA_DEVICE_PORT_TYPE_SPEAKER:
    case PA_DEVICE_PORT_TYPE_HDMI:
    case PA_DEVICE_PORT_TYPE_TV:
    case PA_DEVICE_PORT_TYPE_CAR:
    case PA_DEVICE_PORT_TYPE_HIFI:
      return Audience::Room;
    default:
      break;
  }
  const std::string_view name = port.name;
  if (contains(name, "headphone") || contains(name, "headset")) return Audience::Wearer;
  if (contains(name, "speaker")) return Audience::Room;
  return std::nullopt;
}

/// From the port in use, or else from what the device says that it looks like (device.form_factor).
Audience audienceOf(const pa_sink_info& sink) {
  if (sink.active_port) {
    if (const auto audience = audienceOf(*sink.active_port)) return *audience;
  }
  const char* told = pa_proplist_gets(sink.proplist, PA_PROP_DEVICE_FORM_FACTOR);
  const std::string_view form = told ? told : "";
  for (const std::string_view worn : {"headphone", "headset", "hands-free", "handset"}) {
    if (form == worn) return Audience::Wearer;
  }
  for (const std::string_view stands : {"speaker", "tv", "car", "hifi", "internal"}) {
    if (form == stands) return Audience::Room;
  }
  return Audience::Unknown;
}

}  // namespace

/// Everything but construction and destruction runs on the thread of the main loop.
class SoundOutputWatch::Connection {
 public:
  Connection(Tell tell, std::string server)
      : tell_(std::move(tell)), server_(std::move(server)), loop_(pa_threaded_mainloop_new()) {
    if (!loop_) return;
    connect();
    pa_threaded_mainloop_start(loop_.get());
  }
  ~Connection() {
    if (!loop_) return;
    pa_threaded_mainloop_stop(loop_.get());
    context_.reset();
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

 private:
  void connect() {
    context_.reset(pa_context_new(pa_threaded_mainloop_get_api(loop_.get()), "Quillop"));
    asking_ = false;
    if (!context_) return;
    pa_context_set_state_callback(context_.get(), seeState, this);
    pa_context_set_subscribe_callback(context_.get(), seeEvent, this);
    const char* address = server_.empty() ? nullptr : server_.c_str();
    if (pa_context_connect(context_.get(), address, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) tryAgainLater();
  }

  void tryAgainLater() {
    if (waits_) return;
    waits_ = true;
    pa_mainloop_api* api = pa_threaded_mainloop_get_api(loop_.get());
    timeval time{};
    pa_timeval_add(pa_gettimeofday(&time), patience);
    const auto tryAgain = [](pa_mainloop_api* loop, pa_time_event* event, const timeval*, void* connection) {
      loop->time_free(event);
      auto& self = *static_cast<Connection*>(connection);
      self.waits_ = false;
      self.connect();
    };
    api->time_new(api, &time, tryAgain, this);
  }

  static void seeState(pa_context* context, void* connection) {
    auto& self = *static_cast<Connection*>(connection);
    const auto state = pa_context_get_state(context);
    if (state == PA_CONTEXT_READY) {
      const auto kinds = static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SERVER);
      letGo(pa_context_subscribe(context, kinds, nullptr, nullptr));
      self.ask();
    } else if (!PA_CONTEXT_IS_GOOD(state)) {
      if (self.told_) self.tell(std::nullopt, Passing::Lost);
      self.index_ = PA_INVALID_INDEX;
      self.vanished_ = false;
      self.tryAgainLater();
    }
  }

  static void seeEvent(pa_context*, pa_subscription_event_type_t event, std::uint32_t index, void* connection) {
    auto& self = *static_cast<Connection*>(connection);
    const bool isSink = (event & PA_SUBSCRIPTION_EVENT_FACILITY_MASK) == PA_SUBSCRIPTION_EVENT_SINK;
    const bool isRemoved = (event & PA_SUBSCRIPTION_EVENT_TYPE_MASK) == PA_SUBSCRIPTION_EVENT_REMOVE;
    if (isSink && isRemoved && index == self.index_) self.vanished_ = true;
    self.ask();
  }

  /// One question at a time; what changes meanwhile is asked for once the answer is there.
  void ask() {
    asksAgain_ = asking_;
    if (asking_) return;
    asking_ = true;
    letGo(pa_context_get_server_info(context_.get(), hearServer, this));
  }

  static void hearServer(pa_context* context, const pa_server_info* server, void* connection) {
    auto& self = *static_cast<Connection*>(connection);
    if (server && server->default_sink_name) {
      letGo(pa_context_get_sink_info_by_name(context, server->default_sink_name, hearSink, connection));
    } else {
      self.answered(std::nullopt, PA_INVALID_INDEX);
    }
  }

  static void hearSink(pa_context*, const pa_sink_info* sink, int end, void* connection) {
    auto& self = *static_cast<Connection*>(connection);
    if (sink) {
      self.found_ = {{sink->name, audienceOf(*sink), sink->sample_spec.channels}, sink->index};
    } else if (end != 0) {
      const auto found = std::exchange(self.found_, std::nullopt);
      self.answered(found ? std::optional(found->first) : std::nullopt, found ? found->second : PA_INVALID_INDEX);
    }
  }

  void answered(const std::optional<SoundOutput>& output, std::uint32_t index) {
    asking_ = false;
    index_ = index;
    const bool vanished = std::exchange(vanished_, false);
    if (vanished || !knows_ || output != told_) tell(output, vanished ? Passing::Vanished : Passing::Changed);
    if (asksAgain_) ask();
  }

  void tell(const std::optional<SoundOutput>& output, Passing passing) {
    knows_ = passing != Passing::Lost;
    told_ = output;
    tell_(output, passing);
  }

  Tell tell_;
  std::string server_;
  MainLoop loop_;
  Context context_;
  bool waits_ = false;
  bool asking_ = false;
  bool asksAgain_ = false;
  std::optional<std::pair<SoundOutput, std::uint32_t>> found_;
  std::uint32_t index_ = PA_INVALID_INDEX;  ///< of the device that was told last
  bool vanished_ = false;
  bool knows_ = false;
  std::optional<SoundOutput> told_;
};

SoundOutputWatch::SoundOutputWatch(Tell tell, const std::string& server)
    : connection_(std::make_unique<Connection>(std::move(tell), server)) {}

SoundOutputWatch::~SoundOutputWatch() = default;

}  // namespace desktop
