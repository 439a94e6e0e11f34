#include "platform/uikit/UIStoryboard.h"

#include "platform/Platform.h"
#include "platform/foundation/ClassRegistry.h"
#include "platform/uikit/UIButton.h"
#include "platform/uikit/UIImageView.h"
#include "platform/uikit/UILabel.h"
#include "platform/uikit/UISlider.h"
#include "platform/uikit/UITableView.h"

#include <pugixml.hpp>

#include <array>
#include <charconv>
#include <set>
#include <string_view>

namespace {

using pugi::xml_attribute;
using pugi::xml_node;

[[noreturn]] void stop(const std::string& reason) {
  fatalError("the interface resource: " + reason);
}

double number(const xml_attribute& attribute) {
  const std::string_view text = attribute.value();
  double value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  if (read.ec != std::errc{} || read.ptr != text.data() + text.size()) {
    stop(std::string(attribute.name()) + " is no number: " + std::string(text));
  }
  return value;
}

UIColor colour(const xml_attribute& attribute) {
  const std::string_view text = attribute.value();
  unsigned long value = 0;
  const auto read = std::from_chars(text.data() + (text.empty() ? 0 : 1), text.data() + text.size(), value, 16);
  const bool hasAlpha = text.size() == 9;
  if (read.ec != std::errc{} || read.ptr != text.data() + text.size() || text[0] != '#' ||
      (text.size() != 7 && !hasAlpha)) {
    stop(std::string(attribute.name()) + " is no colour: " + std::string(text));
  }
  if (!hasAlpha) value = (value << 8U) | 0xFFU;
  const auto component = [value](unsigned shift) { return static_cast<double>((value >> shift) & 0xFFU) / 255.0; };
  return {component(24), component(16), component(8), component(0)};
}

/// Where one name stands for one of several values.
template <class T, std::size_t Count>
T oneOf(const xml_attribute& attribute, const std::array<std::pair<std::string_view, T>, Count>& choices) {
  for (const auto& [name, value] : choices) {
    if (name == attribute.value()) return value;
  }
  stop(std::string(attribute.name()) + " has no value " + attribute.value());
}

constexpr std::array<std::pair<std::string_view, UIModalPresentationStyle>, 2> presentationStyles{{
    {"fullScreen", UIModalPresentationStyle::FullScreen},
    {"pageSheet", UIModalPresentationStyle::PageSheet},
}};
constexpr std::array<std::pair<std::string_view, UIStoryboard::Condition>, 1> conditions{{
    {"mediaLibrary", UIStoryboard::Condition::MediaLibraryPrepared},
}};
constexpr std::array<std::pair<std::string_view, UIViewContentMode>, 3> contentModes{{
    {"fill", UIViewContentMode::ScaleToFill},
    {"fit", UIViewContentMode::ScaleAspectFit},
    {"fillCropped", UIViewContentMode::ScaleAspectFill},
}};
constexpr std::array<std::pair<std::string_view, NSTextAlignment>, 3> alignments{{
    {"left", NSTextAlignment::Left},
    {"center", NSTextAlignment::Center},
    {"right", NSTextAlignment::Right},
}};

Strong<UIImage> image(const xml_attribute& attribute) {
  auto found = UIImage::imageNamed(attribute.value());
  if (!found) stop(std::string("there is no image ") + attribute.value());
  return found;
}

void readLength(const xml_node& node, const char* name, std::optional<LayoutLength>& length) {
  const auto attribute = node.attribute(name);
  if (!attribute) return;
  length = LayoutLength::parse(attribute.value());
  if (!length) stop(std::string(name) + " is no length: " + attribute.value());
}

void readPlace(const xml_node& node, LayoutRule::Place& place) {
  readLength(node, "left", place.horizontal.start);
  readLength(node, "right", place.horizontal.end);
  readLength(node, "width", place.horizontal.extent);
  readLength(node, "centerX", place.horizontal.centre);
  readLength(node, "top", place.vertical.start);
  readLength(node, "bottom", place.vertical.end);
  readLength(node, "height", place.vertical.extent);
  readLength(node, "centerY", place.vertical.centre);
}

LayoutRule readLayout(const xml_node& node) {
  LayoutRule rule;
  readPlace(node, rule.portrait);
  rule.landscape = rule.portrait;
  readPlace(node.child("portrait"), rule.portrait);
  readPlace(node.child("landscape"), rule.landscape);
  return rule;
}

Strong<UIView> makeView(const std::string& className) {
  if (className == "UIView") return make<UIView>();
  if (className == "UIImageView") return make<UIImageView>();
  if (className == "UILabel") return make<UILabel>();
  if (className == "UIButton") return make<UIButton>();
  if (className == "UISlider") return make<UISlider>();
  if (className == "UITableView") return make<UITableView>();
  stop("there is no view class " + className);
}

/// Builds the views of one scene.
class SceneBuilder {
 public:
  SceneBuilder(UIViewController& controller, std::vector<FilmControls>& films)
      : controller_(controller), table_(controller.interfaceTable()), films_(films) {}

