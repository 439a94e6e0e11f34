#pragma once

#include <QJsonObject>
#include <QString>

namespace desktop {

/// A file of the user's that holds one JSON object. What goes wrong is told on standard error, and is no error for
/// who asks. Any one thread at a time.
class JsonFile final {
 public:
  /// `subject` names the contents in messages: "the user defaults".
  JsonFile(QString path, const char* subject) : path_(std::move(path)), subject_(subject) {}

  /// Empty where there is no file, or none that can be read. A damaged one is set aside as ".damaged".
  QJsonObject read() const;
  /// Atomically: after a crash or with a full disk the file is as it was before.
  void write(const QJsonObject& contents) const;

 private:
  void complain(const char* trouble, const QString& reason) const;

  QString path_;
  const char* subject_;
};

}  // namespace desktop
