#include "tests/unit/uikit/WindowFixture.h"

#include "platform/foundation/ClassRegistry.h"

namespace {

const ClassRegistration delegateClass = registerClass<NotedDelegate>("NotedDelegate");
const ClassRegistration rootClass = registerClass<NotedScreen>("Root");
const ClassRegistration sheetClass = registerClass<NotedScreen>("Sheet");
const ClassRegistration fullClass = registerClass<NotedScreen>("Full");

constexpr const char* screens = R"(
<storyboard>
  <scene class="Root" initial="true">
    <UIView outlet="box" left="10" top="20" width="50%" height="100"/>
    <UIButton outlet="button" action="pressed:" left="0" top="200" width="100" height="44" tag="5"/>
    <UISlider outlet="slider" action="moved:" left="0" top="250" width="200" height="44" maximum="100"/>
    <UITableView outlet="table" dataSource="controller" delegate="controller" rowHeight="50"
                 right="0" width="200" top="0" height="200"/>
    <segue identifier="toSheet" destination="Sheet" presentation="pageSheet"/>
    <segue identifier="toListing" destination="Sheet" presentation="pageSheet" waitsFor="mediaLibrary"/>
    <segue identifier="toFull" destination="Full" presentation="fullScreen"/>
  </scene>
  <scene class="Sheet">
    <UIView outlet="box" left="0" right="0" top="0" bottom="0"/>
    <UIButton outlet="button" action="pressed:" left="0" top="0" width="100" height="44"/>
    <segue identifier="toFull" destination="Full" presentation="fullScreen"/>
    <segue identifier="toListing" destination="Full" presentation="fullScreen" waitsFor="mediaLibrary"/>
  </scene>
  <scene class="Full">
    <UIView outlet="box" left="0" right="0" top="0" bottom="0"/>
  </scene>
</storyboard>
)";

}  // namespace

void NotedScreen::viewDidLoad() {
  print(name + " did load");
  if (box) boxWhenLoaded = box->frame();
  layoutsWhenLoaded = layoutsBegun;
}

void NotedScreen::willTransitionToTraitCollection_withTransitionCoordinator(
    const UITraitCollection& newCollection, UIViewControllerTransitionCoordinator& /*coordinator*/) {
  print(name + " new traits");
  traits = newCollection;
}

void NotedScreen::prepareForSegue_sender(const Strong<UIStoryboardSegue>& segue, const Strong<NSObject>& /*sender*/) {
  print(name + " prepares " + segue->identifier().value_or("no segue"));
  if (preparing) preparing(*segue);
}

InterfaceTable NotedScreen::interfaceTable() {
  return InterfaceTable()
      .outlet("box", box)
      .outlet("label", label)
      .outlet("button", button)
      .outlet("slider", slider)
      .outlet("table", table)
      .action("pressed:", this, &NotedScreen::pressed)
      .action("moved:", this, &NotedScreen::moved);
}

long NotedScreen::tableView_numberOfRowsInSection(const Strong<UITableView>& /*tableView*/, long section) {
  print(name + " counts section " + std::to_string(section));
  return rows;
}

Strong<UITableViewCell> NotedScreen::tableView_cellForRowAtIndexPath(const Strong<UITableView>& tableView,
                                                                     NSIndexPath indexPath) {
  print(name + " row " + std::to_string(indexPath.row));
  if (!givesCells) return nullptr;
  auto cell = tableView->dequeueReusableCellWithIdentifier("cell");
  if (!cell) {
    ++cellsMade;
    cell = make<UITableViewCell>(UITableViewCellStyle::Subtitle, "cell");
  }
  cell->textLabel()->setText(std::to_string(indexPath.row));
  return cell;
}

void NotedScreen::tableView_didSelectRowAtIndexPath(const Strong<UITableView>& /*tableView*/, NSIndexPath indexPath) {
  print(name + " selected " + std::to_string(indexPath.row));
}

void NotedScreen::pressed(const Strong<UIControl>& sender) {
  print(name + " pressed " + std::to_string(sender->tag()));
}

void NotedScreen::moved(const Strong<UIControl>& sender) {
  print(name + " moved to " + textOf(dynamic_cast<const UISlider&>(*sender).value()));
}

bool NotedDelegate::application_didFinishLaunchingWithOptions(const Strong<UIApplication>& /*application*/,
                                                              const LaunchOptions& /*options*/) {
  print("did finish launching");
  return true;
}

WindowFixture::WindowFixture() {
  setStoryboard(screens);
}

WindowFixture::~WindowFixture() {
  platform.reset();
}

void WindowFixture::launch() {
  UIApplication::sharedApplication()->launch(NSStringFromClass<NotedDelegate>());
  advance(0);
  takeLines();
}

void WindowFixture::event(const std::function<void()>& block) {
  {
    const RunLoop::Turn turn(RunLoop::main());
    block();
  }
  advance(0);
}

void WindowFixture::show(const std::string& segue) {
  event([&] { root().performSegueWithIdentifier_sender(segue, nullptr); });
  finishTransition();
  takeLines();
}
