#include "hosts/medialibrary/Listing.h"

#include "hosts/medialibrary/Artwork.h"
#include "platform/foundation/Values.h"

#include <gtest/gtest.h>

namespace {

struct Film {
  std::string path;
  std::string title;
  double duration = 0.0;
};

TEST(Listing, GivesBackWhatWasAdded) {
  const std::vector<Film> films = {
      {"/f/a.mp4", "a", 1.0},
      {"/f/b.mp4", "Another title", 2.5},
      {"/g/b.mp4", "b", 3.0},
      {"/f/c.mp4", "", 4.0},
      {"/f/d.mp4", "d.mp4", 5.0},
      {"/f/e.mp4", "e.mp4 and more", 6.0},
      {"/root.mp4", "root", 7.0},
      {"/f\n/\xFF.mp4", "\xEF\xBF\xBD", 8.0},
      {"/f/" + std::string(255, 'x'), std::string(100'000, 'y'), 9.0},
      {"/f/a.mp4", "a", 10.0},
  };
  medialibrary::Listing listing;
  for (const Film& film : films) listing.add(film.path, film.title, film.duration);
  listing.finish();
  ASSERT_EQ(listing.count(), films.size());
  for (std::size_t i = 0; i < films.size(); ++i) {
    const host::LibraryItem item = listing.item(i);
    EXPECT_EQ(NSURL(item.url).path(), films[i].path);
    EXPECT_EQ(item.title, films[i].title);
    EXPECT_EQ(item.duration, films[i].duration);
    EXPECT_EQ(item.artworkSource, medialibrary::artworkSource(films[i].path));
  }
}

TEST(Listing, MayBeEmpty) {
  medialibrary::Listing listing;
  listing.finish();
  EXPECT_EQ(listing.count(), 0U);
  EXPECT_THROW(listing.item(0), std::out_of_range);
}

}  // namespace
