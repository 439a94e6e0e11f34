#include "hosts/desktop/DefaultsFile.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <cstdio>

namespace desktop {

namespace {

void complain(const char* what, const QString& path, const QString& reason) {
  std::fprintf(stderr, "%s %s: %s\n", what, qPrintable(path), qPrintable(reason));
}

QJsonValue toJson(const host::Defaults::Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return QString::fromStdString(*text);
  return std::get<double>(value);
}

}  // namespace

DefaultsFile::DefaultsFile(QString path) : path_(std::move(path)) {
  load();
}

void DefaultsFile::load() {
  QFile file(path_);
  if (!file.exists()) return;
  if (!file.open(QIODevice::ReadOnly)) {
    complain("cannot read the user defaults", path_, file.errorString());
    return;
  }
  QJsonParseError error{};
  const auto document = QJsonDocument::fromJson(file.readAll(), &error);
  if (!document.isObject()) {
    complain("the user defaults are damaged and set aside", path_, error.errorString());
    const QString aside = path_ + QStringLiteral(".damaged");
    QFile::remove(aside);
    file.rename(aside);
    return;
  }
  const QJsonObject entries = document.object();
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
  QSaveFile file(path_);
  if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(entries).toJson()) < 0 || !file.commit()) {
    complain("cannot write the user defaults", path_, file.errorString());
  }
}

}  // namespace desktop