  void build(const xml_node& scene) {
    applyViewAttributes(scene, *controller_.view());
    buildChildren(scene, controller_.view());
    for (const auto& film : scene.children("film")) films_.push_back(readFilm(film));
  }

 private:
  void buildChildren(const xml_node& parent, const Strong<UIView>& into) {
    static const std::set<std::string_view> otherElements{"film", "segue", "portrait", "landscape"};
    for (const auto& node : parent.children()) {
      if (node.type() != pugi::node_element || otherElements.contains(node.name())) continue;
      const auto view = makeView(node.name());
      view->setLayoutRule(readLayout(node));
      applyViewAttributes(node, *view);
      applyClassAttributes(node, view);
      connect(node, view);
      into->addSubview(view);
      buildChildren(node, view);
    }
  }

  static void applyViewAttributes(const xml_node& node, UIView& view) {
    if (const auto value = node.attribute("tag")) view.setTag(static_cast<long>(number(value)));
    if (const auto value = node.attribute("hidden")) view.setHidden(value.as_bool());
    if (const auto value = node.attribute("clips")) view.setClipsToBounds(value.as_bool());
    if (const auto value = node.attribute("backgroundColor")) view.setBackgroundColor(colour(value));
    if (const auto value = node.attribute("cornerRadius")) view.layer()->setCornerRadius(number(value));
    if (const auto value = node.attribute("contentMode")) view.setContentMode(oneOf(value, contentModes));
    if (const auto value = node.attribute("accessibilityLabel")) view.setAccessibilityLabel(value.value());
  }

  void applyClassAttributes(const xml_node& node, const Strong<UIView>& view) {
    if (auto* imageView = dynamic_cast<UIImageView*>(view.get())) {
      if (const auto value = node.attribute("image")) imageView->setImage(image(value));
    } else if (auto* label = dynamic_cast<UILabel*>(view.get())) {
      apply(node, *label);
    } else if (auto* button = dynamic_cast<UIButton*>(view.get())) {
      apply(node, *button);
    } else if (auto* slider = dynamic_cast<UISlider*>(view.get())) {
      apply(node, *slider);
    } else if (auto* table = dynamic_cast<UITableView*>(view.get())) {
      apply(node, *table);
    }
  }

  static void apply(const xml_node& node, UILabel& label) {
    if (const auto value = node.attribute("text")) label.setText(value.value());
    if (const auto value = node.attribute("textColor")) label.setTextColor(colour(value));
    if (const auto value = node.attribute("fontSize")) label.setFontSize(number(value));
    if (const auto value = node.attribute("bold")) label.setBold(value.as_bool());
    if (const auto value = node.attribute("alignment")) label.setTextAlignment(oneOf(value, alignments));
  }

  static void apply(const xml_node& node, UIButton& button) {
    constexpr auto normal = UIControlState::Normal;
    if (const auto value = node.attribute("title")) button.setTitle_forState(value.value(), normal);
    if (const auto value = node.attribute("textColor")) button.setTitleColor_forState(colour(value), normal);
    if (const auto value = node.attribute("image")) button.setImage_forState(image(value), normal);
  }

  static void apply(const xml_node& node, UISlider& slider) {
    const auto single = [](const xml_attribute& value) { return static_cast<float>(number(value)); };
    if (const auto value = node.attribute("minimum")) slider.setMinimumValue(single(value));
    if (const auto value = node.attribute("maximum")) slider.setMaximumValue(single(value));
    if (const auto value = node.attribute("value")) slider.setValue(single(value));
    if (const auto value = node.attribute("step")) slider.setStep(single(value));
    if (const auto value = node.attribute("tintColor")) slider.setTintColor(colour(value));
  }

  void apply(const xml_node& node, UITableView& table) {
    const auto controller = strongReference(&controller_);
    if (const auto value = node.attribute("rowHeight")) table.setRowHeight(number(value));
    if (const auto value = node.attribute("tintColor")) table.setTintColor(colour(value));
    if (const auto value = node.attribute("emptyText")) table.setEmptyText(value.value());
    if (node.attribute("dataSource")) {
      table.setDataSource(adopted<UITableViewDataSource>(controller, "a table's data source"));
    }
    if (node.attribute("delegate")) {
      table.setDelegate(adopted<UITableViewDelegate>(controller, "a table's delegate"));
    }
  }

