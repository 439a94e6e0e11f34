#include "hosts/desktop/DefaultsFile.h"

namespace desktop {

namespace {

QJsonValue toJson(const host::Defaults::Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return QString::fromStdString(*text);
  return std::get<double>(value);
}

}  // namespace

DefaultsFile::DefaultsFile(QString path) : file_(std::move(path), "the user defaults") {
  load();
}

void DefaultsFile::load() {
  const QJsonObject entries = file_.read();
  for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
    if (entry->isString()) values_[entry.key().toStdString()] = entry->toString().toStdString();
    if (entry->isDouble()) values_[entry.key().toStdString()] = entry->toDouble();
  }
}

std::optional<host::Defaults::Value> DefaultsFile::value(const std::string& key) const {
  const auto found = values_.find(key);
  return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void DefaultsFile::setValue(const std::string& key, const std::optional<Value>& value) {
  if (value) {
    values_[key] = *value;
  } else {
    values_.erase(key);
  }
  save();
}

void DefaultsFile::save() const {
  QJsonObject entries;
  for (const auto& [key, value] : values_) entries.insert(QString::fromStdString(key), toJson(value));
  file_.write(entries);
}

}  // namespace desktop
