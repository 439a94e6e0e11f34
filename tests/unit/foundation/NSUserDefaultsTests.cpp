#include "platform/foundation/NSUserDefaults.h"

#include "tests/unit/foundation/BarePlatform.h"

namespace {

class NSUserDefaultsTest : public BarePlatform {
 protected:
  NSUserDefaults& defaults = NSUserDefaults::standardUserDefaults();
};

TEST_F(NSUserDefaultsTest, AreEmptyAtFirst) {
  EXPECT_EQ(defaults.objectForKey("primoAvvio"), nullptr);
}

TEST_F(NSUserDefaultsTest, WriteThroughAtOnce) {
  defaults.setObject_forKey(make<NSString>("2"), "primoAvvio");
  defaults.setObject_forKey(NSNumber::numberWithDouble(12.5), "volume");
  EXPECT_EQ(host.defaults.values["primoAvvio"], host::Defaults::Value("2"));
  EXPECT_EQ(host.defaults.values["volume"], host::Defaults::Value(12.5));
}

TEST_F(NSUserDefaultsTest, GiveBackTextsAndNumbersInTheirOwnClass) {
  host.defaults.values = {{"text", std::string("2")}, {"number", 2.5}};
  const auto text = std::dynamic_pointer_cast<NSString>(defaults.objectForKey("text"));
  const auto number = std::dynamic_pointer_cast<NSNumber>(defaults.objectForKey("number"));
  ASSERT_TRUE(text);
  ASSERT_TRUE(number);
  EXPECT_EQ(text->text(), "2");
  EXPECT_EQ(number->doubleValue(), 2.5);
}

TEST_F(NSUserDefaultsTest, AreReadFromTheHostEachTime) {
  defaults.setObject_forKey(make<NSString>("1"), "key");
  host.defaults.values["key"] = std::string("changed outside");
  EXPECT_EQ(std::dynamic_pointer_cast<NSString>(defaults.objectForKey("key"))->text(), "changed outside");
}

TEST_F(NSUserDefaultsTest, LoseAnEntryThatIsSetToNone) {
  defaults.setObject_forKey(make<NSString>("1"), "key");
  defaults.setObject_forKey(nullptr, "key");
  EXPECT_EQ(defaults.objectForKey("key"), nullptr);
  EXPECT_FALSE(host.defaults.values.contains("key"));
}

using NSUserDefaultsDeathTest = NSUserDefaultsTest;

TEST_F(NSUserDefaultsDeathTest, TakeNothingButTextsAndNumbers) {
  EXPECT_DEATH(defaults.setObject_forKey(make<NSDictionary>(NSDictionary::Entries{}), "key"),
               "user defaults hold texts and numbers only");
}

}  // namespace