  template <class Protocol>
  static Strong<Protocol> adopted(const Strong<UIViewController>& controller, const std::string& role) {
    auto adopter = std::dynamic_pointer_cast<Protocol>(controller);
    if (!adopter) stop("the controller cannot be " + role);
    return adopter;
  }

  void connect(const xml_node& node, const Strong<UIView>& view) {
    if (const auto id = node.attribute("id")) byId_[id.value()] = view;
    if (const auto outlet = node.attribute("outlet")) table_.connect(outlet.value(), view);
    const auto action = node.attribute("action");
    if (!action) return;
    auto* control = dynamic_cast<UIControl*>(view.get());
    if (control == nullptr) stop(std::string("an action of something that is no control: ") + action.value());
    const bool isSlider = dynamic_cast<UISlider*>(control) != nullptr;
    control->addAction(strongReference(&controller_), table_.actionNamed(action.value()),
                       isSlider ? UIControlEvents::ValueChanged : UIControlEvents::TouchUpInside);
  }

  FilmControls readFilm(const xml_node& node) const {
    FilmControls film;
    film.number = static_cast<long>(number(node.attribute("number")));
    film.view = named<UIView>(node, "view");
    film.overlay = named<UIView>(node, "overlay");
    film.playPause = named<UIButton>(node, "playPause");
    film.close = named<UIButton>(node, "close");
    film.position = named<UISlider>(node, "position");
    film.volume = named<UISlider>(node, "volume");
    return film;
  }

  template <class View>
  Strong<View> named(const xml_node& film, const char* role) const {
    const auto found = byId_.find(film.attribute(role).value());
    auto view = found == byId_.end() ? nullptr : std::dynamic_pointer_cast<View>(found->second);
    if (!view) stop(std::string("a film's ") + role + " is missing");
    return view;
  }

  UIViewController& controller_;
  InterfaceTable table_;
  std::vector<FilmControls>& films_;
  std::map<std::string, Strong<UIView>> byId_;
};

}  // namespace

struct UIStoryboard::Document {
  pugi::xml_document xml;

  xml_node scene(const std::string& sceneClass) const {
    const auto found = xml.document_element().find_child_by_attribute("scene", "class", sceneClass.c_str());
    if (!found) stop("there is no scene " + sceneClass);
    return found;
  }
};

Strong<UIStoryboard> UIStoryboard::storyboardWithName(const std::string& name) {
  const auto text = Platform::current().ports().resources.text(name + ".storyboard.xml");
  if (!text) stop("there is none called " + name);
  return make<UIStoryboard>(name, *text);
}

UIStoryboard::UIStoryboard(const std::string& name, const std::string& text)
    : document_(std::make_unique<Document>()) {
  const auto result = document_->xml.load_buffer(text.data(), text.size());
  if (!result) stop(name + ": " + result.description() + " at byte " + std::to_string(result.offset));
}

UIStoryboard::~UIStoryboard() = default;

Strong<UIViewController> UIStoryboard::instantiateInitialViewController() {
  const auto initial = document_->xml.document_element().find_child_by_attribute("scene", "initial", "true");
  if (!initial) stop("no scene is the initial one");
  return instantiateViewController(initial.attribute("class").value());
}

Strong<UIViewController> UIStoryboard::instantiateViewController(const std::string& sceneClass) {
  const auto scene = document_->scene(sceneClass);
  const NSCoder coder(strongReference(this), scene.attribute("class").value());
  auto controller = std::dynamic_pointer_cast<UIViewController>(ClassRegistry::create(sceneClass, coder));
  if (!controller) stop(sceneClass + " is no view controller");
  if (const auto width = scene.attribute("preferredWidth"))
    controller->setPreferredContentSize({number(width), number(scene.attribute("preferredHeight"))});
  return controller;
}

UIStoryboard::Segue UIStoryboard::segue(const std::string& sceneClass, const std::string& identifier) const {
  const auto found = document_->scene(sceneClass).find_child_by_attribute("segue", "identifier", identifier.c_str());
  if (!found) stop("there is no segue " + identifier);
  const auto waitsFor = found.attribute("waitsFor");
  return {found.attribute("destination").value(), oneOf(found.attribute("presentation"), presentationStyles),
          waitsFor ? oneOf(waitsFor, conditions) : Condition::None};
}

void UIStoryboard::buildView(const std::string& sceneClass, UIViewController& controller) const {
  SceneBuilder(controller, controller.films_).build(document_->scene(sceneClass));
}
