#pragma once

#include "hosts/medialibrary/FolderScan.h"
#include "hosts/medialibrary/FolderSearch.h"
#include "hosts/medialibrary/FolderWatch.h"
#include "hosts/medialibrary/Index.h"

#include <chrono>
#include <memory>
#include <string>

namespace benches {

/// An index that knows everything in a folder: each file counts as a film of a minute.
inline std::unique_ptr<medialibrary::Index> filledIndex(const std::string& path, const std::string& folder,
                                                        const medialibrary::Order& order) {
  auto index = medialibrary::Index::open(path, order);
  medialibrary::Finding finding;
  finding.isReadable = true;
  finding.duration = 60.0;
  finding.pictureTracks = 1;
  finding.hasPicture = true;
  index->begin();
  medialibrary::FolderScan scan({folder});
  for (medialibrary::ScannedFolder found; scan.next(found);) {
    for (const medialibrary::VideoFile& file : found.files) index->settle(index->add(file), file, finding);
  }
  index->commit();
  return index;
}

/// Compares everything in a folder with the index, as the app does whenever it starts.
inline void rescan(medialibrary::Index& index, medialibrary::FolderWatch& watch, const std::string& folder) {
  medialibrary::FolderSearch search(index, watch);
  search.beginAll({folder});
  while (search.isUnderWay()) search.goOn(std::chrono::steady_clock::now() + std::chrono::milliseconds(50));
}

}  // namespace benches
