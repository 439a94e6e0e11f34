#include "platform/foundation/NSNotificationCenter.h"

#include "platform/foundation/Console.h"
#include "platform/foundation/Values.h"
#include "tests/unit/foundation/BarePlatform.h"

#include <gmock/gmock.h>

#include <new>

using testing::ElementsAre;

namespace {

class Observer final : public NSObject {
 public:
  explicit Observer(std::string name) : name_(std::move(name)) {}
  void heard() { print(name_); }
  void heardAndRegistersAgain() {
    print(name_);
    NSNotificationCenter::defaultCenter().addObserver_selector_name_object(strongReference(this), &Observer::heard,
                                                                           "event", nullptr);
  }

 private:
  std::string name_;
};

/// Room for one object after another at the same address.
class OnePlace {
 public:
  Strong<NSObject> occupy() {
    return {new (&room_) NSString("object"), [](NSString* text) { text->~NSString(); }};
  }

 private:
  alignas(NSString) std::byte room_[sizeof(NSString)];
};

class NSNotificationCenterTest : public BarePlatform {
 protected:
  void observe(const Strong<Observer>& who, const Strong<NSObject>& sender) {
    center.addObserver_selector_name_object(who, &Observer::heard, "event", sender);
  }

  NSNotificationCenter& center = NSNotificationCenter::defaultCenter();
  const Strong<Observer> observer = make<Observer>("heard");
  const Strong<NSObject> object = make<NSString>("object");
};

TEST_F(NSNotificationCenterTest, TellsOfThatNameAndThatObjectOnly) {
  observe(observer, object);
  center.postNotificationName_object("another event", object);
  center.postNotificationName_object("event", make<NSString>("object"));
  center.postNotificationName_object("event", nullptr);
  EXPECT_THAT(takeLines(), ElementsAre());
  center.postNotificationName_object("event", object);
  EXPECT_THAT(takeLines(), ElementsAre("heard"));
}

TEST_F(NSNotificationCenterTest, WithoutAnObjectItTellsOfEveryOne) {
  observe(observer, nullptr);
  center.postNotificationName_object("event", object);
  center.postNotificationName_object("event", nullptr);
  EXPECT_THAT(takeLines(), ElementsAre("heard", "heard"));
}

TEST_F(NSNotificationCenterTest, TellsAtOnceInOrderOfRegistration) {
  const auto second = make<Observer>("second");
  observe(observer, object);
  observe(second, object);
  center.postNotificationName_object("event", object);
  EXPECT_THAT(takeLines(), ElementsAre("heard", "second"));
}

TEST_F(NSNotificationCenterTest, ARegistrationMadeTwiceIsToldTwice) {
  observe(observer, object);
  observe(observer, object);
  EXPECT_EQ(center.registrationsOf(*observer), 2U);
  center.postNotificationName_object("event", object);
  EXPECT_THAT(takeLines(), ElementsAre("heard", "heard"));
}

TEST_F(NSNotificationCenterTest, ARegistrationKeepsNeitherObserverNorObject) {
  auto goesAway = make<Observer>("gone");
  Strong<NSObject> itsObject = make<NSString>("gone too");
  const Weak<Observer> weakObserver = goesAway;
  const Weak<NSObject> weakObject = itsObject;
  observe(goesAway, itsObject);
  goesAway = nullptr;
  itsObject = nullptr;
  EXPECT_TRUE(weakObserver.expired());
  EXPECT_TRUE(weakObject.expired());
}

TEST_F(NSNotificationCenterTest, AnObserverThatHasGoneIsNotTold) {
  auto goesAway = make<Observer>("gone");
  observe(goesAway, object);
  observe(observer, object);
  goesAway = nullptr;
  center.postNotificationName_object("event", object);
  EXPECT_THAT(takeLines(), ElementsAre("heard"));
}

TEST_F(NSNotificationCenterTest, ANewObjectAtTheAddressOfADeadOneIsNotHeard) {
  OnePlace place;
  auto first = place.occupy();
  const auto* address = first.get();
  observe(observer, first);
  center.postNotificationName_object("event", first);
  ASSERT_THAT(takeLines(), ElementsAre("heard"));
  first = nullptr;
  const auto second = place.occupy();
  ASSERT_EQ(second.get(), address);
  center.postNotificationName_object("event", second);
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(NSNotificationCenterTest, ARegistrationForAnObjectThatHasGoneDoesNotHearPostsWithoutOne) {
  observe(observer, make<NSString>("gone at once"));
  center.postNotificationName_object("event", nullptr);
  EXPECT_THAT(takeLines(), ElementsAre());
}

TEST_F(NSNotificationCenterTest, ARemovedObserverIsNotTold) {
  const auto second = make<Observer>("second");
  observe(observer, object);
  observe(second, object);
  observe(observer, nullptr);
  center.removeObserver(*observer);
  EXPECT_EQ(center.registrationsOf(*observer), 0U);
  EXPECT_EQ(center.registrationsOf(*second), 1U);
  center.postNotificationName_object("event", object);
  EXPECT_THAT(takeLines(), ElementsAre("second"));
}

TEST_F(NSNotificationCenterTest, WhoRegistersWhileBeingToldHearsTheNextPost) {
  center.addObserver_selector_name_object(observer, &Observer::heardAndRegistersAgain, "event", object);
  center.postNotificationName_object("event", object);
  EXPECT_THAT(takeLines(), ElementsAre("heard"));
  center.postNotificationName_object("event", object);
  EXPECT_THAT(takeLines(), ElementsAre("heard", "heard"));
}

}  // namespace
