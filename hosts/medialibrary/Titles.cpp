#include "hosts/medialibrary/Titles.h"

#include "hosts/probe/Text.h"

namespace medialibrary {

std::string titleOf(const std::string& path, const std::optional<std::string>& titleTag) {
  if (titleTag) return *titleTag;
  const std::string name = path.substr(path.rfind('/') + 1);
  const std::string withoutEnding = probe::lineOfText(name.substr(0, name.rfind('.')));
  return withoutEnding.empty() ? probe::lineOfText(name) : withoutEnding;
}

}  // namespace medialibrary
