#include "tests/support/Stage.h"

#include "app/AppDelegate.h"
#include "platform/foundation/ClassRegistry.h"
#include "platform/uikit/UIGestureRecognizer.h"

#include <gtest/gtest.h>

namespace {

host::LibraryItem item(const std::string& name, double seconds) {
  return {Stage::url(name + ".mp4"), name, seconds, "image://artwork/" + name};
}

}  // namespace

const Strong<AVAudioPlayer>& ViewControllerFields::audio(int film) const {
  return film == 1 ? screen.playerFilm1SinistraAudio : screen.playerFilm2DestraAudio;
}

const Strong<AVPlayer>& ViewControllerFields::video(int film) const {
  return film == 1 ? screen.playerFilm1SinistraVideo : screen.playerFilm2DestroVideo;
}

const Strong<NSTimer>& ViewControllerFields::progressTimer(int film) const {
  return film == 1 ? screen.timerVideo1 : screen.timerVideo2;
}

const Strong<AVPlayerLayer>& ViewControllerFields::layer(int film) const {
  return film == 1 ? screen.layer1 : screen.layer2;
}

const Strong<NSTimer>& ViewControllerFields::overlayTimer(int film) const {
  return film == 1 ? screen.timer1 : screen.timer2;
}

const Strong<PopTip>& ViewControllerFields::popTip() const {
  return screen.popTip;
}

void ViewControllerFields::clearAudio(int film) const {
  (film == 1 ? screen.playerFilm1SinistraAudio : screen.playerFilm2DestraAudio) = nullptr;
}

void ViewControllerFields::clearVideo(int film) const {
  (film == 1 ? screen.playerFilm1SinistraVideo : screen.playerFilm2DestroVideo) = nullptr;
}

void ViewControllerFields::clearLayer(int film) const {
  setLayer(film, nullptr);
}

void ViewControllerFields::setLayer(int film, Strong<AVPlayerLayer> layer) const {
  (film == 1 ? screen.layer1 : screen.layer2) = std::move(layer);
}

void ViewControllerFields::clearProgressTimer(int film) const {
  (film == 1 ? screen.timerVideo1 : screen.timerVideo2) = nullptr;
}

Stage::Stage(Run run) : platform_(std::make_unique<Platform>(host.ports())) {
  host.mediaLibrary.itemsByType[simulated::homeVideo] = {item("alba", 12.5), item("gatto", 3725.9), item("mare", 60)};
  if (run == LaterRun) host.defaults.values = {{"primoAvvio", std::string("2")}, {"primoAvvio2", std::string("2")}};
  if (run != NotLaunched) launch();
}

Stage::~Stage() {
  platform_.reset();
}

void Stage::launch() {
  UIApplication::sharedApplication()->launch(NSStringFromClass<AppDelegate>());
  advance(0);
  takeLines();
  takeCalls();
}

const Strong<UIWindow>& Stage::window() const {
  return UIApplication::sharedApplication()->delegate()->window();
}

ViewController& Stage::screen() const {
  return dynamic_cast<ViewController&>(*window()->rootViewController());
}

Strong<ListaVideo> Stage::list() const {
  return std::dynamic_pointer_cast<ListaVideo>(window()->topmostViewController());
}

Strong<UIAlertController> Stage::alert() const {
  return std::dynamic_pointer_cast<UIAlertController>(window()->topmostViewController());
}

std::string Stage::imageOf(const UIButton& button) {
  return button.imageForState(UIControlState::Normal)->name();
}

const Strong<UIView>& Stage::filmView(int film) const {
  return film == 1 ? screen().vistaFilm1 : screen().vistaFilm2;
}

const Strong<UIView>& Stage::overlay(int film) const {
  return film == 1 ? screen().vistaControlliFilm1 : screen().vistaControlliFilm2;
}

const Strong<UIButton>& Stage::playPause(int film) const {
  return film == 1 ? screen().bottonePlayPausaFilm1 : screen().bottonePlayPausaFilm2;
}

const Strong<UIButton>& Stage::close(int film) const {
  return film == 1 ? screen().bottoneChiudiFilm1 : screen().bottoneChiudiFilm2;
}

const Strong<UISlider>& Stage::position(int film) const {
  return film == 1 ? screen().progressSlider1 : screen().progressSlider2;
}

const Strong<UISlider>& Stage::volume(int film) const {
  return film == 1 ? screen().volumeSlider1 : screen().volumeSlider2;
}

void Stage::event(const std::function<void()>& block) {
  {
    const RunLoop::Turn turn(RunLoop::main());
    block();
  }
  advance(0);
}

void Stage::tapFilm(int film) {
  event([&] { deliverTap(filmView(film), {filmView(film)->bounds().size.width / 2, 4}); });
}

void Stage::press(const Strong<UIButton>& button) {
  event([&] { button->press(); });
}

void Stage::pressChoose() {
  const auto button = std::dynamic_pointer_cast<UIButton>(screen().view()->viewWithTag(5));
  ASSERT_TRUE(button);
  press(button);
}

void Stage::openList() {
  pressChoose();
  advance(UIWindow::transitionDuration);
}

void Stage::choose(int film, long row) {
  const auto shown = list();
  ASSERT_TRUE(shown);
  event([&] { (film == 1 ? shown->tabella1 : shown->tabella2)->selectRow(row); });
}

void Stage::load(int film, const std::string& name) {
  event([&] { screen().passoVideo(NSURL::URLWithString(url(name)), film == 1); });
}

void Stage::send(void (ViewController::*action)(const Strong<UIControl>&), long tag) {
  const auto sender = make<UIButton>();
  sender->setTag(tag);
  event([&] { (screen().*action)(sender); });
}

void Stage::reportEnd(const std::string& player) {
  host.mainLoop.post(host.mediaEngine.player(player)->events.ended);
  advance(0);
}

void Stage::setPosition(const std::string& name, double seconds) {
  for (const auto* kind : {" audio", " video"}) host.mediaEngine.player(name + kind)->currentPosition = seconds;
}
