#include "hosts/medialibrary/IndexSchema.h"

#include "hosts/medialibrary/Index.h"
#include "tests/host/probe/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

using medialibrary::bringUpToDate;
using medialibrary::Database;
using medialibrary::schemaState;
using medialibrary::SchemaState;
using medialibrary::SchemaSteps;

class IndexSchema : public testing::Test {
 protected:
  TemporaryFolder folder_;
  Database database_{folder_ / "library.db", Database::Purpose::Writing};
  SchemaSteps first_ = {"CREATE TABLE film (title TEXT); INSERT INTO film VALUES ('One')"};
  SchemaSteps second_ = {first_[0], "ALTER TABLE film ADD COLUMN year INTEGER DEFAULT 1999"};
};

TEST_F(IndexSchema, IsMadeFromNothing) {
  EXPECT_EQ(schemaState(database_, second_), SchemaState::Older);
  bringUpToDate(database_, second_);
  EXPECT_EQ(schemaState(database_, second_), SchemaState::UpToDate);
  EXPECT_EQ(database_.number("PRAGMA user_version"), 2);
  EXPECT_EQ(database_.number("SELECT year FROM film"), 1999);
}

TEST_F(IndexSchema, KeepsWhatAnOlderVersionStored) {
  bringUpToDate(database_, first_);
  database_.run("UPDATE film SET title = 'Two'");
  EXPECT_EQ(schemaState(database_, first_), SchemaState::UpToDate);
  EXPECT_EQ(schemaState(database_, second_), SchemaState::Older);
  bringUpToDate(database_, second_);
  EXPECT_EQ(schemaState(database_, second_), SchemaState::UpToDate);
  EXPECT_EQ(database_.text("SELECT title || year FROM film"), "Two1999");
  bringUpToDate(database_, second_);
  EXPECT_EQ(database_.number("SELECT count(*) FROM film"), 1) << "no step is done twice";
}

TEST_F(IndexSchema, GoesOnWhereItWasStopped) {
  SchemaSteps broken = second_;
  broken[1] += "; INSERT INTO nowhere VALUES (1)";
  EXPECT_THROW(bringUpToDate(database_, broken), medialibrary::IndexError);
  EXPECT_EQ(database_.number("PRAGMA user_version"), 1);
  EXPECT_EQ(database_.number("SELECT count(*) FROM pragma_table_info('film')"), 1) << "half a step is none";
  bringUpToDate(database_, second_);
  EXPECT_EQ(database_.number("SELECT year FROM film"), 1999);
}

TEST_F(IndexSchema, OfAnOlderVersionThatIsNotWhatItSaysIsDamaged) {
  bringUpToDate(database_, first_);
  database_.run("DROP TABLE film");
  try {
    bringUpToDate(database_, second_);
    ADD_FAILURE() << "there is no such table";
  } catch (const medialibrary::IndexError& error) {
    EXPECT_TRUE(error.isDamaged()) << error.what();
  }
}

TEST_F(IndexSchema, TellsWhatItDoesNotKnow) {
  bringUpToDate(database_, second_);
  EXPECT_EQ(schemaState(database_, first_), SchemaState::Newer);
  database_.run("PRAGMA application_id = 7");
  EXPECT_EQ(schemaState(database_, second_), SchemaState::Foreign);
}

TEST_F(IndexSchema, OfAnotherProgramWithoutAVersionIsForeign) {
  database_.run("CREATE TABLE recipe (title TEXT)");
  EXPECT_EQ(schemaState(database_, first_), SchemaState::Foreign);
}

TEST_F(IndexSchema, OfTheIndexIsItsLatest) {
  bringUpToDate(database_, medialibrary::indexSchema());
  EXPECT_EQ(schemaState(database_, medialibrary::indexSchema()), SchemaState::UpToDate);
  EXPECT_EQ(database_.text("PRAGMA quick_check"), "ok");
}

}  // namespace
