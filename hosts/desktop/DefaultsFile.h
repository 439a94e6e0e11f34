#pragma once

#include "hosts/desktop/JsonFile.h"
#include "platform/host/Services.h"

#include <QString>

#include <map>

namespace desktop {

/// The user defaults in one JSON file. Every change is written through a temporary file, so that a crash or a full
/// disk leaves the old or the new state, never half of one. A file that cannot be understood is set aside under the
/// same name with ".damaged" behind it, and the defaults start empty.
class DefaultsFile final : public host::Defaults {
 public:
  explicit DefaultsFile(QString path);

  std::optional<Value> value(const std::string& key) const override;
  void setValue(const std::string& key, const std::optional<Value>& value) override;

 private:
  void load();
  void save() const;

  JsonFile file_;
  std::map<std::string, Value> values_;
};

}  // namespace desktop
